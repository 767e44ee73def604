// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/DiffFilesLoader.h"

#include "GitKit/records/DiffSides.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace plovik {

namespace {

constexpr std::size_t largestFile = std::size_t{8} << 20;
constexpr qsizetype keptBytes = qsizetype{6} << 20;

DiffTexts textsOf(DiffFiles files, const DiffFilesRequest&)
{
    DiffTexts texts;
    if (files.sides.before)
        texts.before = std::make_shared<const FileLines>(std::move(*files.sides.before));
    if (files.sides.after)
        texts.after = std::make_shared<const FileLines>(std::move(*files.sides.after));
    return texts;
}

/// Empty for git's way of saying that there is no file.
std::string blobOf(const std::string& hash)
{
    return hash.find_first_not_of('0') == std::string::npos ? std::string() : hash;
}

std::optional<std::string> named(const std::string& blob) { return blob.empty() ? std::nullopt : std::optional(blob); }

} // namespace

/// What the worker does next: reads the files of a section, or works out the colours of one.
struct DiffFilesLoader::Job {
    Section section;
    std::optional<Side> side; ///< to be coloured
    std::shared_ptr<const FileLines> file;
};

DiffFilesLoader::DiffFilesLoader(RepositoryStore& store, QObject* parent)
    : QObject(parent), cache_(keptBytes), texts_(store.git(), &readDiffFiles, &textsOf, [this] { textsRead(); }),
      colours_(store.git(), &highlighted, [this] { coloursRead(); })
{}

DiffFilesLoader::~DiffFilesLoader() = default;

std::optional<DiffFilesLoader::Section> DiffFilesLoader::sectionOf(const DiffContent& content)
{
    const gitkit::ParsedDiff& diff = content.diff;
    if (!diff.oldBlob || !diff.newBlob || diff.isBinary || diff.isTruncated || diff.lines.empty())
        return {};
    Section section;
    section.kind = content.kind;
    section.before = {blobOf(*diff.oldBlob), content.path};
    section.after = {blobOf(*diff.newBlob), content.path};
    section.workingPath = content.workingPath;
    return section;
}

void DiffFilesLoader::load(const std::vector<const DiffContent*>& contents)
{
    std::vector<Section> wanted;
    for (const DiffContent* const content : contents) {
        if (std::optional<Section> section = sectionOf(*content)) {
            takeKnown(*section);
            wanted.push_back(std::move(*section));
        }
    }
    sections_ = std::move(wanted);
    const auto isWanted = [this](const Side& side) {
        return std::ranges::any_of(
            sections_, [&side](const Section& section) { return section.before == side || section.after == side; });
    };
    if (inColouring_ && !isWanted(*inColouring_)) {
        colours_.forget();
        inColouring_.reset();
    }
    if (inReading_ && std::ranges::none_of(sections_, [this](const Section& each) { return each.isSame(*inReading_); }))
    {
        texts_.forget();
        inReading_.reset();
    }
    for (const Section& section : sections_)
        announce(section);
    work();
}

/// Takes over what is known of a section's files, and for the time until they are all known what looks like them.
void DiffFilesLoader::takeKnown(Section& section) const
{
    section.syntax = {known(section.before), known(section.after)};
    const auto former = std::ranges::find(sections_, section.kind, &Section::kind);
    if (former != sections_.end() && former->isSame(section)) {
        section.texts = former->texts;
        section.isRead = former->isRead;
    }
    if (former != sections_.end() && former->after.path == section.after.path)
        section.alike = {former->syntax.before ? former->syntax.before : former->alike.before,
                         former->syntax.after ? former->syntax.after : former->alike.after};
    const auto isKnown = [](const Side& side, const auto& syntax) { return side.blob.empty() || syntax; };
    if (!section.isRead && isKnown(section.before, section.syntax.before) &&
        isKnown(section.after, section.syntax.after))
    {
        section.texts = {section.syntax.before ? section.syntax.before->file() : nullptr,
                         section.syntax.after ? section.syntax.after->file() : nullptr};
        section.isRead = true;
    }
}

std::shared_ptr<const FileSyntax> DiffFilesLoader::known(const Side& side) const
{
    if (side.blob.empty())
        return nullptr;
    for (const Section& section : sections_) {
        if (section.before == side && section.syntax.before)
            return section.syntax.before;
        if (section.after == side && section.syntax.after)
            return section.syntax.after;
    }
    const auto* const kept = cache_.object(keyOf(side));
    return kept ? *kept : nullptr;
}

QByteArray DiffFilesLoader::keyOf(const Side& side)
{
    return QByteArray::fromStdString(side.blob) + ' ' + QByteArray::fromStdString(side.path);
}

void DiffFilesLoader::announce(const Section& section)
{
    if (section.isRead)
        Q_EMIT textsLoaded(section.kind, section.texts);
    const SyntaxOf shown{section.syntax.before ? section.syntax.before : section.alike.before,
                         section.syntax.after ? section.syntax.after : section.alike.after};
    if (shown != SyntaxOf())
        Q_EMIT syntaxLoaded(section.kind, shown);
}

/// Reading comes first: it is quick, and more than colours waits for it.
std::optional<DiffFilesLoader::Job> DiffFilesLoader::nextJob() const
{
    for (const Section& section : sections_) {
        if (!section.isRead)
            return Job{section, {}, {}};
    }
    for (const Section& section : sections_) {
        if (section.texts.after && !section.syntax.after)
            return Job{section, section.after, section.texts.after};
        if (section.texts.before && !section.syntax.before)
            return Job{section, section.before, section.texts.before};
    }
    return {};
}

/// Begins the next job unless one is under way.
void DiffFilesLoader::work()
{
    if (texts_.isReading() || colours_.isReading())
        return;
    const std::optional<Job> job = nextJob();
    if (!job)
        return;
    if (job->side) {
        inColouring_ = job->side;
        mayBeNewer_ = job->section.workingPath.has_value();
        colours_.askAgain({.file = job->file, .path = job->side->path});
        return;
    }
    const Section& section = job->section;
    inReading_ = section;
    texts_.askAgain({.source = {section.syntax.before ? std::nullopt : named(section.before.blob),
                                section.syntax.after ? std::nullopt : named(section.after.blob), section.workingPath},
                     .limit = largestFile});
}

void DiffFilesLoader::textsRead()
{
    // The diff itself is there; after a failure it stays without what its files would add.
    const Section read = *std::exchange(inReading_, std::nullopt);
    takeTexts(read, texts_.failure() ? DiffTexts() : *texts_.result());
    work();
}

void DiffFilesLoader::coloursRead()
{
    const Side side = *std::exchange(inColouring_, std::nullopt);
    takeSyntax(side, mayBeNewer_, *colours_.result());
    work();
}

void DiffFilesLoader::takeTexts(const Section& read, DiffTexts texts)
{
    const auto section = std::ranges::find_if(sections_, [&read](const Section& each) { return each.isSame(read); });
    if (section == sections_.end() || section->isRead)
        return;
    section->texts = std::move(texts);
    if (read.syntax.before)
        section->texts.before = read.syntax.before->file();
    if (read.syntax.after)
        section->texts.after = read.syntax.after->file();
    section->isRead = true;
    announce(*section);
}

void DiffFilesLoader::takeSyntax(const Side& side, bool mayBeNewer, const std::shared_ptr<const FileSyntax>& syntax)
{
    // A file of the working tree may have changed since its diff was made: it is not kept under the hash of then.
    if (!mayBeNewer)
        cache_.insert(keyOf(side), new std::shared_ptr<const FileSyntax>(syntax),
                      static_cast<qsizetype>(syntax->size()));
    for (Section& section : sections_) {
        const SyntaxOf before = section.syntax;
        if (section.before == side && section.texts.before)
            section.syntax.before = syntax;
        if (section.after == side && section.texts.after)
            section.syntax.after = syntax;
        if (section.syntax != before)
            announce(section);
    }
}

} // namespace plovik

#include "moc_DiffFilesLoader.cpp"
