// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/GoToCommitDialog.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Rows as high as those of other lists, their text under that of the field.
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
        const QRect place = option.rect.adjusted(9, 0, -9, 0);
        painter->setFont(option.font);
        painter->setPen(theme.text);
        painter->drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(index.data().toString(), Qt::ElideMiddle, place.width()));
    }
};

/// The lists of all refs, which can be long.
std::vector<const std::vector<gitkit::GitRef>*> refLists(const RepositoryStore& store)
{
    return {&store.branches.value(), &store.remoteBranches.value(), &store.tags.value()};
}

QStringList refNames(const RepositoryStore& store)
{
    QStringList names{u"HEAD"_s};
    for (const auto* refs : refLists(store)) {
        for (const gitkit::GitRef& ref : *refs)
            names << shownText(ref.name);
    }
    return names;
}

bool isHash(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

/// What git said of a name, as a sentence for people.
QString refusalOf(const QString& name, const QString& said)
{
    if (said.contains("is ambiguous"_L1))
        return u"“%1” is ambiguous: more than one hash begins with it."_s.arg(name);
    QString reason = said.section(u"fatal: "_s, -1).section(u'\n', 0, 0).trimmed();
    if (reason.isEmpty() || reason.contains("single revision"_L1))
        return u"“%1” is no commit, branch or tag of this repository."_s.arg(name);
    reason[0] = reason[0].toUpper();
    return reason.endsWith(u'.') ? reason : reason + u'.';
}

} // namespace

GoToCommitDialog::GoToCommitDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, u"Go to Commit"_s, u"Go"_s, parent), name_(new QLineEdit(this))
{
    name_->setAccessibleName(u"Commit or Ref"_s);
    name_->setPlaceholderText(u"Hash, branch or tag"_s);
    auto* const completer = new QCompleter(refNames(store), name_);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    completer->setMaxVisibleItems(10);
    completer->popup()->setAccessibleName(u"Matching Refs"_s);
    completer->popup()->setItemDelegate(new MatchDelegate(completer));
    name_->setCompleter(completer);
    fields().addWidget(name_);
    connect(name_, &QLineEdit::textChanged, this, &GoToCommitDialog::edited);
    name_->setFocus();
    validate();
}

QString GoToCommitDialog::typed() const { return name_->text().trimmed(); }

/// The ref that was meant, by its full name; its bytes may be others than those shown. Anything else is for git to
/// read.
std::string GoToCommitDialog::revision() const
{
    const QString name = typed();
    std::vector<const gitkit::GitRef*> meant;
    for (const auto* refs : refLists(store())) {
        for (const gitkit::GitRef& ref : *refs) {
            if (shownText(ref.name) == name)
                meant.push_back(&ref);
        }
    }
    return meant.size() == 1 ? meant.front()->fullName : name.toStdString();
}

void GoToCommitDialog::edited()
{
    ++request_;
    refusal_.clear();
    validate();
}

QString GoToCommitDialog::problem() const
{
    if (typed().startsWith(u'-'))
        return u"The name of a commit can't begin with “-”."_s;
    return refusal_;
}

QString GoToCommitDialog::note() const { return u"Also parts of a hash, and names such as HEAD~3."_s; }

bool GoToCommitDialog::isComplete() const { return !typed().isEmpty(); }

void GoToCommitDialog::accept()
{
    if (isComplete() && problem().isEmpty())
        launch(resolving(this, ++request_));
}

QCoro::Task<> GoToCommitDialog::resolving(QPointer<GoToCommitDialog> dialog, qint64 request)
{
    const std::string revision = dialog->revision();
    std::string resolved;
    QString problem;
    try {
        resolved = co_await dialog->store().run(&gitkit::resolveCommit, revision);
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    if (!dialog || !dialog->isVisible() || request != dialog->request_)
        co_return; // closed, or edited meanwhile
    // Of a range git tells its ends.
    if (isHash(resolved))
        dialog->take(resolved);
    else
        dialog->refuse(refusalOf(dialog->typed(), problem));
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

void GoToCommitDialog::submit() { store().showCommit(commit_); }

} // namespace plovik
