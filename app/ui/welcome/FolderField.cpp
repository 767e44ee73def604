// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/FolderField.h"

#include "app/settings/RecentRepositories.h"
#include "app/store/ShownText.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

namespace fs = std::filesystem;

fs::path homeFolder() { return QFile::encodeName(QDir::homePath()).toStdString(); }

/// Returns a path as it can be edited, with "~" for the user's own folder.
QString editedPath(const fs::path& path)
{
    QString whole = exactText(path.native());
    const QString home = QDir::homePath();
    return home.size() > 1 && (whole == home || whole.startsWith(home + u'/')) ? u'~' + whole.mid(home.size()) : whole;
}

} // namespace

FolderField::FolderField(QWidget* parent) : QWidget(parent), field_(new QLineEdit(this))
{
    field_->setAccessibleName(tr("Folder"));
    field_->setPlaceholderText(tr("Folder"));
    auto* const choose = new QPushButton(tr("Choose…"), this);
    choose->setAccessibleName(tr("Choose Folder…"));
    choose->setAutoDefault(false);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(field_, 1);
    row->addWidget(choose);
    setFocusProxy(field_);
    connect(field_, &QLineEdit::textEdited, this, [this] { isTyped_ = true; });
    connect(field_, &QLineEdit::textChanged, this, &FolderField::changed);
    connect(choose, &QPushButton::clicked, this, &FolderField::choose);
}

fs::path FolderField::folder() const
{
    QString text = field_->text().trimmed();
    if (text == u'~' || text.startsWith("~/"_L1))
        text = QDir::homePath() + text.mid(1);
    const fs::path typed = QFile::encodeName(text).toStdString();
    if (!typed.is_absolute())
        return {};
    const fs::path plain = typed.lexically_normal();
    return plain.has_filename() || !plain.has_relative_path() ? plain : plain.parent_path();
}

bool FolderField::isEmpty() const { return field_->text().trimmed().isEmpty(); }

QString FolderField::problemUnlessEmpty() const
{
    if (isEmpty())
        return {};
    const fs::path place = folder();
    if (place.empty())
        return tr("Enter the folder as a whole path, which begins with “/” or “~/”.");
    std::error_code why;
    const fs::file_status status = fs::status(place, why);
    if (!fs::exists(status))
        return {};
    const QString name = inQuotes(place.filename().string());
    if (!fs::is_directory(status))
        return tr("%1 is a file.").arg(name);
    if (!fs::is_empty(place, why))
        return why ? tr("The folder %1 may not be read.").arg(name) : tr("The folder %1 is not empty.").arg(name);
    return {};
}

void FolderField::setFolder(const fs::path& folder)
{
    isTyped_ = true;
    field_->setText(editedPath(folder));
}

void FolderField::suggest(const QString& name)
{
    name_ = name;
    if (!isTyped_)
        field_->setText(name.isEmpty() ? QString() : editedPath(parent_ / QFile::encodeName(name).toStdString()));
}

/// What is chosen is the folder around the new one while a name is suggested.
void FolderField::choose()
{
    auto* const panel = new QFileDialog(this, tr("Choose a folder"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, tr("Choose"));
    panel->setDirectory(exactText(parent_.native()));
    connect(panel, &QFileDialog::fileSelected, this, [this](const QString& chosen) {
        const fs::path folder = QFile::encodeName(chosen).toStdString();
        if (name_.isEmpty()) {
            setFolder(folder);
            return;
        }
        parent_ = folder;
        isTyped_ = false;
        suggest(name_);
    });
    panel->open();
}

fs::path FolderField::usualParent()
{
    const std::vector<fs::path> recent = recentRepositories::all();
    return recent.empty() ? homeFolder() : recent.front().parent_path();
}

} // namespace plovik

#include "moc_FolderField.cpp"
