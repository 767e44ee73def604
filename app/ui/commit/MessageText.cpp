// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/MessageText.h"

#include "app/store/MessageFormat.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/Initials.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <string>

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

/// A part of a text that leads somewhere.
struct FoundLink {
    qsizetype begin = 0;
    qsizetype end = 0;
    QString target;
};

using Links = std::vector<MessageLink>;

/// Returns the links of a text in their order. Where two overlap, addresses and hashes go before the user's own, and these in
/// their order.
std::vector<FoundLink> linksIn(const QString& text, const Links& more)
{
    std::vector<FoundLink> found;
    const auto add = [&](const QRegularExpressionMatch& match, const QString& target) {
        const FoundLink link{match.capturedStart(), match.capturedEnd(), target};
        const auto overlaps = [&link](const FoundLink& other) {
            return link.begin < other.end && other.begin < link.end;
        };
        if (!target.isEmpty() && link.begin < link.end && std::ranges::none_of(found, overlaps))
            found.push_back(link);
    };
    for (auto matches = linkPattern().globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        add(match, targetOf(match));
    }
    for (const MessageLink& kind : more) {
        for (auto matches = kind.pattern.globalMatch(text); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            add(match, kind.addressOf(match));
        }
    }
    std::ranges::sort(found, {}, &FoundLink::begin);
    return found;
}

void insertWithLinks(QTextCursor& cursor, const QString& text, const QTextCharFormat& format, const Links& more)
{
    QTextCharFormat link = format;
    link.setAnchor(true);
    link.setForeground(Theme::current().accent);
    qsizetype done = 0;
    for (const FoundLink& found : linksIn(text, more)) {
        cursor.insertText(text.mid(done, found.begin - done), format);
        link.setAnchorHref(found.target);
        // What is read is not where it leads.
        const QString read = text.mid(found.begin, found.end - found.begin);
        const bool isPlain = found.target == read || found.target.startsWith(commitScheme + u':');
        link.setToolTip(isPlain ? QString() : plainToolTip(found.target));
        cursor.insertText(read, link);
        done = found.end;
    }
    cursor.insertText(text.mid(done), format);
}

constexpr int paragraphGap = 8;
constexpr int trailersGap = 17; ///< with a line in its middle
constexpr int initialsSize = 16;
constexpr int initialsRoom = 22;

QTextBlockFormat textLines()
{
    QTextBlockFormat lines;
    lines.setLineHeight(125, QTextBlockFormat::ProportionalHeight);
    if (QGuiApplication::isRightToLeft())
        lines.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
    return lines;
}

/// Code is read from left to right everywhere.
QTextBlockFormat codeLines()
{
    QTextBlockFormat lines = textLines();
    lines.setLayoutDirection(Qt::LeftToRight);
    lines.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    return lines;
}

QTextBlockFormat apartBy(int gap)
{
    QTextBlockFormat lines = textLines();
    lines.setTopMargin(gap);
    return lines;
}

QTextCharFormat plainText()
{
    QTextCharFormat plain;
    plain.setFont(Theme::font());
    plain.setForeground(Theme::current().text);
    return plain;
}

/// Returns whether a line stands where a writer puts code, output or a table.
bool isCode(QStringView line)
{
    return line.startsWith(u"    "_s) || line.startsWith(u'\t') || line.startsWith(u'|') || line.startsWith(u"$ "_s);
}

bool isCoAuthor(const QString& line) { return line.startsWith(u"co-authored-by:"_s, Qt::CaseInsensitive); }
bool hasCoAuthor(const QStringList& lines) { return std::ranges::any_of(lines, isCoAuthor); }

struct Person {
    QString name;
    std::string mail;
};

/// Returns who stands in a trailer like "Co-authored-by: Ada <ada@example.org>".
Person personOf(const QString& line)
{
    const QString who = line.mid(line.indexOf(u':') + 1).trimmed();
    const qsizetype mail = who.indexOf(u'<');
    if (mail < 0)
        return {who, {}};
    return {who.left(mail).trimmed(), who.mid(mail + 1).section(u'>', 0, 0).toStdString()};
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

void MessageText::setLinks(const std::vector<MessageLink>& links)
{
    if (links == links_)
        return;
    links_ = links;
    write();
}

void MessageText::write()
{
    const Theme& theme = Theme::current();
    QTextCharFormat strong;
    strong.setFont(Theme::font(1.5, QFont::DemiBold));
    strong.setForeground(theme.text);
    firstTrailer_ = -1;
    document()->clear();
    QTextCursor cursor(document());
    // One edit block is laid out once.
    cursor.beginEditBlock();
    cursor.setBlockFormat(textLines());
    insertWithLinks(cursor, message_.subject, strong, links_);
    if (!message_.body.isEmpty())
        writeBody(cursor);
    if (!message_.trailers.isEmpty())
        writeTrailers(cursor);
    if (!message_.note.isEmpty()) {
        QTextCharFormat quiet = plainText();
        quiet.setForeground(theme.secondaryText);
        cursor.insertBlock(apartBy(paragraphGap), quiet);
        cursor.insertText(message_.note, quiet);
    }
    applyGap();
    cursor.endEditBlock();
}

void MessageText::writeBody(QTextCursor& cursor)
{
    const QTextCharFormat plain = plainText();
    QTextCharFormat code = plain;
    code.setFont(Theme::fixedFont(-0.75));
    bool isFirst = true;
    bool isFenced = false;
    for (const QStringView line : QStringView(message_.body).split(u'\n')) {
        const bool isFence = line.startsWith(u"```"_s);
        isFenced ^= isFence;
        const bool isInCode = isFenced || isFence || isCode(line);
        QTextBlockFormat block = isInCode ? codeLines() : textLines();
        block.setTopMargin(isFirst ? paragraphGap : 0);
        cursor.insertBlock(block, isInCode ? code : plain);
        insertWithLinks(cursor, line.toString(), isInCode ? code : plain, links_);
        isFirst = false;
    }
}

void MessageText::writeTrailers(QTextCursor& cursor)
{
    QTextCharFormat value = plainText();
    value.setFont(Theme::font(-1));
    QTextCharFormat key = value;
    key.setForeground(Theme::current().secondaryText);
    for (const QString& line : message_.trailers) {
        const bool isFirst = firstTrailer_ < 0;
        QTextBlockFormat block = isFirst ? apartBy(trailersGap) : textLines();
        if (hasCoAuthor(message_.trailers))
            isRightToLeft() ? block.setRightMargin(initialsRoom) : block.setLeftMargin(initialsRoom);
        cursor.insertBlock(block, key);
        if (isFirst)
            firstTrailer_ = cursor.blockNumber();
        const qsizetype end = messageFormat::isTrailer(line) ? line.indexOf(u':') + 1 : 0;
        cursor.insertText(line.left(end), key);
        insertWithLinks(cursor, line.mid(end), value, links_);
    }
}

void MessageText::setGap(int height)
{
    if (height == gap_)
        return;
    gap_ = height;
    applyGap();
    setFixedHeight(sizeHint().height());
}

/// The gap is a margin of the block below the subject. Without such a block sizeHint() leaves the room for it.
void MessageText::applyGap()
{
    const QTextBlock below = document()->begin().next();
    if (!below.isValid())
        return;
    QTextCursor cursor(below);
    QTextBlockFormat format;
    format.setTopMargin(gap_ + (below.blockNumber() == firstTrailer_ ? trailersGap : paragraphGap));
    cursor.mergeBlockFormat(format);
}

int MessageText::gapTop() const
{
    return static_cast<int>(std::ceil(document()->documentLayout()->blockBoundingRect(document()->begin()).bottom()));
}

QRect MessageText::lineAt(int y) const
{
    const QRect line = cursorRect(cursorForPosition({0, y}));
    return line.top() < y && y <= line.bottom() ? line : QRect();
}

void MessageText::follow(const QUrl& link)
{
    const QString scheme = link.scheme();
    if (scheme == commitScheme)
        Q_EMIT commitRequested(link.path());
    else if (scheme == u"http"_s || scheme == u"https"_s || scheme == u"mailto"_s)
        QDesktopServices::openUrl(link);
}

QSize MessageText::sizeHint() const
{
    const int room = (document()->blockCount() > 1 ? 0 : gap_) + 2 * frameWidth();
    return {320, static_cast<int>(std::ceil(document()->size().height())) + room};
}

void MessageText::paintEvent(QPaintEvent* event)
{
    QTextBrowser::paintEvent(event);
    if (firstTrailer_ < 0)
        return;
    const auto* const layout = document()->documentLayout();
    QPainter painter(viewport());
    QTextBlock block = document()->findBlockByNumber(firstTrailer_);
    const int top = static_cast<int>(layout->blockBoundingRect(block).top());
    painter.fillRect(QRect(0, top - trailersGap / 2, viewport()->width(), 1), Theme::current().separator);
    for (const QString& line : message_.trailers) {
        const QRectF area = layout->blockBoundingRect(block);
        if (area.top() > event->rect().bottom())
            break;
        if (isCoAuthor(line)) {
            const double height = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0).height() : area.height();
            const Person person = personOf(line);
            const double left = isRightToLeft() ? viewport()->width() - initialsSize : 0;
            paintInitials(painter, QRectF(left, area.top() + (height - initialsSize) / 2, initialsSize, initialsSize),
                          initialsOf(person.name), person.mail);
        }
        block = block.next();
    }
}

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
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::LayoutDirectionChange)
        write();
}

} // namespace plovik

#include "moc_MessageText.cpp"
