// SPDX-License-Identifier: MIT
#pragma once

#include "storage/KeptFile.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace sayloft {

/// All user settings, with their defaults. Main thread only.
struct Config {
    std::vector<std::int64_t> dictateChords{12};   ///< `Mods::rawValue` each; 12 is Shift+Command
    std::vector<std::int64_t> dictateEnterChords;  ///< chords that press Return after the text
    std::optional<QString> inputDeviceUID;         ///< none: the built-in microphone
    QString pillStyle = QStringLiteral("full");    ///< "full" or "minimal"
    double animAppear = 0.3;                       ///< easing rate per frame, 0 to 1
    double animHide = 0.3;                         ///< easing rate per frame, 0 to 1
    double holdDuration = 1.0;                     ///< seconds
    bool leaveInClipboard = false;
    std::vector<std::vector<QString>> replacements;  ///< heard text and replacement, in order
    bool boostMic = true;
    bool playSounds = false;
    QString model = QStringLiteral("multilingual");  ///< key in the model catalogue

    bool operator==(const Config&) const = default;

    /// "config.json" in DATA_DIR.
    [[nodiscard]] static QString url();

    [[nodiscard]] static KeptFile file();

    /// Never fails: what cannot be read has its default. Writes nothing.
    [[nodiscard]] static Config load();

    /// Rewrites the file in place, later where that fails; failures are silent.
    void save() const;

    /// Every key is read on its own; none when the top level is not a JSON object.
    [[nodiscard]] static std::optional<Config> decode(const QByteArray& json);
    [[nodiscard]] QByteArray encode() const;
};

}  // namespace sayloft
