// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/AmendNote.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QLabel>
#include <QVBoxLayout>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t namedFiles = 4;

QLabel* makeLine(QWidget* parent, const QString& name)
{
    auto* const label = new QLabel(parent);
    label->setAccessibleName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    followFont(*label, -0.75);
    return label;
}

} // namespace

AmendNote::AmendNote(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), files_(makeLine(this, tr("Amended Files"))),
      published_(makeLine(this, tr("Amended Commit Published"))), commit_(
                                                                      store.git(), &readAmendedCommit,
                                                                      [this] {
                                                                          if (!commit_.failure())
                                                                              show(*commit_.result());
                                                                      },
                                                                      Worker::Lane::longRead)
{
    files_->setForegroundRole(QPalette::PlaceholderText);
    followColor(*published_, QPalette::WindowText, &Theme::warningText);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addWidget(files_);
    column->addWidget(published_);
    hide();
    notifiers_.push_back(store.draft().amend.addNotifier([this] { ask(); }));
    notifiers_.push_back(store.snapshot().status.addNotifier([this] { ask(); }));
    ask();
}

void AmendNote::ask()
{
    const auto& head = store_.snapshot().status.value().oid;
    if (!store_.draft().amend.value() || !head) {
        commit_.forget();
        hide();
        return;
    }
    commit_.ask(*head);
    if (!commit_.isReading() && !commit_.failure())
        show(*commit_.result());
}

void AmendNote::show(const AmendedCommit& commit)
{
    QStringList names;
    QStringList all;
    for (const gitkit::CommitFile& file : commit.files) {
        const QString path = shownText(file.path);
        all << path;
        if (names.size() < static_cast<qsizetype>(namedFiles))
            names << path;
    }
    const auto count = static_cast<int>(commit.files.size());
    const QString listed = names.join(u", "_s);
    files_->setText(count == 0 ? tr("The last commit changes no files.")
                    : commit.files.size() > namedFiles
                        ? tr("Holds %Ln file(s) of the last commit: %1, …", nullptr, count).arg(listed)
                        : tr("Holds %Ln file(s) of the last commit: %1", nullptr, count).arg(listed));
    files_->setToolTip(plainToolTip(all.join(u'\n')));
    published_->setVisible(!commit.remoteBranches.empty());
    if (!commit.remoteBranches.empty())
        published_->setText(tr("The last commit is on %1: others may have it, and an ordinary push will be refused.")
                                .arg(shownText(commit.remoteBranches.front())));
    QWidget::show();
}

} // namespace plovik

#include "moc_AmendNote.cpp"
