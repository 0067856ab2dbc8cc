// SPDX-License-Identifier: MIT
#include "audio/tests/RecorderOnServer.h"

namespace sayloft::test {

using namespace std::chrono_literals;

RecorderOnServer::RecorderOnServer(RoomFormat room) : server(std::move(room)) {
    recorder.boost = false;
    EXPECT_TRUE(appears(builtin));
}

QString RecorderOnServer::soundFile(const Samples& samples) const {
    Samples padded(1600);
    padded.insert(padded.end(), samples.begin(), samples.end());
    QString path = file(QStringLiteral("sound.wav"));
    writeSound(path, padded);
    return path;
}

bool RecorderOnServer::appears(const QString& uid) const {
    return waitUntil([&] { return InputDevices(input).deviceIDForUID(uid).has_value(); }, 5s);
}

void RecorderOnServer::plugInUsb() {
    server.addMicrophone(usb, {{QStringLiteral("device.bus"), QStringLiteral("usb")}});
    ASSERT_TRUE(appears(usb));
}

void RecorderOnServer::record(std::chrono::milliseconds length) {
    const int frames = input.frames() + static_cast<int>(16 * length.count());
    recorder.start();
    ASSERT_TRUE(waitUntil([&] { return input.frames() >= frames; }, length + 5s));
}

Samples RecorderOnServer::stopAndRead() {
    const std::shared_ptr<Recording> recording = recorder.stop();
    return recording ? readSound(recording->waitUntilFinished()) : Samples();
}

void RecorderOnServer::expectNextDictationWorks() {
    const Samples said = noise(8000);
    recorder.start();
    server.play(soundFile(said));
    const Match match = find(said, stopAndRead());
    EXPECT_EQ(match.equal, said.size());
}

}  // namespace sayloft::test
