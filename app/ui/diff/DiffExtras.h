// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffSides.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/FileReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/ImagePane.h"

#include <QObject>
#include <QPointer>

#include <QCoroTask>

#include <compare>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

class DiffSectionView;
class DiffView;

/// What is known of the files of one diff, and their pictures if they are pictures. Value.
struct DiffExtra {
    FileFacts facts;
    std::optional<PicturePair> pictures;
};

/// Shows diffs with what they do not tell themselves: the sizes, the encoding or the pictures of binary files, and the
/// pictures of drawings that are kept as text, and the commits of submodules. Reads the files in the background, one diff after another, and shows the
/// diffs again when more is known. Main thread.
class DiffExtras : public QObject {
    Q_OBJECT

public:
    /// `store` and `view` outlive this.
    DiffExtras(RepositoryStore& store, DiffView& view, QObject* parent);

    void show(std::vector<DiffContent> contents, DiffPlace place);
    /// Returns what was shown last.
    const std::vector<DiffContent>& contents() const { return contents_; }

private:
    struct Key : DiffFilesRequest {
        std::string path;
        bool isBinary = false;

        bool operator==(const Key& other) const { return !(*this < other) && !(other < *this); }
        bool operator<(const Key& other) const;
    };

    void followLinesLink(const DiffContent& content, const gitkit::LineRange& lines, bool isOpened);
    void showLinesHistory(const DiffContent& content, const gitkit::LineRange& lines);
    static DiffExtra extraOf(DiffFiles files, const Key& key);
    void readNext();
    void extraRead();
    static std::optional<Key> keyOf(const DiffContent& content);

    void fill(DiffContent& content) const;
    void showFilled(DiffPlace place);
    void attachPictures(const DiffContent& content, DiffSectionView& section);
    void fitPictures();
    void showAgain() { showFilled(DiffPlace::kept); }

    RepositoryStore& store_;
    DiffView& view_;
    std::vector<DiffContent> contents_; ///< on display, without facts
    std::map<Key, DiffExtra> known_;    ///< of the contents
    struct ShownPictures {
        PicturePair pair;
        ImagePane* pane; ///< owned by the section that shows it
    };
    std::map<DiffKind, ShownPictures> shownPictures_;
    std::vector<Key> wanted_; ///< to read
    Latest<Key, DiffExtra> reading_;
};

} // namespace plovik
