// SPDX-License-Identifier: MIT
// The helper's program with the starter model.
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SampleRequests.h"
#include "helper/tests/SpeechSamples.h"
#include "tests/support/RawHttp.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>

namespace sayloft::helper {
namespace {

using namespace std::chrono_literals;
using sayloft::test::ChildProgram;
using sayloft::test::exchange;
using sayloft::test::freePort;
using sayloft::test::RawConnection;
using sayloft::test::writeFile;
using test::Ending;
using test::expectFailure;
using test::HelperBundle;

// A thread sanitizer alone waits a second before it lets its program end.
constexpr auto atOnce = 2s;

class StarterProgram : public testing::Test {
protected:
    [[nodiscard]] QString starterWith(const QString& acoustic, const QString& language,
                                      const QString& dictionary) const {
        QString path = m_bundle.root() + QStringLiteral("/some.model");
        writeFile(path, QStringLiteral("sayloft starter model 1\nacoustic-model = %1\n"
                                       "language-model = %2\ndictionary = %3\n")
                            .arg(acoustic, language, dictionary)
                            .toUtf8());
        return path;
    }

    HelperBundle m_bundle;
};

const QString enUs = QStringLiteral("/usr/share/pocketsphinx/model/en-us/en-us");
const QString enUsLanguage = enUs + QStringLiteral(".lm.bin");
const QString enUsWords = QStringLiteral("/usr/share/pocketsphinx/model/en-us/cmudict-en-us.dict");

TEST_F(StarterProgram, refusesAPortInUse) {
    const test::StarterServer first;
    expectFailure(m_bundle.run(HelperBundle::arguments(m_bundle.starterModel(), first.port())),
                  QStringLiteral("cannot listen on 127.0.0.1 port %1: Address already in use")
                      .arg(first.port()));
}

TEST_F(StarterProgram, saysThatTheRecogniserCannotLoadADamagedModel) {
    const QString damaged = m_bundle.root() + QStringLiteral("/damaged/");
    writeFile(damaged + QStringLiteral("file"), QByteArray(5000, '\x41'));
    for (const QString& file : {QStringLiteral("mdef"), QStringLiteral("means"),
                                QStringLiteral("variances"), QStringLiteral("feat.params")})
        writeFile(damaged + QStringLiteral("hmm/") + file, QByteArray(5000, '\x41'));
    for (const QString& model :
         {starterWith(damaged + QStringLiteral("hmm"), enUsLanguage, enUsWords),
          starterWith(enUs, damaged + QStringLiteral("file"), enUsWords)}) {
        const Ending ending = m_bundle.runWith(model);
        EXPECT_EQ(ending.exitCode, 1);
        EXPECT_EQ(ending.standardError.count(QLatin1Char('\n')), 1)
            << ending.standardError.toStdString();
        EXPECT_TRUE(
            ending.standardError.startsWith(QStringLiteral("parakeet-server: PocketSphinx cannot")))
            << ending.standardError.toStdString();
    }
}

TEST_F(StarterProgram, namesThePackageOfAMissingModel) {
    expectFailure(m_bundle.runWith(starterWith(enUs, QStringLiteral("/nowhere.lm"), enUsWords)),
                  QStringLiteral("/nowhere.lm is missing or unreadable, install the package "
                                 "pocketsphinx-en-us"));
}

TEST(StarterServer, carriesTheNameThatTheAppEndsItBy) {
    test::StarterServer server;
    const QString comm = QStringLiteral("/proc/%1/comm").arg(server.program().pid());
    EXPECT_EQ(sayloft::test::readFile(comm), "parakeet-server\n");
}

TEST(StarterServer, listensOnTheLoopbackAddressAlone) {
    const test::StarterServer server;
    const QString port =
        QString::number(server.port(), 16).toUpper().rightJustified(4, QLatin1Char('0'));
    const QByteArray sockets = sayloft::test::readFile(QStringLiteral("/proc/net/tcp"));
    EXPECT_TRUE(sockets.contains(
        (QStringLiteral("0100007F:") + port + QStringLiteral(" 00000000:0000 0A")).toLatin1()));
    EXPECT_FALSE(sockets.contains(
        (QStringLiteral("00000000:") + port + QStringLiteral(" 00000000:0000 0A")).toLatin1()));
    const QByteArray six = sayloft::test::readFile(QStringLiteral("/proc/net/tcp6"));
    EXPECT_FALSE(six.contains((QLatin1Char(':') + port + QStringLiteral(" 0000")).toLatin1()));
}

TEST(StarterServer, saysNothingWhileItWorks) {
    test::StarterServer server;
    EXPECT_EQ(server.transcribe(test::wavFile(16000)), "");
    EXPECT_EQ(server.program().standardError(), "");
    EXPECT_EQ(server.program().standardOutput(), "");
}

TEST(StarterServer, endsAtOnceAndInOrderOnSigterm) {
    test::StarterServer server;
    server.program().signal(SIGTERM);
    EXPECT_TRUE(server.program().waitForEnd(atOnce));
    EXPECT_EQ(server.program().exitCode(), 0);
}

TEST(StarterServer, endsAtOnceEvenWhileItDecodes) {
    test::StarterServer server;
    RawConnection connection(server.port());
    connection.send(test::postOf(test::appForm(test::wavOf(test::recordedSpeech().front()))));
    EXPECT_FALSE(connection.waitForBytes("HTTP/1.1 ", 300ms)) << "seven seconds decoded too fast";
    server.program().signal(SIGTERM);
    EXPECT_TRUE(server.program().waitForEnd(atOnce));
    EXPECT_EQ(server.program().exitCode(), 0);
}

TEST_F(StarterProgram, endsOnSigtermWhileItLoads) {
    const std::uint16_t port = freePort();
    ChildProgram helper(m_bundle.program(), HelperBundle::arguments(m_bundle.starterModel(), port));
    ASSERT_TRUE(sayloft::test::waitUntil([&] { return sayloft::test::isListening(port); }));
    helper.signal(SIGTERM);
    EXPECT_TRUE(helper.waitForEnd(atOnce));
    EXPECT_EQ(helper.exitCode(), 0);
}

TEST_F(StarterProgram, canBeStartedAgainOnItsPortAtOnce) {
    const std::uint16_t port = freePort();
    for (int round = 0; round < 3; ++round) {
        ChildProgram helper(m_bundle.program(),
                            HelperBundle::arguments(m_bundle.starterModel(), port));
        ASSERT_TRUE(sayloft::test::waitUntil([&] { return sayloft::test::isListening(port); }));
        EXPECT_EQ(exchange(port, "GET / HTTP/1.1\r\n\r\n").status, 200);
    }
}

// In KiB, as /proc/<pid>/status gives it: VmRSS is what it has now, VmHWM the most it ever had.
long memoryOf(const test::StarterServer& server, const QByteArray& field) {
    const QByteArray status =
        sayloft::test::readFile(QStringLiteral("/proc/%1/status").arg(server.program().pid()));
    const qsizetype at = status.indexOf(field + ':');
    return status.mid(at + field.size() + 1).trimmed().split(' ').front().toLong();
}

constexpr long mebibyte = 1024;

TEST(StarterServer, refusesMoreThanSixtyFourMebibytesWithoutTakingThemIn) {
    test::StarterServer server;
    const long before = memoryOf(server, "VmHWM");
    ASSERT_GT(before, 20 * mebibyte);
    const std::string tooLong = test::appForm(std::string(std::size_t{64} << 20U, 'a'));
    for (int round = 0; round < 3; ++round) {
        const auto reply = exchange(server.port(), test::postOf(tooLong));
        EXPECT_EQ(reply.status, 400);
        EXPECT_EQ(reply.body, "the request is longer than 64 MiB\n");
    }
    EXPECT_LT(memoryOf(server, "VmHWM"), before + 16 * mebibyte);
}

TEST(StarterServer, takesInNoMoreOfAnEndlessRequestThanItMay) {
    const test::StarterServer server;
    const long before = memoryOf(server, "VmHWM");
    RawConnection connection(server.port());
    connection.send(
        test::post("Transfer-Encoding: chunked\r\n" + test::formType(), "fffffffffff\r\n"));
    const std::string piece(std::size_t{1} << 20U, 'a');
    for (int sent = 0; sent < 800 && connection.send(piece); ++sent) {
    }
    connection.finishSending();
    const auto reply = connection.readReply();
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.body, "the request is longer than 64 MiB\n");
    // Twice the limit while the body grows, and what a sanitizer adds to that.
    EXPECT_LT(memoryOf(server, "VmHWM"), before + 400 * mebibyte);
}

TEST(StarterServer, takesAFormOfAlmostSixtyFourMebibytes) {
    const test::StarterServer server;
    const std::string file((std::size_t{64} << 20U) - 1000, 'a');
    const auto reply = exchange(server.port(), test::postOf(test::appForm(file)));
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.body, "the file is not a WAV file\n");
}

TEST(StarterServer, outlivesThousandsOfMalformedRequests) {
    test::StarterServer server;
    std::mt19937 random(314159);  // NOLINT(bugprone-*): the same run every time
    const std::string good = test::postOf(test::appForm(test::wavFile(200)));
    for (int round = 0; round < 3000; ++round) {
        std::string request = good;
        for (auto changes = 1 + random() % 4; changes > 0; --changes)
            request[random() % request.size()] = static_cast<char>(random());
        if (random() % 3 == 0)
            request.resize(random() % request.size());
        const int status = exchange(server.port(), request).status;
        ASSERT_TRUE(status == 200 || status == 400 || status == 404 || request.empty())
            << status << " for\n"
            << request;
    }
    ASSERT_TRUE(server.program().isRunning());
    EXPECT_EQ(server.transcribe(test::wavFile(200)), "");
}

}  // namespace
}  // namespace sayloft::helper
