// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/architecture/IncludeRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace architecture {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

std::string contentsOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

SourceTree treeBelow(const fs::path& top)
{
    SourceTree tree;
    for (const auto* folder : {"GitKit", "app", "cli"}) {
        if (!fs::exists(top / folder))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(top / folder)) {
            if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
                tree.emplace(entry.path().lexically_relative(top).string(), contentsOf(entry.path()));
        }
    }
    return tree;
}

/// Both spellings: <QString> and <QtCore/QString>.
std::set<std::string> headersOfQtCore()
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(QT_CORE_HEADERS)) {
        names.insert(entry.path().filename().string());
        names.insert("QtCore/" + entry.path().filename().string());
    }
    return names;
}

const std::set<std::string> someOfQtCore = {"QString", "QtCore/QString"};

const SourceTree houseInOrder = {
    {"GitKit/records/Commit.h", "#pragma once\n#include <string>\n"},
    {"GitKit/runner/GitRunner.h", "#pragma once\n"},
    {"GitKit/parsers/LogParser.cpp", "#include \"GitKit/records/Commit.h\"\n// #include <QString>\n"},
    {"GitKit/repository/GitRepository.h", "#pragma once\n#include \"GitKit/runner/GitRunner.h\"\n"},
    {"app/store/Snapshot.h", "#pragma once\n#include \"app/store/WindowState.h\"\n#include <QString>\n"},
    {"app/store/WindowState.h", "#pragma once\n#include \"app/platform/SignIn.h\"\n#include <QCoroTask>\n"},
    {"app/store/readers/Blame.h", "#pragma once\n"},
    {"app/store/RepositoryStore.cpp",
     "#include \"app/store/RepositoryStore.h\"\n#include \"GitKit/repository/GitRepository.h\"\n"},
    {"app/store/RepositoryStore.h", "#pragma once\n#include \"app/store/Snapshot.h\"\n"},
    {"app/ui/HistoryView.cpp", "#include \"app/store/RepositoryStore.h\"\n#include <QWidget>\n#include \"x.moc\"\n"},
    {"app/platform/SignIn.h", "#pragma once\n"},
    {"app/platform/Trash.h", "#pragma once\n"},
    {"app/services/Watcher.cpp", "#include \"app/platform/Trash.h\"\n"},
    {"app/platform/linux/Trash.cpp", "#include \"app/platform/Trash.h\"\n"},
    {"app/shell/main.cpp", "#include \"app/platform/Trash.h\"\n"},
};

/// What is said of the orderly house once `text` has been added to one of its files or is a new one.
std::vector<std::string> after(const std::string& path, const std::string& text)
{
    auto tree = houseInOrder;
    tree[path] += text;
    return violations(tree, someOfQtCore);
}

TEST(IncludeRules, SeeEveryPlantedViolationAndNothingElse)
{
    EXPECT_THAT(violations(houseInOrder, someOfQtCore), IsEmpty());

    EXPECT_THAT(after("GitKit/records/Commit.h", "#include \"GitKit/runner/GitRunner.h\"\n"),
                ElementsAre("GitKit/records/Commit.h may not include \"GitKit/runner/GitRunner.h\""));
    EXPECT_THAT(after("GitKit/parsers/LogParser.cpp", "  #  include\t\"GitKit/runner/GitRunner.h\"\n"),
                ElementsAre("GitKit/parsers/LogParser.cpp may not include \"GitKit/runner/GitRunner.h\""));
    EXPECT_THAT(after("GitKit/CommitGraph.h", "#pragma once\n#include \"GitKit/repository/GitRepository.h\"\n"),
                ElementsAre("GitKit/CommitGraph.h may not include \"GitKit/repository/GitRepository.h\""));
    EXPECT_THAT(after("GitKit/runner/GitRunner.h", "/* why */ #include <QString>\n"),
                ElementsAre("GitKit/runner/GitRunner.h may not include <QString>"));
    EXPECT_THAT(after("app/store/RepositoryStore.h", "#include <QtWidgets/QDialog>\n#include <QDialog>\n"),
                ElementsAre("app/store/RepositoryStore.h may not include <QtWidgets/QDialog>",
                            "app/store/RepositoryStore.h may not include <QDialog>"));
    EXPECT_THAT(after("app/ui/HistoryView.cpp", "#include \"GitKit/runner/GitRunner.h\"\n"),
                ElementsAre("app/ui/HistoryView.cpp may not include \"GitKit/runner/GitRunner.h\""));
    EXPECT_THAT(after("app/settings/Settings.cpp", "#include \"GitKit/repository/GitRepository.h\"\n"),
                ElementsAre("app/settings/Settings.cpp may not include \"GitKit/repository/GitRepository.h\""));
    EXPECT_THAT(after("app/platform/linux/Trash.cpp", "#include \"app/store/RepositoryStore.h\"\n"),
                ElementsAre("app/platform/linux/Trash.cpp may not include \"app/store/RepositoryStore.h\""));
    EXPECT_THAT(after("app/shell/main.cpp", "#include \"app/platform/linux/Trash.cpp\"\n"),
                ElementsAre("app/shell/main.cpp may not include \"app/platform/linux/Trash.cpp\""));
    EXPECT_THAT(after("app/ui/HistoryView.cpp", "#include \"../store/RepositoryStore.h\"\n"),
                ElementsAre("app/ui/HistoryView.cpp includes \"../store/RepositoryStore.h\", which is no file named "
                            "from the top of the tree"));
    EXPECT_THAT(after("app/ui/Theme.h", "// #pragma once\n"),
                ElementsAre("app/ui/Theme.h can be read twice: #pragma once is missing"));
    EXPECT_THAT(after("app/shell/main.cpp", "/*\n#include \"nowhere.h\"\n*/\n"), IsEmpty());
}

TEST(IncludeRules, AreFollowedThroughOtherHeaders)
{
    EXPECT_THAT(after("app/store/WindowState.h", "#include \"GitKit/repository/GitRepository.h\"\n"),
                ElementsAre("app/ui/HistoryView.cpp may not reach GitKit/repository/GitRepository.h: "
                            "app/ui/HistoryView.cpp -> app/store/RepositoryStore.h -> app/store/Snapshot.h -> "
                            "app/store/WindowState.h -> GitKit/repository/GitRepository.h"));
    EXPECT_THAT(after("app/platform/SignIn.h", "#include <QWidget>\n"),
                ElementsAre("app/store/WindowState.h may not reach QWidget: "
                            "app/store/WindowState.h -> app/platform/SignIn.h -> QWidget"));
    EXPECT_THAT(after("app/platform/Trash.h", "#include \"app/store/Snapshot.h\"\n"),
                ElementsAre("app/platform/Trash.h may not include \"app/store/Snapshot.h\"",
                            "app/services/Watcher.cpp may not reach app/store/Snapshot.h: "
                            "app/services/Watcher.cpp -> app/platform/Trash.h -> app/store/Snapshot.h"));
    EXPECT_THAT(after("app/store/readers/Blame.h", "#include \"app/store/Snapshot.h\"\n"),
                ElementsAre("app/store/readers/Blame.h may not reach app/store/Snapshot.h: "
                            "app/store/readers/Blame.h -> app/store/Snapshot.h"));
}

TEST(IncludeRules, SeeACircleThroughASource)
{
    EXPECT_THAT(after("app/store/WindowState.cpp", "#include \"app/store/RepositoryStore.h\"\n"),
                ElementsAre("the store's parts form a circle: app/store/RepositoryStore -> app/store/Snapshot -> "
                            "app/store/WindowState -> app/store/RepositoryStore"));
}

TEST(IncludeRules, HoldInThisTree)
{
    const auto tree = treeBelow(SOURCE_TREE);
    ASSERT_TRUE(tree.contains("GitKit/repository/GitRepository.h") && tree.contains("app/shell/main.cpp"))
        << "the sources were not found below " << SOURCE_TREE;
    const auto core = headersOfQtCore();
    ASSERT_TRUE(core.contains("QObject")) << "no headers of Qt Core in " << QT_CORE_HEADERS;

    EXPECT_THAT(violations(tree, core), IsEmpty());
}

/// Whether the first comment line of a source or a script names the licence.
bool namesLicence(std::string_view text)
{
    if (text.starts_with("#!"))
        text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    return text.starts_with("// SPDX-License-Identifier: GPL-3.0-or-later\n") ||
           text.starts_with("# SPDX-License-Identifier: GPL-3.0-or-later\n");
}

TEST(Licence, IsNamedByEverySourceAndScript)
{
    EXPECT_FALSE(namesLicence("#!/bin/sh\nset -eu\n"));
    std::vector<std::string> without;
    int seen = 0;
    for (const auto* folder : {"GitKit", "app", "cli", "cmake", "tests", "bench", "packaging"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(SOURCE_TREE) / folder)) {
            const auto extension = entry.path().extension();
            if (!entry.is_regular_file() || entry.path().string().find("/corpus/") != std::string::npos)
                continue;
            const auto text = contentsOf(entry.path());
            const bool code = extension == ".h" || extension == ".cpp" || extension == ".cmake" || extension == ".py" ||
                              entry.path().filename() == "CMakeLists.txt" || text.starts_with("#!");
            seen += code ? 1 : 0;
            if (code && !namesLicence(text))
                without.push_back(entry.path().string());
        }
    }
    EXPECT_GT(seen, 400);
    EXPECT_THAT(without, IsEmpty());
}

} // namespace
} // namespace architecture
