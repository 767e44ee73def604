// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/TerminalText.h"

#include <QCoreApplication>
#include <QStringView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr qsizetype mostLines = 2000;
constexpr qsizetype mostColumns = 4000;

bool isBetween(QChar character, char16_t first, char16_t last) { return character >= first && character <= last; }

/// Returns the place after the code that begins with ESC at `begin`.
qsizetype endOfCode(QStringView text, qsizetype begin)
{
    qsizetype place = begin + 1;
    if (place == text.size())
        return place;
    const QChar kind = text[place++];
    if (kind == u'[') {
        while (place < text.size() && isBetween(text[place], u'0', u'?'))
            ++place;
        while (place < text.size() && isBetween(text[place], u' ', u'/'))
            ++place;
        return place < text.size() && isBetween(text[place], u'@', u'~') ? place + 1 : place;
    }
    if (kind == u']') {
        // A title ends with its line at the latest, so that an unfinished one hides no later line.
        while (place < text.size() && text[place] != u'\x07' && text[place] != u'\x1b' && text[place] != u'\n')
            ++place;
        if (place < text.size() && text[place] == u'\x07')
            return place + 1;
        return place + 1 < text.size() && text[place + 1] == u'\\' ? place + 2 : place;
    }
    return isBetween(kind, u'@', u'_') ? place : begin + 1;
}

QString terminalText(QStringView text)
{
    QString shown;
    shown.reserve(text.size());
    qsizetype lineBegin = 0;
    bool hasReturned = false;
    for (qsizetype place = 0; place < text.size();) {
        const QChar character = text[place];
        if (character == u'\x1b') {
            place = endOfCode(text, place);
            continue;
        }
        ++place;
        if (character == u'\r') {
            hasReturned = true;
            continue;
        }
        if (character == u'\n') {
            shown += character;
            lineBegin = shown.size();
            hasReturned = false;
            continue;
        }
        if ((character < u' ' && character != u'\t') || character == u'\x7f')
            continue;
        // A progress meter overwrites its own line, so only its last state is kept.
        if (hasReturned)
            shown.truncate(lineBegin);
        hasReturned = false;
        shown += character;
    }
    return shown;
}

/// Returns the place after the first `count` lines.
qsizetype skipLines(QStringView text, qsizetype count)
{
    qsizetype place = 0;
    for (; count > 0; --count) {
        const qsizetype end = text.indexOf(u'\n', place);
        if (end < 0)
            return text.size();
        place = end + 1;
    }
    return place;
}

void appendBoundedLines(QString& bounded, QStringView lines)
{
    for (const QStringView line : lines.split(u'\n')) {
        bounded += line.first(std::min(line.size(), mostColumns));
        if (line.size() > mostColumns)
            bounded += u' ' + QCoreApplication::translate("TerminalText", "… (%Ln characters more)", nullptr,
                                                          static_cast<int>(line.size() - mostColumns));
        bounded += u'\n';
    }
    bounded.chop(1);
}

} // namespace

QString withoutTerminalCodes(const QString& text) { return terminalText(text).trimmed(); }

QString printedText(QString text)
{
    text.replace(u'\0', u'\n');
    return terminalText(text);
}

QString boundedText(const QString& text)
{
    const qsizetype lines = text.count(u'\n') + 1;
    QString bounded;
    if (lines <= mostLines) {
        appendBoundedLines(bounded, text);
        return bounded;
    }
    const QStringView all(text);
    const qsizetype head = skipLines(all, mostLines / 2);
    const qsizetype left = lines - mostLines / 2 * 2;
    const qsizetype tail = head + skipLines(all.sliced(head), left);
    appendBoundedLines(bounded, all.first(head - 1));
    bounded += u"\n\n%1\n\n"_s.arg(QCoreApplication::translate("TerminalText", "… %Ln lines are left out here …",
                                                               nullptr, static_cast<int>(left)));
    appendBoundedLines(bounded, all.sliced(tail));
    return bounded;
}

} // namespace plovik
