// SPDX-License-Identifier: MIT
#include "tests/support/TwoScreens.h"

#include "tests/support/TempHome.h"

namespace sayloft::test {
namespace {

const QString mode = QStringLiteral("1920x1080");

constexpr const char* configuration = R"(Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5.0-1000.0
    VertRefresh 5.0-200.0
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "1920x1080"
        Virtual 4096 2304
    EndSubSection
EndSection
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoEnableDevices" "false"
EndSection
)";

}  // namespace

TwoScreens::TwoScreens() {
    const QString file = m_directory.filePath(QStringLiteral("xorg.conf"));
    writeFile(file, configuration);
    m_server = std::make_unique<XServer>(
        QStringLiteral("Xorg"),
        QStringList{QStringLiteral("-config"), file, QStringLiteral("-logfile"),
                    m_directory.filePath(QStringLiteral("xorg.log"))});
    xrandr({QStringLiteral("--addmode"), right, mode});
    switchOnRightOfTheOther(right);
    makeMain(left);
}

void TwoScreens::makeMain(const QString& screen) const {
    xrandr({QStringLiteral("--output"), screen, QStringLiteral("--primary")});
}

void TwoScreens::setMode(const QString& screen, const QString& mode) const {
    xrandr({QStringLiteral("--output"), screen, QStringLiteral("--mode"), mode});
}

void TwoScreens::switchOff(const QString& screen) const {
    xrandr({QStringLiteral("--output"), screen, QStringLiteral("--off")});
}

void TwoScreens::switchOnRightOfTheOther(const QString& screen) const {
    xrandr({QStringLiteral("--output"), screen, QStringLiteral("--mode"), mode,
            QStringLiteral("--right-of"), screen == right ? left : right});
}

void TwoScreens::xrandr(const QStringList& arguments) const {
    run(QStringLiteral("xrandr"), arguments, {}, m_server->environment());
}

}  // namespace sayloft::test
