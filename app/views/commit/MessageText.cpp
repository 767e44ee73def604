#include "app/views/commit/MessageText.h"

#include "app/views/Theme.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTextBlock>

#include <cmath>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

/// Laying out more text than anybody reads would hold up the window.
constexpr qsizetype longestBody = 100'000;

void insertWithLinks(QTextCursor& cursor, const QString& text, const QTextCharFormat& format)
{
    static const QRegularExpression address(u"https?://[^\\s<>\"']*[^\\s<>\"'.,;:!?)\\]]"_s);
    QTextCharFormat link = format;
    link.setAnchor(true);
    link.setForeground(Theme::current().accent);
    qsizetype done = 0;
    for (auto matches = address.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        cursor.insertText(text.mid(done, match.capturedStart() - done), format);
        link.setAnchorHref(match.captured());
        cursor.insertText(match.captured(), link);
        done = match.capturedEnd();
    }
    cursor.insertText(text.mid(done), format);
}

} // namespace

MessageText::MessageText(QWidget* parent) : QTextBrowser(parent)
{
    setAccessibleName(u"Commit Message"_s);
    setFrameShape(QFrame::NoFrame);
    setOpenExternalLinks(true);
    setUndoRedoEnabled(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(0);
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this] { setFixedHeight(sizeHint().height()); });
}

void MessageText::setMessage(const QString& subject, const QString& body)
{
    if (subject == subject_ && body == body_)
        return;
    subject_ = subject;
    body_ = body;
    write();
}

void MessageText::write()
{
    QTextCharFormat strong;
    strong.setFont(Theme::font(1.5, QFont::DemiBold));
    strong.setForeground(Theme::current().text);
    QTextCharFormat plain;
    plain.setFont(Theme::font());
    plain.setForeground(Theme::current().text);
    QTextBlockFormat lines;
    lines.setLineHeight(125, QTextBlockFormat::ProportionalHeight);

    document()->clear();
    QTextCursor cursor(document());
    cursor.setBlockFormat(lines);
    insertWithLinks(cursor, subject_, strong);
    if (body_.isEmpty())
        return;
    QTextBlockFormat first = lines;
    first.setTopMargin(8);
    cursor.insertBlock(first, plain);
    const qsizetype firstEnd = body_.indexOf(u'\n');
    insertWithLinks(cursor, body_.left(std::min(firstEnd < 0 ? body_.size() : firstEnd, longestBody)), plain);
    if (firstEnd >= 0) {
        cursor.insertBlock(lines, plain);
        insertWithLinks(cursor, body_.mid(firstEnd + 1, longestBody), plain);
    }
    if (body_.size() > longestBody) {
        cursor.insertBlock(first, plain);
        cursor.insertText(u"Only the beginning of this message is shown: it is %1 characters long."_s.arg(body_.size()),
                          plain);
    }
}

QSize MessageText::sizeHint() const { return {320, static_cast<int>(std::ceil(document()->size().height()))}; }

// All of the text is visible, so what would scroll it scrolls what it stands in.

void MessageText::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        event->ignore();
        return;
    default:
        QTextBrowser::keyPressEvent(event);
    }
}

void MessageText::wheelEvent(QWheelEvent* event) { event->ignore(); }

void MessageText::changeEvent(QEvent* event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        write();
}

} // namespace plovik
