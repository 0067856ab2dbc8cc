// SPDX-License-Identifier: MIT
#include "audio/InputDevices.h"

#include "tests/support/FakeAudioInput.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

constexpr std::uint32_t builtIn = fourCharCode("bltn");
constexpr std::uint32_t usb = fourCharCode("usb ");

const QString laptop = QStringLiteral("laptop");
const QString headset = QStringLiteral("headset");

class TheInputDevices : public testing::Test {
protected:
    test::FakeAudioInput m_input;
    InputDevices m_devices{m_input};
};

TEST_F(TheInputDevices, areNoneOnAMachineWithoutAudioDevices) {
    EXPECT_TRUE(m_devices.allAudioDevices().empty());
    EXPECT_TRUE(m_devices.inputDeviceList().empty());
    EXPECT_EQ(m_devices.builtInInputDeviceID(), std::nullopt);
    EXPECT_EQ(m_devices.deviceIDForUID(laptop), std::nullopt);
    EXPECT_EQ(m_devices.deviceIDForUID(QString()), std::nullopt);
}

TEST_F(TheInputDevices, answerEmptyForADeviceThatIsNotThere) {
    EXPECT_FALSE(m_devices.deviceHasInput(7));
    EXPECT_EQ(m_devices.deviceTransport(7), 0U);
    EXPECT_EQ(m_devices.deviceUID(7), std::nullopt);
    EXPECT_EQ(m_devices.deviceName(7), QStringLiteral("Unknown"));
}

TEST_F(TheInputDevices, neverTakeBuiltInSpeakersForTheBuiltInMicrophone) {
    m_input.deviceList = {{.id = 1, .hasInput = false, .transport = builtIn}};
    EXPECT_EQ(m_devices.builtInInputDeviceID(), std::nullopt);
}

TEST_F(TheInputDevices, findTheFirstBuiltInMicrophone) {
    m_input.deviceList = {{.id = 1, .hasInput = false, .transport = builtIn},
                          {.id = 2, .transport = usb},
                          {.id = 3, .transport = builtIn},
                          {.id = 4, .transport = builtIn}};
    EXPECT_EQ(m_devices.builtInInputDeviceID(), 3U);
}

TEST_F(TheInputDevices, listInputsInTheSystemsOrderWithRepetitions) {
    const QString name = QStringLiteral("Microphone");
    m_input.deviceList = {{.id = 9, .uid = headset, .name = name},
                          {.id = 4, .hasInput = false, .uid = QStringLiteral("speakers")},
                          {.id = 5, .uid = laptop, .name = name},
                          {.id = 6, .uid = laptop, .name = name}};
    const std::vector<InputDevice> expected = {{headset, name}, {laptop, name}, {laptop, name}};
    EXPECT_EQ(m_devices.inputDeviceList(), expected);
    EXPECT_EQ(m_devices.allAudioDevices(), (std::vector<AudioDeviceId>{9, 4, 5, 6}));
}

TEST_F(TheInputDevices, leaveOutAnInputWithoutAReadableIdentifier) {
    m_input.deviceList = {{.id = 1, .name = QStringLiteral("Nameless")}, {.id = 2, .uid = laptop}};
    ASSERT_EQ(m_devices.inputDeviceList().size(), 1U);
    EXPECT_EQ(m_devices.inputDeviceList()[0].uid, laptop);
}

TEST_F(TheInputDevices, callAnInputWithoutAReadableNameUnknown) {
    m_input.deviceList = {{.id = 1, .uid = laptop}};
    const std::vector<InputDevice> expected = {{laptop, QStringLiteral("Unknown")}};
    EXPECT_EQ(m_devices.inputDeviceList(), expected);
}

TEST_F(TheInputDevices, findADeviceWithoutInputByItsIdentifier) {
    m_input.deviceList = {{.id = 1}, {.id = 2, .hasInput = false, .uid = laptop}};
    EXPECT_EQ(m_devices.deviceIDForUID(laptop), 2U);
}

TEST_F(TheInputDevices, findTheFirstOfTwoDevicesWithTheSameIdentifier) {
    m_input.deviceList = {{.id = 8, .uid = laptop}, {.id = 2, .uid = laptop}};
    EXPECT_EQ(m_devices.deviceIDForUID(laptop), 8U);
}

TEST_F(TheInputDevices, compareIdentifiersExactly) {
    m_input.deviceList = {{.id = 1, .uid = laptop}};
    EXPECT_EQ(m_devices.deviceIDForUID(QStringLiteral("Laptop")), std::nullopt);
    EXPECT_EQ(m_devices.deviceIDForUID(QStringLiteral("laptop ")), std::nullopt);
}

}  // namespace
}  // namespace sayloft
