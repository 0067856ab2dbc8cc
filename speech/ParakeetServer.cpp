// SPDX-License-Identifier: MIT
#include "speech/ParakeetServer.h"

#include "models/Paths.h"
#include "platform/PortHolder.h"
#include "speech/HelperProcess.h"
#include "storage/Log.h"

#include <QFileInfo>

namespace sayloft {

constexpr quint16 port = 8090;

ParakeetServer::ParakeetServer() : m_process(new HelperProcess) {
    m_process->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_process, &QObject::deleteLater);
    m_thread.start();
}

ParakeetServer::~ParakeetServer() {
    m_thread.quit();
    m_thread.wait();
}

void ParakeetServer::start(const QString& modelPath) {
    launch(modelPath, Before::nothing);
}

void ParakeetServer::restart(const QString& modelPath) {
    launch(modelPath, Before::endTheRunning);
}

void ParakeetServer::stop() {
    m_poll.reset();
    ++m_launchNumber;
    QMetaObject::invokeMethod(
        m_process, [process = m_process] { process->end(); }, Qt::BlockingQueuedConnection);
}

bool ParakeetServer::hasPort() {
    const PortHolder holder = holderOfPort(port, m_process->childId());
    if (holder == PortHolder::theProcess)
        m_isStrangerLogged = false;
    if (holder == PortHolder::somebodyElse)
        strangerSeen();
    return holder == PortHolder::theProcess;
}

void ParakeetServer::strangerSeen() {
    if (!m_isStrangerLogged.exchange(true))
        logf(QStringLiteral("another program listens at port %1 — no sound was sent to it")
                 .arg(port));
    QMetaObject::invokeMethod(this, [this] {
        if (onStranger)
            onStranger();
    });
}

void ParakeetServer::launch(const QString& modelPath, Before before) {
    m_ready = false;
    m_poll.reset();
    const std::uint64_t number = ++m_launchNumber;
    const bool possible = QFileInfo::exists(PARAKEET_SERVER_BIN) && QFileInfo::exists(modelPath);
    if (!possible)
        logf(QStringLiteral("parakeet-server or model missing — run build.sh / download model"));
    QMetaObject::invokeMethod(
        m_process, [this, process = m_process, modelPath, before, possible, number] {
            if (before == Before::endTheRunning)
                process->end();
            process->onGone = [this, number] {
                QMetaObject::invokeMethod(this, [this, number] { gone(number); });
            };
            if (!possible || !process->launch(modelPath))
                return;
            QMetaObject::invokeMethod(this, [this, number] { launched(number); });
        });
}

void ParakeetServer::launched(std::uint64_t launchNumber) {
    if (launchNumber != m_launchNumber)
        return;
    m_poll =
        std::make_unique<ReadinessPoll>(QUrl(QStringLiteral("http://127.0.0.1:8090/")), [this] {
            m_ready = true;
            if (onReady)
                onReady();
        });
}

void ParakeetServer::gone(std::uint64_t launchNumber) {
    if (launchNumber != m_launchNumber)
        return;
    // Whoever answers from now on is not our server.
    m_poll.reset();
    if (onGone)
        onGone();
}

}  // namespace sayloft
