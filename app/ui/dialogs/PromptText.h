// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SignIn.h"

namespace plovik {

/// What a prompt of git or ssh is about, found in its words; see promptText().
struct PromptText {
    enum class Kind {
        userName,
        password,    ///< of an account at a remote
        passphrase,  ///< of a key
        pin,         ///< of a security key
        touch,       ///< of a security key; nothing is typed
        unknownHost, ///< whether to trust a host that was never met
        permission,  ///< yes or no
        secret,      ///< something else that nobody should see
        text,        ///< something else
    };

    Kind kind = Kind::secret;
    QString host = {};        ///< the remote, without secrets: an address or a host; empty where nobody says
    QString user = {};        ///< whose password
    QString key = {};         ///< a key's file or name
    QString keyType = {};     ///< of an unknown host: "ED25519"
    QString fingerprint = {}; ///< of an unknown host, as ssh prints it
    QString question = {};    ///< the prompt's own words, harmless and not endless

    bool operator==(const PromptText&) const = default;
};

/// Reads a prompt; what is not known keeps its own words, and what is typed for it is hidden unless a name is asked
/// for. Control characters are gone from every field: a remote may have written them.
PromptText promptText(const SignInPrompt& prompt);

} // namespace plovik
