// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/ErrorAlert.h"

#include "app/settings/CodeFont.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/TerminalText.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

// In characters and lines of the code font.
constexpr qsizetype leastColumns = 56;
constexpr qsizetype mostColumns = 100;
constexpr int leastRows = 3;
constexpr qsizetype mostRows = 24;
/// A label cannot wrap a word such as a path, and would make the dialog as wide as the longest one.
constexpr int longestWord = 48;

bool isOneSentence(const QString& text)
{
    if (text.contains(u'\n'))
        return false;
    return std::ranges::all_of(text.split(u' '), [](const QString& word) { return word.size() <= longestWord; });
}

QString titleOf(const Failure& failure)
{
    switch (failure.speaker) {
    case gitkit::Speaker::git:
        return ErrorAlert::tr("Git reported a problem");
    case gitkit::Speaker::hook:
        return ErrorAlert::tr("A hook did not allow this");
    case gitkit::Speaker::plovik:
        break;
    }
    return ErrorAlert::tr("This could not be done");
}

/// Returns a warning where a host's key has changed; empty for every other failure.
QString dangerIn(const Failure& failure, const QString& message)
{
    if (failure.kind != gitkit::ErrorKind::hostKeyChanged)
        return {};
    static const QRegularExpression named(u"host key for (\\S+) has changed"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    const QString host = named.match(message).captured(1).left(200);
    if (host.isEmpty())
        return ErrorAlert::tr("The key of the remote is not the one that is known. Somebody may be listening in. "
                              "Do not go on before the administrator of the remote has confirmed the new key.");
    return ErrorAlert::tr("The key of %1 is not the one that is known. Somebody may be listening in. "
                          "Do not go on before the administrator of %1 has confirmed the new key.")
        .arg(host);
}

} // namespace

ErrorAlert::ErrorAlert(const Failure& failure, const std::vector<Way>& ways, QWidget* parent)
    : QDialog(parent), title_(dialogParts::heading({}, this)), danger_(dialogParts::text(this)),
      sentence_(dialogParts::text(this)), lines_(new QPlainTextEdit(this)),
      showLog_(new QPushButton(tr("Show in Command Log"), this))
{
    dialogParts::prepare(*this, titleOf(failure));
    sentence_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    sentence_->setFocusPolicy(Qt::NoFocus);
    lines_->setAccessibleName(tr("Message"));
    lines_->setReadOnly(true);
    lines_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lines_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    lines_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    lines_->document()->setDocumentMargin(8);
    lines_->setFont(CodeFont::current());
    followColor(*lines_, QPalette::Base, &Theme::field);
    lines_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    auto* const ok = new QPushButton(ways.empty() ? tr("OK") : tr("Cancel"), this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(showLog_, &QPushButton::clicked, this, &ErrorAlert::logRequested);
    showLog_->setAutoDefault(false);
    danger_->setAccessibleName(tr("Danger"));
    danger_->setForegroundRole(QPalette::BrightText);
    followFont(*danger_, 0, QFont::DemiBold);
    danger_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    danger_->setFocusPolicy(Qt::NoFocus);

    auto* const column = dialogParts::column(*this);
    column->addWidget(title_);
    column->addWidget(danger_);
    column->addWidget(sentence_);
    column->addWidget(lines_, 1);
    column->addSpacing(8);
    std::vector<QPushButton*> buttons{showLog_, ok};
    for (std::size_t index = 0; index < ways.size(); ++index) {
        auto* const way = new QPushButton(ways[index].title, this);
        way->setAutoDefault(false);
        connect(way, &QPushButton::clicked, this,
                [this, result = firstWay + static_cast<int>(index)] { done(result); });
        buttons.push_back(way);
    }
    column->addLayout(dialogParts::buttonRow(buttons));
    setFailure(failure);
    ok->setFocus();
}

void ErrorAlert::setFailure(const Failure& failure)
{
    const QString title = titleOf(failure);
    setWindowTitle(plainTitle(title));
    setAccessibleName(title);
    title_->setText(title);
    const QString shown = boundedText(withoutTerminalCodes(failure.message));
    const QString danger = dangerIn(failure, shown);
    danger_->setText(danger);
    danger_->setVisible(!danger.isEmpty());
    const bool isSentence = isOneSentence(shown);
    sentence_->setText(isSentence ? shown : QString());
    sentence_->setVisible(isSentence);
    lines_->setPlainText(isSentence ? QString() : shown);
    lines_->setVisible(!isSentence);
    setAccessibleDescription(danger.isEmpty() ? shown : danger + u'\n' + shown);
    showLog_->setVisible(failure.command.has_value());
    fitText();
}

QString ErrorAlert::message() const { return lines_->isHidden() ? sentence_->text() : lines_->toPlainText(); }

/// Makes the field as large as its text, within limits.
void ErrorAlert::fitText()
{
    if (lines_->isHidden()) {
        dialogParts::fit(*this);
        return;
    }
    const QFontMetrics metrics(lines_->font());
    const QStringList lines = lines_->toPlainText().split(u'\n');
    qsizetype columns = leastColumns;
    for (const QString& line : lines)
        columns = std::clamp(line.size(), columns, mostColumns);
    qsizetype rows = 0;
    for (const QString& line : lines)
        rows += 1 + (std::max<qsizetype>(line.size(), 1) - 1) / columns;
    const int shownRows = static_cast<int>(std::min(rows, mostRows));
    // With half a line to spare, a text that fits gets no scroll bar.
    const int frame =
        2 * (lines_->frameWidth() + static_cast<int>(lines_->document()->documentMargin())) + metrics.lineSpacing() / 2;
    const int bar = rows > mostRows ? lines_->verticalScrollBar()->sizeHint().width() : 0;
    // The width of a character is no whole number of pixels.
    const double text = QFontMetricsF(lines_->font()).horizontalAdvance(QString(columns + 1, u'0'));
    const int width = static_cast<int>(std::ceil(text)) + frame + bar;
    lines_->setMinimumHeight(metrics.lineSpacing() * std::min(shownRows, leastRows) + frame);
    const QMargins margins = layout()->contentsMargins();
    // The layout reserves no height for a widget that takes the remaining room.
    dialogParts::fit(*this, width + margins.left() + margins.right(), metrics.lineSpacing() * shownRows + frame);
}

} // namespace plovik

#include "moc_ErrorAlert.cpp"
