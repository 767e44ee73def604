// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/WebTab.h"

#include "app/settings/Settings.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/web/WebSettings.h"
#include "app/ui/widgets/Theme.h"

#include <QLabel>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// A field for a few lines. The toolkit's own takes room for many.
class LinesField : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;
    QSize sizeHint() const override { return {Theme::scaled(380), Theme::scaled(84)}; }
};

QPlainTextEdit* linesField(const QString& example, QWidget* parent)
{
    auto* const field = new LinesField(parent);
    field->setFont(Theme::fixedFont(0));
    field->setLineWrapMode(QPlainTextEdit::NoWrap);
    field->setPlaceholderText(example);
    field->setTabChangesFocus(true);
    field->setFixedHeight(Theme::scaled(84));
    field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    field->setMinimumWidth(Theme::scaled(380));
    return field;
}

void fill(QPlainTextEdit& field, const Setting<const char*>& setting)
{
    if (const QString stored = Settings::shared().value(setting); field.toPlainText() != stored)
        field.setPlainText(stored);
}

} // namespace

WebTab::WebTab(QWidget* parent)
    : QWidget(parent), hosts_(linesField(u"git.example.org gitlab"_s, this)),
      links_(linesField(u"\\b[A-Z]+-[0-9]+\\b https://example.org/$0"_s, this)),
      problem_(problemLabel(tr("Web Problem"), this))
{
    auto* const form = new SettingsForm(*this);
    form->addControl(tr("Your Servers"), hosts_);
    form->addNote(tr(
        "A line for each: the name of the server, and its kind: github, gitlab, gitea, forgejo, bitbucket or azure."));
    form->addControl(tr("References in Messages"), links_);
    form->addNote(
        tr("A line for each: a regular expression, and the address that it leads to. $0 stands for what was found, "
           "$1 to $9 for its groups."));
    form->addRow(problem_);
    connect(hosts_, &QPlainTextEdit::textChanged, this, [this] {
        Settings::shared().set(settings::webHosts, hosts_->toPlainText());
        tellMisread();
    });
    connect(links_, &QPlainTextEdit::textChanged, this, [this] {
        Settings::shared().set(settings::messageLinks, links_->toPlainText());
        tellMisread();
    });
    showStored();
}

void WebTab::showEvent(QShowEvent* event)
{
    showStored();
    QWidget::showEvent(event);
}

void WebTab::showStored()
{
    fill(*hosts_, settings::webHosts);
    fill(*links_, settings::messageLinks);
    tellMisread();
}

void WebTab::tellMisread()
{
    const QStringList misread =
        webSettings::hostsIn(hosts_->toPlainText()).misread + webSettings::linksIn(links_->toPlainText()).misread;
    tellProblem(*problem_, misread.isEmpty() ? QString() : tr("This line says nothing: %1").arg(misread.front()));
}

} // namespace plovik

#include "moc_WebTab.cpp"
