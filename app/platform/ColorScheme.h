// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace plovik {

/// Tells whether the user has set the desktop to light or dark.
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
