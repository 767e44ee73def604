// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/FileReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"

#include <QCache>
#include <QObject>
#include <QPointer>

#include <QCoroTask>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

class RepositoryStore;

/// Reads the whole files of the diffs that a view shows, and works out the colours of their code. Main thread; the work
/// is done on the store's worker, one file at a time, and what is asked for last wins.
///
/// Files of diffs that are shown again come from a small cache at once. A section whose diff is of the same files as
/// before is left as it is.
class DiffFilesLoader : public QObject {
    Q_OBJECT

public:
    /// `store` outlives the loader.
    explicit DiffFilesLoader(RepositoryStore& store, QObject* parent = nullptr);
    ~DiffFilesLoader() override;

    /// To be called when the view shows these, every time. Answers with the signals, some of them before it returns.
    void load(const std::vector<const DiffContent*>& contents);

Q_SIGNALS:
    void textsLoaded(plovik::DiffKind kind, const plovik::DiffTexts& texts);
    /// May come several times for a diff, each time with more.
    void syntaxLoaded(plovik::DiffKind kind, const plovik::SyntaxOf& syntax);

private:
    /// A file of one side of a diff.
    struct Side {
        std::string blob; ///< empty when the side has no file
        std::string path;

        bool operator==(const Side&) const = default;
    };
    struct Section {
        DiffKind kind;
        Side before, after;
        std::optional<std::string> workingPath;
        DiffTexts texts;
        SyntaxOf syntax; ///< as far as it is known
        SyntaxOf alike;  ///< of the same file in another version: most of its lines are the same
        bool isRead = false;

        bool isSame(const Section& other) const
        {
            return kind == other.kind && before == other.before && after == other.after;
        }
    };
    struct Job;

    static std::optional<Section> sectionOf(const DiffContent& content);
    void work();
    void textsRead();
    void coloursRead();

    static QByteArray keyOf(const Side& side);

    void takeKnown(Section& section) const;
    std::shared_ptr<const FileSyntax> known(const Side& side) const;
    std::optional<Job> nextJob() const;
    void takeTexts(const Section& read, DiffTexts texts);
    void takeSyntax(const Side& side, bool mayBeNewer, const std::shared_ptr<const FileSyntax>& syntax);
    void announce(const Section& section);

    std::vector<Section> sections_;
    QCache<QByteArray, std::shared_ptr<const FileSyntax>> cache_; ///< by blob and path; costs are bytes
    std::optional<Section> inReading_;                            ///< whose files are being read
    std::optional<Side> inColouring_;                             ///< whose colours are being worked out
    bool mayBeNewer_ = false; ///< that file may have changed since its diff was made
    Latest<DiffFilesRequest, DiffTexts> texts_;
    Latest<SyntaxRequest, std::shared_ptr<const FileSyntax>> colours_;
};

} // namespace plovik
