// SPDX-License-Identifier: MIT
// The downloader and nginx.
#include "models/Downloader.h"

#include "models/tests/DownloaderFixture.h"
#include "tests/support/Nginx.h"

#include <QCryptographicHash>

#include <algorithm>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using test::modelBytes;
using test::Nginx;

class DownloadFromNginx : public test::DownloaderFixture {
protected:
    [[nodiscard]] static QByteArray sha256(const QByteArray& bytes) {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    }

    /// A location that redirects to /model and says what is there.
    [[nodiscard]] static QByteArray linkTo(const QByteArray& digest, const QByteArray& size) {
        return "location = /link { add_header X-Linked-ETag '\"" + digest +
               "\"' always; add_header X-Linked-Size '" + size + "' always; return 302 /model; }";
    }

    void expectRefusal(const QString& reason) const {
        EXPECT_EQ(m_home.log(), QStringLiteral("download error: ") + reason + QLatin1Char('\n'));
        EXPECT_EQ(files(), QStringList());
    }

    const QByteArray m_model = modelBytes(3'000'000);
    const QString m_path = QStringLiteral("/model");
    const QString m_link = QStringLiteral("/link");
};

TEST_F(DownloadFromNginx, putsTheFileInPlaceAndReportsExactlyOneAtLast) {
    const Nginx nginx;
    nginx.serve(m_path, m_model);
    ASSERT_TRUE(download(nginx.url(m_path)));
    EXPECT_EQ(content(), m_model);
    EXPECT_EQ(files(), QStringList(QStringLiteral("some.gguf")));
    ASSERT_FALSE(m_progress.empty());
    EXPECT_TRUE(std::is_sorted(m_progress.begin(), m_progress.end()));
    EXPECT_EQ(m_progress.back(), 1.0);
    EXPECT_EQ(m_home.log(), QString());
}

TEST_F(DownloadFromNginx, replacesAnEarlierFile) {
    const Nginx nginx;
    nginx.serve(m_path, m_model);
    test::writeFile(m_destination, "earlier");
    ASSERT_TRUE(download(nginx.url(m_path)));
    EXPECT_EQ(content(), m_model);
}

TEST_F(DownloadFromNginx, leavesAnEarlierFileAloneWhenThereIsNone) {
    const Nginx nginx;
    test::writeFile(m_destination, "earlier");
    EXPECT_FALSE(download(nginx.url(m_path)));
    EXPECT_EQ(content(), "earlier");
    EXPECT_TRUE(m_progress.empty());
    EXPECT_EQ(m_home.log(), QString());
    EXPECT_EQ(files(), QStringList(QStringLiteral("some.gguf")));
}

TEST_F(DownloadFromNginx, downloadsOneFileAfterAnother) {
    const Nginx nginx;
    nginx.serve(m_path, m_model);
    nginx.serve(m_link, "another");
    ASSERT_TRUE(download(nginx.url(m_path)));
    ASSERT_TRUE(download(nginx.url(m_link)));
    EXPECT_EQ(content(), "another");
}

TEST_F(DownloadFromNginx, takesAnEmptyFileWithoutProgress) {
    const Nginx nginx;
    nginx.serve(m_path, "");
    ASSERT_TRUE(download(nginx.url(m_path)));
    EXPECT_TRUE(QFileInfo::exists(m_destination));
    EXPECT_TRUE(m_progress.empty());
}

TEST_F(DownloadFromNginx, takesNoCompressedForm) {
    const Nginx nginx("gzip on; gzip_types *; gzip_min_length 1;");
    nginx.serve(m_path, QByteArray(100'000, 'a'));
    ASSERT_TRUE(download(nginx.url(m_path)));
    EXPECT_EQ(content(), QByteArray(100'000, 'a'));
    EXPECT_EQ(m_progress.back(), 1.0);
}

struct StatusRow {
    const char* name;
    int status;
};

std::ostream& operator<<(std::ostream& out, const StatusRow& row) {
    return out << row.name;
}

constexpr auto nameOf = [](const auto& info) { return std::string(info.param.name); };

class RefusedByNginx : public DownloadFromNginx, public testing::WithParamInterface<StatusRow> {};

INSTANTIATE_TEST_SUITE_P(Status, RefusedByNginx,
                         testing::Values(StatusRow{"notModified", 304}, StatusRow{"useProxy", 305},
                                         StatusRow{"switchProxy", 306},
                                         StatusRow{"unauthorised", 401},
                                         StatusRow{"forbidden", 403}, StatusRow{"gone", 410},
                                         StatusRow{"range", 416}, StatusRow{"internalError", 500},
                                         StatusRow{"unavailable", 503}),
                         nameOf);

TEST_P(RefusedByNginx, failsOnceWithoutAWordInTheLog) {
    const Nginx nginx("return " + QByteArray::number(GetParam().status) + ";");
    test::writeFile(m_destination, "earlier");
    EXPECT_FALSE(download(nginx.url(m_path)));
    EXPECT_EQ(content(), "earlier");
    EXPECT_EQ(m_home.log(), QString());
}

class RedirectedByNginx : public DownloadFromNginx,
                          public testing::WithParamInterface<StatusRow> {};

INSTANTIATE_TEST_SUITE_P(Status, RedirectedByNginx,
                         testing::Values(StatusRow{"moved", 301}, StatusRow{"found", 302},
                                         StatusRow{"seeOther", 303}, StatusRow{"temporary", 307},
                                         StatusRow{"permanent", 308}),
                         nameOf);

TEST_P(RedirectedByNginx, arrivesAllTheSame) {
    const Nginx nginx("location = /link { return " + QByteArray::number(GetParam().status) +
                      " /model; }");
    nginx.serve(m_path, m_model);
    ASSERT_TRUE(download(nginx.url(m_link)));
    EXPECT_EQ(content(), m_model);
}

TEST_F(DownloadFromNginx, givesUpWhenRedirectsGoInACircle) {
    const Nginx nginx("location = /link { return 302 /link; }");
    EXPECT_FALSE(download(nginx.url(m_link)));
    EXPECT_EQ(nginx.requests(11).size(), 11);
    expectRefusal(QStringLiteral("too many redirects"));
}

TEST_F(DownloadFromNginx, isNotRedirectedToAnInsecureHost) {
    const Nginx nginx("location = /link { return 302 http://models.invalid/model; }");
    EXPECT_FALSE(download(nginx.url(m_link)));
    expectRefusal(QStringLiteral("not an HTTPS address: http://models.invalid/model"));
}

TEST_F(DownloadFromNginx, isNotRedirectedToAFileOfThisMachine) {
    const Nginx nginx("location = /link { return 302 file:///etc/hostname; }");
    EXPECT_FALSE(download(nginx.url(m_link)));
    expectRefusal(QStringLiteral("not an HTTPS address: file:///etc/hostname"));
}

TEST_F(DownloadFromNginx, verifiesTheDigestThatTheRedirectAnnounces) {
    const Nginx nginx(linkTo(sha256(m_model), "3000000"));
    nginx.serve(m_path, m_model);
    ASSERT_TRUE(download(nginx.url(m_link)));
    EXPECT_EQ(content(), m_model);
}

TEST_F(DownloadFromNginx, refusesAFileWithAnotherDigest) {
    const Nginx nginx(linkTo(sha256("another"), "3000000"));
    nginx.serve(m_path, m_model);
    EXPECT_FALSE(download(nginx.url(m_link)));
    EXPECT_EQ(m_progress.back(), 1.0);
    expectRefusal(QStringLiteral("the file does not have the SHA-256 announced"));
}

TEST_F(DownloadFromNginx, refusesAFileOfAnotherSizeBeforeItComes) {
    const Nginx nginx(linkTo(sha256(m_model), "3000001"));
    nginx.serve(m_path, m_model);
    EXPECT_FALSE(download(nginx.url(m_link)));
    EXPECT_TRUE(m_progress.empty());
    expectRefusal(QStringLiteral("the file should have 3000001 bytes and has 3000000"));
}

TEST_F(DownloadFromNginx, refusesACertificateThatNobodyTrusts) {
    const Nginx nginx({}, Nginx::Scheme::https);
    nginx.serve(m_path, m_model);
    EXPECT_FALSE(download(nginx.url(m_path)));
    expectRefusal(
        QStringLiteral("SSL certificate problem: unable to get local issuer certificate"));
    EXPECT_TRUE(nginx.requests(0).isEmpty());
}

TEST_F(DownloadFromNginx, takesACertificateThatIsTrusted) {
    const Nginx nginx(linkTo(sha256(m_model), "3000000"), Nginx::Scheme::https);
    nginx.serve(m_path, m_model);
    qputenv("SSL_CERT_FILE", nginx.authority().toLocal8Bit());
    const bool succeeded = download(nginx.url(m_link));
    qunsetenv("SSL_CERT_FILE");
    ASSERT_TRUE(succeeded) << m_home.log().toStdString();
    EXPECT_EQ(content(), m_model);
}

TEST_F(DownloadFromNginx, failsWhereNobodyListens) {
    EXPECT_FALSE(download(QUrl(QStringLiteral("http://127.0.0.1:1/model"))));
    EXPECT_TRUE(m_home.log().startsWith(QStringLiteral("download error: Failed to connect")))
        << m_home.log().toStdString();
    EXPECT_EQ(files(), QStringList());
}

TEST_F(DownloadFromNginx, saysThatTheFileCannotBeMovedOverAFolder) {
    const Nginx nginx;
    nginx.serve(m_path, m_model);
    ASSERT_TRUE(QDir().mkpath(m_destination));
    EXPECT_FALSE(download(nginx.url(m_path)));
    EXPECT_EQ(m_home.log(), QStringLiteral("move failed: Is a directory\n"));
}

TEST_F(DownloadFromNginx, saysThatTheFileCannotBeMovedWhereNoFolderCanBe) {
    const Nginx nginx;
    nginx.serve(m_path, m_model);
    test::writeFile(QFileInfo(m_destination).path(), "a file where the folder should be");
    EXPECT_FALSE(download(nginx.url(m_path)));
    EXPECT_EQ(m_home.log(), QStringLiteral("move failed: Not a directory\n"));
}

}  // namespace
}  // namespace sayloft
