// SPDX-License-Identifier: MIT
#include "updates/UpdateCheck.h"

#include "tests/support/ChildProgram.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::RawAnswer;

QByteArray feed(const QByteArray& version) {
    return R"(<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><item><sparkle:version>)" +
           version + "</sparkle:version></item></channel></rss>";
}

QUrl address(const test::RawHttpServer& server) {
    return QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(server.port()));
}

/// What a check of version 1.0 says.
UpdateAnswer check(const QUrl& feed, std::chrono::milliseconds deadline = 10s) {
    std::optional<UpdateAnswer> answer;
    int answers = 0;
    const UpdateCheck check(
        {.feed = feed, .ownVersion = QStringLiteral("1.0")},
        [&](const UpdateAnswer& given) {
            answer = given;
            ++answers;
        },
        deadline);
    EXPECT_FALSE(answer) << "the answer came before the call returned";
    EXPECT_TRUE(test::waitUntil([&] { return answer.has_value(); }, 15s));
    test::turnEventLoopFor(20ms);
    EXPECT_EQ(answers, 1);
    return answer.value_or(UpdateAnswer());
}

std::string sentence(const QUrl& feed, std::chrono::milliseconds deadline = 10s) {
    const UpdateAnswer answer = check(feed, deadline);
    EXPECT_FALSE(answer.newer);
    return answer.sentence.toStdString();
}

/// What a check says when the server sends these bytes.
std::string sentenceFor(const RawAnswer& answer, std::chrono::milliseconds deadline = 10s) {
    const test::RawHttpServer server({answer});
    return sentence(address(server), deadline);
}

TEST(AnUpdateCheck, withoutAFeedPointsToThePackageManager) {
    EXPECT_EQ(sentence({}), "Updates come with the package manager.");
}

TEST(AnUpdateCheck, findsANewerVersion) {
    const test::RawHttpServer server({RawAnswer::ok(feed("1.1"))});
    const UpdateAnswer answer = check(address(server));
    EXPECT_EQ(answer.sentence, QStringLiteral("Sayloft 1.1 is available. You have 1.0."));
    ASSERT_TRUE(answer.newer);
    EXPECT_EQ(answer.newer->version, QStringLiteral("1.1"));
}

TEST(AnUpdateCheck, tellsTheServerNothingButTheVersion) {
    const test::RawHttpServer server({RawAnswer::ok(feed("1.1"))});
    static_cast<void>(check(address(server)));
    const QByteArray request = server.requests().at(0);
    EXPECT_TRUE(request.contains("User-Agent: Sayloft/1.0\r\n")) << request.toStdString();
    EXPECT_FALSE(request.contains("Cookie"));
}

struct VersionRow {
    const char* name;
    const char* version;
};

class AFeed : public testing::TestWithParam<VersionRow> {};

TEST_P(AFeed, withNothingNewerSaysSo) {
    EXPECT_EQ(sentenceFor(RawAnswer::ok(feed(GetParam().version))),
              "Sayloft 1.0 is the newest version.");
}

INSTANTIATE_TEST_SUITE_P(Versions, AFeed,
                         testing::Values(VersionRow{"same", "1.0"}, VersionRow{"older", "0.9"},
                                         VersionRow{"beta", "1.0b1"}),
                         [](const auto& row) { return row.param.name; });

struct FaultRow {
    const char* name;
    RawAnswer answer;
    const char* sentence;
};

class AFault : public testing::TestWithParam<FaultRow> {};

TEST_P(AFault, isSaidInASentence) {
    EXPECT_EQ(sentenceFor(GetParam().answer, 2s), GetParam().sentence);
}

QByteArray redirection(const QByteArray& to) {
    return "HTTP/1.1 302 Found\r\nLocation: " + to + "\r\nContent-Length: 0\r\n\r\n";
}

constexpr auto notReached = "The update server cannot be reached.";
constexpr auto noList = "What the update server sends is no list of versions.";

INSTANTIATE_TEST_SUITE_P(
    Faults, AFault,
    testing::Values(
        FaultRow{"notFound", RawAnswer::status(404),
                 "The update server answers with an error (404)."},
        FaultRow{"serverError", RawAnswer::status(500),
                 "The update server answers with an error (500)."},
        FaultRow{"hangs", RawAnswer::hang(), "The update server does not answer."},
        FaultRow{"trickles",
                 {.bytes = RawAnswer::ok(QByteArray(5000, ' ')).bytes, .trickleMs = 20},
                 "The update server does not answer."},
        FaultRow{"closesAtOnce", {.bytes = {}}, notReached},
        FaultRow{"noHttp", {.bytes = "220 mail.example.org ESMTP\r\n"}, notReached},
        FaultRow{"cutOff",
                 {.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n<rss>"},
                 notReached},
        FaultRow{"aWebPage", RawAnswer::ok("<html>Log in to the hotel's network</html>"), noList},
        FaultRow{"cutOffFeed", RawAnswer::ok(feed("2").chopped(20)), noList},
        FaultRow{"farTooMuch", RawAnswer::ok(QByteArray(qsizetype{5} * 1024 * 1024, 'x')),
                 "The update server sends far too much."},
        FaultRow{"unsafeRedirection",
                 {.bytes = redirection("http://example.org/")},
                 "The update server leads to an address that is not a safe one."},
        FaultRow{"fileRedirection", {.bytes = redirection("file:///etc/passwd")}, notReached}),
    [](const auto& row) { return row.param.name; });

TEST(AnUpdateCheck, followsARedirection) {
    const test::RawHttpServer target({RawAnswer::ok(feed("1.1"))});
    const test::RawHttpServer server({{.bytes = redirection(address(target).toString().toUtf8())}});
    EXPECT_TRUE(check(address(server)).newer);
}

TEST(AnUpdateCheck, refusesAFeedThatAnybodyOnTheWayCouldChange) {
    EXPECT_EQ(sentence(QUrl(QStringLiteral("http://example.org/appcast.xml"))),
              "The address of the update server is not a safe one.");
    EXPECT_EQ(sentence(QUrl(QStringLiteral("file:///etc/passwd"))),
              "The address of the update server is not a safe one.");
}

TEST(AnUpdateCheck, saysThatNobodyListens) {
    EXPECT_EQ(sentence(QUrl(QStringLiteral("http://127.0.0.1:1/"))), notReached);
}

TEST(AnUpdateCheck, saysThatTheHostIsUnknown) {
    EXPECT_EQ(sentence(QUrl(QStringLiteral("https://nowhere.invalid/"))),
              "The update server cannot be found. Is there a network?");
}

TEST(AnUpdateCheck, canBeGivenUp) {
    const test::RawHttpServer server({RawAnswer::hang()});
    bool answered = false;
    {
        const UpdateCheck check({.feed = address(server), .ownVersion = QStringLiteral("1.0")},
                                [&answered](const UpdateAnswer&) { answered = true; });
        ASSERT_TRUE(test::waitUntil([&] { return !server.requests().empty(); }));
    }
    test::turnEventLoopFor(20ms);
    EXPECT_FALSE(answered);
}

// With servers that we did not write

TEST(AnUpdateCheck, readsAFeedFromAnotherServer) {
    QTemporaryDir folder;
    test::writeFile(folder.filePath(QStringLiteral("appcast.xml")), feed("3.0"));
    test::ChildProgram server(
        QStringLiteral("python3"),
        {QStringLiteral("-u"), QStringLiteral("-m"), QStringLiteral("http.server"),
         QStringLiteral("--bind"), QStringLiteral("127.0.0.1"), QStringLiteral("--directory"),
         folder.path(), QStringLiteral("0")});
    QByteArray said;
    ASSERT_TRUE(test::waitUntil([&] {
        said += server.standardOutput();
        return said.contains(") ...");
    }));
    const QByteArray port = said.mid(said.indexOf("port ") + 5).split(' ').first();
    EXPECT_TRUE(
        check(
            QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(QString::fromLatin1(port))))
            .newer);
}

TEST(AnUpdateCheck, refusesAServerWhoseCertificateNobodyVouchesFor) {
    QTemporaryDir folder;
    const QString key = folder.filePath(QStringLiteral("key.pem"));
    const QString certificate = folder.filePath(QStringLiteral("certificate.pem"));
    test::run(QStringLiteral("openssl"),
              {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
               QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"), key,
               QStringLiteral("-out"), certificate, QStringLiteral("-subj"),
               QStringLiteral("/CN=localhost")});
    test::ChildProgram server(QStringLiteral("openssl"),
                              {QStringLiteral("s_server"), QStringLiteral("-accept"),
                               QStringLiteral("127.0.0.1:0"), QStringLiteral("-key"), key,
                               QStringLiteral("-cert"), certificate, QStringLiteral("-WWW")});
    QByteArray said;
    ASSERT_TRUE(test::waitUntil([&] {
        said += server.standardOutput();
        return said.contains("ACCEPT 127.0.0.1:") && said.endsWith('\n');
    }));
    const QByteArray port = said.mid(said.indexOf("127.0.0.1:") + 10).split('\n').first();
    EXPECT_EQ(
        sentence(QUrl(
            QStringLiteral("https://localhost:%1/appcast.xml").arg(QString::fromLatin1(port)))),
        "The update server cannot prove who it is.");
}

}  // namespace
}  // namespace sayloft
