// SPDX-License-Identifier: MIT
#include "speech/ReadinessPoll.h"

#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <chrono>
#include <utility>

namespace sayloft {

using namespace std::chrono_literals;

ReadinessPoll::ReadinessPoll(QUrl url, std::function<void()> answered)
    : m_url(std::move(url)), m_answered(std::move(answered)) {
    m_network.setProxy(QNetworkProxy::NoProxy);
    m_pause.setSingleShot(true);
    m_pause.setInterval(500ms);
    connect(&m_pause, &QTimer::timeout, this, &ReadinessPoll::probe);
    probe();
}

void ReadinessPoll::probe() {
    QNetworkRequest request(m_url);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply* reply = m_network.get(request);
    // The headers are all that is wanted; a body may be long or never end.
    connect(reply, &QNetworkReply::metaDataChanged, reply, &QNetworkReply::abort);
    QTimer::singleShot(1s, reply, &QNetworkReply::abort);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { probed(*reply); });
}

void ReadinessPoll::probed(QNetworkReply& reply) {
    reply.deleteLater();
    constexpr int mostAttempts = 120;
    if (reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()) {
        // May destroy this object.
        const auto answered = std::exchange(m_answered, nullptr);
        return answered();
    }
    if (++m_attempts < mostAttempts)
        m_pause.start();
}

}  // namespace sayloft
