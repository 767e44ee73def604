// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffExtras.h"

#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/web/WebLinkEntries.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>

namespace plovik {

namespace {

/// The largest picture that is read, and the largest file of which it is found out whether it is text.
constexpr std::size_t mostPicture = std::size_t{32} << 20;
constexpr std::size_t mostText = std::size_t{8} << 20;
/// How high the pictures of a drawing may be above its text.
constexpr int roomAboveText = 260;

bool isThere(const std::optional<std::string>& blob)
{
    return blob && blob->find_first_not_of('0') != std::string::npos;
}

PictureSide sideOf(std::optional<std::uint64_t> size, const std::optional<std::string>& bytes)
{
    PictureSide side{size.value_or(0), {}};
    if (bytes)
        side.picture = readPicture(*bytes);
    else if (size.value_or(0) > mostPicture)
        side.picture.problem = DiffExtras::tr("Pictures of more than 32 MB are not shown.");
    else
        side.picture.problem = DiffExtras::tr("This picture could not be read.");
    return side;
}

PicturePair picturesOf(const gitkit::DiffSource& source, const gitkit::SideSizes& sizes, const gitkit::DiffSides& sides)
{
    PicturePair pair;
    if (isThere(source.before))
        pair.before = sideOf(sizes.before, sides.before);
    if (isThere(source.after))
        pair.after = sideOf(sizes.after, sides.after);
    if (pair.before && pair.after) {
        const Picture& before = pair.before->picture;
        const bool isWhole = before.image.size() == before.pixels && !before.isVector;
        pair.areSamePixels = isWhole && before == pair.after->picture;
    }
    return pair;
}

bool hasPicture(const PicturePair& pair)
{
    return std::ranges::any_of(std::array{&pair.before, &pair.after},
                               [](const auto* side) { return *side && !(*side)->picture.image.isNull(); });
}

} // namespace

bool DiffExtras::Key::operator<(const Key& other) const
{
    const auto parts = [](const Key& key) {
        return std::tie(key.path, key.source.before, key.source.after, key.source.workingPath, key.isBinary);
    };
    return parts(*this) < parts(other);
}

DiffExtras::DiffExtras(RepositoryStore& store, DiffView& view, QObject* parent)
    : QObject(parent), store_(store), view_(view),
      reading_(store.git(), &readDiffFiles, &extraOf, [this] { extraRead(); })
{
    connect(&view_, &DiffView::laidOut, this, &DiffExtras::fitPictures);
    connect(&view_, &DiffView::linesHistoryRequested, this, &DiffExtras::showLinesHistory);
    connect(&view_, &DiffView::linesLinkRequested, this, &DiffExtras::followLinesLink);
}

void DiffExtras::followLinesLink(const DiffContent& content, const gitkit::LineRange& lines, bool isOpened)
{
    gitkit::WebLinkRequest request{.commit = content.revision, .path = content.path, .lines = lines};
    if (content.inHead) {
        request.commit = content.inHead->revision;
        request.path = content.inHead->path;
    }
    (isOpened ? openWebLink : copyWebLink)(store_, request);
}

void DiffExtras::showLinesHistory(const DiffContent& content, const gitkit::LineRange& lines)
{
    const bool isWorkingCopy = content.inHead.has_value();
    store_.window().inspect({isWorkingCopy ? content.inHead->path : content.path,
                             isWorkingCopy ? content.inHead->revision : content.revision, InspectedFile::Tab::history,
                             lines});
}

std::optional<DiffExtras::Key> DiffExtras::keyOf(const DiffContent& content)
{
    const gitkit::ParsedDiff& diff = content.diff;
    if (const auto commits = submoduleCommits(diff); commits && content.state == DiffState::ordinary)
        return Key{{{commits->before, commits->after, std::nullopt}, 0, content.path}, content.path, false};
    const bool isWanted = diff.isBinary || (isTextPictureName(content.path) && !diff.lines.empty());
    const bool isMarked = content.state != DiffState::ordinary && !diff.isBinary;
    if (!isWanted || isMarked || (!diff.oldBlob && !diff.newBlob))
        return std::nullopt;
    const bool isPicture = isPictureName(content.path) || isTextPictureName(content.path);
    // The sides of a conflict are both blobs, and the working file is neither.
    const auto workingPath = content.state == DiffState::ordinary ? content.workingPath : std::nullopt;
    return Key{
        {{diff.oldBlob, diff.newBlob, workingPath}, isPicture ? mostPicture : mostText}, content.path, diff.isBinary};
}

/// Runs on the worker's thread.
// NOLINTNEXTLINE(performance-unnecessary-value-param): this is how Latest hands over what was read
DiffExtra DiffExtras::extraOf(DiffFiles files, const Key& key)
{
    DiffExtra extra;
    extra.facts.submodule = std::move(files.submodule);
    if (extra.facts.submodule)
        return extra;
    extra.facts.oldSize = files.sizes.before;
    extra.facts.newSize = files.sizes.after;
    if (isPictureName(key.path) || isTextPictureName(key.path)) {
        PicturePair pair = picturesOf(key.source, files.sizes, files.sides);
        // What cannot be drawn can still be read as text.
        if (key.isBinary || hasPicture(pair))
            extra.pictures = std::move(pair);
        extra.facts.isPicture = extra.pictures.has_value();
        return extra;
    }
    for (const auto& side : {files.sides.after, files.sides.before}) {
        if (side && !extra.facts.encoding)
            extra.facts.encoding = wideEncoding(*side);
    }
    return extra;
}

void DiffExtras::show(std::vector<DiffContent> contents, DiffPlace place)
{
    std::map<Key, DiffExtra> before = std::exchange(known_, {});
    contents_ = std::move(contents);
    wanted_.clear();
    for (const DiffContent& content : contents_) {
        const std::optional<Key> key = keyOf(content);
        if (!key)
            continue;
        if (const auto known = before.find(*key); known != before.end())
            known_.insert(*known);
        else
            wanted_.push_back(*key);
    }
    showFilled(place);
    readNext();
}

void DiffExtras::fill(DiffContent& content) const
{
    const std::optional<Key> key = keyOf(content);
    if (!key)
        return;
    const auto known = known_.find(*key);
    if (known != known_.end())
        content.facts = known->second.facts;
    else
        content.facts.isBeingRead = true;
}

/// A reading that is not wanted any more is ended for the next one.
void DiffExtras::readNext()
{
    if (wanted_.empty())
        reading_.forget();
    else
        reading_.ask(wanted_.back());
}

void DiffExtras::extraRead()
{
    const Key key = *reading_.asked();
    // After a failure the diff is shown with what can be said without the files.
    known_.emplace(key, reading_.failure() ? DiffExtra() : *reading_.result());
    std::erase(wanted_, key);
    showAgain();
    readNext();
}

void DiffExtras::showFilled(DiffPlace place)
{
    std::vector<DiffContent> filled = contents_;
    for (DiffContent& content : filled)
        fill(content);
    view_.setContents(std::move(filled), place);
    std::erase_if(shownPictures_, [this](const auto& shown) {
        return std::ranges::find(contents_, shown.first, &DiffContent::kind) == contents_.end();
    });
    for (std::size_t i = 0; i < contents_.size(); ++i)
        attachPictures(contents_[i], *view_.sections()[i]);
    fitPictures();
}

void DiffExtras::attachPictures(const DiffContent& content, DiffSectionView& section)
{
    const std::optional<Key> key = keyOf(content);
    const auto known = key ? known_.find(*key) : known_.end();
    const auto shown = shownPictures_.find(content.kind);
    if (known == known_.end() || !known->second.pictures) {
        if (shown == shownPictures_.end())
            return;
        section.setInset(nullptr);
        shownPictures_.erase(shown);
        return;
    }
    PicturePair pair = *known->second.pictures;
    pair.conflict = content.sides;
    if (shown == shownPictures_.end() || shown->second.pair != pair) {
        auto* const pane = new ImagePane(pair);
        shownPictures_.insert_or_assign(content.kind, ShownPictures{pair, pane});
        section.setInset(pane);
        connect(pane, &ImagePane::heightChanged, &section, [&section, pane] { section.setInset(pane); });
    }
}

void DiffExtras::fitPictures()
{
    const int room = view_.viewport()->height() - DiffSectionBar::barHeight();
    for (DiffSectionView* const section : view_.sections()) {
        const ShownDiff& diff = section->controller().diff();
        const auto shown = shownPictures_.find(diff.content().kind);
        const bool hasText = diff.document().rowCount() > 0;
        if (shown != shownPictures_.end() &&
            shown->second.pane->setRoom(hasText ? std::min(room, roomAboveText) : room))
            section->setInset(shown->second.pane);
    }
}

} // namespace plovik

#include "moc_DiffExtras.cpp"
