// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/PseudoLanguage.h"

#include <QRegularExpression>

#include <string_view>

using namespace Qt::StringLiterals;

namespace plovik::test {

namespace {

QString withForeignLetters(QString text)
{
    static const QString letters = u"áƀćđéƒĝĥíĵķĺɱńóþɋŕšťúṽŵẋýž"_s;
    for (QChar& each : text) {
        const char16_t unit = each.unicode();
        if (unit >= u'a' && unit <= u'z')
            each = letters[unit - u'a'];
        else if (unit >= u'A' && unit <= u'Z')
            each = letters[unit - u'A'].toUpper();
    }
    return text;
}

/// Replaces the letters, except in placeholders, tags and entities.
QString foreign(const QString& text)
{
    static const QRegularExpression kept(u"%L?[0-9n]|<[^>]*>|&\\w+;"_s);
    QString result;
    qsizetype end = 0;
    for (auto each = kept.globalMatch(text); each.hasNext();) {
        const auto match = each.next();
        result += withForeignLetters(text.mid(end, match.capturedStart() - end)) + match.captured();
        end = match.capturedEnd();
    }
    return result + withForeignLetters(text.mid(end));
}

} // namespace

QString PseudoLanguage::translate(const char* context, const char* source, const char* /*comment*/, int /*n*/) const
{
    if (std::string_view(context).starts_with('Q') && std::string_view(context) != "Questions")
        return {};
    const QString text = QString::fromUtf8(source);
    // Sentences get words more, words get longer.
    const QString piece = text.contains(u' ') ? u"~~~~~~ "_s : u"~~~~~~~"_s;
    return u"⟦"_s + foreign(text) + piece.repeated(text.size() / 14 + 1).left((text.size() + 1) / 2).trimmed() + u"⟧"_s;
}

QStringList wordsLeft(QString text, ToldBy told)
{
    static const QRegularExpression marked(u"⟦[^⟦⟧]*⟧"_s);
    static const QRegularExpression inItsLetters(u"\\w*[^\\x00-\\x7f\\W]\\w*"_s,
                                                 QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpression& translated = told == ToldBy::marks ? marked : inItsLetters;
    while (text.contains(translated))
        text.remove(translated);
    static const QRegularExpression notWords(u"<[^>]*>|&\\w+;|/tmp/\\S+|https?://\\S+|^git .*"_s);
    static const QRegularExpression known(
        u"\\b(zz[\\w.…-]*|[0-9a-f]{7,}|ZZ_\\w+|good|bad|goo|repo|stash|main|HEAD|On|WIP|on|Ctrl|Shift|Alt|Return|Esc|"
        u"Backspace|Plovik|Ada|"
        u"Charles|"
        u"ada|charles|example|org|Sunday|September|Sep|DejaVu|Sans|Mono|Monospace|ED25519|SHA256)\\b"_s);
    text.remove(notWords).remove(notWords).remove(known);
    QStringList words;
    static const QRegularExpression word(u"\\p{L}{2,}"_s);
    for (auto each = word.globalMatch(text); each.hasNext();)
        words.append(each.next().captured());
    return words;
}

} // namespace plovik::test
