// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace plovik {

/// Whether the user wants a light or a dark desktop, as the desktop tells it.
///
/// Used on the main thread. Asking goes on in the background: `Unknown` until the answer is there, and for good where
/// nobody answers.
class ColorScheme : public QObject {
    Q_OBJECT

public:
    enum class Preference { Unknown, Light, Dark };

    explicit ColorScheme(QObject* parent = nullptr);
    ~ColorScheme() override;

    Preference preference() const { return preference_; }

Q_SIGNALS:
    void changed(plovik::ColorScheme::Preference preference);

private:
    class Source;

    void set(Preference preference);

    Preference preference_ = Preference::Unknown;
    std::unique_ptr<Source> source_;
};

} // namespace plovik
