// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/RemoteDialog.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/dialogs/RefNameRules.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

QLineEdit* remoteField(const QString& name, const QString& hint, QWidget* parent)
{
    auto* const field = new QLineEdit(parent);
    field->setAccessibleName(name);
    field->setPlaceholderText(hint);
    return field;
}

/// Returns what was typed, or the bytes that were there if it shows them still.
std::string bytesOf(const QLineEdit& field, const std::string& before)
{
    return field.text() == exactText(before) ? before : field.text().trimmed().toStdString();
}

} // namespace

RemoteDialog::RemoteDialog(RepositoryStore& store, RemoteSheet sheet, QWidget* parent)
    : Sheet(store, sheet.known.empty() ? tr("Add Remote") : tr("Edit Remote"),
            sheet.known.empty() ? tr("Add Remote") : tr("Save"), parent),
      sheet_(std::move(sheet)), which_(new QComboBox(this)), name_(remoteField(tr("Name"), tr("Name"), this)),
      url_(remoteField(tr("Address"), tr("Address"), this)),
      pushUrl_(remoteField(tr("Push Address"), tr("Push address (optional)"), this)),
      isFetched_(new QCheckBox(tr("Fetched with All Others"), this))
{
    which_->setAccessibleName(tr("Remote"));
    which_->setVisible(sheet_.known.size() > 1);
    isFetched_->setAccessibleName(isFetched_->text());
    for (QWidget* const field :
         {static_cast<QWidget*>(which_), static_cast<QWidget*>(name_), static_cast<QWidget*>(url_),
          static_cast<QWidget*>(pushUrl_), static_cast<QWidget*>(isFetched_)})
        fields().addWidget(field);
    for (const gitkit::RemoteSettings& known : sheet_.known)
        which_->addItem(shownText(known.name));
    const auto begun = std::ranges::find(sheet_.known, sheet_.remote, &gitkit::RemoteSettings::name);
    which_->setCurrentIndex(begun == sheet_.known.end() ? 0 : static_cast<int>(begun - sheet_.known.begin()));
    show(isNew() ? gitkit::RemoteSettings{.name = {}, .url = {}}
                 : sheet_.known[static_cast<std::size_t>(which_->currentIndex())]);
    connect(which_, &QComboBox::currentIndexChanged, this,
            [this](int index) { show(sheet_.known[static_cast<std::size_t>(index)]); });
    for (QLineEdit* const field : {name_, url_, pushUrl_})
        connect(field, &QLineEdit::textChanged, this, &RemoteDialog::validate);
    connect(isFetched_, &QCheckBox::toggled, this, &RemoteDialog::validate);
    if (isNew() && store.snapshot().remotes.value().empty())
        name_->setText(QStringLiteral("origin"));
    QLineEdit* const first = sheet_.isRename || name_->text().isEmpty() ? name_ : url_;
    first->setFocus();
    first->selectAll();
    validate();
}

void RemoteDialog::show(const gitkit::RemoteSettings& remote)
{
    shown_ = remote;
    name_->setText(exactText(remote.name));
    url_->setText(exactText(remote.url));
    pushUrl_->setText(exactText(remote.pushUrl));
    isFetched_->setChecked(!remote.skipsFetchAll);
}

gitkit::RemoteSettings RemoteDialog::wanted() const
{
    return {.name = bytesOf(*name_, shown_.name),
            .url = bytesOf(*url_, shown_.url),
            .pushUrl = bytesOf(*pushUrl_, shown_.pushUrl),
            .skipsFetchAll = !isFetched_->isChecked()};
}

QString RemoteDialog::problem() const
{
    const gitkit::RemoteSettings now = wanted();
    if (const QString wrong = refNames::remoteProblem(now.name); !wrong.isEmpty())
        return wrong;
    const std::vector<std::string>& all = store().snapshot().remotes.value();
    const bool isTaken = now.name != shown_.name && std::ranges::find(all, now.name) != all.end();
    return isTaken ? tr("There is already a remote named %1.").arg(inQuotes(now.name)) : QString();
}

QString RemoteDialog::note() const
{
    const gitkit::RemoteSettings now = wanted();
    if (isNew())
        return isFetched_->isChecked() ? tr("It is fetched at once.") : tr("It is fetched when it is asked for.");
    if (!now.name.empty() && now.name != shown_.name)
        return tr("Its branches here move along, and so do those that follow them.");
    return isFetched_->isChecked() ? QString() : tr("“Fetch” leaves it out.");
}

bool RemoteDialog::isComplete() const
{
    const gitkit::RemoteSettings now = wanted();
    return !now.name.empty() && !now.url.empty() && (isNew() || now != shown_);
}

void RemoteDialog::submit()
{
    if (isNew())
        actions::addRemote(store().actors(), wanted());
    else
        actions::changeRemote(store().actors(), shown_, wanted());
}

} // namespace plovik

#include "moc_RemoteDialog.cpp"
