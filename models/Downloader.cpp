// SPDX-License-Identifier: MIT
#include "models/Downloader.h"

#include "models/Transfer.h"

#include <QFile>

#include <openssl/crypto.h>

namespace sayloft {
namespace {

// OpenSSL keeps something for each thread, and would give it back only after others have seen the
// thread end, which may be when the program is gone.
void endOnThread(const QObject* desk) {
    delete desk;
    OPENSSL_thread_stop();
}

}  // namespace

Downloader::Downloader(std::chrono::milliseconds stall) : m_stall(stall), m_desk(new QObject) {
    m_desk->moveToThread(&m_thread);
    connect(
        &m_thread, &QThread::finished, &m_thread, [desk = m_desk] { endOnThread(desk); },
        Qt::DirectConnection);
    m_thread.start();
}

Downloader::~Downloader() {
    stop();
}

void Downloader::stop() {
    m_thread.requestInterruption();
    m_thread.quit();
    m_thread.wait();
}

void Downloader::download(const QUrl& url, const QString& destination) {
    TransferOrder order{.url = url,
                        .destination = destination,
                        .stall = m_stall,
                        .onProgress =
                            [this](double fraction) {
                                QMetaObject::invokeMethod(this, [this, fraction] {
                                    // A copy: what it calls may replace it.
                                    if (const auto report = onProgress)
                                        report(fraction);
                                });
                            },
                        .onDone =
                            [this](bool succeeded) {
                                QMetaObject::invokeMethod(this, [this, succeeded] {
                                    if (const auto report = onDone)
                                        report(succeeded);
                                });
                            }};
    QMetaObject::invokeMethod(m_desk, [desk = m_desk, order] {
        auto* transfer = new Transfer(order, desk);
        transfer->start();
    });
}

void Downloader::remove(const QStringList& files) {
    QMetaObject::invokeMethod(m_desk, [files] {
        for (const QString& file : files) {
            if (!QThread::currentThread()->isInterruptionRequested())
                QFile::remove(file);
        }
    });
}

}  // namespace sayloft
