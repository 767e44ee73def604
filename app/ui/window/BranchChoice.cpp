// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/BranchChoice.h"

#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/store/readers/RefReaders.h"
#include "app/ui/widgets/ChoicePopup.h"

#include <QWidget>

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>

using namespace Qt::StringLiterals;

namespace plovik {

BranchChoice::BranchChoice(RepositoryStore& store, QWidget& button)
    : QObject(&button), store_(store), button_(button), recent_(store.git(), &readRecentBranches, [this] { show(); })
{}

void BranchChoice::open() { recent_.askAgain(++question_); }

/// Returns the local branches: the checked out one, then those that were checked out, the latest first, then the rest.
std::vector<gitkit::GitRef> BranchChoice::ordered()
{
    std::map<std::string_view, std::size_t> places;
    const std::optional<std::vector<std::string>> recent = recent_.result();
    for (std::size_t index = 0; recent && index < recent->size(); ++index)
        places.emplace((*recent)[index], index);
    const std::vector<gitkit::GitRef>& branches = store_.snapshot().branches.value();
    std::vector<std::tuple<bool, std::size_t, std::size_t>> order;
    for (std::size_t index = 0; index < branches.size(); ++index) {
        const auto found = places.find(branches[index].name);
        order.emplace_back(!branches[index].isHead, found == places.end() ? places.size() : found->second, index);
    }
    std::ranges::sort(order);
    std::vector<gitkit::GitRef> refs;
    for (const auto& [isOther, place, index] : order)
        refs.push_back(branches[index]);
    return refs;
}

void BranchChoice::show()
{
    const QString inTheWay = obstacle(store_.changes(), store_.snapshot(), Verb::checkOut);
    std::vector<Choice> choices;
    for (const gitkit::GitRef& ref : ordered()) {
        Choice choice{.title = shownText(ref.name), .isCurrent = ref.isHead};
        const gitkit::Divergence counts = store_.counts().of(ref.fullName);
        if (counts.ahead > 0)
            choice.detail = u"↑%L1"_s.arg(counts.ahead);
        if (counts.behind > 0)
            choice.detail += (choice.detail.isEmpty() ? QString() : u" "_s) + u"↓%L1"_s.arg(counts.behind);
        if (!ref.isHead) {
            choice.whyNot = inTheWay.isEmpty() ? actions::damage(ref) : inTheWay;
            choice.isOffered = choice.whyNot.isEmpty();
            choice.run = [&store = store_, ref] { actions::checkout(store.actors(), ref); };
        }
        choices.push_back(std::move(choice));
    }
    const ChoicePopup::Names names{tr("Branches"), tr("Filter Branches"), tr("Switch to a branch")};
    (new ChoicePopup(names, std::move(choices), false, &button_))->openBelow(button_);
}

} // namespace plovik

#include "moc_BranchChoice.cpp"
