// SPDX-License-Identifier: MIT
#pragma once

#include "ui/tests/KeptLook.h"

#include <QString>

class QWidget;

namespace sayloft::test {

struct DesktopLook {
    bool isDark = false;
    double fontScale = 1;
};

/// The desktop looks like that while this object lives.
class DesktopLooks {
public:
    explicit DesktopLooks(const DesktopLook& look);
    ~DesktopLooks();
    DesktopLooks(const DesktopLooks&) = delete;
    DesktopLooks& operator=(const DesktopLooks&) = delete;

private:
    const KeptLook m_before;
    const QString m_style;
};

/// Writes the window as it is, at a scale of the screen, to the folder of the pictures.
void takePicture(QWidget& window, const QString& name, double scale = 1);

}  // namespace sayloft::test
