// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/OutputPlaces.h"

#include <QPlainTextEdit>

#include <vector>

namespace plovik {

/// The output of a command, in which places in files are links: a click opens one, and so does Return on its line. Main
/// thread.
class OutputText : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit OutputText(QWidget* parent = nullptr);

    /// Marks these places of the text, and no others.
    void setPlaces(std::vector<OutputPlace> places);

Q_SIGNALS:
    void placeChosen(const OutputPlace& place);

protected:
    void changeEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const OutputPlace* placeAt(QPoint position) const;
    const OutputPlace* placeInLine() const;
    void mark();

    std::vector<OutputPlace> places_;
};

} // namespace plovik
