// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Verb.h"

#include <initializer_list>

namespace plovik {

namespace {

using enum Touch;

constexpr std::uint8_t all(std::initializer_list<Touch> touched)
{
    std::uint8_t bits = 0;
    for (const Touch touch : touched)
        bits |= static_cast<std::uint8_t>(touch);
    return bits;
}

std::uint8_t touchedBy(Verb verb)
{
    switch (verb) {
    case Verb::fetch:
    case Verb::push:
    case Verb::pushTag:
    case Verb::pullOther:
    case Verb::deleteOnRemote:
    case Verb::editRemote: // it may fetch, and no other may use a remote that changes
        return all({refs, network});
    case Verb::pull:
    case Verb::checkOutRequest:
        return all({index, workingTree, refs, network});
    case Verb::deleteBranch:
    case Verb::setUpstream:
    case Verb::fastForward:
    case Verb::moveBranch:
    case Verb::createTag:
    case Verb::deleteTag:
    case Verb::changeWorktree: // the working tree of another window
        return all({refs});
    case Verb::checkOut:
    case Verb::createBranch: // it may check the branch out
    case Verb::renameBranch: // and this one may rename what is checked out
    case Verb::merge:
    case Verb::rebase:
    case Verb::rewrite:
    case Verb::reset:
    case Verb::cherryPick:
    case Verb::applyMails:
    case Verb::revert:
    case Verb::continueOperation:
    case Verb::skipStep:
    case Verb::endOperation:
    case Verb::markBisect:
        return all({index, workingTree, refs});
    case Verb::saveStash:
    case Verb::applyStash:
        return all({index, workingTree, stashes});
    case Verb::dropStash:
        return all({stashes});
    case Verb::commit:
    case Verb::amend:
        return all({index, refs});
    case Verb::stage:
    case Verb::unstage:
        return all({index});
    case Verb::discard:
    case Verb::takeSide:
    case Verb::applyPatch: // by a merge, it stages
    case Verb::ignore:     // it may take files out of the index
        return all({index, workingTree});
    case Verb::undoDiscard:
    case Verb::takeFile:
        return all({workingTree});
    case Verb::updateSubmodules:
        return all({workingTree, network});
    case Verb::addWorktree:
        return all({workingTree, refs});
    case Verb::undo:
    case Verb::runOwnCommand: // nobody knows what it touches
        return all({index, workingTree, refs, stashes});
    }
    return all({index, workingTree, refs, stashes, network});
}

} // namespace

bool touches(Verb verb, Touch touch) { return (touchedBy(verb) & static_cast<std::uint8_t>(touch)) != 0; }

bool takesTurn(Verb verb) { return (touchedBy(verb) & all({index, workingTree, stashes})) != 0; }

} // namespace plovik
