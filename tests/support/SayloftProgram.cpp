// SPDX-License-Identifier: MIT
#include "tests/support/SayloftProgram.h"

#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTcpSocket>

#include <csignal>
#include <stdexcept>
#include <utility>

#include <sys/types.h>

namespace sayloft::test {
namespace {

QString copyOfBundle(const QString& directory) {
    QString bundle = directory + QStringLiteral("/Sayloft.app");
    QDir().mkpath(directory);
    run(QStringLiteral("cp"), {QStringLiteral("-r"), QStringLiteral(SAYLOFT_BUNDLE_DIR), bundle});
    return bundle;
}

}  // namespace

SayloftProgram::SayloftProgram(const QString& home, QProcessEnvironment environment,
                               const QString& bundle, QStringList runBy)
    : m_home(home), m_isTraced(!runBy.isEmpty()) {
    environment.insert(QStringLiteral("HOME"), home);
    QStringList command = std::move(runBy) << bundle + QStringLiteral("/Contents/bin/sayloft");
    const QString program = command.takeFirst();
    m_program = std::make_unique<ChildProgram>(program, command, environment);
}

SayloftProgram::~SayloftProgram() {
    if (m_isTraced)
        endTraced();
}

// strace does not hand on that it is to end. What it leaves behind cannot make the calls that were
// watched, and so never ends.
void SayloftProgram::endTraced() {
    QProcess::execute(QStringLiteral("pkill"),
                      {QStringLiteral("-P"), QString::number(m_program->pid())});
    static_cast<void>(m_program->waitForEnd(std::chrono::seconds(5)));
}

bool SayloftProgram::waitForLog(const QString& text, std::chrono::milliseconds deadline) const {
    return waitUntil([&] { return log().contains(text); }, deadline);
}

QString SayloftProgram::log() const {
    return QString::fromUtf8(readFile(m_home + QStringLiteral("/.sayloft/sayloft.log")));
}

bool SayloftProgram::waitForHelper() const {
    constexpr quint16 helperPort = 8090;
    return waitUntil(
        [] {
            QTcpSocket socket;
            socket.connectToHost(QStringLiteral("127.0.0.1"), helperPort);
            return socket.waitForConnected(200);
        },
        std::chrono::seconds(30));
}

QString bundleWith(const QString& program, const QString& place, const QString& directory) {
    QString bundle = copyOfBundle(directory);
    run(QStringLiteral("cp"), {QStringLiteral("--remove-destination"), program,
                               bundle + QStringLiteral("/Contents/") + place});
    return bundle;
}

QString bundleWithoutHelper(const QString& directory) {
    QString bundle = copyOfBundle(directory);
    if (!QFile::remove(bundle + QStringLiteral("/Contents/Helpers/parakeet-server")))
        throw std::runtime_error("the speech helper cannot be removed");
    return bundle;
}

QString bundleWithForeignHelper(const QString& directory) {
    return bundleWith(QStringLiteral(SAYLOFT_FOREIGN_HELPER),
                      QStringLiteral("Helpers/parakeet-server"), directory);
}

QByteArray helpers() {
    QProcess pgrep;
    pgrep.start(QStringLiteral("pgrep"), {QStringLiteral("-x"), QStringLiteral("parakeet-server")});
    return pgrep.waitForFinished(5000) ? pgrep.readAllStandardOutput().trimmed() : QByteArray();
}

bool helperRuns() {
    return !helpers().isEmpty();
}

void signalHelper(int number) {
    bool isOne = false;
    const pid_t helper = helpers().toInt(&isOne);
    if (!isOne || ::kill(helper, number) != 0)
        throw std::runtime_error("there is not one helper to be sent a signal");
}

void writeConfig(const QString& home, const QByteArray& json) {
    writeFile(home + QStringLiteral("/.sayloft/config.json"), json);
}

}  // namespace sayloft::test
