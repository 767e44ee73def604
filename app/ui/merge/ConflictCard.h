// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/ConflictReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/diff/ImagePane.h"

#include <QProperty>
#include <QScrollArea>

#include <optional>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace plovik {

/// The conflict of the selected file where it cannot be merged line by line: what happened, what each side has, pictures
/// of both, and a button for each answer. Alt+1 is the left side's, Alt+2 the right one's, and Alt+3 keeps both. Main
/// thread.
class ConflictCard : public QScrollArea {
    Q_OBJECT

public:
    /// `store` outlives the card.
    explicit ConflictCard(RepositoryStore& store, QWidget* parent = nullptr);

    /// Whether the selected file is shown.
    bool isFilled() const { return shown_.has_value(); }
    /// The buttons, in the order in which they stand.
    const std::vector<QPushButton*>& buttons() const { return buttons_; }

Q_SIGNALS:
    void filledChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// What the reader brings, with pictures.
    struct Facts {
        ConflictFacts read;
        std::optional<PicturePair> pictures;
    };
    static Facts digest(ConflictFacts read, const gitkit::Conflict& conflict);

    const gitkit::Conflict* conflict() const;
    void follow();
    void fill();
    void makeButtons();
    void answer(gitkit::ConflictAnswer answer);
    void showFacts();
    void showSide(QLabel& label, bool isLeft, const Facts* facts) const;
    void showPictures(const Facts* facts);

    RepositoryStore& store_;
    Latest<gitkit::Conflict, Facts> reading_;
    std::optional<gitkit::Conflict> shown_;
    gitkit::ConflictNames names_; ///< that are shown
    QWidget* card_;
    QVBoxLayout* column_;
    QLabel *path_, *happened_, *note_;
    QLabel *leftTitle_, *left_, *rightTitle_, *right_;
    ImagePane* pictures_ = nullptr;
    QWidget* buttonRow_ = nullptr;
    std::vector<QPushButton*> buttons_;
    std::vector<gitkit::ConflictAnswer> answers_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
