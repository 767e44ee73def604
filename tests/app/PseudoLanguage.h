// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QTranslator>

namespace plovik::test {

/// A language that does not exist: "Fetching…" becomes "⟦Ƒéťćĥíɱĝ…~~~~⟧", marked, with letters of its own, and half again
/// as long. Installed as long as it lives. The toolkit's own texts stay as they are.
class PseudoLanguage : public QTranslator {
public:
    PseudoLanguage() { QCoreApplication::installTranslator(this); }
    ~PseudoLanguage() override { QCoreApplication::removeTranslator(this); }
    PseudoLanguage(const PseudoLanguage&) = delete;
    PseudoLanguage& operator=(const PseudoLanguage&) = delete;

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char* comment, int n) const override;
};

/// How a text tells that it was translated: by the marks around it, or, where it was cut into lines or shortened, by the
/// letters of its words.
enum class ToldBy { marks, letters };

/// Returns the words of `text` that are not in the language. The names that tests give count for nothing: they begin with
/// "zz", or the function knows them.
QStringList wordsLeft(QString text, ToldBy told = ToldBy::marks);

} // namespace plovik::test
