// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// What is known of a commit's signature.
struct Signature {
    enum class State {
        none,        ///< there is none
        good,        ///< made by a key that is trusted here
        unknownKey,  ///< right, by a key that nothing here vouches for
        outdated,    ///< right, by a key or with a signature that has expired or was revoked
        bad,         ///< it does not fit the commit
        cannotCheck, ///< there is one, and `obstacle` says why it was not checked
    };
    enum class Obstacle {
        none,
        noAllowedSigners, ///< no list says whose keys of ssh count
        noProgram,        ///< the program that checks is missing
        noKey,            ///< the key is not known here
        tooSlow,          ///< the program did not answer in time
        other,
    };

    State state = State::none;
    Obstacle obstacle = Obstacle::none;
    std::string signer = {}; ///< as bytes; empty when it is not known
    std::string key = {};    ///< its name or fingerprint; empty when it is not known

    bool operator==(const Signature&) const = default;
};

} // namespace gitkit
