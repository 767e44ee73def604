// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/MessageParts.h"

#include "app/store/MessageFormat.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/ShownLine.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(MessageParts)
};

std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r\v\f") == std::string_view::npos; }

/// Returns at least the first `most` units of a line. Tabs are kept, so that they are copied as they were written.
QString beginningOf(std::string_view line, qsizetype most)
{
    // No character has more than four bytes, so a character that substr() cuts lies beyond those that are kept.
    line = line.substr(0, static_cast<std::size_t>(most + 1) * 4);
    QString shown;
    for (bool isFirst = true; isFirst || !line.empty(); isFirst = false) {
        const std::size_t tab = std::min(line.find('\t'), line.size());
        shown += ShownLine::of(line.substr(0, tab)).shown;
        if (tab < line.size())
            shown += u'\t';
        line.remove_prefix(std::min(tab + 1, line.size()));
    }
    return shown;
}

/// Appends as much of a line as fits into `longest` units; returns false when a part was left out.
bool append(QString& text, std::string_view line, qsizetype longest)
{
    const qsizetype room = longest - text.size();
    const QString more = beginningOf(line, std::max<qsizetype>(room, 0));
    if (more.size() <= room) {
        text += more;
        return true;
    }
    if (room > 0) {
        text += QStringView(more).first(room - (more[room - 1].isHighSurrogate() ? 1 : 0));
        text += u'…';
    }
    return false;
}

QString noteOnSize(std::string_view message)
{
    const auto lines = static_cast<int>(std::ranges::count(message, '\n') + 1);
    if (lines > MessageParts::mostLines)
        return Text::tr("Only the beginning of this message is shown: it is %Ln line(s) long.", nullptr, lines);
    const auto characters = static_cast<int>(exactText(message).size());
    return Text::tr("Only the beginning of this message is shown: it is %Ln character(s) long.", nullptr, characters);
}

} // namespace

MessageParts MessageParts::of(std::string_view message)
{
    MessageParts parts;
    std::string_view rest = message;
    bool isWhole = true;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        if (isBlank(line)) {
            if (parts.subject.isEmpty())
                continue;
            break;
        }
        if (!isWhole)
            continue;
        if (!parts.subject.isEmpty())
            parts.subject += u' ';
        isWhole = append(parts.subject, line, longestSubject);
    }
    int lines = 0;
    int blanks = 0;
    bool isBodyWhole = true;
    while (isBodyWhole && !rest.empty()) {
        const std::string_view line = takeLine(rest);
        if (isBlank(line)) {
            // Blank lines at the beginning and the end of the body are left out.
            blanks += lines > 0 ? 1 : 0;
            continue;
        }
        if (lines > 0)
            parts.body += QString(blanks + 1, u'\n');
        lines += blanks + 1;
        blanks = 0;
        isBodyWhole = append(parts.body, line, longestBody) && (lines < mostLines || isBlank(rest));
    }
    if (!isWhole || !isBodyWhole)
        parts.note = noteOnSize(message);
    messageFormat::BodyAndTrailers apart = messageFormat::withTrailersApart(parts.body);
    parts.body = messageFormat::flowed(apart.body);
    parts.trailers = std::move(apart.trailers);
    return parts;
}

} // namespace plovik
