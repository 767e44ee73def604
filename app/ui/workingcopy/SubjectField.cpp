// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/SubjectField.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr qsizetype quietLength = 50;
constexpr qsizetype longestLength = 72;
constexpr int lengthMargin = 11;
constexpr int lengthGap = 6;

QString withPlainLineEnds(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    for (const QChar end : {QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(end, u'\n');
    return text;
}

} // namespace

SubjectField::SubjectField(QWidget* parent) : QLineEdit(parent), length_(new QLabel(this))
{
    setAccessibleName(tr("Commit Subject"));
    setPlaceholderText(tr("Subject"));
    setMinimumHeight(32);
    length_->setAccessibleName(tr("Subject Length"));
    length_->setTextFormat(Qt::PlainText);
    length_->setForegroundRole(QPalette::WindowText);
    length_->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(this, &QLineEdit::textChanged, this, &SubjectField::showLength);
    connect(this, &QLineEdit::textEdited, this, &SubjectField::takeOutLines);
    showLength();
}

void SubjectField::replaceText(const QString& text)
{
    selectAll();
    insert(text);
    if (!hasFocus())
        setCursorPosition(0); // shows the beginning
}

void SubjectField::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Paste) && !isReadOnly()) {
        const QString text = withPlainLineEnds(QGuiApplication::clipboard()->text());
        if (text.contains(u'\n')) {
            enterLines(text);
            return;
        }
    }
    QLineEdit::keyPressEvent(event);
}

void SubjectField::enterLines(const QString& lines)
{
    const QString message = lines.trimmed();
    const qsizetype end = message.indexOf(u'\n');
    if (end < 0) {
        // This is one line that was copied with its line end.
        insert(message);
        return;
    }
    const int start = hasSelectedText() ? selectionStart() : cursorPosition();
    const QString behind = text().mid(hasSelectedText() ? selectionEnd() : start);
    setSelection(start, static_cast<int>(text().size()) - start);
    insert(message.left(end).trimmed());
    Q_EMIT moreLinesEntered(message.mid(end + 1) + behind);
}

void SubjectField::takeOutLines(const QString& text)
{
    // The context menu and drops insert text without keyPressEvent().
    const QString lines = withPlainLineEnds(text);
    if (!lines.contains(u'\n'))
        return;
    clear();
    enterLines(lines);
}

void SubjectField::showLength()
{
    const qsizetype length = text().toUcs4().size();
    length_->setText(length >= quietLength ? QLocale().toString(length) : QString());
    const bool isTooLong = length > longestLength;
    followColor(*length_, QPalette::WindowText,
                isTooLong              ? &Theme::statusModified
                : length > quietLength ? &Theme::text
                                       : &Theme::secondaryText);
    followFont(*length_, -1, isTooLong ? QFont::Bold : QFont::Normal);
    const QString tooLong = tr("Longer than 72 characters: many places cut such a subject short.");
    setToolTip(plainToolTip(isTooLong ? tooLong : QString()));
    const QString told = tr("%Ln character(s).", nullptr, static_cast<int>(length));
    setAccessibleDescription(length == 0 ? QString() : isTooLong ? tr("%1 %2").arg(told, tooLong) : told);
    placeLength();
}

void SubjectField::placeLength()
{
    const QSize size = length_->sizeHint();
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    const int left = isRightToLeft ? lengthMargin : width() - lengthMargin - size.width();
    length_->setGeometry(left, (height() - size.height()) / 2, size.width(), size.height());
    const int taken = length_->text().isEmpty() ? 0 : size.width() + lengthGap;
    setTextMargins(isRightToLeft ? taken : 0, 0, isRightToLeft ? 0 : taken, 0);
}

void SubjectField::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    Q_EMIT focusLost();
}

void SubjectField::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    placeLength();
}

} // namespace plovik

#include "moc_SubjectField.cpp"
