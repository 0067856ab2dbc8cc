// SPDX-License-Identifier: MIT
#include "updates/UpdateCheck.h"

#include "updates/VersionOrder.h"

#include <QHostAddress>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <utility>

namespace sayloft {
namespace {

constexpr qint64 largestFeed = qint64{4} * 1024 * 1024;

bool isThisMachine(const QString& host) {
    return host == QStringLiteral("localhost") || QHostAddress(host).isLoopback();
}

/// Nobody on the way may change what is announced.
bool isSafe(const QUrl& address) {
    return address.scheme() == QStringLiteral("https") ||
           (address.scheme() == QStringLiteral("http") && isThisMachine(address.host()));
}

QString reason(const QNetworkReply& reply) {
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status >= 400)
        return QStringLiteral("The update server answers with an error (%1).").arg(status);
    switch (reply.error()) {
        case QNetworkReply::SslHandshakeFailedError:
            return QStringLiteral("The update server cannot prove who it is.");
        case QNetworkReply::HostNotFoundError:
        case QNetworkReply::NetworkSessionFailedError:
        case QNetworkReply::TemporaryNetworkFailureError:
            return QStringLiteral("The update server cannot be found. Is there a network?");
        case QNetworkReply::TooManyRedirectsError:
            return QStringLiteral("The update server only sends from one address to another.");
        default:
            return QStringLiteral("The update server cannot be reached.");
    }
}

}  // namespace

UpdateCheck::UpdateCheck(UpdateSource source, Answered answered, std::chrono::milliseconds deadline)
    : m_source(std::move(source)), m_answered(std::move(answered)) {
    m_deadline.setSingleShot(true);
    QObject::connect(&m_deadline, &QTimer::timeout, &m_deadline,
                     [this] { fail(QStringLiteral("The update server does not answer.")); });
    m_deadline.start(deadline);
    // On a later turn, as everything else that may be answered.
    QTimer::singleShot(0, &m_deadline, [this] { fetch(); });
}

UpdateCheck::~UpdateCheck() = default;

void UpdateCheck::fetch() {
    if (m_source.feed.isEmpty()) {
        answer({.sentence = QStringLiteral("Updates come with the package manager."), .newer = {}});
        return;
    }
    if (!isSafe(m_source.feed)) {
        fail(QStringLiteral("The address of the update server is not a safe one."));
        return;
    }
    QNetworkRequest request(m_source.feed);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Sayloft/") + m_source.ownVersion);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    m_reply.reset(m_network.get(request));
    QNetworkReply* reply = m_reply.get();
    QObject::connect(reply, &QNetworkReply::redirected, reply, [this, reply](const QUrl& address) {
        if (isSafe(address))
            Q_EMIT reply->redirectAllowed();
        else
            fail(QStringLiteral("The update server leads to an address that is not a safe one."));
    });
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                     [this](qint64 received, qint64) {
                         if (received > largestFeed)
                             fail(QStringLiteral("The update server sends far too much."));
                     });
    QObject::connect(reply, &QNetworkReply::finished, reply, [this] { finished(); });
}

void UpdateCheck::finished() {
    if (m_reply->error() != QNetworkReply::NoError)
        fail(reason(*m_reply));
    else
        answer(compare(m_reply->readAll()));
}

UpdateAnswer UpdateCheck::compare(const QByteArray& feed) const {
    const auto releases = parseAppcast(feed);
    if (!releases)
        return {.sentence = QStringLiteral("What the update server sends is no list of versions."),
                .newer = {}};
    const std::optional<Release> newest = newestOf(*releases);
    if (newest && std::is_gt(compareVersions(newest->version, m_source.ownVersion)))
        return {.sentence = QStringLiteral("Sayloft %1 is available. You have %2.")
                                .arg(newest->shownVersion, m_source.ownVersion),
                .newer = newest};
    return {
        .sentence = QStringLiteral("Sayloft %1 is the newest version.").arg(m_source.ownVersion),
        .newer = {}};
}

void UpdateCheck::fail(const QString& sentence) {
    answer({.sentence = sentence, .newer = {}});
}

void UpdateCheck::answer(const UpdateAnswer& answer) {
    m_deadline.stop();
    if (m_reply) {
        // Its signals may be what brought us here.
        m_reply->disconnect();
        m_reply->abort();
        // It outlives what asked for it, which the answer may destroy.
        m_reply->setParent(nullptr);
        m_reply.release()->deleteLater();
    }
    if (const Answered answered = std::exchange(m_answered, nullptr))
        answered(answer);
}

}  // namespace sayloft
