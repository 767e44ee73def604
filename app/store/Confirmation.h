// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUuid>

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace plovik {

/// A button besides the others: what it says and what it does. Main thread.
struct Way {
    QString title;
    std::function<void()> action;
};

/// A question that the window asks before it acts, mostly because work could be lost. Questions are equal when their
/// ids are, whatever their words.
struct Confirmation {
    QUuid id = QUuid::createUuid();
    QString title;
    QString message;
    QString detail = {};           ///< what exactly would go; a line of its own, possibly empty
    QString actionTitle;           ///< label of the confirming button
    std::function<void()> action;  ///< runs on the main thread when the user confirms
    std::vector<Way> choices = {}; ///< further buttons, between "Cancel" and the confirming one
    /// A box to tick, which is told of before the chosen button acts.
    struct Option {
        QString title;
        std::function<void(bool isTicked)> chosen;
    };
    std::optional<Option> option = {};
    /// A file or folder that the confirming button asks for.
    struct Place {
        bool isFolder = false;
        QString name = {}; ///< suggested for a file
        std::function<void(const std::filesystem::path&)> chosen = {};
    };
    std::optional<Place> place = {}; ///< used instead of `action`
    enum class Risk { losesWork, none };
    Risk risk = Risk::losesWork; ///< decides how the button looks and what Return does
    /// The name of this kind of question, for one that undo makes up for. The user may answer it for good, and then its
    /// action runs without it. Empty where the question is always asked.
    QString kind = {};

    bool operator==(const Confirmation& other) const { return id == other.id; }
};

} // namespace plovik
