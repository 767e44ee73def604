// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Trust.h"

#include "GitKit/repository/ConfiguredPrograms.h"
#include "app/store/ShownText.h"

#include <QByteArrayView>
#include <QCryptographicHash>
#include <QStringList>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Tells lists of programs apart. No part holds a NUL.
QString fingerprintOf(const Trust::Programs& programs)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const gitkit::ConfiguredProgram& program : programs) {
        for (const std::string* part : {&program.submodule, &program.key, &program.value})
            hash.addData(QByteArrayView(part->c_str(), static_cast<qsizetype>(part->size()) + 1));
    }
    return QString::fromLatin1(hash.result().toHex());
}

std::function<bool(const Trust::Programs&)> trusting(const QString& fingerprint)
{
    return [fingerprint](const Trust::Programs& programs) { return fingerprintOf(programs) == fingerprint; };
}

/// Returns bytes as text without line breaks, so that a value cannot look like several settings.
QString inOneLine(const std::string& bytes)
{
    return shownText(bytes).replace(u'\n', standInFor(u'\n')).replace(u'\t', standInFor(u'\t'));
}

QString lineOf(const gitkit::ConfiguredProgram& program)
{
    const QString setting = inOneLine(program.key) + u" = "_s + inOneLine(program.value);
    return program.submodule.empty()
               ? setting
               : Trust::tr("%1 (in the submodule “%2”)").arg(setting, inOneLine(program.submodule));
}

} // namespace

Trust::Trust(const GitAccess& git, Snapshot& snapshot, TrustMemory memory)
    : git_(git), snapshot_(snapshot), memory_(std::move(memory))
{
    if (memory_.trusted)
        git_.setTrusted(trusting(memory_.trusted(git_.root())));
    snapshot_.follow({.afterStatus = [this] { statusRead(); }});
}

void Trust::statusRead()
{
    const Programs before = keptOff.value();
    keptOff = git_.keptOff();
    if (keptOff.value() != before)
        isAsking = !keptOff.value().empty() && !isKeptOffForGood();
}

bool Trust::isKeptOffForGood() const
{
    return memory_.keptOff && memory_.keptOff(git_.root()) == fingerprintOf(keptOff.value());
}

void Trust::trust(const Programs& shown)
{
    const QString fingerprint = fingerprintOf(shown);
    git_.setTrusted(trusting(fingerprint));
    if (memory_.trust)
        memory_.trust(git_.root(), fingerprint);
    keptOff = Programs();
    isAsking = false;
    snapshot_.refresh(RefreshScope::full);
}

void Trust::keepOff()
{
    isAsking = false;
    if (memory_.keepOff)
        memory_.keepOff(git_.root(), fingerprintOf(keptOff.value()));
}

bool Trust::asksBefore(Verb verb) const
{
    const Programs& programs = keptOff.value();
    if (touches(verb, Touch::index) || touches(verb, Touch::workingTree))
        return !programs.empty();
    return touches(verb, Touch::network) && std::ranges::any_of(programs, gitkit::runsWhenFetching);
}

QString Trust::listOf(const Programs& programs, std::size_t most)
{
    QStringList lines;
    for (std::size_t index = 0; index < std::min(programs.size(), most); ++index)
        lines.append(lineOf(programs[index]));
    if (programs.size() > most)
        lines.append(tr("and %Ln other(s)", nullptr, static_cast<int>(programs.size() - most)));
    return lines.join(u'\n');
}

} // namespace plovik
