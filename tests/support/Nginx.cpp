// SPDX-License-Identifier: MIT
#include "tests/support/Nginx.h"

#include "tests/support/RawHttp.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <stdexcept>

namespace sayloft::test {
namespace {

// One process in the foreground that keeps everything it writes below its prefix.
constexpr const char* configuration = R"(
daemon off;
master_process off;
pid nginx.pid;
error_log error.log;
events { worker_connections 64; }
http {
    client_body_temp_path temp/body;
    proxy_temp_path temp/proxy;
    fastcgi_temp_path temp/fastcgi;
    uwsgi_temp_path temp/uwsgi;
    scgi_temp_path temp/scgi;
    log_format ranges escape=none '$status $body_bytes_sent $http_range $http_if_range';
    access_log requests.log ranges;
    sendfile on;
    server {
        listen 127.0.0.1:@listen@;
        server_name localhost;
        root files;
        @directives@
    }
}
)";

QString program() {
    const QString name = QStringLiteral("nginx");
    const QString found = QStandardPaths::findExecutable(name);
    // Only administrators have it in their path.
    return found.isEmpty() ? QStringLiteral("/usr/sbin/") + name : found;
}

}  // namespace

Nginx::Nginx(const QByteArray& directives, Scheme scheme, const QStringList& hosts)
    : m_scheme(scheme) {
    QDir(m_directory.path()).mkpath(QStringLiteral("temp"));
    QDir(m_directory.path()).mkpath(QStringLiteral("files"));
    if (scheme == Scheme::https)
        makeCertificates(hosts);
    // Somebody may take the port before nginx does.
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (start(directives))
            return;
    }
    const QByteArray reason = readFile(m_directory.filePath(QStringLiteral("error.log")));
    throw std::runtime_error("nginx does not come up: " + reason.toStdString());
}

bool Nginx::start(const QByteArray& directives) {
    m_port = freePort();
    QByteArray listen = QByteArray::number(m_port);
    if (m_scheme == Scheme::https)
        listen +=
            " ssl http2;\n        ssl_certificate certificate.pem;\n"
            "        ssl_certificate_key certificate-key.pem";
    const QString file = m_directory.filePath(QStringLiteral("nginx.conf"));
    writeFile(
        file,
        QByteArray(configuration).replace("@listen@", listen).replace("@directives@", directives));
    m_program = std::make_unique<ChildProgram>(
        program(), QStringList{QStringLiteral("-p"), m_directory.path(), QStringLiteral("-c"), file,
                               QStringLiteral("-e"), QStringLiteral("error.log")});
    const bool settled =
        waitUntil([this] { return !m_program->isRunning() || isListening(m_port); });
    return settled && m_program->isRunning();
}

void Nginx::makeCertificates(const QStringList& hosts) const {
    QString names = QStringLiteral("subjectAltName=IP:127.0.0.1");
    for (const QString& host : hosts)
        names += QStringLiteral(",DNS:") + host;
    makeCertificate(QStringLiteral("authority"), {});
    makeCertificate(QStringLiteral("certificate"),
                    {QStringLiteral("-CA"), authority(), QStringLiteral("-CAkey"),
                     m_directory.filePath(QStringLiteral("authority-key.pem")),
                     QStringLiteral("-addext"), names});
}

void Nginx::makeCertificate(const QString& name, const QStringList& arguments) const {
    run(QStringLiteral("openssl"),
        QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                    QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                    QStringLiteral("ec_paramgen_curve:P-256"), QStringLiteral("-nodes"),
                    QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                    QStringLiteral("/CN=Test ") + name, QStringLiteral("-keyout"),
                    m_directory.filePath(name + QStringLiteral("-key.pem")), QStringLiteral("-out"),
                    m_directory.filePath(name + QStringLiteral(".pem"))} +
            arguments);
}

QUrl Nginx::url(const QString& path) const {
    const QString scheme =
        m_scheme == Scheme::https ? QStringLiteral("https") : QStringLiteral("http");
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(m_port).arg(path));
}

QString Nginx::root() const {
    return m_directory.filePath(QStringLiteral("files"));
}

QString Nginx::authority() const {
    return m_directory.filePath(QStringLiteral("authority.pem"));
}

void Nginx::serve(const QString& path, const QByteArray& content) const {
    writeFile(root() + path, content);
}

QByteArray Nginx::etag(const QString& path) const {
    const QFileInfo file(root() + path);
    return '"' + QByteArray::number(file.lastModified().toSecsSinceEpoch(), 16) + '-' +
           QByteArray::number(file.size(), 16) + '"';
}

QList<QByteArray> Nginx::requests(qsizetype count) const {
    QList<QByteArray> lines;
    static_cast<void>(waitUntil([&] {
        lines = readFile(m_directory.filePath(QStringLiteral("requests.log"))).split('\n');
        lines.removeAll(QByteArray());
        return lines.size() >= count;
    }));
    for (QByteArray& line : lines)
        line = line.trimmed();
    return lines;
}

}  // namespace sayloft::test
