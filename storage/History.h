// SPDX-License-Identifier: MIT
#pragma once

#include "storage/KeptFile.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace sayloft {

/// The most recent transcripts, newest first, kept in a file. Main thread only.
class History {
public:
    /// Loads the file; a missing or damaged one is an empty history.
    History();

    [[nodiscard]] const std::vector<QString>& items() const { return m_items; }

    /// Puts `text` first, whatever it is, drops all but the 50 newest and saves.
    void add(const QString& text);
    void clear();

    /// "history.json" in DATA_DIR.
    [[nodiscard]] static QString url();
    [[nodiscard]] static KeptFile file();

    /// None when the text is no JSON array of strings.
    [[nodiscard]] static std::optional<std::vector<QString>> decode(const QByteArray& json);
    [[nodiscard]] static QByteArray encode(const std::vector<QString>& items);

private:
    void save() const;

    std::vector<QString> m_items;
};

}  // namespace sayloft
