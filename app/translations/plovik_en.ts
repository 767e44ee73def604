<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>CommitFacts</name>
    <message numerus="yes">
        <source>Parent(s) %1</source>
        <translation>
            <numerusform>Parent %1</numerusform>
            <numerusform>Parents %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CommitSummary</name>
    <message numerus="yes">
        <source>%Ln file(s) changed against the first parent</source>
        <translation>
            <numerusform>%Ln file changed against the first parent</numerusform>
            <numerusform>%Ln files changed against the first parent</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) changed</source>
        <translation>
            <numerusform>%Ln file changed</numerusform>
            <numerusform>%Ln files changed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) changed, %1 untracked</source>
        <translation>
            <numerusform>%Ln file changed, %1 untracked</numerusform>
            <numerusform>%Ln files changed, %1 untracked</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Diff</name>
    <message numerus="yes">
        <source>Stage %Ln Line(s)</source>
        <translation>
            <numerusform>Stage %Ln Line</numerusform>
            <numerusform>Stage %Ln Lines</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Unstage %Ln Line(s)</source>
        <translation>
            <numerusform>Unstage %Ln Line</numerusform>
            <numerusform>Unstage %Ln Lines</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln more line(s)</source>
        <translation>
            <numerusform>%Ln more line</numerusform>
            <numerusform>%Ln more lines</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Show %Ln More Line(s) Above</source>
        <translation>
            <numerusform>Show %Ln More Line Above</numerusform>
            <numerusform>Show %Ln More Lines Above</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Show %Ln More Line(s) Below</source>
        <translation>
            <numerusform>Show %Ln More Line Below</numerusform>
            <numerusform>Show %Ln More Lines Below</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Show %Ln More Line(s)</source>
        <translation>
            <numerusform>Show %Ln More Line</numerusform>
            <numerusform>Show %Ln More Lines</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) are added.</source>
        <translation>
            <numerusform>%Ln commit is added.</numerusform>
            <numerusform>%Ln commits are added.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) are taken away.</source>
        <translation>
            <numerusform>%Ln commit is taken away.</numerusform>
            <numerusform>%Ln commits are taken away.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln other(s)</source>
        <translation>
            <numerusform>and %Ln other</numerusform>
            <numerusform>and %Ln others</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HttpFailure</name>
    <message numerus="yes">
        <source>%1 did not answer within %Ln second(s).</source>
        <translation>
            <numerusform>%1 did not answer within a second.</numerusform>
            <numerusform>%1 did not answer within %Ln seconds.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The reply of %1 did not end within %Ln second(s).</source>
        <translation>
            <numerusform>The reply of %1 did not end within a second.</numerusform>
            <numerusform>The reply of %1 did not end within %Ln seconds.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MessageParts</name>
    <message numerus="yes">
        <source>Only the beginning of this message is shown: it is %Ln line(s) long.</source>
        <translation>
            <numerusform>Only the beginning of this message is shown: it is %Ln line long.</numerusform>
            <numerusform>Only the beginning of this message is shown: it is %Ln lines long.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Only the beginning of this message is shown: it is %Ln character(s) long.</source>
        <translation>
            <numerusform>Only the beginning of this message is shown: it is %Ln character long.</numerusform>
            <numerusform>Only the beginning of this message is shown: it is %Ln characters long.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>OperationText</name>
    <message numerus="yes">
        <source>Roughly %Ln step(s) left</source>
        <translation>
            <numerusform>Roughly %Ln step left</numerusform>
            <numerusform>Roughly %Ln steps left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln conflict(s) left</source>
        <translation>
            <numerusform>%Ln conflict left</numerusform>
            <numerusform>%Ln conflicts left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Merging %Ln branch(es) into the detached HEAD</source>
        <translation>
            <numerusform>Merging %Ln branch into the detached HEAD</numerusform>
            <numerusform>Merging %Ln branches into the detached HEAD</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Merging %Ln branch(es) into %1</source>
        <translation>
            <numerusform>Merging %Ln branch into %1</numerusform>
            <numerusform>Merging %Ln branches into %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln branch(es) (being merged)</source>
        <translation>
            <numerusform>%Ln branch (being merged)</numerusform>
            <numerusform>%Ln branches (being merged)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RefBadges</name>
    <message numerus="yes">
        <source>and %Ln more</source>
        <translation>
            <numerusform>and %Ln more</numerusform>
            <numerusform>and %Ln more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RelativeDate</name>
    <message numerus="yes">
        <source>%Ln day(s) ago</source>
        <translation>
            <numerusform>%Ln day ago</numerusform>
            <numerusform>%Ln days ago</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::AbsorbDialog</name>
    <message numerus="yes">
        <source>%Ln staged change(s)</source>
        <translation>
            <numerusform>%Ln staged change</numerusform>
            <numerusform>%Ln staged changes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>… and %Ln more line(s)</source>
        <translation>
            <numerusform>… and %Ln more line</numerusform>
            <numerusform>… and %Ln more lines</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::ActivityView</name>
    <message numerus="yes">
        <source>Reading the history: %Ln commit(s)…</source>
        <translation>
            <numerusform>Reading the history: %Ln commit…</numerusform>
            <numerusform>Reading the history: %Ln commits…</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::AmendNote</name>
    <message numerus="yes">
        <source>Holds %Ln file(s) of the last commit: %1, …</source>
        <translation>
            <numerusform>Holds %Ln file of the last commit: %1, …</numerusform>
            <numerusform>Holds %Ln files of the last commit: %1, …</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Holds %Ln file(s) of the last commit: %1</source>
        <translation>
            <numerusform>Holds %Ln file of the last commit: %1</numerusform>
            <numerusform>Holds %Ln files of the last commit: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::BlameModel</name>
    <message numerus="yes">
        <source>… %Ln more character(s)</source>
        <translation>
            <numerusform>… %Ln more character</numerusform>
            <numerusform>… %Ln more characters</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Changes</name>
    <message numerus="yes">
        <source>%Ln file(s) are in the way</source>
        <translation>
            <numerusform>%Ln file is in the way</numerusform>
            <numerusform>%Ln files are in the way</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln other(s)</source>
        <translation>
            <numerusform>and %Ln other</numerusform>
            <numerusform>and %Ln others</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::CleanDialog</name>
    <message numerus="yes">
        <source>%Ln untracked file(s). Undo brings everything back.</source>
        <translation>
            <numerusform>%Ln untracked file. Undo brings everything back.</numerusform>
            <numerusform>%Ln untracked files. Undo brings everything back.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::CommandLogPanel</name>
    <message numerus="yes">
        <source>%Ln command(s)</source>
        <translation>
            <numerusform>%Ln command</numerusform>
            <numerusform>%Ln commands</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::CommitMenu</name>
    <message numerus="yes">
        <source>Cherry-Pick %Ln Commit(s)</source>
        <translation>
            <numerusform>Cherry-Pick %Ln Commit</numerusform>
            <numerusform>Cherry-Pick %Ln Commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Revert %Ln Commit(s)</source>
        <translation>
            <numerusform>Revert %Ln Commit</numerusform>
            <numerusform>Revert %Ln Commits</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::ComparisonView</name>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, since one of %Ln common ancestor(s)</source>
        <translation>
            <numerusform>%1, since one of %Ln common ancestor</numerusform>
            <numerusform>%1, since one of %Ln common ancestors</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::ConflictCard</name>
    <message numerus="yes">
        <source>%Ln commit(s) that the other side has not</source>
        <translation>
            <numerusform>%Ln commit that the other side has not</numerusform>
            <numerusform>%Ln commits that the other side has not</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Conflicts</name>
    <message numerus="yes">
        <source>Stopped with %Ln conflict(s).</source>
        <translation>
            <numerusform>Stopped with %Ln conflict.</numerusform>
            <numerusform>Stopped with %Ln conflicts.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 + %Ln commit(s) already moved</source>
        <translation>
            <numerusform>%1 + %Ln commit already moved</numerusform>
            <numerusform>%1 + %Ln commits already moved</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 + %Ln commit(s) of %2 already moved</source>
        <translation>
            <numerusform>%1 + %Ln commit of %2 already moved</numerusform>
            <numerusform>%1 + %Ln commits of %2 already moved</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Discard</name>
    <message numerus="yes">
        <source>%Ln staged line(s)</source>
        <translation>
            <numerusform>%Ln staged line</numerusform>
            <numerusform>%Ln staged lines</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln changed line(s)</source>
        <translation>
            <numerusform>%Ln changed line</numerusform>
            <numerusform>%Ln changed lines</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 and %Ln staged one(s)</source>
        <comment>behind a number of lines</comment>
        <translation>
            <numerusform>%1 and %Ln staged one</numerusform>
            <numerusform>%1 and %Ln staged ones</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln binary file(s)</source>
        <translation>
            <numerusform>%Ln binary file</numerusform>
            <numerusform>%Ln binary files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln new file(s)</source>
        <translation>
            <numerusform>%Ln new file</numerusform>
            <numerusform>%Ln new files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %Ln file(s)?</source>
        <translation>
            <numerusform>Delete %Ln file?</numerusform>
            <numerusform>Delete %Ln files?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Discard changes in %Ln file(s)?</source>
        <translation>
            <numerusform>Discard changes in %Ln file?</numerusform>
            <numerusform>Discard changes in %Ln files?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::DiscardedDialog</name>
    <message numerus="yes">
        <source>and %Ln other(s)</source>
        <translation>
            <numerusform>and %Ln other</numerusform>
            <numerusform>and %Ln others</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Discards</name>
    <message numerus="yes">
        <source>%1 and %Ln other file(s)</source>
        <translation>
            <numerusform>%1 and %Ln other file</numerusform>
            <numerusform>%1 and %Ln other files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) have changed since the discard</source>
        <translation>
            <numerusform>%Ln file have changed since the discard</numerusform>
            <numerusform>%Ln files have changed since the discard</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Drop the copy of %1 and %Ln other file(s)?</source>
        <translation>
            <numerusform>Drop the copy of %1 and %Ln other file?</numerusform>
            <numerusform>Drop the copy of %1 and %Ln other files?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::DropHint</name>
    <message numerus="yes">
        <source>will conflict in %Ln file(s): %1</source>
        <translation>
            <numerusform>will conflict in %Ln file: %1</numerusform>
            <numerusform>will conflict in %Ln files: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s), fast-forward</source>
        <translation>
            <numerusform>%Ln commit, fast-forward</numerusform>
            <numerusform>%Ln commits, fast-forward</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s), merges cleanly</source>
        <translation>
            <numerusform>%Ln commit, merges cleanly</numerusform>
            <numerusform>%Ln commits, merges cleanly</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s), no conflicts</source>
        <translation>
            <numerusform>%Ln commit, no conflicts</numerusform>
            <numerusform>%Ln commits, no conflicts</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) are on no other branch: you are asked first</source>
        <translation>
            <numerusform>%Ln commit is on no other branch: you are asked first</numerusform>
            <numerusform>%Ln commits are on no other branch: you are asked first</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Cherry-pick %Ln commit(s) onto %1</source>
        <translation>
            <numerusform>Cherry-pick %Ln commit onto %1</numerusform>
            <numerusform>Cherry-pick %Ln commits onto %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::FailureWays</name>
    <message numerus="yes">
        <source>%Ln minute(s) old</source>
        <translation>
            <numerusform>%Ln minute old</numerusform>
            <numerusform>%Ln minutes old</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::FileHistoryPane</name>
    <message numerus="yes">
        <source>%Ln commit(s), and the rest could not be read: %1</source>
        <translation>
            <numerusform>%Ln commit, and the rest could not be read: %1</numerusform>
            <numerusform>%Ln commits, and the rest could not be read: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) so far…</source>
        <translation>
            <numerusform>%Ln commit so far…</numerusform>
            <numerusform>%Ln commits so far…</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln+ commits</source>
        <translation>
            <numerusform>%Ln+ commits</numerusform>
            <numerusform>%Ln+ commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::FileRowsModel</name>
    <message numerus="yes">
        <source>Folder, %Ln file(s)</source>
        <translation>
            <numerusform>Folder, %Ln file</numerusform>
            <numerusform>Folder, %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Foretold</name>
    <message numerus="yes">
        <source>Will conflict in %Ln file(s): %1</source>
        <translation>
            <numerusform>Will conflict in %Ln file: %1</numerusform>
            <numerusform>Will conflict in %Ln files: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Will conflict at %2 in %Ln file(s): %1</source>
        <comment>files, commit</comment>
        <translation>
            <numerusform>Will conflict at %2 in %Ln file: %1</numerusform>
            <numerusform>Will conflict at %2 in %Ln files: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Fast-forward · %Ln commit(s)</source>
        <translation>
            <numerusform>Fast-forward · %Ln commit</numerusform>
            <numerusform>Fast-forward · %Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Merges cleanly · %Ln file(s)</source>
        <translation>
            <numerusform>Merges cleanly · %Ln file</numerusform>
            <numerusform>Merges cleanly · %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No conflicts · %Ln commit(s)</source>
        <translation>
            <numerusform>No conflicts · %Ln commit</numerusform>
            <numerusform>No conflicts · %Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No conflicts · %Ln file(s)</source>
        <translation>
            <numerusform>No conflicts · %Ln file</numerusform>
            <numerusform>No conflicts · %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::HistoryList</name>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::HistorySearchRow</name>
    <message numerus="yes">
        <source>%Ln+ commits</source>
        <translation>
            <numerusform>%Ln+ commits</numerusform>
            <numerusform>%Ln+ commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Searching… %Ln found</source>
        <translation>
            <numerusform>Searching… %Ln found</numerusform>
            <numerusform>Searching… %Ln found</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln+ matches</source>
        <translation>
            <numerusform>%Ln+ matches</numerusform>
            <numerusform>%Ln+ matches</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln match(es)</source>
        <translation>
            <numerusform>%Ln match</numerusform>
            <numerusform>%Ln matches</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Ignoring</name>
    <message numerus="yes">
        <source>These %Ln File(s)</source>
        <translation>
            <numerusform>These %Ln File</numerusform>
            <numerusform>These %Ln Files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>These %Ln Folder(s)</source>
        <translation>
            <numerusform>These %Ln Folder</numerusform>
            <numerusform>These %Ln Folders</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Select no more than %Ln file(s).</source>
        <translation>
            <numerusform>Select no more than %Ln file.</numerusform>
            <numerusform>Select no more than %Ln files.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) are in the repository already</source>
        <translation>
            <numerusform>%Ln file is in the repository already</numerusform>
            <numerusform>%Ln files are in the repository already</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::MergeDialog</name>
    <message numerus="yes">
        <source>Not possible while it lacks %Ln commit(s) of here.</source>
        <translation>
            <numerusform>Not possible while it lacks %Ln commit of here.</numerusform>
            <numerusform>Not possible while it lacks %Ln commits of here.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Brings %Ln commit(s).</source>
        <translation>
            <numerusform>Brings %Ln commit.</numerusform>
            <numerusform>Brings %Ln commits.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s), merges cleanly.</source>
        <translation>
            <numerusform>%Ln commit, merges cleanly.</numerusform>
            <numerusform>%Ln commits, merges cleanly.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s), conflicts in %1.</source>
        <translation>
            <numerusform>%Ln commit, conflicts in %1.</numerusform>
            <numerusform>%Ln commits, conflicts in %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::MergePane</name>
    <message numerus="yes">
        <source>%Ln conflict(s) in %1 are not decided</source>
        <translation>
            <numerusform>%Ln conflict in %1 is not decided</numerusform>
            <numerusform>%Ln conflicts in %1 are not decided</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Neighbours</name>
    <message numerus="yes">
        <source>%Ln worktree(s) cannot be listed by this version of git: there is a line feed in the path.</source>
        <translation>
            <numerusform>%Ln worktree cannot be listed by this version of git: there is a line feed in the path.</numerusform>
            <numerusform>%Ln worktrees cannot be listed by this version of git: there is a line feed in the path.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Operation</name>
    <message numerus="yes">
        <source>The %Ln step(s) of the merge that were already done are undone.</source>
        <translation>
            <numerusform>The step of the merge that was already done is undone.</numerusform>
            <numerusform>The %Ln steps of the merge that were already done are undone.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The %Ln step(s) of the rebase that were already done are undone.</source>
        <translation>
            <numerusform>The step of the rebase that was already done is undone.</numerusform>
            <numerusform>The %Ln steps of the rebase that were already done are undone.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The %Ln step(s) of the patch series that were already done are undone.</source>
        <translation>
            <numerusform>The step of the patch series that was already done is undone.</numerusform>
            <numerusform>The %Ln steps of the patch series that were already done are undone.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The %Ln step(s) of the cherry-pick that were already done are undone.</source>
        <translation>
            <numerusform>The step of the cherry-pick that was already done is undone.</numerusform>
            <numerusform>The %Ln steps of the cherry-pick that were already done are undone.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The %Ln step(s) of the revert that were already done are undone.</source>
        <translation>
            <numerusform>The step of the revert that was already done is undone.</numerusform>
            <numerusform>The %Ln steps of the revert that were already done are undone.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The %Ln step(s) of the bisect that were already done are undone.</source>
        <translation>
            <numerusform>The step of the bisect that was already done is undone.</numerusform>
            <numerusform>The %Ln steps of the bisect that were already done are undone.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::PalettePopup</name>
    <message numerus="yes">
        <source>%Ln more row(s): type on to see them.</source>
        <translation>
            <numerusform>%Ln more row: type on to see them.</numerusform>
            <numerusform>%Ln more rows: type on to see them.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Patches</name>
    <message numerus="yes">
        <source>Saved %Ln patch(es).</source>
        <translation>
            <numerusform>Saved %Ln patch.</numerusform>
            <numerusform>Saved %Ln patches.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Saved %Ln patch(es). The message of %1 holds a line that ends a patch: it will be cut there.</source>
        <translation>
            <numerusform>Saved %Ln patch. The message of %1 holds a line that ends a patch: it will be cut there.</numerusform>
            <numerusform>Saved %Ln patches. The message of %1 holds a line that ends a patch: it will be cut there.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>It changes %Ln file(s) of the working copy.</source>
        <translation>
            <numerusform>It changes %Ln file of the working copy.</numerusform>
            <numerusform>It changes %Ln files of the working copy.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>It holds %Ln commit(s) with their messages and authors.</source>
        <translation>
            <numerusform>It holds %Ln commit with its message and author.</numerusform>
            <numerusform>It holds %Ln commits with their messages and authors.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::PlanBar</name>
    <message numerus="yes">
        <source>%Ln fixup commit(s)</source>
        <translation>
            <numerusform>%Ln fixup commit</numerusform>
            <numerusform>%Ln fixup commits</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::PlanSign</name>
    <message numerus="yes">
        <source>conflicts in %Ln file(s)</source>
        <translation>
            <numerusform>conflicts in %Ln file</numerusform>
            <numerusform>conflicts in %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::PushDialog</name>
    <message numerus="yes">
        <source>This would lose %Ln commit(s) there. Pull first, or replace what is there.</source>
        <translation>
            <numerusform>This would lose %Ln commit there. Pull first, or replace what is there.</numerusform>
            <numerusform>This would lose %Ln commits there. Pull first, or replace what is there.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>This takes %Ln commit(s) off %1 for everybody, unless somebody has pushed since. Undo cannot bring that back.</source>
        <translation>
            <numerusform>This takes %Ln commit off %1 for everybody, unless somebody has pushed since. Undo cannot bring that back.</numerusform>
            <numerusform>This takes %Ln commits off %1 for everybody, unless somebody has pushed since. Undo cannot bring that back.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>This sends %Ln commit(s) to %1. Others may fetch that within seconds.</source>
        <translation>
            <numerusform>This sends %Ln commit to %1. Others may fetch that within seconds.</numerusform>
            <numerusform>This sends %Ln commits to %1. Others may fetch that within seconds.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) among them never stood on %1 here: somebody else may have pushed.</source>
        <translation>
            <numerusform>%Ln commit among them never stood on %1 here: somebody else may have pushed.</numerusform>
            <numerusform>%Ln commits among them never stood on %1 here: somebody else may have pushed.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Pushes</name>
    <message numerus="yes">
        <source>and %Ln other(s)</source>
        <translation>
            <numerusform>and %Ln other</numerusform>
            <numerusform>and %Ln others</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 has %Ln commit(s) you do not have</source>
        <translation>
            <numerusform>%1 has %Ln commit you do not have</numerusform>
            <numerusform>%1 has %Ln commits you do not have</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag(s) of the same name stay there, which are others than here.</source>
        <translation>
            <numerusform>%Ln tag of the same name stays there, which is another one than here.</numerusform>
            <numerusform>%Ln tags of the same name stay there, which are others than here.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Push %Ln tag(s) to %1?</source>
        <translation>
            <numerusform>Push %Ln tag to %1?</numerusform>
            <numerusform>Push %Ln tags to %1?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag(s)</source>
        <translation>
            <numerusform>%Ln tag</numerusform>
            <numerusform>%Ln tags</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::RebaseDialog</name>
    <message numerus="yes">
        <source>Puts %Ln commit(s) on top of %1, no conflicts.</source>
        <translation>
            <numerusform>Puts %Ln commit on top of %1, no conflicts.</numerusform>
            <numerusform>Puts %Ln commits on top of %1, no conflicts.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Puts %Ln commit(s) on top of %1, and stops where they conflict.</source>
        <translation>
            <numerusform>Puts %Ln commit on top of %1, and stops where they conflict.</numerusform>
            <numerusform>Puts %Ln commits on top of %1, and stops where they conflict.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Puts %Ln commit(s) on top of %1. Conflicts show when it runs.</source>
        <translation>
            <numerusform>Puts %Ln commit on top of %1. Conflicts show when it runs.</numerusform>
            <numerusform>Puts %Ln commits on top of %1. Conflicts show when it runs.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Squash %Ln fixup commit(s)</source>
        <translation>
            <numerusform>Squash %Ln fixup commit</numerusform>
            <numerusform>Squash %Ln fixup commits</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Refs</name>
    <message numerus="yes">
        <source>Leave %Ln commit(s) behind?</source>
        <translation>
            <numerusform>Leave %Ln commit behind?</numerusform>
            <numerusform>Leave %Ln commits behind?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) are on no other branch and no tag. They stay in the timeline only.</source>
        <translation>
            <numerusform>%Ln commit is on no other branch and no tag. It stays in the timeline only.</numerusform>
            <numerusform>%Ln commits are on no other branch and no tag. They stay in the timeline only.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) are on no other branch.</source>
        <translation>
            <numerusform>%Ln commit is on no other branch.</numerusform>
            <numerusform>%Ln commits are on no other branch.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::RelationsDialog</name>
    <message numerus="yes">
        <source>Contained in %Ln ref(s)</source>
        <translation>
            <numerusform>Contained in %Ln ref</numerusform>
            <numerusform>Contained in %Ln refs</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Remotes</name>
    <message numerus="yes">
        <source>Its address goes, and what was fetched from it: %Ln branch(es). Nothing changes there, and Undo brings it back.</source>
        <translation>
            <numerusform>Its address goes, and what was fetched from it: %Ln branch. Nothing changes there, and Undo brings it back.</numerusform>
            <numerusform>Its address goes, and what was fetched from it: %Ln branches. Nothing changes there, and Undo brings it back.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln branch(es) will follow nothing any more:</source>
        <translation>
            <numerusform>%Ln branch will follow nothing any more:</numerusform>
            <numerusform>%Ln branches will follow nothing any more:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::RepositoryChoice</name>
    <message numerus="yes">
        <source>more than %Ln change(s)</source>
        <translation>
            <numerusform>more than %Ln change</numerusform>
            <numerusform>more than %Ln changes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln change(s)</source>
        <translation>
            <numerusform>%Ln change</numerusform>
            <numerusform>%Ln changes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::ResetDialog</name>
    <message numerus="yes">
        <source>Moves %1 off %Ln commit(s) and onto others.</source>
        <translation>
            <numerusform>Moves %1 off %Ln commit and onto others.</numerusform>
            <numerusform>Moves %1 off %Ln commits and onto others.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Moves %1 on by %Ln commit(s).</source>
        <translation>
            <numerusform>Moves %1 on by %Ln commit.</numerusform>
            <numerusform>Moves %1 on by %Ln commits.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Moves %1 back by %Ln commit(s).</source>
        <translation>
            <numerusform>Moves %1 back by %Ln commit.</numerusform>
            <numerusform>Moves %1 back by %Ln commits.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Turns %Ln commit(s) into staged changes.</source>
        <translation>
            <numerusform>Turns %Ln commit into staged changes.</numerusform>
            <numerusform>Turns %Ln commits into staged changes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Turns %Ln commit(s) into changes in the working tree.</source>
        <translation>
            <numerusform>Turns %Ln commit into changes in the working tree.</numerusform>
            <numerusform>Turns %Ln commits into changes in the working tree.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Overwrites %Ln changed file(s): %1.</source>
        <translation>
            <numerusform>Overwrites %Ln changed file: %1.</numerusform>
            <numerusform>Overwrites %Ln changed files: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Replaces %Ln file(s) that git does not know: %1.</source>
        <translation>
            <numerusform>Replaces %Ln file that git does not know: %1.</numerusform>
            <numerusform>Replaces %Ln files that git does not know: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No other branch or tag leads to %Ln commit(s). Undo knows the way back for 30 days.</source>
        <translation>
            <numerusform>No other branch or tag leads to %Ln commit. Undo knows the way back for 30 days.</numerusform>
            <numerusform>No other branch or tag leads to %Ln commits. Undo knows the way back for 30 days.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Rewriting</name>
    <message numerus="yes">
        <source>%Ln branch(es) move along</source>
        <translation>
            <numerusform>%Ln branch moves along</numerusform>
            <numerusform>%Ln branches move along</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln moved</source>
        <translation>
            <numerusform>%Ln moved</numerusform>
            <numerusform>%Ln moved</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln squashed</source>
        <translation>
            <numerusform>%Ln squashed</numerusform>
            <numerusform>%Ln squashed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln reworded</source>
        <translation>
            <numerusform>%Ln reworded</numerusform>
            <numerusform>%Ln reworded</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln dropped</source>
        <translation>
            <numerusform>%Ln dropped</numerusform>
            <numerusform>%Ln dropped</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln split</source>
        <translation>
            <numerusform>%Ln split</numerusform>
            <numerusform>%Ln split</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln stop(s)</source>
        <translation>
            <numerusform>%Ln stop</numerusform>
            <numerusform>%Ln stops</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>conflicts in %Ln file(s)</source>
        <translation>
            <numerusform>conflicts in %Ln file</numerusform>
            <numerusform>conflicts in %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln of these commits is (are) on %1. Others may have them; you will need to force-push.</source>
        <translation>
            <numerusform>%Ln of these commits is on %1. Others may have it; you will need to force-push.</numerusform>
            <numerusform>%Ln of these commits are on %1. Others may have them; you will need to force-push.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Drop all %Ln commit(s)?</source>
        <translation>
            <numerusform>Drop all %Ln commit?</numerusform>
            <numerusform>Drop all %Ln commits?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln branch(es) moved along.</source>
        <translation>
            <numerusform>%Ln branch moved along.</numerusform>
            <numerusform>%Ln branches moved along.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::SplitDialog</name>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln changed line(s)</source>
        <translation>
            <numerusform>%Ln changed line</numerusform>
            <numerusform>%Ln changed lines</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Staging</name>
    <message numerus="yes">
        <source>%Ln file(s) still contain conflict markers</source>
        <translation>
            <numerusform>%Ln file still contain conflict markers</numerusform>
            <numerusform>%Ln files still contain conflict markers</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::StashDialog</name>
    <message numerus="yes">
        <source>%Ln changed file(s) are put aside.</source>
        <translation>
            <numerusform>%Ln changed file is put aside.</numerusform>
            <numerusform>%Ln changed files are put aside.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Only %Ln Selected File(s)</source>
        <translation>
            <numerusform>Only %Ln Selected File</numerusform>
            <numerusform>Only %Ln Selected Files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::StashesView</name>
    <message numerus="yes">
        <source>%Ln stash(es)</source>
        <translation>
            <numerusform>%Ln stash</numerusform>
            <numerusform>%Ln stashes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::StepDetailView</name>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::StepText</name>
    <message numerus="yes">
        <source>and %Ln more branch(es) or tag(s)</source>
        <translation>
            <numerusform>and %Ln more branch or tag</numerusform>
            <numerusform>and %Ln more branches or tags</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more file(s)</source>
        <translation>
            <numerusform>and %Ln more file</numerusform>
            <numerusform>and %Ln more files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 and %Ln more</source>
        <translation>
            <numerusform>%1 and %Ln more</numerusform>
            <numerusform>%1 and %Ln more</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::SubjectField</name>
    <message numerus="yes">
        <source>%Ln character(s).</source>
        <translation>
            <numerusform>%Ln character.</numerusform>
            <numerusform>%Ln characters.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::SubmoduleBar</name>
    <message numerus="yes">
        <source>%Ln submodule(s) are not at the recorded commit.</source>
        <translation>
            <numerusform>%Ln submodule is not at the recorded commit.</numerusform>
            <numerusform>%Ln submodules are not at the recorded commit.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Submodules</name>
    <message numerus="yes">
        <source>Updating %Ln submodule(s)…</source>
        <translation>
            <numerusform>Updating %Ln submodule…</numerusform>
            <numerusform>Updating %Ln submodules…</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 has %Ln commit(s) on no branch.</source>
        <translation>
            <numerusform>%1 has %Ln commit on no branch.</numerusform>
            <numerusform>%1 has %Ln commits on no branch.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Trust</name>
    <message numerus="yes">
        <source>and %Ln other(s)</source>
        <translation>
            <numerusform>and %Ln other</numerusform>
            <numerusform>and %Ln others</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Undo</name>
    <message numerus="yes">
        <source>Moved %Ln ignored file(s) out of the way: %1. Undo brings them back.</source>
        <translation>
            <numerusform>Moved %Ln ignored file out of the way: %1. Undo brings it back.</numerusform>
            <numerusform>Moved %Ln ignored files out of the way: %1. Undo brings them back.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were edited after %1</source>
        <translation>
            <numerusform>%Ln file was edited after %1</numerusform>
            <numerusform>%Ln files were edited after %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) are in the way</source>
        <translation>
            <numerusform>%Ln file is in the way</numerusform>
            <numerusform>%Ln files are in the way</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Undo %Ln step(s)?</source>
        <translation>
            <numerusform>Undo %Ln step?</numerusform>
            <numerusform>Undo %Ln steps?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s)</source>
        <translation>
            <numerusform>%Ln commit</numerusform>
            <numerusform>%Ln commits</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Absorbing of %Ln change(s)</source>
        <translation>
            <numerusform>Absorbing of %Ln change</numerusform>
            <numerusform>Absorbing of %Ln changes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln staged change(s)</source>
        <translation>
            <numerusform>%Ln staged change</numerusform>
            <numerusform>%Ln staged changes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln pattern(s)</source>
        <translation>
            <numerusform>%Ln pattern</numerusform>
            <numerusform>%Ln patterns</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::WaysOn</name>
    <message numerus="yes">
        <source>%Ln changed file(s) are in the way</source>
        <translation>
            <numerusform>%Ln changed file is in the way</numerusform>
            <numerusform>%Ln changed files are in the way</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) only here</source>
        <translation>
            <numerusform>%Ln commit only here</numerusform>
            <numerusform>%Ln commits only here</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) only on %1</source>
        <translation>
            <numerusform>%Ln commit only on %1</numerusform>
            <numerusform>%Ln commits only on %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::WorkingCopyRow</name>
    <message numerus="yes">
        <source>Working Copy · %Ln change(s)</source>
        <translation>
            <numerusform>Working Copy · %Ln change</numerusform>
            <numerusform>Working Copy · %Ln changes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::WorkingDiffPane</name>
    <message numerus="yes">
        <source>%Ln File(s) Selected</source>
        <translation>
            <numerusform>%Ln File Selected</numerusform>
            <numerusform>%Ln Files Selected</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>plovik::Worktrees</name>
    <message numerus="yes">
        <source>and %Ln other(s)</source>
        <translation>
            <numerusform>and %Ln other</numerusform>
            <numerusform>and %Ln others</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln commit(s) of its detached HEAD are on no branch and would be lost.</source>
        <translation>
            <numerusform>%Ln commit of its detached HEAD is on no branch and would be lost.</numerusform>
            <numerusform>%Ln commits of its detached HEAD are on no branch and would be lost.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) or folder(s) are in no commit. They are moved into the repository&apos;s folder “plovik/saved” and are kept there for 30 days.</source>
        <translation>
            <numerusform>%Ln file or folder is in no commit. It is moved into the repository&apos;s folder “plovik/saved” and is kept there for 30 days.</numerusform>
            <numerusform>%Ln files or folders are in no commit. They are moved into the repository&apos;s folder “plovik/saved” and are kept there for 30 days.</numerusform>
        </translation>
    </message>
</context>
</TS>
