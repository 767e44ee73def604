// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SpellChecker.h"

#include <QHash>
#include <QSet>
#include <QSyntaxHighlighter>

#include <memory>

class QMenu;
class QPlainTextEdit;

namespace plovik {

/// Underlines the words of a text that no dictionary has. Names of the code are left alone: words with digits, capitals
/// in the middle or punctuation, and what stands between backticks, in indented lines and in trailers. Main thread.
class SpellingMarks : public QSyntaxHighlighter {
    Q_OBJECT

public:
    /// `field` outlives the marks, which belong to its document.
    SpellingMarks(QPlainTextEdit& field, std::unique_ptr<SpellChecker> checker);

    /// Puts suggestions for the word at `position` at the top of a menu; nothing when the word is right.
    void addSuggestions(QMenu& menu, int position);

protected:
    void highlightBlock(const QString& text) override;

private:
    struct Word {
        qsizetype start = 0, length = 0;
    };
    static QList<Word> wordsIn(const QString& line);
    bool isRight(const QString& word);
    void accept(const QString& word);

    QPlainTextEdit& field_;
    std::unique_ptr<SpellChecker> checker_;
    QSet<QString> accepted_;     ///< the words that the user has added
    QHash<QString, bool> known_; ///< what the checker has said; typing asks for the same words again and again
};

} // namespace plovik
