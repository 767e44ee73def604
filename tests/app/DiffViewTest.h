// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/parsers/DiffParser.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <map>

namespace plovik {

inline constexpr std::string_view diffHeader = "diff --git a/f b/f\nindex 1111..2222 100644\n--- a/f\n+++ b/f\n";

/// Rows 0 to 9; changes are 2, 3, 4 and 8.
inline const std::string twoHunks = std::string(diffHeader) + "@@ -1,3 +1,4 @@ one\n a\n-\tb\n+\tB\n+c\n d\n"
                                                              "@@ -20,2 +21,3 @@ two\n x\n+y\n z\n";

inline DiffContent contentOf(std::string_view text, DiffContent::Use use = DiffContent::Use::stageAndDiscard,
                             const QString& title = QStringLiteral("Unstaged"))
{
    using Kind = gitkit::DiffSection::Kind;
    static const std::map<QString, Kind> kinds{{QStringLiteral("Untracked"), Kind::untracked},
                                               {QStringLiteral("Conflict"), Kind::conflict},
                                               {QStringLiteral("Unstaged"), Kind::unstaged},
                                               {QStringLiteral("Staged"), Kind::staged}};
    DiffContent content;
    if (const auto kind = kinds.find(title); kind != kinds.end())
        content.kind = kind->second;
    content.title = title;
    content.name = title + QStringLiteral(" Diff");
    content.detail = QStringLiteral("f");
    content.diff = gitkit::DiffParser::parse(text);
    content.use = use;
    return content;
}

/// A diff view on the screen, with hands to work it.
class DiffViewTest : public testing::Test {
protected:
    DiffViewTest()
    {
        view.resize(700, 300);
        view.show();
        QObject::connect(&view, &DiffView::actionRequested, &view,
                         [this](const DiffContent&, const DiffAction& action) { asked.push_back(action); });
    }

    void show(std::vector<DiffContent> contents, DiffPlace place = DiffPlace::start)
    {
        view.setContents(std::move(contents), place);
        QApplication::processEvents();
    }
    DiffSectionView& section(std::size_t index = 0) { return *view.sections()[index]; }
    DiffController& controller(std::size_t index = 0) { return section(index).controller(); }

    void mouse(QEvent::Type type, QPoint at, Qt::KeyboardModifiers modifiers = {})
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, section().mapToGlobal(QPointF(at)), Qt::LeftButton, held, modifiers);
        QApplication::sendEvent(&section(), &event);
    }
    QPoint inGutter(int row)
    {
        const QRect cell = section().rowRect(row);
        return {cell.left() + 20, cell.center().y()};
    }
    QPoint inCode(int row, double column)
    {
        const DiffMetrics& metrics = section().places().metrics();
        const QRect cell = section().rowRect(row);
        return {cell.left() + metrics.codeLeft + qRound(column * metrics.cell), cell.center().y()};
    }
    void click(QPoint at, Qt::KeyboardModifiers modifiers = {})
    {
        mouse(QEvent::MouseButtonPress, at, modifiers);
        mouse(QEvent::MouseButtonRelease, at, modifiers);
    }
    void drag(QPoint from, QPoint to)
    {
        mouse(QEvent::MouseButtonPress, from);
        mouse(QEvent::MouseMove, to);
        mouse(QEvent::MouseButtonRelease, to);
    }
    void hover(QPoint at)
    {
        QMouseEvent event(QEvent::MouseMove, at, section().mapToGlobal(QPointF(at)), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&section(), &event);
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(&section(), &event);
    }
    QPushButton* button(const QString& name)
    {
        for (QPushButton* each : view.findChildren<QPushButton*>()) {
            if (each->accessibleName() == name && each->isVisible())
                return each;
        }
        return nullptr;
    }
    static QString copied() { return QApplication::clipboard()->text(); }

    DiffView view;
    std::vector<DiffAction> asked;
};

} // namespace plovik
