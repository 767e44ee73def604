// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/GoToCommitDialog.h"

#include "GitKit/records/ErrorKind.h"
#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Draws rows as high as those of other lists, with the text aligned to that of the field.
class MatchDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, option.fontMetrics.height() + 10};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const Theme& theme = Theme::current();
        if (option.state & QStyle::State_Selected)
            painter->fillRect(option.rect, theme.selection);
        paintText(*painter, option.rect.adjusted(9, 0, -9, 0), withStandIns(index.data().toString()), option.font,
                  theme.text, Qt::AlignLeft, Qt::ElideMiddle);
    }
};

/// Returns the lists of all refs. They can be long, so they are not copied.
std::vector<const std::vector<gitkit::GitRef>*> refLists(const RepositoryStore& store)
{
    return {&store.snapshot().branches.value(), &store.snapshot().remoteBranches.value(),
            &store.snapshot().tags.value()};
}

QStringList refNames(const RepositoryStore& store)
{
    QStringList names{u"HEAD"_s};
    for (const auto* refs : refLists(store)) {
        for (const gitkit::GitRef& ref : *refs)
            names << exactText(ref.name);
    }
    return names;
}

bool isHash(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

/// Turns what git said about a name into a sentence for people.
QString refusalOf(const QString& name, const Failure& failure)
{
    if (failure.kind == gitkit::ErrorKind::ambiguousName)
        return GoToCommitDialog::tr("“%1” is ambiguous: more than one hash begins with it.").arg(name);
    QString reason = failure.message.section(u"fatal: "_s, -1).section(u'\n', 0, 0).trimmed();
    if (reason.isEmpty() || failure.kind == gitkit::ErrorKind::noSuchRef)
        return GoToCommitDialog::tr("“%1” is no commit, branch or tag of this repository.").arg(name);
    reason[0] = reason[0].toUpper();
    return reason.endsWith(u'.') ? reason : reason + u'.';
}

} // namespace

GoToCommitDialog::GoToCommitDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Go to Commit"), tr("Go"), parent), name_(new QLineEdit(this)),
      commits_(store.git(), &readCommitHash, [this] { resolved(); })
{
    name_->setAccessibleName(tr("Commit or Ref"));
    name_->setPlaceholderText(tr("Hash, branch or tag"));
    auto* const completer = new QCompleter(refNames(store), name_);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    completer->setMaxVisibleItems(10);
    completer->popup()->setAccessibleName(tr("Matching Refs"));
    completer->popup()->setItemDelegate(new MatchDelegate(completer));
    completer->popup()->installEventFilter(this);
    name_->setCompleter(completer);
    fields().addWidget(name_);
    connect(name_, &QLineEdit::textChanged, this, &GoToCommitDialog::edited);
    name_->setFocus();
    validate();
}

/// While the matches are shown they take Return for themselves, even when none is chosen.
bool GoToCommitDialog::eventFilter(QObject* watched, QEvent* event)
{
    QAbstractItemView* const matches = name_->completer()->popup();
    if (watched == matches && event->type() == QEvent::KeyPress && !matches->currentIndex().isValid()) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            matches->hide();
            accept();
            return true;
        }
    }
    return Sheet::eventFilter(watched, event);
}

QString GoToCommitDialog::typed() const { return name_->text().trimmed(); }

/// Returns the full name of the ref that is shown as the typed text, since its bytes may differ from the shown ones.
/// Anything else is returned as typed, for git to resolve.
std::string GoToCommitDialog::revision() const
{
    const QString name = typed();
    std::vector<const gitkit::GitRef*> meant;
    for (const auto* refs : refLists(store())) {
        for (const gitkit::GitRef& ref : *refs) {
            if (exactText(ref.name) == name)
                meant.push_back(&ref);
        }
    }
    return meant.size() == 1 ? meant.front()->fullName : name.toStdString();
}

void GoToCommitDialog::edited()
{
    commits_.forget();
    refusal_.clear();
    validate();
}

QString GoToCommitDialog::problem() const
{
    if (typed().startsWith(u'-'))
        return tr("The name of a commit can't begin with “-”.");
    return refusal_;
}

QString GoToCommitDialog::note() const { return tr("Also parts of a hash, and names such as HEAD~3."); }

bool GoToCommitDialog::isComplete() const { return !typed().isEmpty(); }

void GoToCommitDialog::accept()
{
    if (isComplete() && problem().isEmpty())
        commits_.askAgain(revision());
}

void GoToCommitDialog::resolved()
{
    if (!isVisible())
        return;
    // For a range git prints more than one hash.
    if (!commits_.failure() && isHash(*commits_.result()))
        take(*commits_.result());
    else
        refuse(refusalOf(typed(), commits_.failure().value_or(Failure())));
}

void GoToCommitDialog::take(const std::string& resolved)
{
    commit_ = resolved;
    QDialog::accept();
}

void GoToCommitDialog::refuse(const QString& reason)
{
    refusal_ = reason;
    validate();
    name_->setFocus();
    name_->selectAll();
}

void GoToCommitDialog::submit() { store().history().showCommit(commit_); }

} // namespace plovik

#include "moc_GoToCommitDialog.cpp"
