// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/WebLink.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <vector>

namespace plovik {

/// What messages write as a reference, and where it leads.
struct MessageLink {
    QRegularExpression pattern;
    QString address; ///< "$0" stands for the whole reference, "$1" to "$9" for its groups

    /// Returns the address of one reference; empty when it is none of the web's.
    QString addressOf(const QRegularExpressionMatch& match) const;

    bool operator==(const MessageLink&) const = default;
};

/// The user's own servers and references, as the settings keep them: one a line, two words each. Main thread.
namespace webSettings {

struct Hosts {
    gitkit::WebHosts hosts;
    QStringList misread; ///< lines that say nothing
};
Hosts hostsIn(const QString& lines);

struct Links {
    std::vector<MessageLink> links;
    QStringList misread;
};
Links linksIn(const QString& lines);

/// Returns what the settings say now.
gitkit::WebHosts hosts();
std::vector<MessageLink> links();

} // namespace webSettings

} // namespace plovik
