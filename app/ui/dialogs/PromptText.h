// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SignIn.h"

namespace plovik {

/// The meaning of a prompt of git or ssh, read from its words by promptText().
struct PromptText {
    enum class Kind {
        userName,
        password,    ///< of an account at a remote
        passphrase,  ///< of a key
        pin,         ///< of a security key
        touch,       ///< of a security key; nothing is typed
        unknownHost, ///< whether to trust a host that was never met
        permission,  ///< a question to be answered with yes or no
        secret,      ///< anything else that must stay hidden
        text,        ///< anything else
    };

    Kind kind = Kind::secret;
    QString host = {};        ///< the remote as an address or a host, without secrets; empty when unknown
    QString user = {};        ///< the account that the password is for
    QString key = {};         ///< file or name of the key
    QString keyType = {};     ///< of an unknown host: "ED25519"
    QString fingerprint = {}; ///< of an unknown host, as ssh prints it
    QString question = {};    ///< the prompt's own words, shortened and without control characters

    bool operator==(const PromptText&) const = default;
};

/// Reads a prompt. An unknown one keeps its own words, and its answer is typed hidden unless it asks for a name.
/// Control characters, which a remote may have written, are removed from every field.
PromptText promptText(const SignInPrompt& prompt);

} // namespace plovik
