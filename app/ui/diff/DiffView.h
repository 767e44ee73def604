// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/DiffLayout.h"
#include "app/ui/diff/FileLines.h"

#include <QAbstractScrollArea>

#include <vector>

namespace plovik {

class DiffSectionView;
struct SyntaxOf;

/// Diffs one below the other, scrolled together. What a frame costs depends on what is in sight. Main thread.
class DiffView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit DiffView(QWidget* parent = nullptr);

    /// A content equal to the one in its place keeps selection and current line; `place` is where the rest goes on.
    void setContents(std::vector<DiffContent> contents, DiffPlace place);
    const std::vector<DiffSectionView*>& sections() const { return sections_; }
    /// The whole files of the section of this name, any time after its content: with them, lines that the diff leaves
    /// out can be shown. Forgotten when the section's diff changes.
    void setTexts(const QString& section, const DiffTexts& texts);
    /// The colours of their code, as soon as they are known and again when more of them are.
    void setSyntax(const QString& section, const SyntaxOf& syntax);

    /// For every diff that has two sides; the others stay unified.
    void setLayout(DiffLayout layout);
    DiffLayout diffLayout() const { return layout_; }
    /// Of every diff whose files are known, and of those that become known.
    bool showsWholeFile() const { return showsWholeFile_; }
    void setShowsWholeFile(bool whole);

    /// See DiffSectionBar::setReserve(); for every bar, so that their buttons stand below each other.
    void setBarReserve(int width);
    /// See DiffSectionView::setActionsAvailable().
    void setActionsAvailable(bool available);

public Q_SLOTS:
    /// Of the diff that has the focus, else of the first with a selection.
    void copy();
    void selectAll();
    /// To the next or previous run of changed lines, from one diff to the other.
    void nextChange() { goToChange(1); }
    void previousChange() { goToChange(-1); }

Q_SIGNALS:
    void showsWholeFileChanged(bool whole);
    /// Other sections, rows or sizes than before.
    void laidOut();
    void actionRequested(const plovik::DiffContent& content, const plovik::DiffAction& action);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;

private:
    DiffSectionView* sectionNamed(const QString& name, std::vector<DiffSectionView*>& from);
    DiffSectionView* addSection();
    void layOut(int shift);
    void placeSections();
    void reveal(DiffSectionView* section, QRect area);
    void leave(DiffSectionView* section, int direction);
    void goToChange(int direction);
    DiffSectionView* sectionAtHand() const;
    void applyTheme();

    std::vector<DiffSectionView*> sections_;
    std::vector<int> tops_; ///< of each section, unscrolled
    int barReserve_ = 0;
    DiffLayout layout_ = DiffLayout::unified;
    bool showsWholeFile_ = false;
    bool areActionsAvailable_ = true;
    bool isFilling_ = false;
};

} // namespace plovik
