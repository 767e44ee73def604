// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/CloneDialog.h"

#include "GitKit/records/CloneRequest.h"
#include "app/store/ShownText.h"
#include "app/ui/dialogs/RefNameRules.h"
#include "app/ui/welcome/DroppedRepositories.h"
#include "app/ui/welcome/FolderField.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

QLineEdit* cloneField(const QString& name, const QString& hint, QWidget* parent)
{
    auto* const field = new QLineEdit(parent);
    field->setAccessibleName(name);
    field->setPlaceholderText(hint);
    return field;
}

} // namespace

CloneDialog::CloneDialog(OpenSignIn signIn, QWidget* parent)
    : BeginDialog(tr("Clone a Repository"), tr("Clone"), std::move(signIn), parent),
      address_(cloneField(tr("Address"), tr("Address, as https://example.org/project.git"), this)),
      folder_(new FolderField(this)), submodules_(new QCheckBox(tr("With Submodules"), this)),
      depth_(new QComboBox(this)), branch_(cloneField(tr("Branch"), tr("Branch (optional)"), this))
{
    submodules_->setAccessibleName(submodules_->text());
    depth_->setAccessibleName(tr("History"));
    using gitkit::CloneDepth;
    for (const auto& [title, depth] : {std::pair(tr("Everything"), CloneDepth::everything),
                                       std::pair(tr("Newest Commits Only"), CloneDepth::newestOnly),
                                       std::pair(tr("Files When Needed"), CloneDepth::filesWhenNeeded)})
        depth_->addItem(title, static_cast<int>(depth));
    for (QWidget* const field :
         {static_cast<QWidget*>(address_), static_cast<QWidget*>(folder_), static_cast<QWidget*>(branch_),
          static_cast<QWidget*>(depth_), static_cast<QWidget*>(submodules_)})
        fields().addWidget(field);
    connect(address_, &QLineEdit::textChanged, this, &CloneDialog::addressChanged);
    connect(branch_, &QLineEdit::textChanged, this, &CloneDialog::validate);
    connect(depth_, &QComboBox::currentIndexChanged, this, &CloneDialog::validate);
    connect(folder_, &FolderField::changed, this, &CloneDialog::validate);
    address_->setFocus();
    validate();
}

void CloneDialog::fill(const CloneWish& wish)
{
    if (isRunning())
        return;
    QString address = wish.address;
    if (address.isEmpty() && address_->text().isEmpty())
        address = cloneAddress(QApplication::clipboard()->text());
    if (!address.isEmpty()) {
        address_->setText(address);
        address_->selectAll();
    }
    if (!wish.folder.empty())
        folder_->setFolder(wish.folder);
}

std::string CloneDialog::address() const
{
    QString text = address_->text().trimmed();
    // A shell would have put the folder in its place.
    if (text.startsWith("~/"_L1))
        text = QDir::homePath() + text.mid(1);
    return QFile::encodeName(text).toStdString();
}

void CloneDialog::addressChanged()
{
    folder_->suggest(exactText(RepositoryMaker::folderNameOf(address())));
    validate();
}

QString CloneDialog::problem() const
{
    if (const QString wrong = refNames::branchProblem(branch_->text().toStdString(), {}); !wrong.isEmpty())
        return wrong;
    return folder_->problemUnlessEmpty();
}

QString CloneDialog::note() const
{
    using gitkit::CloneDepth;
    switch (static_cast<CloneDepth>(depth_->currentData().toInt())) {
    case CloneDepth::newestOnly:
        return tr("Only the newest commit of each branch is fetched. Older ones are not shown.");
    case CloneDepth::filesWhenNeeded:
        return tr("All commits are fetched, and the contents of files when they are first needed. The remote must be "
                  "reachable then.");
    case CloneDepth::everything:
        break;
    }
    return {};
}

bool CloneDialog::isComplete() const { return !address_->text().trimmed().isEmpty() && !folder_->folder().empty(); }

void CloneDialog::start(RepositoryMaker& maker, RepositoryMaker::Made made)
{
    maker.clone({.address = address(),
                 .folder = folder_->folder(),
                 .withSubmodules = submodules_->isChecked(),
                 .depth = static_cast<gitkit::CloneDepth>(depth_->currentData().toInt()),
                 .branch = branch_->text().toStdString()},
                std::move(made));
}

} // namespace plovik

#include "moc_CloneDialog.cpp"
