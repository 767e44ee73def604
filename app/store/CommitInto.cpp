// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/CommitInto.h"

#include "app/store/Rewriting.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/actions/StagedInto.h"

namespace plovik {

using namespace Qt::StringLiterals;

void CommitInto::choose(const std::string& commit)
{
    const gitkit::MovableCommit* const found = actors_.rewriting.find(commit);
    if (!found || commit == target.value())
        return;
    CommitDraft& draft = actors_.draft;
    if (!isChosen()) {
        kept_ = draft.ownText();
        keptAmends_ = draft.amend.value();
    }
    draft.cancelCommitMessage();
    subjectBytes_ = subjectOf(*found);
    subject_ = shownText(subjectBytes_);
    target = commit;
    draft.setAmend(false);
    draft.fillCommitFields(exactText(found->message));
    filled_ = draft.text();
}

void CommitInto::leave()
{
    if (!isChosen())
        return;
    const bool wasEdited = isEdited();
    target = std::string();
    if (wasEdited && kept_ == CommitDraft::Text())
        return; // what was typed stays
    if (wasEdited)
        actors_.draft.useMessage(kept_.body.isEmpty() ? kept_.subject : kept_.subject + u"\n\n"_s + kept_.body);
    restore();
}

void CommitInto::restore()
{
    target = std::string();
    if (kept_ == CommitDraft::Text()) {
        actors_.draft.empty();
        return;
    }
    actors_.draft.setSubject(kept_.subject);
    actors_.draft.setBody(kept_.body);
    actors_.draft.setAmend(keptAmends_);
    kept_ = {};
}

QString CommitInto::whyNot() const
{
    const QString why = actions::whyNotInto(actors_.changes, actors_.snapshot, actors_.rewriting);
    if (!why.isEmpty())
        return why;
    if (!actors_.rewriting.find(target.value()))
        return tr("The commit is not on the branch any more; choose another one");
    if (actors_.draft.commitSubject.value().trimmed().isEmpty())
        return tr("A commit needs a subject");
    if (!isEdited() && actors_.snapshot.status.value().stagedCount() == 0)
        return tr("Nothing is staged, and the message is as it was");
    return {};
}

void CommitInto::commit()
{
    if (!isChosen() || !whyNot().isEmpty())
        return;
    actors_.draft.cancelCommitMessage(); // a generated message would come too late
    actions::IntoCommit into{.commit = target.value(), .subject = subjectBytes_};
    if (isEdited())
        into.message = actors_.draft.message() + '\n';
    into.done = [this] { restore(); };
    actions::commitStagedInto(actors_, into);
}

} // namespace plovik
