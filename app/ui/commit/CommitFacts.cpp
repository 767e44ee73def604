// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFacts.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/widgets/Theme.h"

#include <QGuiApplication>
#include <QLocale>

#include <string_view>

namespace plovik::commitFacts {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(CommitFacts)
};

QString inFixedFont(const QString& html)
{
    const QFont fixed = Theme::fixedFont(-0.75);
    return u"<span style='font-family:\"%1\"; font-size:%2pt'>%3</span>"_s.arg(fixed.family())
        .arg(fixed.pointSizeF())
        .arg(html);
}

QString linkTo(const std::string& hash)
{
    return u"<a style='text-decoration:none' href='%1'>%2</a>"_s.arg(shownText(hash),
                                                                     shownText(gitkit::shortHash(hash)));
}

QString shownDate(gitkit::Date date) { return absoluteDate(date, QLocale()); }

/// Lets the lines begin at the side where the window's lines do, which a name or a hash would decide otherwise.
QString atTheWindowsSide(const QString& html, const QString& style = {})
{
    const QString direction = QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s;
    return u"<div dir='%1' style='%2'>%3</div>"_s.arg(direction, style, html);
}

QString inText(const QString& line)
{
    return u"<span style='color:%1'>%2</span>"_s.arg(Theme::current().text.name(), line.toHtmlEscaped());
}

/// Returns the first line and the others, all of them plain text, as lines of which the first one stands out.
QString asLines(const QString& first, const QStringList& others)
{
    QStringList lines{first};
    for (const QString& line : others)
        lines << line.toHtmlEscaped();
    return atTheWindowsSide(lines.join(u"<br>"_s), u"line-height:%1%"_s.arg(qRound(lineHeight * 100)));
}

bool hasCommitter(const gitkit::CommitDetail& detail)
{
    return detail.committerName != detail.authorName || detail.commitDate != detail.authorDate;
}

QString committed(const gitkit::CommitDetail& detail, const QString& date)
{
    return Text::tr("Committed by %1 · %2").arg(shownText(detail.committerName), date);
}

/// Returns whether only the hash is known: every commit that was read has an author or a date.
bool isUnknown(const gitkit::CommitDetail& detail)
{
    return detail.authorName.empty() && detail.authorEmail.empty() && detail.authorDate == gitkit::Date{};
}

/// Returns the branch in the message that git gives a stash, empty when there is none: "WIP on main: …" or "On main: …".
std::string_view branchOf(std::string_view message)
{
    for (const std::string_view start : {"WIP on ", "On "}) {
        if (!message.starts_with(start))
            continue;
        const std::string_view rest = message.substr(start.size());
        const std::string_view branch = rest.substr(0, rest.find(':'));
        return branch.size() == rest.size() || branch == "(no branch)" ? std::string_view() : branch;
    }
    return {};
}

gitkit::RefLabel::Kind labelKind(gitkit::GitRef::Kind kind)
{
    switch (kind) {
    case gitkit::GitRef::Kind::local:
        return gitkit::RefLabel::Kind::localBranch;
    case gitkit::GitRef::Kind::remote:
        return gitkit::RefLabel::Kind::remoteBranch;
    case gitkit::GitRef::Kind::tag:
        break;
    }
    return gitkit::RefLabel::Kind::tag;
}

} // namespace

gitkit::CommitDetail of(const gitkit::Commit& commit)
{
    gitkit::CommitDetail detail = ofUnknown(commit.hash);
    detail.parents = commit.parents;
    detail.authorName = detail.committerName = commit.authorName;
    detail.authorEmail = commit.authorEmail;
    detail.authorDate = detail.commitDate = commit.date;
    detail.message = commit.subject;
    return detail;
}

gitkit::CommitDetail of(const gitkit::Stash& stash)
{
    gitkit::CommitDetail detail = ofUnknown(stash.hash);
    detail.authorDate = detail.commitDate = stash.date;
    detail.message = stash.message;
    return detail;
}

gitkit::CommitDetail ofUnknown(const std::string& hash)
{
    gitkit::CommitDetail detail;
    detail.hash = hash;
    return detail;
}

gitkit::CommitDetail withoutFiles(const gitkit::CommitDetail& detail)
{
    return {detail.hash,        detail.parents,    detail.authorName,
            detail.authorEmail, detail.authorDate, detail.committerName,
            detail.commitDate,  detail.message,    {}};
}

QStringList peopleLines(const gitkit::CommitDetail& detail)
{
    if (isUnknown(detail))
        return {};
    QStringList lines{shownText(detail.authorName) + u" <"_s + shownText(detail.authorEmail) + u'>',
                      shownDate(detail.authorDate)};
    if (hasCommitter(detail))
        lines << committed(detail, shownDate(detail.commitDate));
    return lines;
}

QString people(const gitkit::CommitDetail& detail)
{
    const QStringList lines = peopleLines(detail);
    return lines.isEmpty() ? QString() : asLines(inText(lines.front()), lines.mid(1));
}

QString peopleInBrief(const gitkit::CommitDetail& detail)
{
    if (isUnknown(detail))
        return {};
    const QLocale locale;
    const QString author =
        Text::tr("%1 · %2", "author, date")
            .arg(inText(shownText(detail.authorName)), shortTime(detail.authorDate, locale).toHtmlEscaped());
    return asLines(author, hasCommitter(detail) ? QStringList(committed(detail, shortTime(detail.commitDate, locale)))
                                                : QStringList());
}

QString dateLine(const gitkit::CommitDetail& detail)
{
    return atTheWindowsSide(shownDate(detail.authorDate).toHtmlEscaped());
}

QString parents(const gitkit::CommitDetail& detail)
{
    if (isUnknown(detail))
        return {};
    if (detail.parents.empty())
        return atTheWindowsSide(Text::tr("No parent: the first commit of its history"));
    QStringList links;
    for (const std::string& parent : detail.parents)
        links << linkTo(parent);
    return atTheWindowsSide(
        Text::tr("Parent(s) %1", nullptr, static_cast<int>(links.size())).arg(inFixedFont(links.join(u' '))));
}

QString stashBase(const gitkit::CommitDetail& stash)
{
    if (stash.parents.empty())
        return {};
    const std::string_view branch = branchOf(stash.message);
    const QString commit = inFixedFont(linkTo(stash.parents.front()));
    if (branch.empty())
        return atTheWindowsSide(Text::tr("Made on %1", "commit").arg(commit));
    return atTheWindowsSide(
        Text::tr("Made on %1 at %2", "branch, commit").arg(shownText(branch).toHtmlEscaped(), commit));
}

namespace {

QString whyNotChecked(const gitkit::Signature& signature)
{
    using Obstacle = gitkit::Signature::Obstacle;
    switch (signature.obstacle) {
    case Obstacle::noAllowedSigners:
        return Text::tr("Signed, cannot be checked: Git has no list of allowed signers");
    case Obstacle::noProgram:
        return Text::tr("Signed, cannot be checked: the program for it is missing");
    case Obstacle::noKey:
        return signature.key.empty()
                   ? Text::tr("Signed, cannot be checked: the key is not known here")
                   : Text::tr("Signed, cannot be checked: the key %1 is not known here").arg(shownText(signature.key));
    case Obstacle::tooSlow:
        return Text::tr("Signed, not checked: the program for it did not answer");
    case Obstacle::none:
    case Obstacle::other:
        break;
    }
    return Text::tr("Signed, cannot be checked");
}

} // namespace

QString signature(const gitkit::Signature& signature)
{
    using State = gitkit::Signature::State;
    const QString signer = shownText(signature.signer.empty() ? signature.key : signature.signer);
    switch (signature.state) {
    case State::none:
        return {};
    case State::good:
        return signer.isEmpty() ? Text::tr("Signed, verified") : Text::tr("Signed by %1, verified").arg(signer);
    case State::unknownKey:
        return signer.isEmpty() ? Text::tr("Signed with a key that is not trusted here")
                                : Text::tr("Signed by %1, with a key that is not trusted here").arg(signer);
    case State::outdated:
        return signer.isEmpty()
                   ? Text::tr("Signed, but the key or the signature has expired or was revoked")
                   : Text::tr("Signed by %1, but the key or the signature has expired or was revoked").arg(signer);
    case State::bad:
        return Text::tr("Bad signature: it does not fit this commit");
    case State::cannotCheck:
        break;
    }
    return whyNotChecked(signature);
}

std::vector<gitkit::RefLabel> labelsOf(const std::string& hash, const std::array<Refs, 3>& refs)
{
    std::vector<gitkit::RefLabel> labels;
    for (const Refs kind : refs) {
        for (const gitkit::GitRef& ref : kind) {
            if (ref.hash == hash)
                labels.push_back({labelKind(ref.kind), ref.name, ref.isHead});
        }
    }
    return labels;
}

} // namespace plovik::commitFacts
