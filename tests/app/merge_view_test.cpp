// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/MergeSegments.h"
#include "app/ui/merge/MergeColumns.h"
#include "app/ui/merge/MergeEditor.h"
#include "app/ui/merge/MergeView.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

#include <gtest/gtest.h>

namespace plovik {
namespace {

using gitkit::MergeInput;

MergeInput threeConflicts()
{
    MergeInput input{.base = std::string(), .left = {}, .right = {}};
    for (int number = 1; number <= 90; ++number) {
        const std::string line = "line " + std::to_string(number);
        const bool isConflict = number % 30 == 5;
        *input.base += line + '\n';
        input.left += line + (isConflict ? " on the left\n" : number == 20 ? " better\n" : "\n");
        input.right += line + (isConflict ? " on the right\n" : "\n");
    }
    return input;
}

struct ShownMerge {
    explicit ShownMerge(const MergeInput& input)
    {
        view.resize(900, 600);
        view.show();
        MergeContent content;
        content.path = "dir/file.cpp";
        content.sides = std::make_shared<const gitkit::MergedSides>(gitkit::mergedSides({}, input));
        content.names = {QStringLiteral("main"), QStringLiteral("topic"), QStringLiteral("common ancestor")};
        view.setContent(content);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        view.columns()->setFocus();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(view.focusWidget(), static_cast<Qt::Key>(key), modifiers);
        QCoreApplication::processEvents();
    }
    QString count() const
    {
        for (const QLabel* label : view.findChildren<QLabel*>()) {
            if (label->accessibleName() == QLatin1String("Conflicts Left"))
                return label->text();
        }
        return {};
    }
    std::string bytes() const { return view.bytes({}).value_or("none"); }

    MergeView view;
};

TEST(MergeView, IsDrivenByKeysAlone)
{
    const MergeInput input = threeConflicts();
    ShownMerge shown(input);
    EXPECT_EQ(shown.count(), QStringLiteral("3 of 3 left"));
    const QTextBlock undecided = shown.view.editor()->document()->findBlockByNumber(4);
    EXPECT_GT(undecided.layout()->boundingRect().height(), 5) << "the line says what there is to do";
    shown.press(Qt::Key_1, Qt::AltModifier);
    EXPECT_EQ(shown.count(), QStringLiteral("2 of 3 left"));
    shown.press(Qt::Key_F8);
    shown.press(Qt::Key_3, Qt::AltModifier);
    shown.press(Qt::Key_F8);
    shown.press(Qt::Key_0, Qt::AltModifier);
    EXPECT_EQ(shown.count(), QStringLiteral("All decided"));
    const std::string result = shown.bytes();
    EXPECT_NE(result.find("line 5 on the left\nline 6\n"), std::string::npos);
    EXPECT_NE(result.find("line 35 on the left\nline 35 on the right\n"), std::string::npos);
    EXPECT_NE(result.find("line 64\nline 66\n"), std::string::npos);
    EXPECT_EQ(shown.view.editor()->toPlainText().toStdString(), result);

    shown.view.editor()->setFocus();
    shown.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shown.count(), QStringLiteral("1 of 3 left"));
    shown.press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(shown.bytes(), result);

    QSignalSpy resolved(&shown.view, &MergeView::resolveRequested);
    shown.press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(resolved.size(), 1);
    shown.press(Qt::Key_B, Qt::AltModifier);
    EXPECT_TRUE(shown.view.columns()->isBaseShown());
}

TEST(MergeView, WhatIsWrittenIntoAConflictDecidesIt)
{
    ShownMerge shown(threeConflicts());
    MergeEditor& editor = *shown.view.editor();
    editor.setFocus();
    editor.reveal(*shown.view.columns()->current());
    QTest::keyClicks(&editor, QStringLiteral("mine"));
    QCoreApplication::processEvents();
    EXPECT_EQ(shown.count(), QStringLiteral("2 of 3 left"));
    EXPECT_NE(shown.bytes().find("line 4\nmine\nline 6\n"), std::string::npos);
    // Across what is decided and what is not; the line end that the document adds is none of the file's.
    editor.selectAll();
    QTest::keyClicks(&editor, QStringLiteral("x"));
    QCoreApplication::processEvents();
    EXPECT_EQ(shown.bytes(), "x");
    EXPECT_EQ(shown.count(), QStringLiteral("All decided"));
    editor.undo();
    EXPECT_EQ(shown.count(), QStringLiteral("2 of 3 left"));
    EXPECT_EQ(editor.toPlainText().count(QStringLiteral("line")), 87);
    while (editor.canUndo())
        editor.undo();
    EXPECT_EQ(shown.count(), QStringLiteral("3 of 3 left"));
    EXPECT_FALSE(shown.view.isChanged());
}

TEST(MergeView, KeepsCharactersThatADocumentWouldChange)
{
    const std::string odd = std::string("a\rb \xc2\xa0 \xe2\x80\xa8 \f") + '\0' + "\n";
    ShownMerge shown({.base = odd + "1\n", .left = odd + "2\n", .right = odd + "3\n"});
    shown.press(Qt::Key_2, Qt::AltModifier);
    shown.view.editor()->moveCursor(QTextCursor::End);
    QTest::keyClicks(shown.view.editor(), QStringLiteral("end"));
    QCoreApplication::processEvents();
    EXPECT_EQ(shown.bytes(), odd + "3\nend");
}

TEST(MergeView, LeavesAChangeOutAndScrollsBothViewsTogether)
{
    ShownMerge shown(threeConflicts());
    shown.view.editor()->verticalScrollBar()->setValue(shown.view.editor()->verticalScrollBar()->maximum());
    EXPECT_GT(shown.view.columns()->verticalScrollBar()->value(), 0);
    std::size_t change = 0;
    while (shown.view.content().sides->segments[change].kind != gitkit::MergeSegment::Kind::changedLeft)
        ++change;
    shown.view.columns()->goTo(change);
    EXPECT_EQ(shown.view.columns()->place().segment, change - 1);
    shown.press(Qt::Key_0, Qt::AltModifier);
    EXPECT_NE(shown.bytes().find("line 20\n"), std::string::npos);
    shown.press(Qt::Key_0, Qt::AltModifier);
    EXPECT_NE(shown.bytes().find("line 20 better\n"), std::string::npos);
}

} // namespace
} // namespace plovik
