// SPDX-License-Identifier: MIT
#include "speech/HelperProcess.h"

#include "models/Paths.h"
#include "platform/DieWithParent.h"
#include "storage/Log.h"

#include <QThread>

#include <chrono>
#include <utility>

#include <csignal>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr int patienceMs = 3000;

QString lastComponent(const QString& path) {
    return path.section(QLatin1Char('/'), -1);
}

}  // namespace

HelperProcess::HelperProcess(QString pkill) : m_pkill(std::move(pkill)) {}

HelperProcess::~HelperProcess() {
    end();
}

bool HelperProcess::launch(const QString& modelPath) {
    forgetHowChildEnds();
    killStaleServers();
    waitForChild();
    m_childId = 0;
    QThread::msleep(std::chrono::milliseconds(200ms).count());

    auto process = std::make_unique<QProcess>();
    process->setProgram(PARAKEET_SERVER_BIN);
    process->setArguments({QStringLiteral("--model"), modelPath, QStringLiteral("--host"),
                           QStringLiteral("127.0.0.1"), QStringLiteral("--port"),
                           QStringLiteral("8090")});
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setChildProcessModifier(dieWithParent());
    process->start();
    if (!process->waitForStarted()) {
        logf(QStringLiteral("parakeet-server failed to start: ") + process->errorString());
        return false;
    }
    m_childId = process->processId();
    connect(process.get(), &QProcess::finished, this, [this] {
        m_childId = 0;
        if (onGone)
            onGone();
    });
    m_process = std::move(process);
    logf(QStringLiteral("parakeet-server starting (") + lastComponent(modelPath) +
         QLatin1Char(')'));
    return true;
}

void HelperProcess::end() {
    if (!m_process)
        return;
    forgetHowChildEnds();
    m_process->terminate();
    waitForChild();
    m_childId = 0;
    m_process.reset();
}

void HelperProcess::forgetHowChildEnds() {
    if (m_process)
        m_process->disconnect(this);
}

void HelperProcess::killStaleServers() const {
    QProcess pkill;
    pkill.start(m_pkill, {QStringLiteral("-x"), QStringLiteral("parakeet-server")});
    if (!pkill.waitForFinished(patienceMs))
        pkill.kill();
    pkill.waitForFinished(patienceMs);
}

/// The child has been asked to end.
void HelperProcess::waitForChild() {
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return;
    // A stopped process learns of its signals only when it goes on.
    ::kill(static_cast<pid_t>(m_process->processId()), SIGCONT);
    if (m_process->waitForFinished(patienceMs))
        return;
    m_process->kill();
    m_process->waitForFinished(patienceMs);
}

}  // namespace sayloft
