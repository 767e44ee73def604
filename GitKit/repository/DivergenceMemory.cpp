// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/DivergenceMemory.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Fingerprint.h"
#include "GitKit/RegularFile.h"
#include "GitKit/UniqueFd.h"
#include "GitKit/parsers/Fields.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <utility>
#include <vector>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view memoryHeader = "plovik divergence 1\n";
constexpr std::string_view memoryEnd = "end ";
/// Longer than any file that is written here.
constexpr std::uintmax_t largestMemory = 8 * 1024 * 1024;
constexpr std::int64_t minutesOfDay = 24 * 60;

std::int64_t minutesNow()
{
    return std::chrono::floor<std::chrono::minutes>(std::chrono::system_clock::now()).time_since_epoch().count();
}

/// Hashes have no blanks, so the fields of a key and of its line are told apart by them.
std::string keyOf(const CommitPair& pair, const std::string& cuts)
{
    return (cuts.empty() ? "-" : cuts) + ' ' + pair.ours + ' ' + pair.theirs;
}

std::string sealOf(std::string_view text, std::string_view owner)
{
    return fingerprint(fingerprint(owner) + fingerprint(text));
}

/// Keeps the writers of one file apart; not open when another one takes too long or nothing can be written there.
UniqueFd lockBeside(const fs::path& file)
{
    UniqueFd lock(::open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    for (int attempt = 0; lock && ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0; ++attempt) {
        if (attempt == 20)
            return {};
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return lock;
}

} // namespace

std::shared_ptr<DivergenceMemory> DivergenceMemory::of(const fs::path& folder, const fs::path& commonDirectory)
{
    static std::mutex mutex;
    static std::map<std::string, std::weak_ptr<DivergenceMemory>> inUse;
    const std::string owner = commonDirectory.string();
    const fs::path file = folder.empty() ? fs::path() : folder / fingerprint(owner);
    const std::lock_guard guard(mutex);
    std::erase_if(inUse, [](const auto& entry) { return entry.second.expired(); });
    std::weak_ptr<DivergenceMemory>& place = inUse[folder.string() + '\0' + owner];
    std::shared_ptr<DivergenceMemory> memory = place.lock();
    if (!memory)
        place = memory = std::make_shared<DivergenceMemory>(file, owner);
    return memory;
}

DivergenceMemory::DivergenceMemory(fs::path file, std::string owner) : file_(std::move(file)), owner_(std::move(owner))
{
    if (file_.empty())
        return;
    if (const auto bytes = regularFileBytes(file_, largestMemory))
        entries_ = parsed(*bytes, owner_).value_or(Entries());
}

std::optional<Divergence> DivergenceMemory::find(const CommitPair& pair, const std::string& cuts)
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(keyOf(pair, cuts));
    if (found == entries_.end())
        return std::nullopt;
    // The file is not written again for a use that changes nothing but the order of what goes first.
    isNew_ = isNew_ || found->second.used + minutesOfDay < minutesNow();
    found->second.used = minutesNow();
    return found->second.counted;
}

void DivergenceMemory::remember(const CommitPair& pair, const std::string& cuts, Divergence counted)
{
    const std::lock_guard guard(mutex_);
    entries_[keyOf(pair, cuts)] = {counted, minutesNow()};
    isNew_ = true;
    drop();
}

/// Drops the entries that were used least recently when there are too many.
void DivergenceMemory::drop()
{
    if (entries_.size() <= capacity)
        return;
    std::vector<std::int64_t> times;
    times.reserve(entries_.size());
    for (const auto& [key, entry] : entries_)
        times.push_back(entry.used);
    // A quarter goes at once, so that not every new entry has to look through all of them.
    const auto bound = times.begin() + static_cast<std::ptrdiff_t>(times.size() - capacity + capacity / 4);
    std::ranges::nth_element(times, bound);
    std::size_t left = entries_.size() - (capacity - capacity / 4);
    std::erase_if(entries_, [&](const auto& item) { return item.second.used <= *bound && left > 0 && left-- > 0; });
}

void DivergenceMemory::save()
{
    const std::lock_guard saving(saving_);
    {
        const std::lock_guard guard(mutex_);
        if (file_.empty() || !std::exchange(isNew_, false))
            return;
    }
    std::error_code ignored;
    fs::create_directories(file_.parent_path(), ignored);
    const UniqueFd lock = lockBeside(file_);
    if (!lock)
        return;
    const auto bytes = regularFileBytes(file_, largestMemory);
    std::string text;
    {
        const std::lock_guard guard(mutex_);
        if (bytes)
            merge(parsed(*bytes, owner_).value_or(Entries()));
        text = written();
    }
    static_cast<void>(replaceFile(file_, text));
}

void DivergenceMemory::merge(Entries others)
{
    for (auto& [key, entry] : others) {
        Entry& own = entries_.try_emplace(key, entry).first->second;
        own.used = std::max(own.used, entry.used);
    }
    drop();
}

/// The last line holds a seal over all that stands before it, so that a file that was cut is not half used.
std::string DivergenceMemory::written() const
{
    std::string text(memoryHeader);
    for (const auto& [key, entry] : entries_) {
        text.append(key).append(" ").append(std::to_string(entry.counted.ahead));
        text.append(" ").append(std::to_string(entry.counted.behind));
        text.append(" ").append(std::to_string(entry.used)).append("\n");
    }
    const std::string seal = sealOf(text, owner_);
    return text.append(memoryEnd).append(seal).append("\n");
}

std::optional<DivergenceMemory::Entries> DivergenceMemory::parsed(std::string_view bytes, std::string_view owner)
{
    const std::size_t end = bytes.rfind(memoryEnd);
    if (!bytes.starts_with(memoryHeader) || end == std::string_view::npos)
        return std::nullopt;
    const std::string_view text = bytes.substr(0, end);
    if (bytes.substr(end) != std::string(memoryEnd) + sealOf(text, owner) + "\n")
        return std::nullopt;
    Entries entries;
    Pieces lines(text.substr(memoryHeader.size()), '\n');
    while (const auto line = lines.next()) {
        const auto fields = splitFields<6>(*line, ' ');
        if (!fields)
            continue;
        const auto& [cuts, ours, theirs, ahead, behind, used] = *fields;
        const std::size_t keySize = cuts.size() + ours.size() + theirs.size() + 2;
        // A clock that was wrong must not keep an entry for ever.
        entries[std::string(line->substr(0, keySize))] = {{readNumber(ahead), readNumber(behind)},
                                                          std::min<std::int64_t>(readNumber(used), minutesNow())};
    }
    return entries;
}

} // namespace gitkit
