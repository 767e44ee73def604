// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/SettingsForm.h"

#include "app/ui/widgets/Theme.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>

namespace plovik {

namespace {

constexpr int noteWidth = 350;
constexpr int leastPickerWidth = 240;
constexpr int mostPickerWidth = 420;

QLabel* wrappingLabel(const QString& text, QWidget* parent)
{
    auto* const label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

SettingsForm::SettingsForm(QWidget& page) : QFormLayout(&page)
{
    setContentsMargins(40, 28, 40, 28);
    setHorizontalSpacing(12);
    setVerticalSpacing(10);
    setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    setFieldGrowthPolicy(FieldsStayAtSizeHint);
}

void SettingsForm::addSection(const QString& title)
{
    auto* const label = new QLabel(title, parentWidget());
    QFont emphasised = label->font();
    emphasised.setWeight(QFont::DemiBold);
    label->setFont(emphasised);
    addRow(label);
}

void SettingsForm::addControl(const QString& title, QWidget* control)
{
    control->setAccessibleName(title);
    auto* const label = new QLabel(QCoreApplication::translate("SettingsForm", "%1:").arg(title), parentWidget());
    label->setMinimumHeight(control->sizeHint().height());
    label->setBuddy(control);
    addRow(label, control);
}

QLabel* SettingsForm::addNote(const QString& text)
{
    QLabel* const note = noteLabel(text, parentWidget());
    note->setFixedWidth(Theme::scaled(noteWidth));
    addRow(QString(), note);
    return note;
}

void fitPicker(QComboBox& picker)
{
    picker.setSizeAdjustPolicy(QComboBox::AdjustToContents);
    picker.setMinimumWidth(Theme::scaled(leastPickerWidth));
    picker.setMaximumWidth(Theme::scaled(mostPickerWidth));
}

QLabel* noteLabel(const QString& text, QWidget* parent)
{
    QLabel* const label = wrappingLabel(text, parent);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QLabel* problemLabel(const QString& accessibleName, QWidget* parent)
{
    QLabel* const label = wrappingLabel(QString(), parent);
    label->setAccessibleName(accessibleName);
    label->setForegroundRole(QPalette::BrightText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->hide();
    return label;
}

void tellProblem(QLabel& label, const QString& problem)
{
    label.setText(problem);
    label.setAccessibleDescription(problem);
    label.setVisible(!problem.isEmpty());
}

} // namespace plovik
