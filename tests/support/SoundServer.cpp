// SPDX-License-Identifier: MIT
#include "tests/support/SoundServer.h"

#include "tests/support/WaitUntil.h"

#include <QFileInfo>

#include <csignal>
#include <stdexcept>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

const SoundServer::Properties builtinProperties{
    {QStringLiteral("device.description"), QStringLiteral("Built-in Audio Analog Stereo")},
    {QStringLiteral("device.form_factor"), QStringLiteral("internal")},
    {QStringLiteral("device.bus"), QStringLiteral("pci")},
    {QStringLiteral("device.api"), QStringLiteral("alsa")},
    {QStringLiteral("device.class"), QStringLiteral("sound")}};

// The single quotes around all properties are needed: without them only the first one counts.
QString quoted(const SoundServer::Properties& properties) {
    QStringList pairs;
    for (auto it = properties.begin(); it != properties.end(); ++it)
        pairs << it.key() + QStringLiteral("=\"") + it.value() + QStringLiteral("\"");
    return QStringLiteral("source_properties='") + pairs.join(QLatin1Char(' ')) +
           QStringLiteral("'");
}

QString formatArguments(const RoomFormat& format) {
    return QStringLiteral("rate=%1 channels=%2 format=%3")
        .arg(format.sampleRate)
        .arg(format.channels)
        .arg(format.sampleFormat);
}

}  // namespace

SoundServer::SoundServer(RoomFormat format)
    : m_format(std::move(format)), m_serverBefore(qgetenv("PULSE_SERVER")) {
    qputenv("PULSE_SERVER", "unix:" + path(QStringLiteral("socket")).toLocal8Bit());
    start();
}

SoundServer::~SoundServer() {
    thaw();
    m_listener.reset();
    m_server.reset();
    if (m_serverBefore.isEmpty())
        qunsetenv("PULSE_SERVER");
    else
        qputenv("PULSE_SERVER", m_serverBefore);
}

void SoundServer::addTo(QProcessEnvironment& environment) const {
    environment.insert(QStringLiteral("PULSE_SERVER"),
                       QStringLiteral("unix:") + path(QStringLiteral("socket")));
    environment.insert(QStringLiteral("PULSE_RUNTIME_PATH"), m_directory.path());
    environment.insert(QStringLiteral("PULSE_STATE_PATH"), m_directory.path());
}

QProcessEnvironment SoundServer::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    addTo(environment);
    return environment;
}

void SoundServer::start() {
    const QString room = QStringLiteral("module-null-sink sink_name=room ");
    m_server = std::make_unique<ChildProgram>(
        QStringLiteral("pulseaudio"),
        QStringList{QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                    QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--use-pid-file=no"),
                    QStringLiteral("--log-target=file:") + path(QStringLiteral("log")),
                    QStringLiteral("-L"), room + formatArguments(m_format), QStringLiteral("-L"),
                    QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") +
                        path(QStringLiteral("socket"))},
        environment());
    const auto answers = [this] {
        QProcess pactl;
        pactl.setProcessEnvironment(environment());
        pactl.start(QStringLiteral("pactl"), {QStringLiteral("info")});
        return pactl.waitForFinished(2000) && pactl.exitCode() == 0;
    };
    if (!waitUntil(answers))
        throw std::runtime_error("the sound server did not come up");
    addMicrophone(QStringLiteral("builtin"), builtinProperties);
    setDefaultMicrophone(QStringLiteral("builtin"));
    startListener();
}

// A null sink that nobody listens to sleeps for two seconds at a time and swallows what is played
// meanwhile. Once a listener gets its fragments one after the other, the room is awake.
void SoundServer::startListener() {
    const QString heard = path(QStringLiteral("heard.raw"));
    QFile::remove(heard);
    m_listener = std::make_unique<ChildProgram>(
        QStringLiteral("parec"),
        QStringList{QStringLiteral("--latency-msec=20"), QStringLiteral("--device=room.monitor"),
                    QStringLiteral("--format=") + m_format.sampleFormat,
                    QStringLiteral("--rate=%1").arg(m_format.sampleRate),
                    QStringLiteral("--channels=%1").arg(m_format.channels), heard},
        environment());
    int growths = 0;
    qint64 size = 0;
    const auto flows = [&] {
        const qint64 now = QFileInfo(heard).size();
        growths += now > size ? 1 : 0;
        size = now;
        return growths >= 10;
    };
    if (!waitUntil(flows))
        throw std::runtime_error("the room stays silent");
}

QByteArray SoundServer::pactl(const QStringList& arguments) const {
    return run(QStringLiteral("pactl"), arguments, {}, environment());
}

// The player keeps well ahead, so that it has no gaps on a busy machine either.
ChildProgram SoundServer::startPlaying(const QString& wavPath) const {
    return ChildProgram(
        QStringLiteral("paplay"),
        {QStringLiteral("--latency-msec=1000"), QStringLiteral("--device=room"), wavPath},
        environment());
}

void SoundServer::play(const QString& wavPath) const {
    ChildProgram player = startPlaying(wavPath);
    if (!waitUntil([&player] { return !player.isRunning(); }, 120s) || player.exitCode() != 0)
        throw std::runtime_error("could not play " + wavPath.toStdString() + ": " +
                                 player.standardError().toStdString());
}

void SoundServer::addMicrophone(const QString& name, const Properties& properties) const {
    pactl({QStringLiteral("load-module"), QStringLiteral("module-remap-source"),
           QStringLiteral("source_name=") + name, QStringLiteral("master=room.monitor"),
           formatArguments(m_format), quoted(properties)});
}

void SoundServer::removeMicrophone(const QString& name) const {
    const QList<QByteArray> modules =
        pactl({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("modules")})
            .split('\n');
    for (const QByteArray& module : modules) {
        if (!module.contains("source_name=" + name.toUtf8() + ' '))
            continue;
        pactl({QStringLiteral("unload-module"), QString::fromUtf8(module.split('\t').first())});
        return;
    }
    throw std::runtime_error("there is no microphone " + name.toStdString());
}

void SoundServer::setDefaultMicrophone(const QString& name) const {
    pactl({QStringLiteral("set-default-source"), name});
}

void SoundServer::openGuardedDoor(quint16 port, const QString& cookieFile) const {
    pactl({QStringLiteral("load-module"), QStringLiteral("module-native-protocol-tcp"),
           QStringLiteral("listen=127.0.0.1"), QStringLiteral("port=%1").arg(port),
           QStringLiteral("auth-cookie=") + cookieFile});
}

QByteArray SoundServer::list(const QString& what) const {
    return pactl({QStringLiteral("list"), what});
}

void SoundServer::kill() {
    m_server->signal(SIGKILL);
    if (!m_server->waitForEnd(5s))
        throw std::runtime_error("the sound server does not end");
}

void SoundServer::freeze() {
    m_server->signal(SIGSTOP);
}

void SoundServer::thaw() {
    m_server->signal(SIGCONT);
}

void SoundServer::restart() {
    m_listener.reset();
    m_server.reset();
    start();
}

}  // namespace sayloft::test
