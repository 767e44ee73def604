// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Patches.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Patches.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

namespace plovik::actions {

namespace {

struct PatchTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Patches)
};

constexpr std::uintmax_t largestPatch = std::uintmax_t{200} << 20;

struct ReadPatch {
    std::string mail;
    std::string changes; ///< alone; empty where the message survives
};

ReadPatch readPatch(const gitkit::GitRepository& repo, const std::string& commit)
{
    ReadPatch patch{.mail = gitkit::mailedPatch(repo, commit), .changes = {}};
    if (gitkit::endsPatchEarly(repo.commitMessage(commit)))
        patch.changes = gitkit::barePatch(repo, commit);
    return patch;
}

struct PatchFile {
    std::string bytes;
    gitkit::PatchContents contents;
};

PatchFile readPatchFile(const gitkit::GitRepository& repo, const std::filesystem::path& file)
{
    const auto bytes = gitkit::regularFileBytes(file, largestPatch + 1);
    if (!bytes)
        throw std::runtime_error(PatchTexts::tr("%1 could not be read: %2")
                                     .arg(inQuotes(file.filename().native()), QString::fromLocal8Bit(strerror(errno)))
                                     .toStdString());
    if (bytes->size() > largestPatch)
        throw std::runtime_error(
            PatchTexts::tr("%1 is too large for a patch.").arg(inQuotes(file.filename().native())).toStdString());
    return {*bytes, gitkit::patchContents(repo, *bytes)};
}

std::string writeMails(const gitkit::GitRepository& repo, const std::vector<std::string>& commits,
                       const std::filesystem::path& folder)
{
    gitkit::saveMailedPatches(repo, commits, folder);
    for (const std::string& commit : commits) {
        if (gitkit::endsPatchEarly(repo.commitMessage(commit)))
            return commit;
    }
    return {};
}

gitkit::LeftOut writePack(const gitkit::GitRepository& repo, const std::string& commit, gitkit::ArchiveFormat format,
                          const std::string& name, const std::filesystem::path& file)
{
    gitkit::writeArchive(repo, commit, format, name, file);
    return gitkit::leftOutOfArchive(repo, commit);
}

void writePatch(const std::filesystem::path& file, const std::string& bytes)
{
    if (!gitkit::replaceFile(file, bytes))
        throw std::runtime_error(PatchTexts::tr("%1 could not be written: %2")
                                     .arg(inQuotes(file.filename().native()), QString::fromLocal8Bit(strerror(errno)))
                                     .toStdString());
}

using Use = std::function<void(const std::string& bytes)>;

/// Uses a patch and reports what that throws.
void use(WindowState& window, const Use& how, const std::string& bytes)
{
    try {
        how(bytes);
    } catch (const std::exception& thrown) {
        window.report(failureOf(thrown));
    }
}

void askWhatOfIt(WindowState& window, const ReadPatch& patch, const Use& how)
{
    Confirmation question;
    question.title = PatchTexts::tr("The message holds a line that ends a patch");
    question.message = PatchTexts::tr("Whoever applies it as a commit gets a message that is cut there, or an error. "
                                      "The changes alone can be applied as they are.");
    question.risk = Confirmation::Risk::none;
    question.actionTitle = PatchTexts::tr("Take the Changes Alone");
    question.action = [&window, patch, how] { use(window, how, patch.changes); };
    question.choices = {{PatchTexts::tr("Take It as It Is"), [&window, patch, how] { use(window, how, patch.mail); }}};
    window.ask(std::move(question));
}

QCoro::Task<> usingPatch(Actors actors, std::string commit, Use how)
{
    std::optional<Failure> failure;
    try {
        const ReadPatch patch = co_await actors.git.read(&readPatch, commit);
        if (patch.changes.empty())
            how(patch.mail);
        else
            askWhatOfIt(actors.window, patch, how);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
}

QCoro::Task<> savingAll(Actors actors, std::vector<std::string> commits, std::filesystem::path folder)
{
    std::optional<Failure> failure;
    try {
        const std::string cut = co_await actors.git.readAside({}, &writeMails, commits, folder);
        const int count = static_cast<int>(commits.size());
        actors.window.tell(
            cut.empty() ? PatchTexts::tr("Saved %Ln patch(es).", nullptr, count)
                        : PatchTexts::tr("Saved %Ln patch(es). The message of %1 holds a line that ends a patch: it "
                                         "will be cut there.",
                                         nullptr, count)
                              .arg(shownText(gitkit::shortHash(cut))));
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
}

QCoro::Task<> packing(Actors actors, std::string commit, gitkit::ArchiveFormat format, std::string name,
                      std::filesystem::path file)
{
    std::optional<Failure> failure;
    try {
        const gitkit::LeftOut left = co_await actors.git.readAside({}, &writePack, commit, format, name, file);
        QStringList sentences{PatchTexts::tr("Saved %1.").arg(inQuotes(file.filename().native()))};
        if (left.submodules)
            sentences << PatchTexts::tr("Submodules are empty folders in it.");
        if (left.marked)
            sentences << PatchTexts::tr("Files that are marked export-ignore are not in it.");
        actors.window.tell(sentences.join(u' '));
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
}

void applyChanges(Actors actors, const std::shared_ptr<const PatchFile>& patch, const QString& name,
                  gitkit::PatchWay way);

/// Offers a merge where a patch was made of other lines.
bool offersThreeWay(Actors actors, const std::shared_ptr<const PatchFile>& patch, const QString& name,
                    const Failure& failure)
{
    if (failure.kind != gitkit::ErrorKind::changedMeanwhile)
        return false;
    Confirmation question;
    question.title = PatchTexts::tr("%1 does not fit").arg(inQuotes(name));
    question.message = PatchTexts::tr("Nothing was changed. Where this repository has what it was made from, it can be "
                                      "merged in. What it changes is staged then, and conflicts may be left.");
    question.detail = failure.message;
    question.risk = Confirmation::Risk::none;
    question.actionTitle = PatchTexts::tr("Merge It In");
    question.action = [actors, patch, name] { applyChanges(actors, patch, name, gitkit::PatchWay::threeWay); };
    actors.window.ask(std::move(question));
    return true;
}

void applyChanges(Actors actors, const std::shared_ptr<const PatchFile>& patch, const QString& name,
                  gitkit::PatchWay way)
{
    actors.changes.run(
        {.verb = Verb::applyPatch,
         .title = PatchTexts::tr("Applying %1…").arg(inQuotes(name)),
         .operation = [patch, way](const gitkit::GitRepository& repo) { gitkit::applyPatch(repo, patch->bytes, way); },
         .undo = undoable::applyPatch(name, patch->contents.paths, way),
         .failed =
             [actors, patch, name, way](const Failure& failure) {
                 return way == gitkit::PatchWay::exact && offersThreeWay(actors, patch, name, failure);
             }});
}

void applyCommits(Actors actors, const std::shared_ptr<const PatchFile>& patch, const QString& name)
{
    actors.changes.run(
        {.verb = Verb::applyMails,
         .title = PatchTexts::tr("Applying %1…").arg(inQuotes(name)),
         .operation = [patch](const gitkit::GitRepository& repo) { gitkit::applyMails(repo, patch->bytes); },
         .undo = undoable::applyMails(name)});
}

void askHowToApply(Actors actors, const std::shared_ptr<const PatchFile>& patch, const QString& name)
{
    const gitkit::PatchContents& contents = patch->contents;
    const int files = static_cast<int>(contents.paths.size());
    Confirmation question;
    question.title = PatchTexts::tr("Apply %1?").arg(inQuotes(name));
    question.detail = namesInLines(contents.paths);
    question.risk = Confirmation::Risk::none;
    const Way changes{contents.mails > 0 ? PatchTexts::tr("Apply as Changes") : PatchTexts::tr("Apply"),
                      [actors, patch, name] { applyChanges(actors, patch, name, gitkit::PatchWay::exact); }};
    if (contents.mails == 0) {
        question.message = PatchTexts::tr("It changes %Ln file(s) of the working copy.", nullptr, files);
        question.actionTitle = changes.title;
        question.action = changes.action;
    } else {
        question.message =
            PatchTexts::tr("It holds %Ln commit(s) with their messages and authors.", nullptr, contents.mails);
        question.choices = {changes};
        question.actionTitle = PatchTexts::tr("Apply as Commits");
        question.action = [actors, patch, name] { applyCommits(actors, patch, name); };
    }
    actors.window.ask(std::move(question));
}

QCoro::Task<> lookingInto(Actors actors, std::filesystem::path file)
{
    std::optional<Failure> failure;
    try {
        PatchFile patch = co_await actors.git.read(&readPatchFile, file);
        askHowToApply(actors, std::make_shared<const PatchFile>(std::move(patch)), shownText(file.filename().native()));
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
}

} // namespace

QString cannotMakePatch(const std::vector<gitkit::Commit>& commits)
{
    const bool hasMerge =
        std::ranges::any_of(commits, [](const gitkit::Commit& one) { return one.parents.size() > 1; });
    if (!hasMerge)
        return {};
    return commits.size() == 1
               ? PatchTexts::tr("A merge has changes against each of its parents, which no patch can say.")
               : PatchTexts::tr("There is a merge among them, which no patch can say.");
}

QString patchFileName(const gitkit::Commit& commit)
{
    QString name;
    for (const QChar character : exactText(commit.subject).left(52)) {
        if (character.isLetterOrNumber() || character == u'_')
            name += character;
        else if (!name.isEmpty() && !name.endsWith(u'-'))
            name += u'-';
    }
    while (name.endsWith(u'-'))
        name.chop(1);
    return (name.isEmpty() ? shownText(gitkit::shortHash(commit.hash)) : name) + QStringLiteral(".patch");
}

void copyPatch(Actors actors, const std::string& commit, std::function<void(const QString& patch)> copy)
{
    launch(usingPatch(actors, commit, [&window = actors.window, copy = std::move(copy)](const std::string& bytes) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
        if (decoder.hasError() || bytes.find('\0') != std::string::npos) {
            window.report({.message = PatchTexts::tr("This patch holds bytes that are no text in UTF-8. The clipboard "
                                                     "would change them. Save it as a file instead.")});
            return;
        }
        copy(text);
    }));
}

void savePatch(Actors actors, const std::string& commit, const std::filesystem::path& file)
{
    launch(usingPatch(actors, commit, [&window = actors.window, file](const std::string& bytes) {
        writePatch(file, bytes);
        window.tell(PatchTexts::tr("Saved %1.").arg(inQuotes(file.filename().native())));
    }));
}

void savePatches(Actors actors, const std::vector<std::string>& commits, const std::filesystem::path& folder)
{
    launch(savingAll(actors, commits, folder));
}

void askToApply(Actors actors, const std::filesystem::path& file) { launch(lookingInto(actors, file)); }

void saveArchive(Actors actors, const std::string& commit, gitkit::ArchiveFormat format, const std::string& name,
                 const std::filesystem::path& file)
{
    launch(packing(actors, commit, format, name, file));
}

} // namespace plovik::actions
