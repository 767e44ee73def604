// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/CommitMessages.h"

#include "app/services/ai/CommitMessageAI.h"

#include <utility>

namespace plovik {

namespace {

QCoro::Task<QString> write(MessageWriter::Changes changes, std::stop_token stop)
{
    return commitMessageAI::generate(std::move(changes.summary), std::move(changes.diff), std::move(stop));
}

MessageRequest describe(const MessageWriter::Changes& changes)
{
    const commitMessageAI::Request request = commitMessageAI::request(changes.summary, changes.diff);
    return {aiProvider::displayName(request.provider), request.address.toDisplayString(), request.model, request.prompt,
            request.changes};
}

} // namespace

MessageWriter commitMessageWriter() { return {&write, &describe}; }

} // namespace plovik
