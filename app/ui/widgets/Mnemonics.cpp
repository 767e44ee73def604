// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Mnemonics.h"

#include <QAction>
#include <QHash>
#include <QSet>

#include <vector>

namespace plovik {

namespace {

/// Returns the position of the mark in a text, or -1. Two marks stand for the sign itself.
qsizetype markIn(const QString& text)
{
    for (qsizetype at = text.indexOf(u'&'); at >= 0 && at + 1 < text.size(); at = text.indexOf(u'&', at + 2)) {
        if (text[at + 1] != u'&')
            return at;
    }
    return -1;
}

/// Returns the positions of the letters that may be marked, in the order in which they are preferred.
std::vector<qsizetype> candidates(const QString& text)
{
    const qsizetype end = text.indexOf(u'\t') < 0 ? text.size() : text.indexOf(u'\t');
    std::vector<qsizetype> initials;
    std::vector<qsizetype> others;
    for (qsizetype at = 0; at < end; ++at) {
        if (!text[at].isLetterOrNumber())
            continue;
        const bool isInitial = at == 0 || !text[at - 1].isLetterOrNumber();
        (isInitial ? initials : others).push_back(at);
    }
    initials.insert(initials.end(), others.begin(), others.end());
    return initials;
}

/// The letters that are taken, with the entries that may take another one; null for one that keeps its letter.
using Owners = QHash<QChar, QAction*>;

/// Gives an entry a letter, if need be one whose owner can do with another. Returns whether there is one.
bool give(QAction* entry, Owners& owners, QSet<QChar>& tried)
{
    const QString text = entry->text();
    const std::vector<qsizetype> places = candidates(text);
    for (const qsizetype place : places) {
        if (const QChar letter = text[place].toUpper(); !owners.contains(letter)) {
            owners.insert(letter, entry);
            return true;
        }
    }
    for (const qsizetype place : places) {
        const QChar letter = text[place].toUpper();
        if (tried.contains(letter))
            continue;
        tried.insert(letter);
        if (QAction* const owner = owners.value(letter); owner && give(owner, owners, tried)) {
            owners.insert(letter, entry);
            return true;
        }
    }
    return false;
}

void mark(QAction& entry, QChar letter)
{
    QString text = entry.text();
    const std::vector<qsizetype> places = candidates(text);
    const auto place = std::ranges::find(places, letter, [&](qsizetype at) { return text[at].toUpper(); });
    entry.setText(text.insert(*place, u'&'));
}

} // namespace

void assignMnemonics(const QList<QAction*>& entries)
{
    Owners owners;
    std::vector<QAction*> without;
    for (QAction* const entry : entries) {
        if (entry->isSeparator() || entry->text().isEmpty())
            continue;
        const qsizetype at = markIn(entry->text());
        const QChar letter = at < 0 ? QChar() : entry->text()[at + 1].toUpper();
        if (at >= 0 && !owners.contains(letter)) {
            owners.insert(letter, nullptr);
            continue;
        }
        if (at >= 0)
            entry->setText(entry->text().remove(at, 1));
        without.push_back(entry);
    }
    // Those whose first letter is free come first, so that they do not lose it to another one's second choice.
    std::erase_if(without, [&owners](QAction* entry) {
        const std::vector<qsizetype> places = candidates(entry->text());
        const QChar first = places.empty() ? QChar() : entry->text()[places.front()].toUpper();
        if (places.empty() || owners.contains(first))
            return places.empty();
        owners.insert(first, entry);
        return true;
    });
    for (QAction* const entry : without) {
        QSet<QChar> tried;
        give(entry, owners, tried);
    }
    for (const auto& [letter, entry] : owners.asKeyValueRange()) {
        if (entry)
            mark(*entry, letter);
    }
}

QString withoutMnemonic(const QString& text)
{
    QString read = text.section(u'\t', 0, 0);
    if (const qsizetype at = markIn(read); at >= 0)
        read.remove(at, 1);
    return read;
}

} // namespace plovik
