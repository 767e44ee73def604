// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/log/CommandDetail.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/store/CommandLine.h"
#include "app/store/Secrets.h"
#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/ui/log/CommandLogModel.h"
#include "app/ui/log/OutputText.h"
#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/TerminalText.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLocale>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr qsizetype mostOfCommand = 8000;
constexpr int mostCommandLines = 3;
constexpr int leastFactsWidth = 210;
constexpr qsizetype mostNames = 200;

template <typename Text = QPlainTextEdit>
Text* makeText(const QString& name, QWidget* parent)
{
    auto* const text = new Text(parent);
    text->setAccessibleName(name);
    text->setReadOnly(true);
    text->setUndoRedoEnabled(false);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTabChangesFocus(true);
    giveFocusRing(*text);
    text->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text->setHorizontalScrollBarPolicy(
        Qt::ScrollBarAlwaysOff); // rounding may make a wrapped line too wide by a fraction
    text->document()->setDocumentMargin(0);
    return text;
}

QString shownPart(std::string_view bytes) { return withStandIns(printedText(exactText(withoutSecrets(bytes)))); }

QString leftOutSentence(std::size_t bytes)
{
    return u"\n%1\n\n"_s.arg(
        CommandDetail::tr("… %1 bytes are not kept …").arg(QLocale().toString(static_cast<qulonglong>(bytes))));
}

/// Joins the parts before they are decoded, since a part may end within a character.
QString wholeText(const CommandLog::Output& output, QString (*shorten)(const QString&))
{
    if (output.leftOut == 0)
        return shorten(shownPart(output.beginning + output.ending));
    return shorten(shownPart(output.beginning)) + leftOutSentence(output.leftOut) + shorten(shownPart(output.ending));
}

QString asItIs(const QString& text) { return text; }

/// Says of a hook how long it took, and of one that refused with which status.
QString shownHook(const gitkit::HookRun& hook)
{
    const QString name = shownText(hook.name);
    if (!hook.took)
        return CommandDetail::tr("%1: running").arg(name);
    const QString took = shownTime(*hook.took);
    return hook.status == 0 ? CommandDetail::tr("%1: %2").arg(name, took)
                            : CommandDetail::tr("%1: %2, ✗ %3").arg(name, took).arg(hook.status);
}

QString factsOf(const CommandLog::Command& command)
{
    QStringList facts{describedEnd(command), shownTook(command), shownBegin(command)};
    for (const gitkit::HookRun& hook : command.hooks)
        facts.append(shownHook(hook));
    if (command.end && !command.end->problem.empty())
        facts.append(shownText(withoutSecrets(command.end->problem)));
    facts.append(shownText(command.directory.native()));
    facts.removeAll(QString());
    return facts.join(u"  ·  "_s);
}

QString commandOf(const CommandLog::Command& command)
{
    const QString all = withStandIns(printedText(exactText(gitLine(command.arguments))));
    return all.size() <= mostOfCommand ? all : all.left(mostOfCommand) + u" …"_s;
}

} // namespace

CommandDetail::CommandDetail(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), log_(store.changes().commandLog()), command_(makeText(tr("Command"), this)),
      facts_(new ElidedLabel(this)), copyLine_(new BarButton(tr("Copy as Shell Line"), this)),
      copyOutput_(new BarButton(tr("Copy Output"), this)), output_(makeText<OutputText>(tr("Command Output"), this)),
      stop_(new BarButton(tr("Stop"), this)), wayRow_(new QHBoxLayout),
      placed_(store.git(), &placedFiles, [this] { showPlaces(); })
{
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    facts_->setForegroundRole(QPalette::PlaceholderText);
    followFont(*facts_, -1);
    facts_->setAccessibleName(tr("Command Facts"));
    command_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    auto* const bar = new QHBoxLayout;
    bar->setSpacing(8);
    bar->addWidget(facts_, 1);
    bar->addLayout(wayRow_);
    wayRow_->setSpacing(8);
    stop_->setToolTip(tr("End this command and everything that it has started"));
    for (BarButton* button : {stop_, copyLine_, copyOutput_}) {
        button->setProperty("compact", true);
        bar->addWidget(button);
    }
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(14, 8, 12, 0);
    column->setSpacing(6);
    column->addWidget(command_);
    column->addLayout(bar);
    column->addWidget(output_, 1);
    connect(copyLine_, &BarButton::clicked, this, &CommandDetail::shellLineWanted);
    connect(copyOutput_, &BarButton::clicked, this, &CommandDetail::copyOutput);
    connect(stop_, &BarButton::clicked, this, [this] {
        if (shown_)
            store_.changes().cancelChangeOf(shown_->number);
        showWays();
    });
    connect(output_, &OutputText::placeChosen, this, &CommandDetail::open);
    notifiers_.push_back(store.window().commandWithWays.addNotifier([this] { showWays(); }));
    connect(&Settings::shared(), &Settings::changed, this, &CommandDetail::showFont);
    showFont();
    show(std::nullopt);
}

void CommandDetail::show(const std::optional<CommandLog::Command>& command)
{
    const bool isNew = !command || !shown_ || command->number != shown_->number;
    shown_ = command;
    for (QWidget* widget :
         {static_cast<QWidget*>(command_), static_cast<QWidget*>(facts_), static_cast<QWidget*>(copyOutput_)})
        widget->setVisible(command.has_value());
    showWays();
    showCopyLine();
    if (!command) {
        showOutput({}, true);
        return;
    }
    if (isNew) {
        command_->setPlainText(commandOf(*command));
        fitCommand();
    }
    facts_->setText(factsOf(*command));
    const std::optional<CommandLog::Output> output = log_.output(command->number);
    showOutput(output ? wholeText(*output, boundedText) : QString(), isNew);
}

void CommandDetail::showOutput(const QString& text, bool isNew)
{
    if (text == text_ && !isNew)
        return;
    QScrollBar& bar = *output_->verticalScrollBar();
    // The end of the output matters most for a command that runs or has failed.
    const bool follows = isNew ? shown_ && (!shown_->end || hasFailed(*shown_)) : bar.value() >= bar.maximum() - 1;
    const int place = bar.value();
    if (!isNew && !text_.isEmpty() && text.startsWith(text_)) {
        QTextCursor end(output_->document());
        end.movePosition(QTextCursor::End);
        end.insertText(text.sliced(text_.size()));
    } else {
        output_->setPlainText(text);
    }
    text_ = text;
    findPlaces();
    output_->setPlaceholderText(!shown_ || !shown_->end ? QString() : tr("Nothing was printed."));
    if (follows)
        bar.setValue(bar.maximum());
    else if (!isNew)
        bar.setValue(place);
}

/// Asks which of the places lie in files of the working tree. Until that is answered there are no links.
void CommandDetail::findPlaces()
{
    places_ = placesIn(text_);
    PlacedFilesRequest request{store_.root(), {}};
    for (const OutputPlace& place : places_) {
        if (request.names.size() < mostNames && !request.names.contains(place.file))
            request.names.append(place.file);
    }
    if (request.names.isEmpty())
        output_->setPlaces({});
    else
        placed_.ask(std::move(request));
    showPlaces();
}

void CommandDetail::showPlaces()
{
    const std::optional<QSet<QString>>& files = placed_.answer();
    std::vector<OutputPlace> shown;
    if (files)
        std::ranges::copy_if(places_, std::back_inserter(shown),
                             [&files](const OutputPlace& place) { return files->contains(place.file); });
    output_->setPlaces(std::move(shown));
}

void CommandDetail::open(const OutputPlace& place)
{
    actions::openAtLine(store_.actors(), placedFile(store_.root(), place.file), place.line, place.column);
}

/// Shows the buttons that lead on from the shown command.
void CommandDetail::showWays()
{
    stop_->setVisible(shown_ && !shown_->end && store_.changes().isOfRunning(shown_->number));
    QStringList titles;
    if (shown_ && store_.window().commandWithWays.value() == shown_->number) {
        for (const Way& way : store_.window().waysOfCommand())
            titles.append(way.title);
    }
    if (titles == wayTitles_)
        return;
    wayTitles_ = titles;
    for (BarButton* button : ways_)
        button->deleteLater();
    ways_.clear();
    for (qsizetype index = 0; index < titles.size(); ++index) {
        auto* const button = new BarButton(titles[index], this);
        button->setProperty("compact", true);
        connect(button, &BarButton::clicked, this,
                [this, index] { store_.window().takeWayOfCommand(static_cast<std::size_t>(index)); });
        wayRow_->addWidget(button);
        ways_.push_back(button);
    }
}

void CommandDetail::copyOutput() const
{
    if (!shown_)
        return;
    const std::optional<CommandLog::Output> output = log_.output(shown_->number);
    QGuiApplication::clipboard()->setText(output ? wholeText(*output, asItIs) : QString());
}

/// Makes the field as high as the command, up to a few lines.
void CommandDetail::fitCommand()
{
    const int lines = std::clamp(static_cast<int>(command_->document()->size().height()), 1, mostCommandLines);
    command_->setFixedHeight(command_->fontMetrics().lineSpacing() * lines + 2);
}

void CommandDetail::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    showCopyLine();
    layout()->activate();
    fitCommand();
}

/// Hides the button where it would leave little room for the facts; the list's menu offers the same.
void CommandDetail::showCopyLine()
{
    const int facts = contentsRect().width() - copyLine_->sizeHint().width() - copyOutput_->sizeHint().width() -
                      wayRow_->sizeHint().width() - (stop_->isHidden() ? 0 : stop_->sizeHint().width());
    copyLine_->setVisible(shown_ && facts >= leastFactsWidth);
}

void CommandDetail::showFont()
{
    for (QPlainTextEdit* text : {command_, static_cast<QPlainTextEdit*>(output_)})
        text->setFont(CodeFont::current());
    fitCommand();
}

} // namespace plovik

#include "moc_CommandDetail.cpp"
