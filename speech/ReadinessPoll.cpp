// SPDX-License-Identifier: MIT
#include "speech/ReadinessPoll.h"

#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <utility>

namespace sayloft {

ReadinessPoll::ReadinessPoll(QUrl url, std::function<void()> answered)
    : ReadinessPoll(std::move(url), Schedule(), std::move(answered)) {}

ReadinessPoll::ReadinessPoll(QUrl url, Schedule schedule, std::function<void()> answered)
    : m_url(std::move(url)), m_schedule(schedule), m_answered(std::move(answered)) {
    m_network.setProxy(QNetworkProxy::NoProxy);
    m_pause.setSingleShot(true);
    m_pause.setInterval(m_schedule.pause);
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
    QTimer::singleShot(m_schedule.timeout, reply, &QNetworkReply::abort);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { probed(*reply); });
}

void ReadinessPoll::probed(QNetworkReply& reply) {
    reply.deleteLater();
    if (reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()) {
        const auto answered = std::exchange(m_answered, nullptr);
        return answered();
    }
    if (++m_attempts < m_schedule.attempts)
        m_pause.start();
}

}  // namespace sayloft
