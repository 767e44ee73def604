// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Mnemonics.h"

#include <QAction>
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

/// Marks one of the first `count` candidates that is not taken. Returns whether there is one.
bool mark(QAction& entry, QSet<QChar>& taken, std::size_t count)
{
    QString text = entry.text();
    const std::vector<qsizetype> places = candidates(text);
    for (std::size_t index = 0; index < std::min(count, places.size()); ++index) {
        const QChar letter = text[places[index]].toUpper();
        if (taken.contains(letter))
            continue;
        taken.insert(letter);
        entry.setText(text.insert(places[index], u'&'));
        return true;
    }
    return false;
}

} // namespace

void assignMnemonics(const QList<QAction*>& entries)
{
    QSet<QChar> taken;
    std::vector<QAction*> without;
    for (QAction* const entry : entries) {
        if (entry->isSeparator() || entry->text().isEmpty())
            continue;
        const qsizetype at = markIn(entry->text());
        const QChar letter = at < 0 ? QChar() : entry->text()[at + 1].toUpper();
        if (at >= 0 && !taken.contains(letter)) {
            taken.insert(letter);
            continue;
        }
        if (at >= 0)
            entry->setText(entry->text().remove(at, 1));
        without.push_back(entry);
    }
    // Those whose first letter is free come first, so that they do not lose it to another one's second choice.
    std::erase_if(without, [&taken](QAction* entry) { return mark(*entry, taken, 1); });
    for (QAction* const entry : without)
        mark(*entry, taken, static_cast<std::size_t>(entry->text().size()));
}

QString withoutMnemonic(const QString& text)
{
    QString read = text.section(u'\t', 0, 0);
    if (const qsizetype at = markIn(read); at >= 0)
        read.remove(at, 1);
    return read;
}

} // namespace plovik
