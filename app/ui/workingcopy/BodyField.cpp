// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/BodyField.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/store/MessageFormat.h"
#include "app/ui/widgets/ThemeFollowing.h"
#include "app/ui/workingcopy/SpellingMarks.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionFrame>
#include <QTextBlock>
#include <QTextLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int guideColumn = messageFormat::bodyColumns;
constexpr int fewestLines = 5;
constexpr int mostLines = 12;

/// Returns the mark at the guide column in the coordinates of the block, or a null line when the block is shorter.
QLineF guideIn(const QTextBlock& block)
{
    if (block.length() - 1 <= guideColumn)
        return {};
    const QTextLine line = block.layout()->lineForTextPosition(guideColumn);
    if (!line.isValid())
        return {};
    const double x = line.cursorToX(guideColumn);
    return {x, line.y(), x, line.y() + line.height() - 1};
}

} // namespace

BodyField::BodyField(QWidget* parent) : QPlainTextEdit(parent)
{
    setAccessibleName(tr("Commit Body"));
    setPlaceholderText(tr("Body"));
    setTabChangesFocus(true);
    setFrameShape(NoFrame);
    viewport()->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    followFont(*this, &CodeFont::current);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key.startsWith(u"codeFont"_s))
            followFont(*this, &CodeFont::current);
        limitLines();
    });
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this] { updateGeometry(); });
}

void BodyField::checkSpelling(std::unique_ptr<SpellChecker> checker)
{
    stopCheckingSpelling();
    spelling_ = new SpellingMarks(*this, std::move(checker));
}

void BodyField::stopCheckingSpelling()
{
    delete spelling_;
    spelling_ = nullptr;
}

/// Returns where the guide column stands in the viewport.
double BodyField::guideX() const
{
    return document()->documentMargin() + guideColumn * QFontMetricsF(font()).horizontalAdvance(u'0');
}

/// Leaves what is right of the guide empty, so that lines break there.
void BodyField::limitLines()
{
    const int room = width() - 2 * frameWidth() - verticalScrollBar()->sizeHint().width();
    const int wanted = static_cast<int>(std::ceil(guideX() + document()->documentMargin()));
    const QMargins margins(0, 0, std::max(0, room - wanted), 0);
    if (viewportMargins() != margins)
        setViewportMargins(margins);
}

void BodyField::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    limitLines();
}

void BodyField::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* const menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    if (spelling_ && !isReadOnly())
        spelling_->addSuggestions(*menu, (isByKey ? textCursor() : cursorForPosition(event->pos())).position());
    menu->popup(isByKey ? viewport()->mapToGlobal(cursorRect().bottomLeft()) : event->globalPos());
}

QString BodyField::text() const
{
    // toPlainText() would turn no-break spaces into ordinary ones.
    QString text = document()->toRawText();
    for (const QChar end : {QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(end, u'\n');
    return text;
}

void BodyField::replaceText(const QString& text)
{
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    // Without a change of format the next typed text would join this undo step.
    QTextBlockFormat mark = cursor.blockFormat();
    mark.setProperty(QTextFormat::UserProperty, mark.intProperty(QTextFormat::UserProperty) + 1);
    cursor.setBlockFormat(mark);
    cursor.endEditBlock();
}

QSize BodyField::sizeHint() const
{
    // The document measures its height in lines. A few pixels more keep the editor from scrolling.
    const int lines = std::clamp(static_cast<int>(document()->size().height()), fewestLines, mostLines);
    const int height = lines * fontMetrics().lineSpacing() + qRound(2 * document()->documentMargin()) + 4;
    return {120, height};
}

void BodyField::paintEvent(QPaintEvent* event)
{
    QPlainTextEdit::paintEvent(event);
    QPainter painter(viewport());
    painter.setPen(Theme::current().quietBorder);
    // A pixel beyond the last column, where no letter reaches.
    if (viewportMargins().right() > 0)
        painter.drawLine(QPointF(guideX() + 0.5, 0), QPointF(guideX() + 0.5, viewport()->height()));
    QPointF offset = contentOffset();
    for (QTextBlock block = firstVisibleBlock(); block.isValid() && offset.y() < viewport()->height();
         block = block.next())
    {
        if (const QLineF guide = guideIn(block); !guide.isNull())
            painter.drawLine(guide.translated(offset));
        offset.ry() += blockBoundingRect(block).height();
    }
}

void BodyField::focusInEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusInEvent(event);
    Q_EMIT focusChanged(true);
}

void BodyField::focusOutEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusOutEvent(event);
    Q_EMIT focusChanged(false);
}

BodyPanel::BodyPanel(BodyField* field, QWidget* parent) : QWidget(parent), field_(field)
{
    auto* column = new QVBoxLayout(this);
    column->addWidget(field);
    inset();
    connect(field, &BodyField::focusChanged, this, [this] { update(); });
}

/// Text begins where that of the other fields does; at its end stands the scroll bar.
void BodyPanel::inset()
{
    constexpr int beforeText = 7;
    constexpr int behindScrollBar = 2;
    const bool isMirrored = isRightToLeft();
    layout()->setContentsMargins(isMirrored ? behindScrollBar : beforeText, 5,
                                 isMirrored ? beforeText : behindScrollBar, 5);
}

void BodyPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        inset();
}

/// As the focus proxy the field would stand in the order of Tab twice.
void BodyPanel::mousePressEvent(QMouseEvent* event)
{
    Q_UNUSED(event)
    field_->setFocus(Qt::MouseFocusReason);
}

void BodyPanel::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QStyleOptionFrame option;
    option.initFrom(this);
    option.lineWidth = 1;
    option.state.setFlag(QStyle::State_HasFocus, field_->hasFocus());
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
}

} // namespace plovik

#include "moc_BodyField.cpp"
