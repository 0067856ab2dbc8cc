// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

#include <cstdint>
#include <memory>

namespace sayloft::test {

/// nginx on a free port of 127.0.0.1, with files of its own. It answers when the constructor
/// returns.
class Nginx {
public:
    enum class Scheme { http, https };

    /// `directives` go into the server block of its configuration. Throws std::runtime_error when
    /// it does not come up. Over HTTPS it shows a certificate for 127.0.0.1 and for `hosts`, signed
    /// by an authority that only this test knows.
    explicit Nginx(const QByteArray& directives = {}, Scheme scheme = Scheme::http,
                   const QStringList& hosts = {});

    /// Where `path`, which begins with a slash, is found.
    [[nodiscard]] QUrl url(const QString& path) const;
    [[nodiscard]] std::uint16_t port() const { return m_port; }
    /// Of its only process.
    [[nodiscard]] qint64 pid() const { return m_program->pid(); }

    /// The files that are served.
    [[nodiscard]] QString root() const;
    /// The certificate of the authority, for those who are to trust it.
    [[nodiscard]] QString authority() const;
    void serve(const QString& path, const QByteArray& content) const;
    /// The strong entity tag that it gives to a file.
    [[nodiscard]] QByteArray etag(const QString& path) const;

    /// Waits for that many requests to be answered. One line for each: status, bytes of the body,
    /// and where there was one the range that was asked for and the condition for it.
    [[nodiscard]] QList<QByteArray> requests(qsizetype count) const;

private:
    [[nodiscard]] bool start(const QByteArray& directives);
    void makeCertificates(const QStringList& hosts) const;
    void makeCertificate(const QString& name, const QStringList& arguments) const;

    QTemporaryDir m_directory;
    const Scheme m_scheme;
    std::uint16_t m_port = 0;
    std::unique_ptr<ChildProgram> m_program;
};

}  // namespace sayloft::test
