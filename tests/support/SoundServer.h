// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QMap>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

/// What the room's air carries. 16 kHz mono arrives at a microphone bit by bit as it was played.
struct RoomFormat {
    int sampleRate = 16000;
    int channels = 1;
    QString sampleFormat = QStringLiteral("s16le");
};

/// A private PulseAudio server with a room that sounds are played into (the sink "room") and the
/// microphone of a laptop that hears it ("builtin", the default source). While it lives,
/// PULSE_SERVER of the test names it. Functions throw std::runtime_error when the server does not
/// do what it is asked for.
class SoundServer {
public:
    using Properties = QMap<QString, QString>;

    explicit SoundServer(RoomFormat format = {});
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    void addTo(QProcessEnvironment& environment) const;

    /// Plays a WAV file into the room and returns when it has been played. The server may swallow
    /// its first 20 ms.
    void play(const QString& wavPath) const;
    [[nodiscard]] ChildProgram startPlaying(const QString& wavPath) const;

    /// Plugs in a microphone that hears the room, for example with "device.bus" = "usb". Its
    /// properties must not contain quotes.
    void addMicrophone(const QString& name, const Properties& properties) const;
    /// Unplugs a microphone; "builtin" too.
    void removeMicrophone(const QString& name) const;
    void setDefaultMicrophone(const QString& name) const;

    /// A second way in, by TCP: for who has the cookie, which is left in the file.
    void openGuardedDoor(quint16 port, const QString& cookieFile) const;

    /// What the server says of all its "source-outputs", "clients" or "samples".
    [[nodiscard]] QByteArray list(const QString& what) const;

    /// Ends the server without a farewell to its clients.
    void kill();
    void freeze();
    void thaw();
    /// Starts a new server at the same address; microphones that were added are gone.
    void restart();

private:
    void start();
    void startListener();
    QByteArray pactl(const QStringList& arguments) const;
    [[nodiscard]] QString path(const QString& file) const { return m_directory.filePath(file); }
    [[nodiscard]] QProcessEnvironment environment() const;

    RoomFormat m_format;
    QTemporaryDir m_directory;
    QByteArray m_serverBefore;
    std::unique_ptr<ChildProgram> m_server;
    std::unique_ptr<ChildProgram> m_listener;
};

}  // namespace sayloft::test
