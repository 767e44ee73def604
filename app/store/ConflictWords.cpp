// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/ConflictWords.h"

#include "app/store/ShownText.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace plovik::conflictWords {

namespace {

using gitkit::Conflict;
using gitkit::ConflictAnswer;
using gitkit::ConflictKind;
using gitkit::ConflictName;
using gitkit::ConflictNames;
using gitkit::ConflictVersion;
using NameKind = ConflictName::Kind;

struct ConflictTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Conflicts)
};

constexpr std::size_t shownHash = 7;

QString hashOf(const ConflictName& name) { return shownText(name.hash.substr(0, shownHash)); }

/// Returns a commit's subject between quotation marks, or its hash.
QString quoted(const ConflictName& name) { return name.subject.empty() ? hashOf(name) : inQuotes(name.subject); }

QString pathOf(const std::optional<ConflictVersion>& version) { return version ? inQuotes(version->path) : QString(); }

/// Returns a new name where a side has one, and the path otherwise.
QString nameIn(const Conflict& conflict, const std::optional<ConflictVersion>& version)
{
    return version ? pathOf(version) : inQuotes(conflict.path);
}

/// The tips of the sides' names, in this order.
struct Sides {
    QString left, right;
};

QString happenedOnOneSide(const Conflict& conflict, const Sides& on)
{
    switch (conflict.kind) {
    case ConflictKind::deletedLeft:
        return conflict.base ? ConflictTexts::tr("deleted on %1, changed on %2").arg(on.left, on.right)
                             : ConflictTexts::tr("added on %1").arg(on.right);
    case ConflictKind::deletedRight:
        return conflict.base ? ConflictTexts::tr("deleted on %1, changed on %2").arg(on.right, on.left)
                             : ConflictTexts::tr("added on %1").arg(on.left);
    case ConflictKind::renamedLeft:
        return ConflictTexts::tr("renamed to %1 on %2, deleted on %3", "file, side, side")
            .arg(inQuotes(conflict.path), on.left, on.right);
    case ConflictKind::renamedRight:
        return ConflictTexts::tr("renamed to %1 on %2, deleted on %3", "file, side, side")
            .arg(inQuotes(conflict.path), on.right, on.left);
    case ConflictKind::folderAndFile:
        return conflict.left ? ConflictTexts::tr("a file on %1, a folder on %2").arg(on.left, on.right)
                             : ConflictTexts::tr("a folder on %1, a file on %2").arg(on.left, on.right);
    case ConflictKind::folderRenamed:
        return conflict.left
                   ? ConflictTexts::tr("added on %1 in a folder that was renamed on %2").arg(on.left, on.right)
                   : ConflictTexts::tr("added on %1 in a folder that was renamed on %2").arg(on.right, on.left);
    default:
        return {};
    }
}

/// Says in brackets what taking a side means; empty where its name says all.
QString stateOf(const Conflict& conflict, bool isLeft)
{
    const std::optional<ConflictVersion>& version = isLeft ? conflict.left : conflict.right;
    switch (conflict.kind) {
    case ConflictKind::deletedLeft:
    case ConflictKind::deletedRight:
        if (!conflict.base)
            return version ? ConflictTexts::tr("added") : ConflictTexts::tr("no file");
        return version ? ConflictTexts::tr("changed") : ConflictTexts::tr("deleted");
    case ConflictKind::renamedLeft:
    case ConflictKind::renamedRight:
        return version ? ConflictTexts::tr("renamed") : ConflictTexts::tr("deleted");
    case ConflictKind::folderAndFile:
        return version ? ConflictTexts::tr("the file") : ConflictTexts::tr("the folder");
    case ConflictKind::folderRenamed:
        return shownText(version ? version->path : conflict.path);
    case ConflictKind::renamedBoth:
        return version ? shownText(version->path) : QString();
    case ConflictKind::mode:
        return version && version->isExecutable() ? ConflictTexts::tr("executable")
                                                  : ConflictTexts::tr("not executable");
    case ConflictKind::submodule:
        return version && version->isSubmodule() ? shownText(version->hash.substr(0, shownHash))
                                                 : ConflictTexts::tr("no submodule");
    case ConflictKind::link:
    case ConflictKind::fileAndLink:
        return version && version->isLink() ? ConflictTexts::tr("the link") : ConflictTexts::tr("the file");
    case ConflictKind::bothChanged:
    case ConflictKind::bothAdded:
    case ConflictKind::binary:
    case ConflictKind::sameName:
        break;
    }
    return {};
}

} // namespace

QString title(const ConflictName& name)
{
    switch (name.kind) {
    case NameKind::ontoAndMoved: {
        const QString onto = name.name.empty() ? quoted(name) : shownText(name.name);
        if (name.count == 0)
            return onto;
        return name.branch.empty()
                   ? ConflictTexts::tr("%1 + %Ln commit(s) already moved", nullptr, name.count).arg(onto)
                   : ConflictTexts::tr("%1 + %Ln commit(s) of %2 already moved", nullptr, name.count)
                         .arg(onto, shownText(name.branch));
    }
    case NameKind::replayed:
        return name.branch.empty() ? quoted(name)
                                   : ConflictTexts::tr("%1 (commit of %2)", "subject, branch")
                                         .arg(quoted(name), shownText(name.branch));
    case NameKind::picked:
        return ConflictTexts::tr("%1 (picked)").arg(quoted(name));
    case NameKind::patch:
        return ConflictTexts::tr("%1 (patch)").arg(quoted(name));
    case NameKind::commonAncestor:
        return name.count > 1 ? ConflictTexts::tr("Common ancestors") : ConflictTexts::tr("Common ancestor");
    case NameKind::parentOf:
        return ConflictTexts::tr("Before %1").arg(quoted(name));
    case NameKind::stashedFrom:
        return ConflictTexts::tr("Where it was stashed");
    default:
        return shortName(name);
    }
}

QString shortName(const ConflictName& name)
{
    switch (name.kind) {
    case NameKind::unknown:
        return ConflictTexts::tr("one side");
    case NameKind::branch:
    case NameKind::label:
        return shownText(name.name);
    case NameKind::commit:
        return quoted(name);
    case NameKind::ontoAndMoved:
        return name.name.empty() ? quoted(name) : shownText(name.name);
    case NameKind::replayed:
    case NameKind::picked:
    case NameKind::patch:
        return quoted(name);
    case NameKind::without:
        return ConflictTexts::tr("without %1").arg(quoted(name));
    case NameKind::stash:
        return name.subject.empty() ? ConflictTexts::tr("the stash")
                                    : ConflictTexts::tr("stash %1").arg(inQuotes(name.subject));
    case NameKind::parentOf:
    case NameKind::stashedFrom:
    case NameKind::commonAncestor:
        break;
    }
    return title(name);
}

QString happened(const Conflict& conflict, const ConflictNames& names)
{
    const Sides on{shortName(names.left), shortName(names.right)};
    switch (conflict.kind) {
    case ConflictKind::bothChanged:
        return conflict.isRemembered ? ConflictTexts::tr("changed on both sides, resolved as you did before")
                                     : ConflictTexts::tr("changed on both sides");
    case ConflictKind::bothAdded:
        return ConflictTexts::tr("added on both sides");
    case ConflictKind::binary:
        return conflict.base ? ConflictTexts::tr("changed on both sides, and no text")
                             : ConflictTexts::tr("added on both sides, and no text");
    case ConflictKind::link:
        return ConflictTexts::tr("a link that is another on each side");
    case ConflictKind::submodule:
        return ConflictTexts::tr("a submodule with another commit on each side");
    case ConflictKind::mode:
        return ConflictTexts::tr("executable on %1 only")
            .arg(conflict.left && conflict.left->isExecutable() ? on.left : on.right);
    case ConflictKind::renamedBoth:
        if (!conflict.left || !conflict.right)
            return ConflictTexts::tr("renamed or deleted on both sides");
        return ConflictTexts::tr("renamed to %1 on %2 and to %3 on %4", "file, side, file, side")
            .arg(nameIn(conflict, conflict.left), on.left, nameIn(conflict, conflict.right), on.right);
    case ConflictKind::sameName:
        return ConflictTexts::tr("two different files got this name");
    case ConflictKind::fileAndLink:
        return conflict.left && conflict.left->isLink()
                   ? ConflictTexts::tr("a link on %1, a file on %2").arg(on.left, on.right)
                   : ConflictTexts::tr("a file on %1, a link on %2").arg(on.left, on.right);
    default:
        return happenedOnOneSide(conflict, on);
    }
}

QString answerTitle(const Conflict& conflict, const ConflictNames& names, ConflictAnswer answer)
{
    if (answer == ConflictAnswer::both)
        return ConflictTexts::tr("Keep Both");
    if (answer == ConflictAnswer::gone)
        return ConflictTexts::tr("Keep None");
    const bool isLeft = answer == ConflictAnswer::left;
    const QString name = shortName(isLeft ? names.left : names.right);
    const QString state = stateOf(conflict, isLeft);
    return state.isEmpty() ? ConflictTexts::tr("Keep %1").arg(name)
                           : ConflictTexts::tr("Keep %1 (%2)", "side, state").arg(name, state);
}

QString answerTip(const Conflict& conflict, ConflictAnswer answer)
{
    if (conflict.kind == ConflictKind::renamedBoth && answer == ConflictAnswer::both)
        return ConflictTexts::tr("Both files stay, with the changes of both sides where they fit");
    if (conflict.kind == ConflictKind::renamedBoth && answer != ConflictAnswer::gone)
        return ConflictTexts::tr("The file gets this name, with the changes of both sides");
    if (answer == ConflictAnswer::both)
        return ConflictTexts::tr("Both files stay, under two names");
    return {};
}

std::string label(const ConflictName& name)
{
    if (name.kind == NameKind::branch || name.kind == NameKind::label)
        return name.name;
    if (name.kind == NameKind::stash)
        return "stash";
    return name.hash.empty() ? "right" : name.hash.substr(0, shownHash);
}

} // namespace plovik::conflictWords
