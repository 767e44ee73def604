// SPDX-License-Identifier: GPL-3.0-or-later
// The diff view: what it takes from a parsed diff to the first picture of it, and what a frame costs while scrolling.

#include "GitKit/parsers/DiffParser.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QScrollBar>

#include <string>

namespace {

using namespace plovik;

constexpr int wholeDiff = 4999; // with its final line feed just short of being cut

/// Hunks of changed, added and unchanged lines of code; every third line has a partner to be compared with.
std::string diffText(int lines)
{
    std::string text = "diff --git a/f b/f\nindex 1111..2222 100644\n--- a/f\n+++ b/f\n";
    for (int line = 0; line < lines; ++line) {
        const std::string number = std::to_string(line);
        if (line % 50 == 0)
            text += "@@ -" + std::to_string(line + 1) + ",30 +" + std::to_string(line + 1) + ",30 @@ int part" +
                    number + "()\n";
        else if (line % 3 == 0)
            text += "-\tconst auto value" + number + " = parser.read(input, Options{.depth = 3}); // the old way\n";
        else if (line % 3 == 1)
            text += "+\tconst auto value" + number + " = reader.parse(input, Options{.depth = 4}); // the new way\n";
        else
            text += " \tif (value" + number + " != expected) { report(value" + number + "); }\n";
    }
    return text;
}

DiffContent content(const gitkit::ParsedDiff& diff)
{
    DiffContent content;
    content.kind = gitkit::DiffSection::Kind::unstaged;
    content.title = QStringLiteral("Unstaged");
    content.name = QStringLiteral("Unstaged Diff");
    content.detail = QStringLiteral("app/store/RepositoryStore.cpp");
    content.diff = diff;
    content.use = DiffContent::Use::stageAndDiscard;
    return content;
}

struct Screen {
    explicit Screen(DiffLayout layout = DiffLayout::unified) : image(900, 1000, QImage::Format_ARGB32_Premultiplied)
    {
        view.resize(900, 1000);
        view.setLayout(layout);
        view.show();
        QApplication::processEvents();
    }

    void draw()
    {
        view.render(&image);
        benchmark::DoNotOptimize(image.constBits());
    }

    DiffView view;
    QImage image;
};

constexpr auto unified = static_cast<int>(DiffLayout::unified);
constexpr auto sideBySide = static_cast<int>(DiffLayout::sideBySide);

/// From the parsed diff to its first picture, another diff of 5,000 lines standing there before; the limit is 30 ms.
void BM_ShowDiff5000(benchmark::State& state)
{
    const gitkit::ParsedDiff diff = gitkit::DiffParser::parse(diffText(wholeDiff));
    gitkit::ParsedDiff other = diff;
    other.lines.back().text += " ";
    Screen screen(static_cast<DiffLayout>(state.range(0)));
    bool isOther = false;
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        std::vector<DiffContent> contents{content(isOther ? other : diff)};
        isOther = !isOther;
        state.ResumeTiming();
        screen.view.setContents(std::move(contents), DiffPlace::start);
        QApplication::processEvents();
        screen.draw();
    }
}
BENCHMARK(BM_ShowDiff5000)->ArgName("sideBySide")->Arg(unified)->Arg(sideBySide)->Unit(benchmark::kMillisecond);

/// A refresh that brings the diff that is shown.
void BM_ShowEqualDiff5000(benchmark::State& state)
{
    const gitkit::ParsedDiff diff = gitkit::DiffParser::parse(diffText(wholeDiff));
    Screen screen;
    screen.view.setContents({content(diff)}, DiffPlace::start);
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        std::vector<DiffContent> contents{content(diff)};
        state.ResumeTiming();
        screen.view.setContents(std::move(contents), DiffPlace::kept);
        QApplication::processEvents();
    }
}
BENCHMARK(BM_ShowEqualDiff5000)->Unit(benchmark::kMillisecond);

/// Page Down held: every frame shows lines that no frame before has shown.
void BM_DiffFrame_FreshLines(benchmark::State& state)
{
    Screen screen(static_cast<DiffLayout>(state.range(0)));
    screen.view.setContents({content(gitkit::DiffParser::parse(diffText(wholeDiff)))}, DiffPlace::start);
    QScrollBar* bar = screen.view.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + bar->pageStep());
        screen.draw();
    }
}
BENCHMARK(BM_DiffFrame_FreshLines)->ArgName("sideBySide")->Arg(unified)->Arg(sideBySide)->Unit(benchmark::kMillisecond);

/// A file of 20,000 lines shown whole around its 400 changes, and the changes alone again.
void BM_ShowWholeFile20000(benchmark::State& state)
{
    std::string file;
    std::string text = "diff --git a/f b/f\n--- a/f\n+++ b/f\n";
    for (int line = 1; line <= 20000; ++line) {
        const std::string code = "\tif (value" + std::to_string(line) + " != expected) { report(value); }\n";
        file += code;
        const std::string number = std::to_string(line);
        if (line % 50 == 0)
            text += "@@ -" + number + " +" + number + " @@\n-" + code + "+\tchanged();\n";
    }
    const DiffContent shown = content(gitkit::DiffParser::parse(text));
    Screen screen;
    screen.view.setContents({shown}, DiffPlace::start);
    screen.view.setTexts(shown.kind, {std::make_shared<const FileLines>(file), nullptr});
    const auto& document = screen.view.sections().front()->controller().diff().document();
    if (!document.gaps().hidesLines())
        state.SkipWithError("the file is not that of the diff");
    for ([[maybe_unused]] auto iteration : state) {
        screen.view.setShowsWholeFile(!screen.view.showsWholeFile());
        screen.draw();
    }
}
BENCHMARK(BM_ShowWholeFile20000)->Unit(benchmark::kMillisecond);

/// A line of a megabyte, scrolled sideways.
void BM_DiffFrame_EndlessLine(benchmark::State& state)
{
    std::string text = "diff --git a/f b/f\n--- a/f\n+++ b/f\n@@ -1 +1 @@\n+";
    while (text.size() < std::size_t{1} << 20)
        text += "some words\t";
    Screen screen;
    screen.view.setContents({content(gitkit::DiffParser::parse(text + "\n"))}, DiffPlace::start);
    QScrollBar* bar = screen.view.horizontalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + 300);
        screen.draw();
    }
}
BENCHMARK(BM_DiffFrame_EndlessLine)->Unit(benchmark::kMillisecond);

} // namespace
