// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeEditor.h"

#include "app/settings/CodeFont.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/diff/syntax/SyntaxFormats.h"
#include "app/ui/merge/MergeColors.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>

namespace plovik {

namespace {

constexpr int markWidth = 4;
constexpr double textMargin = 10;

/// Returns a unit as the document can hold it: it would take some for line ends, and drop others. There are as many
/// units as before.
QChar shownUnit(QChar unit)
{
    switch (unit.unicode()) {
    case u'\r':
        return u'␍';
    case 0:
        return u'␀';
    case QChar::ObjectReplacementCharacter: // has no height there
        return u'◆';
    case u'\f':
        return u'␌';
    case u'\u2028':
    case u'\u2029':
    case u'\ufdd0':
    case u'\ufdd1':
        return u'\ufffd';
    default:
        return unit;
    }
}

QString shownUnits(const QString& text)
{
    QString shown = text;
    for (QChar& unit : shown)
        unit = shownUnit(unit);
    return shown;
}

QString rawText(const QTextDocument& document, int position, int length)
{
    QTextCursor cursor(const_cast<QTextDocument*>(&document));
    cursor.setPosition(position);
    cursor.setPosition(position + length, QTextCursor::KeepAnchor);
    QString text = cursor.selectedText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace

MergeEditor::MergeEditor(QWidget* parent) : QPlainTextEdit(parent)
{
    setAccessibleName(tr("Merge Result"));
    setFrameShape(NoFrame);
    setLineWrapMode(NoWrap);
    setUndoRedoEnabled(false); // the result has its own, with the choices
    document()->setDocumentMargin(textMargin);
    giveFocusRing(*this);
    followFont(*this, &CodeFont::current);
    connect(document(), &QTextDocument::contentsChange, this, &MergeEditor::contentsChanged);
}

void MergeEditor::setResult(MergeResult* result)
{
    const QScopedValueRollback taking(isTaking_, true);
    result_ = result;
    syntax_.reset();
    setPlainText(result ? shownUnits(result->text()) : QString());
    setTabWidth(tabWidth_);
}

void MergeEditor::setTabWidth(int columns)
{
    tabWidth_ = columns;
    setTabStopDistance(QFontMetricsF(CodeFont::current()).horizontalAdvance(u'0') * columns);
}

void MergeEditor::setSyntax(std::shared_ptr<const FileSyntax> syntax)
{
    syntax_ = std::move(syntax);
    viewport()->update();
}

/// Makes a change of the result in the text.
void MergeEditor::take(const MergeResult::Edit& edit)
{
    const QScopedValueRollback taking(isTaking_, true);
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(edit.position));
    cursor.setPosition(static_cast<int>(edit.position + edit.removed), QTextCursor::KeepAnchor);
    cursor.insertText(shownUnits(edit.added));
}

void MergeEditor::choose(std::size_t segment, gitkit::MergeChoice choice)
{
    if (const auto edit = result_->choose(segment, choice))
        take(*edit);
    viewport()->update();
    Q_EMIT resultChanged();
}

bool MergeEditor::replaceAll(const std::vector<MergeResult::Start>& starts)
{
    const auto edit = result_->replaceAll(starts);
    if (!edit)
        return false;
    take(*edit);
    viewport()->update();
    Q_EMIT resultChanged();
    return true;
}

void MergeEditor::contentsChanged(int position, int removed, int added)
{
    if (isTaking_ || !result_)
        return;
    // The document counts the paragraph's end that is always there with changes of all of it.
    const qsizetype most = result_->text().size() - position;
    const int taken = static_cast<int>(std::clamp<qsizetype>(removed, 0, most));
    const int surplus = removed - taken;
    result_->typed({position, taken, rawText(*document(), position, added - surplus)});
    if (!isClearingDue_) {
        // The document must not be changed from within this signal.
        isClearingDue_ = true;
        QMetaObject::invokeMethod(this, &MergeEditor::clearSigns, Qt::QueuedConnection);
    }
}

void MergeEditor::clearSigns()
{
    isClearingDue_ = false;
    while (const auto edit = result_ ? result_->cleared() : std::nullopt)
        take(*edit);
    viewport()->update();
    Q_EMIT resultChanged();
}

void MergeEditor::undo()
{
    if (!canUndo())
        return;
    const MergeResult::Edit edit = result_->undo();
    take(edit);
    reveal(result_->pieceAt(edit.position));
    viewport()->update();
    Q_EMIT resultChanged();
}

void MergeEditor::redo()
{
    if (!canRedo())
        return;
    const MergeResult::Edit edit = result_->redo();
    take(edit);
    reveal(result_->pieceAt(edit.position));
    viewport()->update();
    Q_EMIT resultChanged();
}

bool MergeEditor::event(QEvent* event)
{
    // The keys of a text reach it even though the document has nothing to undo.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->matches(QKeySequence::Undo) && canUndo()) || (key->matches(QKeySequence::Redo) && canRedo())) {
            event->accept();
            return true;
        }
    }
    return QPlainTextEdit::event(event);
}

void MergeEditor::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Undo))
        undo();
    else if (event->matches(QKeySequence::Redo))
        redo();
    else if (event->modifiers() == Qt::AltModifier)
        event->ignore(); // a key of the merge, and no letter
    else
        QPlainTextEdit::keyPressEvent(event);
}

QMimeData* MergeEditor::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    auto* data = new QMimeData;
    if (result_) {
        // As it is in the result, and not as it is drawn.
        QString text = result_->text().mid(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart());
        data->setText(text.remove(MergeResult::sign));
    }
    return data;
}

void MergeEditor::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* const menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAction*> actions = menu->actions();
    // The document's own undo is off.
    for (QAction* action : actions) {
        if (action->objectName() == QLatin1String("edit-undo") || action->objectName() == QLatin1String("edit-redo"))
            menu->removeAction(action);
    }
    QAction* const first = menu->actions().isEmpty() ? nullptr : menu->actions().constFirst();
    auto* const undoing = new QAction(tr("Undo"), menu);
    auto* const redoing = new QAction(tr("Redo"), menu);
    undoing->setEnabled(canUndo());
    redoing->setEnabled(canRedo());
    connect(undoing, &QAction::triggered, this, &MergeEditor::undo);
    connect(redoing, &QAction::triggered, this, &MergeEditor::redo);
    menu->insertActions(first, {undoing, redoing});
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(isByKey ? viewport()->mapToGlobal(cursorRect().bottomLeft()) : event->globalPos());
}

QTextBlock MergeEditor::blockAt(qsizetype position) const
{
    return document()->findBlock(static_cast<int>(std::min<qsizetype>(position, result_->text().size())));
}

void MergeEditor::reveal(std::size_t segment)
{
    if (!result_ || segment >= result_->pieces().size())
        return;
    const qsizetype begin = result_->begin(segment);
    const int first = blockAt(begin).blockNumber();
    const int last = blockAt(begin + std::max<qsizetype>(0, result_->pieces()[segment].length - 1)).blockNumber();
    const int top = firstVisibleBlock().blockNumber();
    const int rows = std::max(1, viewport()->height() / std::max(1, fontMetrics().height()));
    if (first < top || last >= top + rows)
        verticalScrollBar()->setValue(std::max(0, first - std::min(2, rows / 4)));
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(begin));
    const int kept = verticalScrollBar()->value();
    setTextCursor(cursor);
    if (first >= kept && last < kept + rows)
        verticalScrollBar()->setValue(kept);
}

MergePlace MergeEditor::place() const
{
    if (!result_ || result_->pieces().empty())
        return {};
    const QTextBlock block = firstVisibleBlock();
    const std::size_t segment = result_->pieceAt(block.position());
    const qsizetype begin = result_->begin(segment);
    const int first = blockAt(begin).blockNumber();
    const int count = std::max(1, blockAt(begin + result_->pieces()[segment].length).blockNumber() - first);
    return {segment, std::clamp(static_cast<double>(block.blockNumber() - first) / count, 0.0, 1.0)};
}

void MergeEditor::setPlace(const MergePlace& place)
{
    if (!result_ || place.segment >= result_->pieces().size())
        return;
    const qsizetype begin = result_->begin(place.segment);
    const int first = blockAt(begin).blockNumber();
    const int count = blockAt(begin + result_->pieces()[place.segment].length).blockNumber() - first;
    verticalScrollBar()->setValue(first + static_cast<int>(place.share * count));
}

/// Gives the lines in sight the colours of their code. A line that was edited since stays plain until they are known.
void MergeEditor::colourVisible()
{
    const bool wraps = !syntax_;
    for (QTextBlock block = firstVisibleBlock(); block.isValid() && !wraps; block = block.next()) {
        if (blockBoundingGeometry(block).translated(contentOffset()).top() > viewport()->height())
            break;
        const QString text = block.text();
        ShownLine line;
        line.source = text;
        line.shown = text;
        QList<QTextLayout::FormatRange> formats;
        const QByteArray bytes = text.toUtf8();
        const auto runs = syntax_->line(block.blockNumber() + 1,
                                        std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        appendSyntaxFormats(formats, runs, line, 0, text.size());
        if (block.layout()->formats() != formats)
            block.layout()->setFormats(formats);
    }
}

void MergeEditor::paintEvent(QPaintEvent* event)
{
    if (!result_) {
        QPlainTextEdit::paintEvent(event);
        return;
    }
    colourVisible();
    QPainter painter(viewport());
    const auto rows = [this](auto&& each) {
        QTextBlock block = firstVisibleBlock();
        if (!block.isValid() || result_->pieces().empty())
            return;
        std::size_t segment = result_->pieceAt(block.position());
        qsizetype end = result_->begin(segment) + result_->pieces()[segment].length;
        for (; block.isValid(); block = block.next()) {
            const QRectF area = blockBoundingGeometry(block).translated(contentOffset());
            if (area.top() > viewport()->height())
                return;
            while (block.position() >= end && segment + 1 < result_->pieces().size())
                end += result_->pieces()[++segment].length;
            each(segment, QRectF(0, area.top(), viewport()->width(), area.height()));
        }
    };
    rows([&](std::size_t segment, const QRectF& area) {
        const QColor color = mergeColors::ofPiece(*result_, segment);
        if (!color.isValid())
            return;
        painter.fillRect(area, mergeColors::tinted(color));
        painter.fillRect(QRectF(0, area.top(), markWidth, area.height()), color);
    });
    painter.end();
    QPlainTextEdit::paintEvent(event);
    QPainter over(viewport());
    int number = 0;
    std::size_t counted = 0;
    rows([&](std::size_t segment, const QRectF& area) {
        if (!result_->isUndecided(segment))
            return;
        for (; counted <= segment; ++counted)
            number += result_->sides().segments[counted].kind == gitkit::MergeSegment::Kind::conflict ? 1 : 0;
        over.fillRect(area, mergeColors::tintConflict());
        over.fillRect(QRectF(0, area.top(), markWidth, area.height()), mergeColors::strongConflict());
        paintText(over, area.toRect().adjusted(markWidth + 6, 0, 0, 0),
                  tr("Conflict %1 is not decided: take a side, or write here").arg(QLocale().toString(number)),
                  Theme::font(-1), Theme::current().text);
    });
}

void MergeEditor::scrollContentsBy(int dx, int dy)
{
    QPlainTextEdit::scrollContentsBy(dx, dy);
    viewport()->update();
    Q_EMIT scrolled();
}

} // namespace plovik

#include "moc_MergeEditor.cpp"
