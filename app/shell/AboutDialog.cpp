// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/AboutDialog.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitRunner.h"
#include "app/store/ShownText.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/settings/SettingsSymbols.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QClipboard>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSysInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int aboutSignSize = 64;

class AboutSign : public QWidget {
public:
    explicit AboutSign(QWidget* parent) : QWidget(parent) { setFixedSize(aboutSignSize, aboutSignSize); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        paintApplicationSign(painter, rect());
    }
};

std::string gitVersionText()
{
    const std::string printed = gitkit::GitRunner("/").run({"version"});
    return std::string(gitkit::trimmed(printed));
}

} // namespace

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent)
{
    dialogParts::prepare(*this, tr("About Plovik"));
    setWindowModality(Qt::NonModal);
    QLabel* const heading = dialogParts::heading(tr("Plovik"), this);
    followFont(*heading, 7, QFont::Bold);
    auto* const facts = new QFormLayout;
    facts->setHorizontalSpacing(14);
    facts->setVerticalSpacing(4);
    addFact(*facts, tr("Version"), QLatin1String(PLOVIK_VERSION));
    addFact(*facts, tr("Git"), u"…"_s);
    git_ = facts_.back();
    addFact(*facts, tr("Path of git"), shownText(gitkit::GitExecutable::path().native()));
    addFact(*facts, tr("Qt"), QLatin1String(qVersion()));
    addFact(*facts, tr("System"), QSysInfo::prettyProductName());

    auto* const copy = new QPushButton(tr("Copy Details"), this);
    connect(copy, &QPushButton::clicked, this, [this] { QGuiApplication::clipboard()->setText(details()); });
    auto* const close = new QPushButton(tr("Close"), this);
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);

    auto* const top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(new AboutSign(this), 0, Qt::AlignTop);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addWidget(heading);
    texts->addWidget(dialogParts::secondaryText(tr("A graphical git client."), this));
    top->addLayout(texts, 1);
    QVBoxLayout* const column = dialogParts::column(*this);
    column->addLayout(top);
    column->addSpacing(8);
    column->addLayout(facts);
    column->addSpacing(8);
    column->addWidget(dialogParts::secondaryText(tr("Plovik is free software under the GNU General Public License, "
                                                    "version 3 or later. It comes without any warranty."),
                                                 this));
    column->addSpacing(10);
    column->addLayout(dialogParts::buttonRow({copy, close}));
    close->setFocus();
    dialogParts::fit(*this);
    launch(readingGit());
}

void AboutDialog::addFact(QFormLayout& facts, const QString& name, const QString& text)
{
    QLabel* const title = dialogParts::secondaryText(name, this);
    title->setWordWrap(false);
    QLabel* const fact = dialogParts::text(this);
    fact->setText(text);
    fact->setAccessibleName(name);
    fact->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    fact->setFocusPolicy(Qt::NoFocus);
    facts.addRow(title, fact);
    names_.push_back(title);
    facts_.push_back(fact);
}

QCoro::Task<> AboutDialog::readingGit()
{
    QString text;
    try {
        const std::string printed = co_await BlockingCall<std::string>(Worker::pool(), Worker::Lane::shortRead, alive_,
                                                                       std::function<std::string()>(&gitVersionText));
        text = shownText(printed);
    } catch (const std::exception& failure) {
        text = QString::fromUtf8(failure.what());
    }
    git_->setText(text);
    dialogParts::fit(*this);
}

QString AboutDialog::details() const
{
    QString lines;
    for (std::size_t index = 0; index < facts_.size(); ++index)
        lines += u"%1: %2\n"_s.arg(names_[index]->text(), facts_[index]->text());
    return lines;
}

} // namespace plovik

#include "moc_AboutDialog.cpp"
