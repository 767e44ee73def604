// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <array>
#include <memory>
#include <optional>

namespace plovik {

/// Tells whether the user has set the desktop to light or dark and to high contrast, and which accent colour.
///
/// Used on the main thread. Asking goes on in the background: `Unknown` until the answer is there, and for good where
/// nobody answers.
class ColorScheme : public QObject {
    Q_OBJECT

public:
    enum class Preference { Unknown, Light, Dark };

    explicit ColorScheme(QObject* parent = nullptr);
    ~ColorScheme() override;

    Preference preference() const { return look_.preference; }
    bool wantsHighContrast() const { return look_.wantsHighContrast; }
    /// Red, green and blue from 0 to 1.
    using Color = std::array<float, 3>;
    /// nullopt where the desktop names none.
    const std::optional<Color>& accent() const { return look_.accent; }

Q_SIGNALS:
    void changed();

private:
    class Source;

    struct Look {
        Preference preference = Preference::Unknown;
        bool wantsHighContrast = false;
        std::optional<Color> accent = {};
        bool operator==(const Look&) const = default;
    };
    void set(const Look& look);

    Look look_;
    std::unique_ptr<Source> source_;
};

} // namespace plovik
