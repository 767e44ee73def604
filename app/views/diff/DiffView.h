#pragma once

#include "app/views/diff/DiffAction.h"

#include <QAbstractScrollArea>

#include <vector>

namespace plovik {

class DiffSectionView;

/// Diffs one below the other, scrolled together. What a frame costs depends on what is in sight. Main thread.
class DiffView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit DiffView(QWidget* parent = nullptr);

    /// A content equal to the one in its place keeps selection and current line; `place` is where the rest goes on.
    void setContents(std::vector<DiffContent> contents, DiffPlace place);
    const std::vector<DiffSectionView*>& sections() const { return sections_; }

    /// See DiffSectionView::setActionsAvailable().
    void setActionsAvailable(bool available);

public Q_SLOTS:
    /// Of the diff that has the focus, else of the first with a selection.
    void copy();
    void selectAll();

Q_SIGNALS:
    void actionRequested(const plovik::DiffContent& content, const plovik::DiffAction& action);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;

private:
    DiffSectionView* sectionNamed(const QString& name, std::vector<DiffSectionView*>& from);
    DiffSectionView* addSection();
    void layOut();
    void placeSections();
    void reveal(DiffSectionView* section, QRect area);
    void leave(DiffSectionView* section, int direction);
    void applyTheme();

    std::vector<DiffSectionView*> sections_;
    std::vector<int> tops_; ///< of each section, unscrolled
    bool areActionsAvailable_ = true;
    bool isFilling_ = false;
};

} // namespace plovik
