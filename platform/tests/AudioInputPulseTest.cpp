// SPDX-License-Identifier: MIT
#include "platform/linux/AudioInputPulse.h"

#include "tests/support/SoundServer.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <atomic>
#include <memory>

#include <gtest/gtest.h>

using namespace sayloft;
using namespace sayloft::test;
using namespace std::chrono_literals;
using Authorization = AudioInput::Authorization;

namespace {

const SoundServer::Properties usbMicrophone{
    {QStringLiteral("device.description"), QStringLiteral("Desk Microphone")},
    {QStringLiteral("device.form_factor"), QStringLiteral("microphone")},
    {QStringLiteral("device.bus"), QStringLiteral("usb")}};
const SoundServer::Properties headset{
    {QStringLiteral("device.form_factor"), QStringLiteral("headset")},
    {QStringLiteral("device.bus"), QStringLiteral("bluetooth")},
    {QStringLiteral("device.api"), QStringLiteral("bluez")}};

/// Longest of the calls that the main thread makes during a dictation.
std::chrono::milliseconds longestCall(const AudioInput& input) {
    auto longest = 0ms;
    const auto measure = [&longest](const auto& call) {
        const auto begin = std::chrono::steady_clock::now();
        call();
        longest = std::max(longest, std::chrono::duration_cast<std::chrono::milliseconds>(
                                        std::chrono::steady_clock::now() - begin));
    };
    measure([&] { static_cast<void>(input.devices()); });
    measure([&] { static_cast<void>(input.inputFormat(std::nullopt)); });
    measure([&] { static_cast<void>(input.authorization()); });
    return longest;
}

}  // namespace

class AudioInputPulseDevices : public testing::Test {
protected:
    std::optional<AudioDeviceId> find(const QString& uid) const {
        for (const AudioDeviceId id : input.devices()) {
            if (input.uid(id) == uid)
                return id;
        }
        return std::nullopt;
    }
    std::uint32_t transportOf(const QString& uid) const {
        const auto id = find(uid);
        return id ? input.transport(*id) : 1;
    }
    bool appears(const QString& uid) const {
        return waitUntil([&] { return find(uid).has_value(); }, 3s);
    }
    bool disappears(const QString& uid) const {
        return waitUntil([&] { return !find(uid).has_value(); }, 3s);
    }

    SoundServer server;
    AudioInputPulse input;
    const QString builtin = QStringLiteral("builtin");
    const QString usb = QStringLiteral("usb");
    const QString monitor = QStringLiteral("room.monitor");
};

TEST_F(AudioInputPulseDevices, areThereWhenAskedForAtOnce) {
    EXPECT_EQ(input.devices().size(), 2U);
    EXPECT_EQ(input.inputFormat(std::nullopt).sampleRate, 16000);
    EXPECT_EQ(input.inputFormat(std::nullopt).channels, 1);
}

TEST_F(AudioInputPulseDevices, haveNameAndTransport) {
    ASSERT_TRUE(appears(builtin));
    EXPECT_EQ(input.name(*find(builtin)), QStringLiteral("Built-in Audio Analog Stereo"));
    EXPECT_EQ(transportOf(builtin), fourCharCode("bltn"));

    server.addMicrophone(usb, usbMicrophone);
    ASSERT_TRUE(appears(usb));
    EXPECT_EQ(input.name(*find(usb)), QStringLiteral("Desk Microphone"));
    EXPECT_EQ(transportOf(usb), fourCharCode("usb "));

    server.addMicrophone(QStringLiteral("headset"), headset);
    ASSERT_TRUE(appears(QStringLiteral("headset")));
    EXPECT_EQ(transportOf(QStringLiteral("headset")), fourCharCode("blue"));
}

TEST_F(AudioInputPulseDevices, onTheMainboardAreBuiltInWithoutAFormFactor) {
    server.addMicrophone(usb, {{QStringLiteral("device.bus"), QStringLiteral("pci")},
                               {QStringLiteral("device.api"), QStringLiteral("alsa")},
                               {QStringLiteral("device.class"), QStringLiteral("sound")}});
    ASSERT_TRUE(appears(usb));
    EXPECT_EQ(transportOf(usb), fourCharCode("bltn"));
}

TEST_F(AudioInputPulseDevices, withoutPropertiesHaveNoKnownTransport) {
    server.addMicrophone(usb, {});
    ASSERT_TRUE(appears(usb));
    EXPECT_EQ(transportOf(usb), 0U);
    EXPECT_TRUE(input.hasInput(*find(usb)));
}

TEST_F(AudioInputPulseDevices, thatHearTheSpeakersAreNoInput) {
    ASSERT_TRUE(appears(monitor));
    const AudioDeviceId id = *find(monitor);
    EXPECT_FALSE(input.hasInput(id));
    EXPECT_EQ(input.inputFormat(id).sampleRate, 0);
    EXPECT_NE(input.transport(id), fourCharCode("bltn"));
}

TEST_F(AudioInputPulseDevices, thatAreUnknownHaveNothing) {
    EXPECT_FALSE(input.hasInput(4711));
    EXPECT_EQ(input.transport(4711), 0U);
    EXPECT_EQ(input.uid(4711), std::nullopt);
    EXPECT_EQ(input.name(4711), std::nullopt);
    EXPECT_EQ(input.inputFormat(4711).sampleRate, 0);
}

TEST_F(AudioInputPulseDevices, comeAndGoWhileTheProgramRuns) {
    ASSERT_TRUE(appears(builtin));
    EXPECT_FALSE(find(usb));
    server.addMicrophone(usb, usbMicrophone);
    EXPECT_TRUE(appears(usb));
    server.removeMicrophone(usb);
    EXPECT_TRUE(disappears(usb));
    EXPECT_TRUE(find(builtin));
}

TEST_F(AudioInputPulseDevices, defaultFormatFollowsTheDefaultDevice) {
    run(QStringLiteral("pactl"), {QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                                  QStringLiteral("sink_name=hall"), QStringLiteral("rate=44100"),
                                  QStringLiteral("channels=2")});
    run(QStringLiteral("pactl"),
        {QStringLiteral("load-module"), QStringLiteral("module-remap-source"),
         QStringLiteral("source_name=stereo"), QStringLiteral("master=hall.monitor")});
    EXPECT_EQ(input.inputFormat(std::nullopt).sampleRate, 16000);
    server.setDefaultMicrophone(QStringLiteral("stereo"));
    EXPECT_TRUE(waitUntil([this] { return input.inputFormat(std::nullopt).sampleRate == 44100; }));
    EXPECT_EQ(input.inputFormat(std::nullopt).channels, 2);
}

TEST_F(AudioInputPulseDevices, aMonitorAsDefaultIsNoInput) {
    server.removeMicrophone(builtin);
    EXPECT_TRUE(waitUntil([this] { return input.inputFormat(std::nullopt).sampleRate == 0; }));
    EXPECT_FALSE(input.startCapture({.device = {}, .onBuffer = {}, .onEnd = {}}).capture);
}

TEST_F(AudioInputPulseDevices, goWithTheServerAndComeBackWithTheNextOne) {
    ASSERT_TRUE(appears(builtin));
    EXPECT_EQ(input.authorization(), Authorization::authorized);
    server.kill();
    EXPECT_TRUE(waitUntil([this] { return input.devices().empty(); }, 2s));
    EXPECT_EQ(input.authorization(), Authorization::notDetermined);
    const auto result = input.startCapture({.device = {}, .onBuffer = {}, .onEnd = {}});
    EXPECT_FALSE(result.capture);
    EXPECT_EQ(result.error, QStringLiteral("no sound server"));
    server.restart();
    EXPECT_TRUE(appears(builtin));
    EXPECT_EQ(input.authorization(), Authorization::authorized);
}

TEST_F(AudioInputPulseDevices, neverKeepTheMainThreadFromWorking) {
    ASSERT_TRUE(appears(builtin));
    server.freeze();
    EXPECT_LT(longestCall(input), 20ms);
    server.thaw();
}

TEST_F(AudioInputPulseDevices, accessIsGrantedByAQueuedCall) {
    ASSERT_TRUE(appears(builtin));
    std::optional<bool> granted;
    input.requestAccess([&granted](bool answer) { granted = answer; });
    EXPECT_EQ(granted, std::nullopt);
    EXPECT_TRUE(waitUntil([&granted] { return granted.has_value(); }));
    EXPECT_EQ(granted, true);
}

TEST(AudioInputPulse, aFrozenServerIsWaitedForOnceAndShortly) {
    SoundServer server;
    server.freeze();
    const AudioInputPulse input;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(input.devices().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 130ms);
    EXPECT_LT(longestCall(input), 20ms);
    EXPECT_EQ(input.authorization(), Authorization::notDetermined);
    server.thaw();
    EXPECT_TRUE(waitUntil([&input] { return input.devices().size() == 2; }));
}

TEST(AudioInputPulse, withoutAServerNothingIsWaitedFor) {
    qputenv("PULSE_SERVER", "unix:/nowhere/at/all");
    AudioInputPulse input;
    EXPECT_LT(longestCall(input), 50ms);
    EXPECT_EQ(input.authorization(), Authorization::notDetermined);
    std::optional<bool> granted;
    input.requestAccess([&granted](bool answer) { granted = answer; });
    EXPECT_TRUE(waitUntil([&granted] { return granted.has_value(); }));
    EXPECT_EQ(granted, false);
    qunsetenv("PULSE_SERVER");
}

// What was asked on a connection that is closed stays unanswered: an address sanitizer would tell.
TEST(AudioInputPulse, noAnswerReachesDevicesThatAreGone) {
    SoundServer server;
    std::atomic<bool> asked = false;
    auto devices = std::make_unique<PulseDevices>();
    PulseConnection connection;
    connection.open({.ready =
                         [&](pa_context* context) {
                             server.freeze();
                             devices->connected(context);
                             asked = true;
                         },
                     .lost = [&] { devices->disconnected(); }});
    ASSERT_TRUE(waitUntil([&asked] { return asked.load(); }));
    connection.close();
    EXPECT_TRUE(devices->sources().empty());
    devices.reset();
    server.thaw();
    const AudioInputPulse next;
    EXPECT_TRUE(waitUntil([&next] { return next.devices().size() == 2; }));
}

// As above, but the server dies with the questions and the next one is asked afresh.
TEST(AudioInputPulse, anAnswerThatNeverComesIsNotWaitedForAfterwards) {
    SoundServer server;
    std::atomic<int> connections = 0;
    PulseDevices devices;
    PulseConnection connection;
    connection.open({.ready =
                         [&](pa_context* context) {
                             if (connections == 0)
                                 server.freeze();
                             ++connections;
                             devices.connected(context);
                         },
                     .lost = [&] { devices.disconnected(); }});
    ASSERT_TRUE(waitUntil([&connections] { return connections == 1; }));
    server.kill();
    server.restart();
    EXPECT_TRUE(waitUntil([&devices] { return devices.sources().size() == 2; }));
    EXPECT_EQ(connections, 2);
}
