// SPDX-License-Identifier: MIT
#pragma once

#include "tests/outside/WindowDesk.h"

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

namespace sayloft::test {

/// A test with the settings window of the real program.
class SettingsOnDesk : public testing::Test {
protected:
    void open(const QByteArray& configuration = R"({"model":"starter"})") {
        m_desk.startSayloft(configuration);
        m_desk.openSettings();
    }

    /// Beside the microphone of the laptop; before the program is started.
    void plugInHeadset() {
        m_desk.plugInSound();
        m_desk.room().addMicrophone(
            QStringLiteral("headset"),
            {{QStringLiteral("device.description"), QStringLiteral("Headset")},
             {QStringLiteral("device.bus"), QStringLiteral("usb")}});
    }

    void press(const QString& title) const { m_desk.press(WindowDesk::settings, title); }

    [[nodiscard]] AccessibleObject control(const QString& title) const {
        return m_desk.control(WindowDesk::settings, title);
    }

    WindowDesk m_desk;
};

}  // namespace sayloft::test
