// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffNotes.h"
#include "app/ui/diff/Picture.h"
#include "app/ui/diff/PictureComparison.h"

#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

class QLabel;
class QPushButton;
class QSlider;

namespace plovik {

class CheckeredPicture;

/// One side of a changed picture. Value.
struct PictureSide {
    std::uint64_t fileSize = 0;
    Picture picture;

    bool operator==(const PictureSide&) const = default;
};

/// Both sides of a changed picture, or of a conflict; nullopt for a side without a file. Value.
struct PicturePair {
    std::optional<PictureSide> before;
    std::optional<PictureSide> after;
    bool areSamePixels = false;
    ConflictNames conflict = {}; ///< empty for a change

    bool operator==(const PicturePair&) const = default;
};

/// Shows a changed picture before and after, scaled down to fit by the same factor: beside each other or, as the reader
/// chooses for all pictures, over each other with a slider. Below stand the sizes and what changed. Main thread.
class ImagePane : public QWidget {
    Q_OBJECT

public:
    explicit ImagePane(PicturePair pair, QWidget* parent = nullptr);

    /// Sets how high the pictures may be, with everything around them. Returns whether that is another height.
    bool setRoom(int height);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    /// heightForWidth() has changed.
    void heightChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Side {
        QLabel* title = nullptr;
        CheckeredPicture* picture = nullptr;
        QLabel* caption = nullptr;
    };
    /// The sizes that the pictures are drawn with.
    struct Drawn {
        QSize before, after;
    };

    void makeChoice();
    void followMode();
    bool isOver() const { return comparison_ && mode_ != PictureMode::beside; }
    int choiceHeight() const;
    int sliderHeight() const;
    int pictureWidth(int width) const;
    Side makeSide(const PictureSide& side, const QString& title);
    int columnWidth(int width) const;
    int captionHeight(int width) const;
    Drawn drawnSizes(int width) const;
    QString changeText() const;
    void place();
    void placeSide(Side& side, QSize drawn, int left, int width, int pictureHeight);
    void applyTheme();

    PicturePair pair_;
    std::optional<Side> before_, after_;
    // These are there only for two pictures.
    std::vector<QPushButton*> choice_; ///< by mode
    PictureComparison* comparison_ = nullptr;
    QSlider* slider_ = nullptr;
    PictureMode mode_ = PictureMode::beside;
    QLabel* change_;
    int room_ = 480;
};

} // namespace plovik
