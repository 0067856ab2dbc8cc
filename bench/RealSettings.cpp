// SPDX-License-Identifier: MIT
#include "bench/RealSettings.h"

#include "models/ModelCatalogue.h"
#include "models/Paths.h"
#include "platform/Platform.h"
#include "tests/support/WaitUntil.h"
#include "ui/AppWindows.h"

#include <stdexcept>

namespace sayloft::bench {
namespace {

/// As somebody has it who has changed every setting.
constexpr const char* configuration =
    R"({"model":"english","dictateChords":[12,3,5],"dictateEnterChords":[13],)"
    R"("inputDeviceUID":"headset0","leaveInClipboard":true,"playSounds":true,)"
    R"("replacements":[["say loft","Sayloft"]],"pillStyle":"minimal","holdDuration":2})";

}  // namespace

RealSettings::RealSettings(int headsets) {
    plugIn(headsets);
    test::writeFile(Config::url(), configuration);
    test::writeFile(modelPath(modelInfo(QStringLiteral("english")).file), "model");
    m_app = std::make_unique<AppDelegate>(loadPlatform(m_connection));
    m_app->windows = std::make_unique<AppWindows>(*m_app);
    const auto sees = [&] {
        return m_app->inputDeviceList().size() > static_cast<std::size_t>(headsets);
    };
    if (!test::waitUntil(sees))
        throw std::runtime_error("the program does not see the microphones");
}

void RealSettings::plugIn(int headsets) const {
    for (int i = 0; i < headsets; ++i) {
        const QString name = QStringLiteral("headset%1").arg(i);
        m_room.addMicrophone(name, {{QStringLiteral("device.description"), name},
                                    {QStringLiteral("device.bus"), QStringLiteral("usb")}});
    }
}

}  // namespace sayloft::bench
