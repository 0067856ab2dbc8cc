// SPDX-License-Identifier: MIT
#include "tests/support/ModelHost.h"

#include "models/ModelCatalogue.h"

#include <QCryptographicHash>

namespace sayloft::test {

ModelHost::ModelHost(const QString& key, const QByteArray& content, const QByteArray& limits)
    : m_content(content),
      m_address(modelInfo(key).url),
      m_nginx(locations(limits), Nginx::Scheme::https,
              {m_address.host(), QString::fromLatin1(storage)}) {}

QByteArray ModelHost::locations(const QByteArray& limits) const {
    const QByteArray digest =
        QCryptographicHash::hash(m_content, QCryptographicHash::Sha256).toHex();
    return "location = " + m_address.path().toUtf8() + " { add_header X-Linked-ETag '\"" + digest +
           "\"' always; add_header X-Linked-Size " + QByteArray::number(m_content.size()) +
           " always; return 302 https://" + storage + path().toUtf8() +
           "; } location = " + path().toUtf8() + " { " + limits + " }";
}

void ModelHost::offer() const {
    m_nginx.serve(path(), m_content);
}

void ModelHost::addTo(QProcessEnvironment& environment) const {
    for (const char* variable : {"no_proxy", "NO_PROXY", "all_proxy", "ALL_PROXY", "HTTPS_PROXY"})
        environment.remove(QString::fromLatin1(variable));
    environment.insert(QStringLiteral("https_proxy"), m_proxy.url());
    environment.insert(QStringLiteral("SSL_CERT_FILE"), m_nginx.authority());
}

}  // namespace sayloft::test
