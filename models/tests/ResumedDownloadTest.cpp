// SPDX-License-Identifier: MIT
// Downloads that were cut short, and nginx when they go on.
#include "models/Downloader.h"
#include "models/ResumeNote.h"
#include "models/tests/DownloaderFixture.h"
#include "tests/support/Nginx.h"

#include <QCryptographicHash>
#include <QFile>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using test::modelBytes;
using test::Nginx;

class ResumedDownload : public test::DownloaderFixture {
protected:
    ResumedDownload() : m_nginx(linkTo(m_digest)) { m_nginx.serve(m_path, m_model); }

    [[nodiscard]] static QByteArray sha256(const QByteArray& bytes) {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    }

    /// A location that redirects to /model and says what is there.
    [[nodiscard]] static QByteArray linkTo(const QByteArray& digest) {
        return "location = /link { add_header X-Linked-ETag '\"" + digest +
               "\"' always; return 302 /model; }";
    }

    /// As a download has left it that was cut after `count` bytes.
    void leavePart(const QByteArray& bytes, const QString& path, const QByteArray& digest = {}) {
        test::writeFile(part(), bytes);
        ResumeNote{.url = m_nginx.url(path),
                   .etag = m_nginx.etag(m_path),
                   .size = m_model.size(),
                   .sha256 = digest}
            .save(note());
    }

    void expectModel() const {
        EXPECT_EQ(content(), m_model);
        EXPECT_EQ(files(), QStringList(QStringLiteral("some.gguf")));
        EXPECT_EQ(m_home.log(), QString());
    }

    [[nodiscard]] QByteArray request(qsizetype number) const {
        return m_nginx.requests(number).value(number - 1);
    }

    /// How nginx notes that it has sent what follows the first `count` bytes.
    [[nodiscard]] QByteArray restAfter(qint64 count) const {
        return "206 " + QByteArray::number(m_model.size() - count) +
               " bytes=" + QByteArray::number(count) + "- " + m_nginx.etag(m_path);
    }

    [[nodiscard]] QByteArray wholeModel() const {
        return "200 " + QByteArray::number(m_model.size());
    }

    const QByteArray m_model = modelBytes(3'000'000);
    const QByteArray m_digest = sha256(m_model);
    const QString m_path = QStringLiteral("/model");
    const QString m_link = QStringLiteral("/link");
    const Nginx m_nginx;
};

TEST_F(ResumedDownload, fetchesOnlyWhatIsMissing) {
    leavePart(m_model.left(1'000'000), m_path);
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    expectModel();
    EXPECT_EQ(m_nginx.requests(1), QList<QByteArray>{restAfter(1'000'000)});
    EXPECT_GT(m_progress.front(), 1.0 / 3);
    EXPECT_EQ(m_progress.back(), 1.0);
}

TEST_F(ResumedDownload, isVerifiedAsAWhole) {
    leavePart(m_model.left(2'500'000), m_link, m_digest);
    ASSERT_TRUE(download(m_nginx.url(m_link)));
    expectModel();
    EXPECT_EQ(request(2), restAfter(2'500'000));
}

TEST_F(ResumedDownload, isRefusedWhenThePartWasSpoiled) {
    leavePart(QByteArray(1'000'000, 'x'), m_link, m_digest);
    EXPECT_FALSE(download(m_nginx.url(m_link)));
    EXPECT_EQ(m_home.log(),
              QStringLiteral("download error: the file does not have the SHA-256 announced\n"));
    EXPECT_EQ(files(), QStringList());
    ASSERT_TRUE(download(m_nginx.url(m_link)));
    EXPECT_EQ(content(), m_model);
}

TEST_F(ResumedDownload, asksForTheLastByteOfAFileThatIsAllThere) {
    leavePart(m_model, m_link, m_digest);
    ASSERT_TRUE(download(m_nginx.url(m_link)));
    expectModel();
    EXPECT_EQ(request(2), restAfter(m_model.size() - 1));
}

TEST_F(ResumedDownload, asksForTheLastByteWhenThereIsMoreThanAll) {
    leavePart(m_model + "more", m_path);
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    expectModel();
    EXPECT_EQ(request(1), restAfter(m_model.size() - 1));
}

TEST_F(ResumedDownload, beginsAnewWhenTheHostHasAnotherFileByItsTag) {
    leavePart(QByteArray(1000, 'x'), m_path);
    const ResumeNote other{
        .url = m_nginx.url(m_path), .etag = "\"other\"", .size = 3'000'000, .sha256 = {}};
    other.save(note());
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    expectModel();
    EXPECT_EQ(request(1), QByteArray("200 3000000 bytes=1000- \"other\""));
}

TEST_F(ResumedDownload, beginsAnewWhenTheHostHasAnotherFileByItsDigest) {
    leavePart(QByteArray(1000, 'x'), m_link, sha256("another"));
    ASSERT_TRUE(download(m_nginx.url(m_link)));
    expectModel();
    EXPECT_EQ(request(2), wholeModel());
}

TEST_F(ResumedDownload, beginsAnewWhenTheHostNoLongerStatesADigest) {
    leavePart(QByteArray(1000, 'x'), m_path, m_digest);
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    expectModel();
    EXPECT_EQ(request(2), wholeModel());
}

TEST_F(ResumedDownload, beginsAnewWhenThePartIsOfAnotherAddress) {
    leavePart(QByteArray(1000, 'x'), QStringLiteral("/elsewhere"));
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    expectModel();
    EXPECT_EQ(request(1), wholeModel());
}

TEST_F(ResumedDownload, beginsAnewWhenTheNoteIsIncomplete) {
    leavePart(QByteArray(1000, 'x'), m_path);
    const QByteArray json = test::readFile(note());
    qsizetype requests = 0;
    for (const qsizetype length : {qsizetype{0}, json.size() / 2, json.size() - 1}) {
        test::writeFile(part(), QByteArray(1000, 'x'));
        test::writeFile(note(), json.left(length));
        ASSERT_TRUE(download(m_nginx.url(m_path)));
        expectModel();
        EXPECT_EQ(request(++requests), wholeModel());
    }
}

TEST_F(ResumedDownload, beginsAnewWhereTheHostKnowsNoRanges) {
    const Nginx plain("max_ranges 0;");
    plain.serve(m_path, m_model);
    test::writeFile(part(), QByteArray(1000, 'x'));
    ResumeNote{.url = plain.url(m_path), .etag = plain.etag(m_path), .size = {}, .sha256 = {}}.save(
        note());
    ASSERT_TRUE(download(plain.url(m_path)));
    expectModel();
}

TEST_F(ResumedDownload, beginsAnewWhenTheFileHasBecomeShorterThanThePart) {
    leavePart(QByteArray(4'000'000, 'x'), m_path);
    ResumeNote{.url = m_nginx.url(m_path), .etag = m_nginx.etag(m_path), .size = {}, .sha256 = {}}
        .save(note());
    ASSERT_TRUE(download(m_nginx.url(m_path)));
    expectModel();
    EXPECT_TRUE(request(1).startsWith("416 "));
    EXPECT_EQ(request(2), wholeModel());
}

TEST_F(ResumedDownload, keepsThePartWhenTheHostRefuses) {
    leavePart(m_model.left(1'000'000), QStringLiteral("/absent"));
    EXPECT_FALSE(download(m_nginx.url(QStringLiteral("/absent"))));
    EXPECT_EQ(partSize(), 1'000'000);
    EXPECT_TRUE(QFileInfo::exists(note()));
}

TEST_F(ResumedDownload, goesOnAfterTheProgramHasEndedInTheMiddle) {
    const Nginx slow("limit_rate 1m; limit_rate_after 500k;");
    slow.serve(m_path, m_model);
    start(slow.url(m_path));
    ASSERT_TRUE(test::waitUntil([this] { return partSize() > 300'000; }));
    renew(std::chrono::seconds(60));
    const qint64 there = partSize();
    ASSERT_LT(there, m_model.size());
    ASSERT_TRUE(download(slow.url(m_path)));
    expectModel();
    EXPECT_TRUE(slow.requests(2).back().contains("bytes=" + QByteArray::number(there) + "- "));
}

}  // namespace
}  // namespace sayloft
