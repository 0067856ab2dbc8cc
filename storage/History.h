// SPDX-License-Identifier: MIT
#pragma once

#include "storage/KeptFile.h"

#include <QString>

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

private:
    void save() const;

    std::vector<QString> m_items;
};

}  // namespace sayloft
