// SPDX-License-Identifier: GPL-3.0-or-later
// Refs that are read without a walk, compared with what git finds by walking.

#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/RefLabels.h"
#include "GitKit/repository/RefListing.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

namespace gitkit {
namespace {

using Labels = std::map<std::string, std::vector<RefLabel>>;

Labels walkedLabels(const TestRepository& repo)
{
    Labels labels;
    for (const Commit& commit : repo.repository().log({}, 1000, {})) {
        if (!commit.refs.empty())
            labels[commit.hash] = commit.refs;
    }
    return labels;
}

/// The labels of tags' objects are dropped, because no history shows them.
Labels joinedLabels(const TestRepository& repo)
{
    const RefLabels joined = refLabels(readRefTips(repo.repository()));
    const std::string objects =
        repo.read({"cat-file", "--batch-all-objects", "--batch-check=%(objecttype) %(objectname)"});
    Labels labels;
    for (const auto& [hash, list] : joined) {
        if (objects.find("commit " + hash) != std::string::npos)
            labels[hash] = list;
    }
    return labels;
}

/// A repository with branches, tags of tags and symbolic refs at random places.
class RandomRefs {
public:
    explicit RandomRefs(unsigned seed, const std::vector<std::string>& initArguments) : dice_(seed), repo(initArguments)
    {
        for (int count = 0; count < 6; ++count) {
            repo.commit("one");
            commits_.push_back(repo.head());
        }
        for (int count = 0; count < 12; ++count)
            addRef();
        placeHead();
        if (below(2) == 0)
            repo.git({"pack-refs", "--all"});
        if (below(3) == 0)
            addRef();
    }

private:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(dice_); }
    template <typename List>
    const std::string& any(const List& list)
    {
        return list[below(list.size())];
    }

    void addRef()
    {
        static const std::vector<std::string> names{"a", "b/a",      "b/c",  "B",   "a,b",
                                                    "z", "origin/z", "\xE4", "a-1", "HEAD2"};
        const std::string name = any(names);
        const std::string target = any(commits_);
        switch (below(6)) {
        case 0:
            repo.git({"tag", "-f", "-m", "tag", name, target});
            tags_.push_back(repo.read({"rev-parse", "refs/tags/" + name}));
            break;
        case 1:
            repo.git({"tag", "-f", "-m", "again", name, tags_.empty() ? target : any(tags_)});
            break;
        case 2:
            repo.git({"update-ref", "refs/tags/" + name, target});
            break;
        case 3:
            repo.git({"update-ref", "refs/remotes/origin/" + name, target});
            repo.git({"symbolic-ref", "refs/remotes/origin/HEAD", "refs/remotes/origin/" + name});
            break;
        case 4:
            repo.git({"symbolic-ref", "refs/heads/alias", "refs/heads/main"});
            break;
        default:
            repo.git({"update-ref", "refs/heads/" + name, target});
        }
    }

    void placeHead()
    {
        switch (below(4)) {
        case 0:
            repo.git({"update-ref", "--no-deref", "HEAD", any(commits_)});
            repo.git({"checkout", "-q", "--detach"});
            break;
        case 1:
            repo.git({"symbolic-ref", "refs/heads/alias", "refs/heads/main"});
            repo.git({"symbolic-ref", "HEAD", "refs/heads/alias"});
            break;
        case 2:
            repo.git({"symbolic-ref", "HEAD", "refs/heads/unborn"});
            break;
        default:
            break;
        }
    }

    std::mt19937 dice_;
    std::vector<std::string> commits_;
    std::vector<std::string> tags_;

public:
    TestRepository repo;
};

TEST(RefListing, GivesEachCommitTheLabelsThatTheLogGives)
{
    for (unsigned seed = 0; seed < 16; ++seed) {
        const std::vector<std::string> init =
            seed % 4 == 0 ? std::vector<std::string>{"--object-format=sha256"} : std::vector<std::string>{};
        const RandomRefs random(seed, init);
        EXPECT_EQ(joinedLabels(random.repo), walkedLabels(random.repo)) << "seed " << seed;
    }
}

TEST(RefListing, DiffersFromTheCountedListOnlyByTheCounts)
{
    TestRepository repo;
    repo.commit("one").git({"branch", "side"}).git({"branch", "lost"}).git({"tag", "-m", "tag", "v1"});
    repo.git({"update-ref", "refs/remotes/origin/main", "HEAD"}).git({"remote", "add", "origin", "/nowhere"});
    repo.git({"branch", "-q", "-u", "origin/main", "main"}).git({"branch", "-q", "-u", "main", "side"});
    repo.git({"config", "branch.lost.remote", "origin"}).git({"config", "branch.lost.merge", "refs/heads/lost"});
    repo.commit("two");
    writeFile(repo / ".git/refs/heads/damaged", "");

    std::vector<GitRef> counted = repo.repository().refs();
    std::vector<GitRef> listed = listRefs(repo.repository()).refs;
    std::vector<std::string> upstreams;
    for (GitRef& ref : listed) {
        if (const std::string upstream = std::exchange(ref.upstreamRef, {}); !upstream.empty())
            upstreams.push_back(upstream);
    }
    for (GitRef& ref : counted)
        ref.ahead = ref.behind = 0;
    EXPECT_EQ(listed, counted);
    EXPECT_THAT(upstreams,
                testing::ElementsAre("refs/remotes/origin/lost", "refs/remotes/origin/main", "refs/heads/main"));
}

TEST(RefListing, KeepsTheLabelsOfTheOtherRefsBesideADamagedOne)
{
    TestRepository repo;
    EXPECT_EQ(readRefTips(repo.repository()), (RefTips{.lines = {}, .headRef = "refs/heads/main"})) << "no commit yet";
    repo.commit("one").git({"tag", "-m", "tag", "v1"}).git({"tag", "-m", "again", "v2", "v1"});
    const Labels labels = joinedLabels(repo);
    EXPECT_EQ(labels.at(repo.head()).size(), 3u);
    writeFile(repo / ".git/refs/heads/damaged", "");
    EXPECT_EQ(joinedLabels(repo), labels);
    writeFile(repo / ".git/refs/heads/lost", std::string(40, '1') + "\n");
    const RefLabels joined = refLabels(readRefTips(repo.repository()));
    EXPECT_EQ(joined.at(repo.head()), labels.at(repo.head()));
}

} // namespace
} // namespace gitkit
