// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "GitKit/repository/GitRepository.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/Streamed.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>

namespace plovik {
namespace {

using namespace std::chrono_literals;

/// Asks for the numbers from `first` to before `end`.
struct Numbers {
    int first = 0;
    int end = 0;
    bool operator==(const Numbers&) const = default;
};

int opened = 0;
int underWay = 0;                ///< sources that are not destroyed
int skew = 0;                    ///< added to the numbers of the sources that are opened from now on
std::optional<int> broken;       ///< reading this number fails
std::vector<std::size_t> pieces; ///< how many were asked for at once

struct UnderWay {
    UnderWay() { ++underWay; }
    ~UnderWay() { --underWay; }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;
};

StreamSource<int> openNumbers(const gitkit::GitRepository&, const Numbers& asked)
{
    ++opened;
    return [next = asked.first + skew, end = asked.end + skew,
            mark = std::make_shared<UnderWay>()](std::size_t most) mutable {
        pieces.push_back(most);
        StreamedPiece<int> piece;
        for (; next < end && piece.items.size() < most; ++next) {
            if (next == broken && piece.items.empty())
                throw std::runtime_error("broken");
            if (next == broken)
                break;
            piece.items.push_back(next);
        }
        piece.hasMore = next < end;
        return piece;
    };
}

struct StreamedReads : testing::Test {
    using Reader = Streamed<Numbers, int>;

    StreamedReads()
    {
        opened = skew = 0;
        broken.reset();
        pieces.clear();
    }

    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    std::vector<int> shown;
    int lists = 0;
    int ends = 0;
    std::optional<Reader> reader{std::in_place, store.git(), &openNumbers,
                                 Reader::Listener{.found =
                                                      [this](std::vector<int> items, Reader::Arrival arrival) {
                                                          if (arrival == Reader::Arrival::first) {
                                                              shown.clear();
                                                              ++lists;
                                                          }
                                                          shown.insert(shown.end(), items.begin(), items.end());
                                                      },
                                                  .changed = [this] { ++ends; }}};

    /// Whether exactly these are shown, each once and in order.
    bool isShown(int first, int count) const
    {
        std::vector<int> expected(static_cast<std::size_t>(count));
        std::iota(expected.begin(), expected.end(), first);
        return shown == expected && reader->count() == shown.size();
    }
};

TEST_F(StreamedReads, HandOnWhatIsFoundInGrowingPiecesAndWaitAfterAPage)
{
    reader->ask({0, 1200});
    EXPECT_TRUE(reader->isReading());
    worker.finish();
    EXPECT_TRUE(isShown(0, 60)) << shown.size();
    EXPECT_TRUE(reader->isReading());
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 500)) << shown.size();
    EXPECT_EQ(pieces, (std::vector<std::size_t>{60, 60, 120, 240, 20}));
    EXPECT_FALSE(reader->isReading());
    EXPECT_TRUE(reader->hasMore());
    EXPECT_EQ(underWay, 1) << "its git waits";
    reader->wantMore();
    reader->wantMore();
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 1000)) << shown.size();
    EXPECT_EQ(opened, 1);

    worker.advance(31s);
    EXPECT_EQ(underWay, 0);
    reader->wantMore();
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 1200)) << "goes on after what is known: " << shown.size();
    EXPECT_FALSE(reader->hasMore());
    EXPECT_EQ(underWay, 0) << "nothing is left to wait with";
    reader->wantMore();
    reader->ask({0, 1200});
    EXPECT_EQ(worker.waiting(), 0u);
    EXPECT_EQ(std::tuple(opened, lists, ends), std::tuple(2, 1, 3));
}

TEST_F(StreamedReads, ShowNothingThatWasOvertakenAndEndIt)
{
    reader->ask({0, 100});
    const auto late = worker.runOnly();
    reader->ask({1000, 1003});
    EXPECT_TRUE(shown.empty());
    worker.finish();
    EXPECT_TRUE(isShown(1000, 3));
    late();
    worker.finishAll();
    EXPECT_TRUE(isShown(1000, 3));
    EXPECT_EQ(reader->answered(), (Numbers{1000, 1003}));

    reader->ask({0, 2000});
    worker.finishAll();
    reader->ask({5, 5});
    EXPECT_EQ(underWay, 0) << "not even one that waits";
    EXPECT_NE(reader->answered(), reader->asked()) << "what is shown is outdated";
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 0)) << "an empty list replaces the other, too";
    EXPECT_EQ(reader->answered(), reader->asked());

    reader->ask({0, 100});
    const int before = lists;
    const auto afterwards = worker.runOnly();
    reader.reset();
    afterwards();
    worker.finishAll();
    EXPECT_EQ(lists, before);
    EXPECT_EQ(underWay, 0);
}

TEST_F(StreamedReads, KeepWhatWasFoundWhenStoppedAndGoOnAfterIt)
{
    reader->ask({0, 400});
    worker.finish();
    const auto late = worker.runOnly();
    reader->stop();
    late();
    EXPECT_TRUE(isShown(0, 60)) << "what comes after the stop is dropped, and found again: " << shown.size();
    EXPECT_EQ(std::tuple(reader->isReading(), reader->isStopped(), underWay), std::tuple(false, true, 0));
    EXPECT_EQ(worker.waiting(), 0u);
    reader->goOn();
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 400)) << shown.size();
    EXPECT_FALSE(reader->isStopped());
    EXPECT_EQ(lists, 1);

    // The list is not the one any more that was stopped.
    reader->ask({0, 300});
    worker.finish();
    reader->stop();
    skew = 7;
    reader->goOn();
    worker.finishAll();
    EXPECT_TRUE(isShown(7, 300)) << shown.size();
}

TEST_F(StreamedReads, ReplaceAListOnceAsMuchOfTheNewOneIsFound)
{
    reader->ask({1, 3000});
    worker.finishAll();
    reader->wantMore();
    worker.finishAll();
    ASSERT_TRUE(isShown(1, 1000));
    broken = 700;
    reader->askAnew({0, 3000});
    worker.finish();
    EXPECT_TRUE(isShown(1, 1000)) << "a part does not replace it";
    broken.reset();
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 1000)) << shown.size();
    EXPECT_EQ(lists, 2);
    reader->askAnew({-1, 20});
    worker.finishAll();
    EXPECT_TRUE(isShown(-1, 21)) << "a shorter list at its end";

    // Stopped before that, it is shown as far as it was found.
    reader->ask({1, 3000});
    worker.finishAll();
    broken = 100;
    reader->askAnew({0, 3000});
    worker.finish();
    reader->stop();
    EXPECT_TRUE(isShown(0, 100)) << shown.size();
    broken.reset();
    reader->goOn();
    worker.finishAll();
    EXPECT_TRUE(isShown(0, 500)) << shown.size();

    // A list that was left is another one.
    reader->ask({9000, 9001});
    reader->ask({0, 3000});
    worker.finish();
    worker.finish();
    EXPECT_TRUE(isShown(0, 60)) << shown.size();
}

TEST_F(StreamedReads, KeepWhatWasFoundBesideAFailureThatCanBeAskedForAgain)
{
    broken = 200;
    reader->ask({0, 300});
    worker.finishAll();
    ASSERT_TRUE(reader->failure());
    EXPECT_EQ(reader->failure()->message.toStdString(), "broken");
    EXPECT_TRUE(isShown(0, 200)) << shown.size();
    EXPECT_EQ(std::tuple(reader->isReading(), reader->hasMore(), underWay, ends), std::tuple(false, false, 0, 1));
    broken.reset();
    reader->ask({0, 300});
    worker.finishAll();
    EXPECT_FALSE(reader->failure());
    EXPECT_TRUE(isShown(0, 300)) << shown.size();

    reader->forget();
    EXPECT_EQ(reader->asked(), std::nullopt);
    reader->ask({0, 300});
    worker.finishAll();
    EXPECT_EQ(lists, 3) << "what was forgotten is read again";
}

} // namespace
} // namespace plovik
