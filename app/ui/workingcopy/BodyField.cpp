// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/BodyField.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QStyleOptionFrame>
#include <QTextBlock>
#include <QTextLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int guideColumn = 72;
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
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this] { updateGeometry(); });
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
    painter.setPen(Theme::current().controlBorder);
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
    column->setContentsMargins(7, 5, 2, 5);
    column->addWidget(field);
    connect(field, &BodyField::focusChanged, this, [this] { update(); });
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
