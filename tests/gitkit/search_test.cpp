// SPDX-License-Identifier: GPL-3.0-or-later
// What a search over history asks for, and what it finds.

#include "GitKit/SearchTerms.h"
#include "GitKit/repository/HistoryStream.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

namespace gitkit {
namespace {

using Field = HistoryFilter::Field;
using Texts = std::vector<std::string>;

Texts subjects(const TestRepository& repo, Field field, const std::string& text)
{
    HistoryStream stream(repo.repository(),
                         {.scope = HistoryScope::all(), .filter = HistoryFilter{.field = field, .text = text}});
    Texts found;
    while (!stream.hasEnded()) {
        for (const Commit& commit : stream.next(10))
            found.push_back(commit.subject);
    }
    return found;
}

TEST(Search, IsTakenApartAtTheKeysOfItsFields)
{
    const auto terms = [](Field field, std::string text) { return searchTerms({field, std::move(text)}); };
    EXPECT_EQ(terms(Field::message, "fix: \"quoted\" a:b").messages, Texts{"fix: \"quoted\" a:b"}) << "no key is there";
    SearchTerms wanted;
    wanted.messages = {"crash on start", "twice"};
    wanted.authors = {"Ada Lovelace"};
    wanted.paths = {"src/", "x:y"};
    wanted.content = "a b";
    wanted.hashes = {"1a2b"};
    EXPECT_EQ(terms(Field::message, "message:twice crash on author:\"Ada Lovelace\" path:src/ start path:x:y "
                                    "content:\"a b\" hash:1A2b")
                  .messages,
              (Texts{"twice", "crash on start"}));
    EXPECT_EQ(terms(Field::hash, "1A2b content:\"a b\" author:\"Ada Lovelace\" path:src/ path:x:y message:\"crash on "
                                 "start\" message:twice"),
              wanted);
    EXPECT_EQ(terms(Field::content, "a lines:b").fault, SearchTerms::Fault::twoContents);
    EXPECT_EQ(terms(Field::hash, "xyz").faulty, "xyz");
    EXPECT_EQ(terms(Field::message, "fix date:soon").fault, SearchTerms::Fault::date);
}

TEST(Search, ReadsDaysMonthsYearsAndSpans)
{
    using namespace std::chrono;
    const Date now = sys_days(2024y / 3 / 1) + 12h;
    const auto span = [&](std::string_view text) {
        const std::optional<DateRange> range = dateRange(text, now);
        return range ? std::pair(floor<days>(range->from), floor<days>(range->to - 1s))
                     : std::pair<sys_days, sys_days>();
    };
    const auto to = [](auto from, auto last) { return std::pair(sys_days(from), sys_days(last)); };
    EXPECT_EQ(span("2024-02"), to(2024y / 2 / 1, 2024y / 2 / 29));
    EXPECT_EQ(span("2023"), to(2023y / 1 / 1, 2023y / 12 / 31));
    EXPECT_EQ(span("yesterday"), to(2024y / 2 / 29, 2024y / 2 / 29));
    EXPECT_EQ(span("2024-02-28..today"), to(2024y / 2 / 28, 2024y / 3 / 1));
    EXPECT_EQ(dateRange("2024-02..", now)->to, Date::max());
    for (const char* wrong : {"", "..", "soon", "2024-13", "2024-02-30", "24", "2024-2", "2024-02-10T1", "-123"})
        EXPECT_FALSE(dateRange(wrong, now)) << wrong;
}

TEST(Search, FindsWhatCommitsAndMergesAddOrRemoveAsItIs)
{
    TestRepository repo;
    repo.write("a", "Needle [x]\n").write("src/b", "other\n").commit("Add");
    repo.git({"checkout", "-q", "-b", "side"}).write("c", "1").commit("Side").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "--no-ff", "--no-commit", "side"}).write("d", "only-by-merge\n").commit("Merge");
    repo.write("src/b", "other\n--all Needle\n").commit("Again");
    repo.write("a", "").commit("Remove");
    // What is converted for reading is not what was committed.
    repo.git({"config", "diff.shout.textconv", "tr a-z A-Z <"}).write(".gitattributes", "* diff=shout\n");
    repo.git({"config", "diff.external", "false"}).commit("Convert");
    EXPECT_EQ(subjects(repo, Field::content, "Needle"), (Texts{"Remove", "Again", "Add"}));
    EXPECT_EQ(subjects(repo, Field::content, "needle"), Texts());
    EXPECT_EQ(subjects(repo, Field::content, "NEEDLE"), Texts());
    EXPECT_EQ(subjects(repo, Field::content, "--all"), Texts{"Again"});
    EXPECT_EQ(subjects(repo, Field::content, "only-by-merge"), Texts{"Merge"});
    EXPECT_EQ(subjects(repo, Field::lines, "^(--all )?Need+le$|\\[x\\]"), (Texts{"Remove", "Again", "Add"}));
    EXPECT_EQ(subjects(repo, Field::content, "Needle path:src/"), Texts{"Again"});
    EXPECT_EQ(subjects(repo, Field::message, "AGAIN content:Needle"), Texts{"Again"});
    EXPECT_EQ(subjects(repo, Field::message, "AGAIN content:needle"), Texts()) << "the case of content matters always";
    EXPECT_EQ(subjects(repo, Field::author, "ADA lines:Needle"), (Texts{"Remove", "Again", "Add"}));
    EXPECT_THROW(subjects(repo, Field::lines, "("), GitError);
}

TEST(Search, FindsCommitsByTheirDateAndHash)
{
    TestRepository repo;
    const auto commitOf = [&](const std::string& day, const char* subject) {
        repo.git({"commit", "-q", "--allow-empty", "--date", day + "T12:00:00Z", "-m", subject});
    };
    commitOf("2021-05-31", "May");
    commitOf("2021-06-01", "June");
    commitOf("2022-06-01", "Next June");
    EXPECT_EQ(subjects(repo, Field::date, "2021-06"), Texts{"June"}) << "the author's date, which rows show";
    EXPECT_EQ(subjects(repo, Field::date, "..2021-06"), (Texts{"June", "May"}));
    EXPECT_EQ(subjects(repo, Field::message, "june date:2022"), Texts{"Next June"});
    EXPECT_EQ(subjects(repo, Field::hash, repo.head().substr(0, 6)), Texts{"Next June"});
    EXPECT_EQ(subjects(repo, Field::author, "ada hash:" + repo.head()), Texts{"Next June"});
}

} // namespace
} // namespace gitkit
