// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/SpellingMarks.h"

#include "app/settings/Settings.h"
#include "app/store/MessageFormat.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QMenu>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostSuggestions = 5;
constexpr int mostKnown = 5000;
/// In the settings: the words that the user has added.
constexpr const char* acceptedWords = "acceptedWords";

bool isApostrophe(QChar character) { return character == u'\'' || character == u'\u2019'; }

/// Returns whether a word can be one of a language: letters alone, none of them a capital but the first.
bool isPlain(QStringView word)
{
    return word.size() > 1 && std::ranges::all_of(word, [](QChar c) { return c.isLetter() || isApostrophe(c); }) &&
           std::ranges::none_of(word.mid(1), [](QChar c) { return c.isUpper(); });
}

} // namespace

SpellingMarks::SpellingMarks(QPlainTextEdit& field, std::unique_ptr<SpellChecker> checker)
    : QSyntaxHighlighter(field.document()), field_(field), checker_(std::move(checker))
{
    const QStringList words = Settings::shared().value(QLatin1StringView(acceptedWords)).toStringList();
    accepted_ = QSet<QString>(words.begin(), words.end());
}

QList<SpellingMarks::Word> SpellingMarks::wordsIn(const QString& line)
{
    QList<Word> words;
    if (line.startsWith(u"    "_s) || line.startsWith(u'\t') || line.startsWith(u'#') || messageFormat::isTrailer(line))
        return words;
    bool isCode = false;
    for (qsizetype start = 0; start < line.size();) {
        qsizetype end = start;
        while (end < line.size() && !line[end].isSpace())
            ++end;
        const QStringView token = QStringView(line).mid(start, end - start);
        const bool hasTicks = token.contains(u'`');
        const bool wasCode = isCode;
        if (token.count(u'`') % 2 == 1)
            isCode = !isCode;
        qsizetype first = 0;
        qsizetype last = token.size();
        while (first < last && !token[first].isLetterOrNumber())
            ++first;
        while (last > first && !token[last - 1].isLetterOrNumber())
            --last;
        const QStringView word = token.sliced(first, last - first);
        if (!hasTicks && !wasCode) {
            // A compound is as right as its parts.
            qsizetype at = first;
            for (const QStringView part : word.split(u'-')) {
                if (isPlain(part))
                    words.append({start + at, part.size()});
                at += part.size() + 1;
            }
        }
        start = end + 1;
    }
    return words;
}

bool SpellingMarks::isRight(const QString& word)
{
    if (accepted_.contains(word))
        return true;
    const auto found = known_.constFind(word);
    if (found != known_.constEnd())
        return *found;
    if (known_.size() >= mostKnown)
        known_.clear();
    QString asked = word;
    asked.replace(u'\u2019', u'\'');
    return *known_.insert(word, checker_->isRight(asked));
}

void SpellingMarks::highlightBlock(const QString& text)
{
    QTextCharFormat wrong;
    wrong.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    wrong.setUnderlineColor(Theme::current().destructive);
    const bool isTyping = field_.hasFocus() && field_.textCursor().block() == currentBlock();
    const int cursor = isTyping ? field_.textCursor().positionInBlock() : -1;
    for (const Word& word : wordsIn(text)) {
        // The word that is being typed is not finished.
        if (word.start + word.length == cursor)
            continue;
        if (!isRight(text.sliced(word.start, word.length)))
            setFormat(static_cast<int>(word.start), static_cast<int>(word.length), wrong);
    }
}

void SpellingMarks::addSuggestions(QMenu& menu, int position)
{
    const QTextBlock block = document()->findBlock(position);
    const int column = position - block.position();
    for (const Word& word : wordsIn(block.text())) {
        const QString text = block.text().sliced(word.start, word.length);
        if (column < word.start || column > word.start + word.length || isRight(text))
            continue;
        QAction* const before = menu.actions().value(0);
        const auto add = [&](const QString& title, const auto& act) {
            auto* const action = new QAction(title, &menu);
            connect(action, &QAction::triggered, this, act);
            menu.insertAction(before, action);
            return action;
        };
        const QStringList suggestions = checker_->suggestions(text).mid(0, mostSuggestions);
        for (const QString& suggestion : suggestions) {
            add(plainMenuText(suggestion), [this, suggestion, from = block.position() + static_cast<int>(word.start),
                                            length = static_cast<int>(word.length)] {
                QTextCursor cursor(document());
                cursor.setPosition(from);
                cursor.setPosition(from + length, QTextCursor::KeepAnchor);
                cursor.insertText(suggestion);
            });
        }
        if (suggestions.isEmpty())
            add(tr("No Suggestions"), [] {})->setEnabled(false);
        menu.insertSeparator(before);
        add(tr("Add to Dictionary"), [this, text] { accept(text); });
        menu.insertSeparator(before);
        return;
    }
}

void SpellingMarks::accept(const QString& word)
{
    Settings& settings = Settings::shared();
    QStringList words = settings.value(QLatin1StringView(acceptedWords)).toStringList();
    settings.set(QLatin1StringView(acceptedWords), words << word);
    accepted_.insert(word);
    rehighlight();
}

} // namespace plovik

#include "moc_SpellingMarks.cpp"
