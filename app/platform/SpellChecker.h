// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

#include <memory>

namespace plovik {

/// Knows the words of a language, from the dictionaries that the system has for hunspell. One thread at a time.
class SpellChecker {
public:
    SpellChecker() = default;
    virtual ~SpellChecker() = default;
    SpellChecker(const SpellChecker&) = delete;
    SpellChecker& operator=(const SpellChecker&) = delete;

    virtual bool isRight(const QString& word) const = 0;
    /// Returns words like `word`, the likeliest first.
    virtual QStringList suggestions(const QString& word) const = 0;
};

/// Returns a checker for the locale's language, English where there is no dictionary for that, and null where the system
/// has neither hunspell nor a dictionary. Reads files: tenths of a second. Any thread.
std::unique_ptr<SpellChecker> makeSpellChecker(const QLocale& locale);

} // namespace plovik
