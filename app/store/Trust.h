// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ConfiguredProgram.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"
#include "app/store/Snapshot.h"
#include "app/store/StoreServices.h"
#include "app/store/Verb.h"

#include <QCoreApplication>
#include <QString>

#include <vector>

namespace plovik {

/// Whether the user trusts the programs that the repository's own configuration names. Reads run without them until
/// then. Owned by the store; main thread.
///
/// Trust is given to what was shown: once the configuration names another program, nothing of it runs until the user
/// has been asked again.
class Trust {
    Q_DECLARE_TR_FUNCTIONS(plovik::Trust)

public:
    using Programs = std::vector<gitkit::ConfiguredProgram>;

    Trust(const GitAccess& git, Snapshot& snapshot, TrustMemory memory);
    Trust(const Trust&) = delete;
    Trust& operator=(const Trust&) = delete;

    /// The programs that are kept off, as the last status found them.
    Observed<Programs, Trust> keptOff;
    /// Whether the window shows them, because the user has not decided yet.
    Observed<bool, Trust> isAsking{false};

    /// Lets these programs run from now on, in all windows to come too, and has everything read again.
    void trust(const Programs& shown);
    /// Keeps them off in all windows, and asks no more until something has changed or a change needs them.
    void keepOff();

    /// Returns whether the verb needs programs that are kept off: it writes contents, or it fetches.
    bool asksBefore(Verb verb) const;

    /// Returns a line that shows each program word by word, and one with the number of those beyond `most`.
    static QString listOf(const Programs& programs, std::size_t most);

private:
    void statusRead();
    bool isKeptOffForGood() const;

    const GitAccess& git_;
    Snapshot& snapshot_;
    TrustMemory memory_;
};

} // namespace plovik
