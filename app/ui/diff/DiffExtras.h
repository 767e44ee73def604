// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffSides.h"
#include "app/store/RepositoryStore.h"
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

/// What is known of one diff's files, and their pictures where they are pictures. Value.
struct DiffExtra {
    FileFacts facts;
    std::optional<PicturePair> pictures;
};

/// Shows, beside diffs, what they do not tell themselves: of binary files the sizes, the encoding or the pictures, of
/// drawings kept as text the pictures. Reads the files in the background, one diff after another, and shows the diffs
/// again when that is known. Main thread.
class DiffExtras : public QObject {
    Q_OBJECT

public:
    /// `store` and `view` outlive this.
    DiffExtras(RepositoryStore& store, DiffView& view, QObject* parent);

    void show(std::vector<DiffContent> contents, DiffPlace place);

private:
    struct Key {
        gitkit::DiffSource source;
        std::string path;
        bool isBinary = false;

        bool operator==(const Key& other) const { return !(*this < other) && !(other < *this); }
        bool operator<(const Key& other) const;
    };

    static DiffExtra read(const gitkit::GitRepository& repository, const Key& key);
    static QCoro::Task<> readAll(QPointer<DiffExtras> extras);
    static std::optional<Key> keyOf(const DiffContent& content);

    void fill(DiffContent& content);
    void attach();
    void attachTo(DiffSectionView& section);
    void fitPictures();
    void showAgain();

    RepositoryStore& store_;
    DiffView& view_;
    std::map<Key, DiffExtra> known_; ///< of the diffs on display
    std::vector<Key> wanted_;        ///< to read
    bool isReading_ = false;
};

} // namespace plovik
