// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

/// Short sounds by name. Never blocks; a sound that cannot be played is silence. Main thread.
class SystemSounds {
public:
    virtual ~SystemSounds() = default;

    /// `name` is one of "Pop" and "Tink".
    virtual void play(const QString& name) = 0;
};

}  // namespace sayloft
