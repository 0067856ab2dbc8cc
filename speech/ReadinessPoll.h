// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>

class QNetworkReply;

namespace sayloft {

/// Probes the speech server until it answers, whatever its answer. At most 120 probes, half a
/// second apart, of a second each; then it gives up silently. Main thread, never blocking.
class ReadinessPoll : public QObject {
public:
    ReadinessPoll(QUrl url, std::function<void()> answered);

private:
    void probe();
    void probed(QNetworkReply& reply);

    QUrl m_url;
    std::function<void()> m_answered;
    QNetworkAccessManager m_network;
    QTimer m_pause;
    int m_attempts = 0;
};

}  // namespace sayloft
