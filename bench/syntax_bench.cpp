// SPDX-License-Identifier: GPL-3.0-or-later
// The colours of code: what working them out takes on a worker, and what they add to a frame.

#include "GitKit/parsers/DiffParser.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QScrollBar>

#include <string>

namespace {

using namespace plovik;

constexpr int fileLines = 5000;

std::string code(int lines)
{
    std::string text;
    for (int line = 0; line < lines; ++line) {
        const std::string number = std::to_string(line);
        if (line % 5 == 0)
            text += "/// Reads part " + number + " of what was written, and says where it ended.\n";
        else if (line % 5 == 1)
            text += "std::vector<Part> readPart" + number + "(const std::string& input, int depth = 3)\n";
        else if (line % 5 == 2)
            text += "{\n";
        else if (line % 5 == 3)
            text +=
                "\tif (input.empty() || depth > 0x1F) return fail(\"part " + number + " is missing\"); // for now\n";
        else
            text += "\tconst auto value = static_cast<unsigned>(reader.parse(input, Options{.depth = 4}));}\n";
    }
    return text;
}

SyntaxRequest request(const std::string& text)
{
    SyntaxRequest request;
    request.file = std::make_shared<const FileLines>(text);
    request.path = "part.cpp";
    return request;
}

void BM_Highlight5000(benchmark::State& state)
{
    const SyntaxRequest whole = request(code(fileLines));
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto iteration : state)
        bytes = highlighted(whole)->size();
    state.counters["file"] = static_cast<double>(whole.file->bytes().size());
    state.counters["withColours"] = static_cast<double>(bytes);
}
BENCHMARK(BM_Highlight5000)->Unit(benchmark::kMillisecond);

/// Every frame shows lines that no frame before has shown; plain and coloured in one run.
void BM_CodeFrame(benchmark::State& state)
{
    const std::string text = code(fileLines);
    std::string diff = "diff --git a/part.cpp b/part.cpp\n--- a/part.cpp\n+++ b/part.cpp\n@@ -0,0 +1,5000 @@\n";
    const auto whole = request(text);
    for (int line = 1; line < fileLines; ++line)
        diff += "+" + std::string(whole.file->line(line)) + "\n";
    DiffView view;
    view.resize(900, 1000);
    view.show();
    DiffContent content;
    content.name = QStringLiteral("Diff");
    content.path = "part.cpp";
    content.diff = gitkit::DiffParser::parse(diff);
    view.setContents({content}, DiffPlace::start);
    if (state.range(0) != 0)
        view.setSyntax(content.kind, {nullptr, highlighted(whole)});
    QApplication::processEvents();
    QImage image(900, 1000, QImage::Format_ARGB32_Premultiplied);
    QScrollBar* bar = view.verticalScrollBar();
    for ([[maybe_unused]] auto iteration : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + bar->pageStep());
        view.render(&image);
    }
}
BENCHMARK(BM_CodeFrame)->ArgName("coloured")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
