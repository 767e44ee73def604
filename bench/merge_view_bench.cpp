// SPDX-License-Identifier: GPL-3.0-or-later
// The merge view of 20,000 lines with 500 conflicts, and of 10 MB: what it takes to show it, to type in its result, to decide a
// conflict, and to draw a frame while scrolling.

#include "GitKit/MergeSegments.h"
#include "app/ui/merge/MergeColumns.h"
#include "app/ui/merge/MergeEditor.h"
#include "app/ui/merge/MergeView.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QScrollBar>

#include <map>
#include <string>

namespace {

using namespace plovik;

constexpr int conflictEvery = 40;

std::string sideText(int lineCount, const char* name, int own)
{
    std::string text;
    for (int number = 0; number < lineCount; ++number) {
        const bool isChanged = number % conflictEvery == 0 || number % conflictEvery == own;
        text += "    const auto value" + std::to_string(number) + " = compute(" + (isChanged ? name : "old") + ");\n";
    }
    return text;
}

MergeContent content(int lineCount = 20'000)
{
    static std::map<int, MergeResult::Sides> merges;
    MergeResult::Sides& sides = merges[lineCount];
    if (!sides)
        sides = std::make_shared<const gitkit::MergedSides>(
            gitkit::mergedSides({}, {.base = sideText(lineCount, "old", -1),
                                     .left = sideText(lineCount, "left", 15),
                                     .right = sideText(lineCount, "right", 25)}));
    MergeContent content;
    content.path = "file.cpp";
    content.sides = sides;
    content.names = {QStringLiteral("main"), QStringLiteral("topic"), QStringLiteral("common ancestor")};
    return content;
}

struct MergeScreen {
    MergeScreen() : image(1200, 900, QImage::Format_ARGB32_Premultiplied)
    {
        view.resize(1200, 900);
        view.show();
        QApplication::processEvents();
    }

    void draw()
    {
        QApplication::sendPostedEvents();
        view.render(&image);
    }

    MergeView view;
    QImage image;
};

void showMerge(benchmark::State& state)
{
    MergeScreen screen;
    const auto lineCount = static_cast<int>(state.range(0));
    const MergeContent shown = content(lineCount);
    if (shown.sides->conflictCount() != static_cast<std::size_t>(lineCount / conflictEvery))
        state.SkipWithError("not as many conflicts as there should be");
    for ([[maybe_unused]] auto _ : state) {
        screen.view.setContent(shown);
        screen.draw();
    }
}
BENCHMARK(showMerge)->Name("BM_ShowMerge")->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

void typeInResult(benchmark::State& state)
{
    MergeScreen screen;
    screen.view.setContent(content(static_cast<int>(state.range(0))));
    MergeEditor& editor = *screen.view.editor();
    QTextCursor cursor(editor.document());
    cursor.setPosition(editor.document()->characterCount() / 2);
    editor.setTextCursor(cursor);
    for ([[maybe_unused]] auto _ : state) {
        editor.insertPlainText(QStringLiteral("x"));
        QApplication::processEvents();
        screen.draw();
    }
}
BENCHMARK(typeInResult)->Name("BM_TypeInResult")->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

void decideConflict(benchmark::State& state)
{
    MergeScreen screen;
    screen.view.setContent(content());
    bool isLeft = false;
    for ([[maybe_unused]] auto _ : state) {
        isLeft = !isLeft;
        screen.view.editor()->choose(*screen.view.columns()->current(),
                                     isLeft ? gitkit::MergeChoice::left : gitkit::MergeChoice::right);
        screen.draw();
    }
}
BENCHMARK(decideConflict)->Name("BM_DecideConflict")->Unit(benchmark::kMillisecond);

void scrollMerge(benchmark::State& state)
{
    MergeScreen screen;
    screen.view.setContent(content());
    QScrollBar& bar = *screen.view.columns()->verticalScrollBar();
    for ([[maybe_unused]] auto _ : state) {
        bar.setValue((bar.value() + 97) % bar.maximum());
        screen.draw();
    }
}
BENCHMARK(scrollMerge)->Name("BM_ScrollMerge")->Unit(benchmark::kMillisecond);

} // namespace
