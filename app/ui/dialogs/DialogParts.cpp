// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/DialogParts.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik::dialogParts {

namespace {

constexpr int margin = 20;
constexpr int leastWidth = 400; ///< inside the margins
constexpr int leastButtonWidth = 80;

} // namespace

void prepare(QDialog& dialog, const QString& title)
{
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.setWindowTitle(plainTitle(title));
    dialog.setAccessibleName(title);
}

QVBoxLayout* column(QDialog& dialog)
{
    auto* const column = new QVBoxLayout(&dialog);
    column->setContentsMargins(margin, margin - 2, margin, margin);
    column->setSpacing(8);
    column->addStrut(leastWidth);
    return column;
}

QLabel* heading(const QString& title, QWidget* parent)
{
    QLabel* const label = text(parent);
    label->setText(title);
    followFont(*label, 1.5, QFont::DemiBold);
    return label;
}

QLabel* text(QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* secondaryText(const QString& sentence, QWidget* parent)
{
    QLabel* const label = text(parent);
    label->setText(sentence);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

void ChoiceRow::say(const QString& sentence) const
{
    words->setText(sentence);
    button->setAccessibleDescription(sentence);
}

ChoiceRow choiceRow(const QString& title, QVBoxLayout& fields, QWidget* parent)
{
    const ChoiceRow row{new QRadioButton(title, parent), secondaryText(QString(), parent)};
    row.button->setAccessibleName(title);
    const QStyle& style = *row.button->style();
    const int indent =
        style.pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) + style.pixelMetric(QStyle::PM_RadioButtonLabelSpacing);
    const bool isMirrored = parent->layoutDirection() == Qt::RightToLeft;
    row.words->setContentsMargins(isMirrored ? 0 : indent, 0, isMirrored ? indent : 0, 0);
    fields.addWidget(row.button);
    fields.addWidget(row.words);
    return row;
}

QHBoxLayout* buttonRow(const std::vector<QPushButton*>& buttons)
{
    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch(1);
    for (QPushButton* button : buttons) {
        button->ensurePolished();
        button->setMinimumWidth(std::max(leastButtonWidth, button->sizeHint().width()));
        row->addWidget(button);
    }
    return row;
}

void fit(QDialog& dialog, int width, int moreHeight)
{
    QLayout& layout = *dialog.layout();
    layout.activate();
    const QSize screen = dialog.screen()->availableSize() * 9 / 10;
    const int fitting = std::max(layout.totalMinimumSize().width(), std::min(width, screen.width()));
    const int height =
        layout.hasHeightForWidth() ? layout.totalHeightForWidth(fitting) : layout.totalSizeHint().height();
    dialog.resize(fitting, std::min(height + moreHeight, screen.height()));
}

void askForPlace(const Confirmation::Place& place, QWidget* parent)
{
    auto* const chooser = new QFileDialog(parent);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setAcceptMode(place.isFolder ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    chooser->setFileMode(place.isFolder ? QFileDialog::Directory : QFileDialog::AnyFile);
    chooser->selectFile(place.name);
    QObject::connect(chooser, &QFileDialog::fileSelected, parent, [chosen = place.chosen](const QString& file) {
        if (chosen)
            chosen(QFile::encodeName(file).toStdString());
    });
    chooser->open();
}

} // namespace plovik::dialogParts
