// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/MessageText.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTextBlock>

#include <cmath>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

/// Only for our own links: linkPattern() recognises no address with this scheme.
constexpr QLatin1String commitScheme("commit");

/// Matches an address without the punctuation that ends its sentence, or a hash: hexadecimal digits with at least one
/// decimal digit among them, which are not part of an identifier or a mail address.
const QRegularExpression& linkPattern()
{
    static const QRegularExpression pattern(u"(?<address>\\b(?:https?://|mailto:)[^\\s<>\"']*[^\\s<>\"'.,;:!?)\\]])"
                                            u"|(?<![\\w@-])(?<hash>(?=[a-fA-F]*[0-9])[0-9a-fA-F]{7,64})(?![\\w@-])"_s);
    return pattern;
}

QString targetOf(const QRegularExpressionMatch& match)
{
    const QString hash = match.captured(u"hash"_s);
    return hash.isEmpty() ? match.captured() : commitScheme + u':' + hash;
}

void insertWithLinks(QTextCursor& cursor, const QString& text, const QTextCharFormat& format)
{
    QTextCharFormat link = format;
    link.setAnchor(true);
    link.setForeground(Theme::current().accent);
    qsizetype done = 0;
    for (auto matches = linkPattern().globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        cursor.insertText(text.mid(done, match.capturedStart() - done), format);
        link.setAnchorHref(targetOf(match));
        cursor.insertText(match.captured(), link);
        done = match.capturedEnd();
    }
    cursor.insertText(text.mid(done), format);
}

} // namespace

MessageText::MessageText(QWidget* parent) : QTextBrowser(parent)
{
    setAccessibleName(tr("Commit Message"));
    giveFocusRing(*this);
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(0);
    connect(this, &QTextBrowser::anchorClicked, this, &MessageText::follow);
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this] { setFixedHeight(sizeHint().height()); });
}

void MessageText::setMessage(const MessageParts& message)
{
    if (message == message_)
        return;
    message_ = message;
    write();
}

void MessageText::write()
{
    const Theme& theme = Theme::current();
    QTextCharFormat strong;
    strong.setFont(Theme::font(1.5, QFont::DemiBold));
    strong.setForeground(theme.text);
    QTextCharFormat plain;
    plain.setFont(Theme::font());
    plain.setForeground(theme.text);
    QTextCharFormat quiet = plain;
    quiet.setForeground(theme.secondaryText);
    QTextBlockFormat lines;
    lines.setLineHeight(125, QTextBlockFormat::ProportionalHeight);
    QTextBlockFormat apart = lines;
    apart.setTopMargin(8);

    document()->clear();
    QTextCursor cursor(document());
    // One edit block is laid out once.
    cursor.beginEditBlock();
    cursor.setBlockFormat(lines);
    insertWithLinks(cursor, message_.subject, strong);
    if (!message_.body.isEmpty()) {
        cursor.insertBlock(apart, plain);
        const qsizetype firstEnd = message_.body.indexOf(u'\n');
        insertWithLinks(cursor, message_.body.left(firstEnd), plain);
        if (firstEnd >= 0) {
            cursor.insertBlock(lines, plain);
            insertWithLinks(cursor, message_.body.mid(firstEnd + 1), plain);
        }
    }
    if (!message_.note.isEmpty()) {
        cursor.insertBlock(apart, quiet);
        cursor.insertText(message_.note, quiet);
    }
    cursor.endEditBlock();
}

void MessageText::follow(const QUrl& link)
{
    const QString scheme = link.scheme();
    if (scheme == commitScheme)
        Q_EMIT commitRequested(link.path());
    else if (scheme == u"http"_s || scheme == u"https"_s || scheme == u"mailto"_s)
        QDesktopServices::openUrl(link);
}

QSize MessageText::sizeHint() const { return {320, static_cast<int>(std::ceil(document()->size().height()))}; }

// The widget shows all of its text, so keys and wheel turns that scroll are left to the scroll area around it.

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

#include "moc_MessageText.cpp"
