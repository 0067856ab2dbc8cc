// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ConnectProxy.h"
#include "tests/support/Nginx.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QUrl>

namespace sayloft::test {

/// What a program finds at the address that the catalogue has for a model: an nginx of the test, to
/// which a proxy leads, with a certificate for the hosts. The proxy works while the test turns its
/// event loop.
class ModelHost {
public:
    /// Where the catalogue's host sends everybody for the file.
    static constexpr const char* storage = "storage.example";

    /// `limits` are nginx's, for the file. It is not there before `offer`.
    ModelHost(const QString& key, const QByteArray& content, const QByteArray& limits);

    /// From now on the file is there.
    void offer() const;
    void addTo(QProcessEnvironment& environment) const;

    [[nodiscard]] const QByteArray& content() const { return m_content; }
    /// Of the catalogue.
    [[nodiscard]] QString host() const { return m_address.host(); }
    [[nodiscard]] const Nginx& nginx() const { return m_nginx; }
    [[nodiscard]] const ConnectProxy& proxy() const { return m_proxy; }
    /// Where `storage` has the file.
    [[nodiscard]] static QString path() { return QStringLiteral("/model"); }

private:
    [[nodiscard]] QByteArray locations(const QByteArray& limits) const;

    const QByteArray m_content;
    const QUrl m_address;
    const Nginx m_nginx;
    const ConnectProxy m_proxy{m_nginx.port()};
};

}  // namespace sayloft::test
