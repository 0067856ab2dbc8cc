// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>

class QNetworkReply;

namespace sayloft {

/// Probes the speech server until it answers, whatever its answer. Gives up silently
/// after the last probe. Main thread, never blocking.
class ReadinessPoll : public QObject {
public:
    struct Schedule {
        int attempts = 120;
        std::chrono::milliseconds pause = std::chrono::milliseconds(500);  ///< between probes
        std::chrono::milliseconds timeout = std::chrono::seconds(1);       ///< of one probe
    };

    /// `answered` is called once, and may destroy this object.
    ReadinessPoll(QUrl url, std::function<void()> answered);
    ReadinessPoll(QUrl url, Schedule schedule, std::function<void()> answered);

private:
    void probe();
    void probed(QNetworkReply& reply);

    QUrl m_url;
    Schedule m_schedule;
    std::function<void()> m_answered;
    QNetworkAccessManager m_network;
    QTimer m_pause;
    int m_attempts = 0;
};

}  // namespace sayloft
