// SPDX-License-Identifier: MIT
#pragma once

#include <QTemporaryDir>

namespace sayloft::test {

/// Takes away all fonts but one that has letters, digits and ordinary punctuation only: no ticks,
/// crosses, arrows, circles or key signs. To be made before the application, whose fonts then stay
/// so.
class PlainFont {
public:
    PlainFont();

private:
    QTemporaryDir m_directory;
};

}  // namespace sayloft::test
