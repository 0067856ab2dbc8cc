// SPDX-License-Identifier: MIT
// Whom the real program and all that it starts talk to, as the kernel saw it.
#include "models/ModelCatalogue.h"
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/ModelHost.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/VisibleWindows.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <gmock/gmock.h>

#include <cstdio>
#include <set>
#include <string>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

/// Before anything else is started.
class WithoutTheNetwork {
public:
    WithoutTheNetwork() { leaveTheNetwork(); }
};

class TheProgramAndItsChildren : private WithoutTheNetwork, public Dictation {
protected:
    TheProgramAndItsChildren() {
        m_desk.runBy(m_traced);
        EXPECT_TRUE(QFile::exists(soundSocket()));
        EXPECT_TRUE(QFile::exists(socketIn(m_desk.bus().address())));
    }

    /// What is sent on a connection goes where that was made to, so that addresses are all.
    const QTemporaryDir m_directory;
    const QString m_trace = m_directory.filePath(QStringLiteral("trace"));
    const QStringList m_traced =
        strace(m_trace, {QStringLiteral("-s"), QStringLiteral("300"), QStringLiteral("-e"),
                         QStringLiteral("trace=connect,bind,sendto,sendmsg,sendmmsg")});

    /// Every address that a call named, in the words of the test.
    [[nodiscard]] std::set<std::string> reached() {
        static const QRegularExpression address(
            QStringLiteral("\\{sa_family=(AF_\\w+)(?:, ([^}]*))?\\}"));
        std::set<std::string> names;
        const QString trace = QString::fromUtf8(readFile(m_trace));
        for (auto calls = address.globalMatch(trace); calls.hasNext();) {
            const QRegularExpressionMatch call = calls.next();
            names.insert(nameOf(call.captured(1), call.captured(2)));
        }
        return names;
    }

    [[nodiscard]] std::string nameOf(const QString& family, const QString& rest) {
        if (family == QStringLiteral("AF_UNIX") && rest.contains(QStringLiteral("/.X11-unix/")))
            return "X server";
        if (rest.contains(socketIn(m_desk.bus().address())))
            return "session bus";
        if (rest.contains(soundSocket()))
            return "sound server";
        if (rest.contains(QStringLiteral("at-spi")))
            return "AT-SPI";
        if (rest == QStringLiteral("sin_port=htons(%1), sin_addr=inet_addr(\"127.0.0.1\")")
                        .arg(QUrl(m_host.proxy().url()).port()))
            return "model host";
        if (rest == QStringLiteral("sin_port=htons(8090), sin_addr=inet_addr(\"127.0.0.1\")"))
            return "127.0.0.1:8090";
        if (rest == QStringLiteral("sin_port=htons(8091), sin_addr=inet_addr(\"127.0.0.1\")"))
            return "update feed";
        if (family == QStringLiteral("AF_NETLINK"))
            return "kernel";
        if (rest.startsWith(QStringLiteral("sin_port=htons(53), ")) ||
            rest.contains(QStringLiteral("nscd")) || rest.contains(QStringLiteral("resolve")))
            return "name server";
        return (family + QLatin1Char(' ') + rest).toStdString();
    }

    /// The names that name servers were asked for: strace writes one as "\vsomewhere\3org\0".
    [[nodiscard]] std::vector<std::string> namesAskedFor() const {
        static const QRegularExpression question(
            QStringLiteral(R"re(\\1\\0\\0\\1(?:\\0)+(\\[^"]*)")re"));
        static const QRegularExpression length(QStringLiteral(R"(\\(?:[a-z]|[0-7]{1,3}))"));
        std::vector<std::string> names;
        const QString trace = QString::fromUtf8(readFile(m_trace));
        for (auto calls = question.globalMatch(trace); calls.hasNext();) {
            const QString name = calls.next().captured(1).replace(length, QStringLiteral("."));
            names.push_back(name.mid(1).section(QStringLiteral(".."), 0, 0).toStdString());
        }
        return names;
    }

    /// The path in "unix:path=/some/where,guid=1234".
    static QString socketIn(const QString& address) {
        return address.section(QStringLiteral("path="), 1).section(QLatin1Char(','), 0, 0);
    }

    [[nodiscard]] QString soundSocket() {
        return m_desk.environment()
            .value(QStringLiteral("PULSE_SERVER"))
            .section(QLatin1Char(':'), 1);
    }

    [[nodiscard]] qsizetype windows() const {
        return visibleWindows(m_desk.display(), QStringLiteral("sayloft")).size();
    }

    /// A desktop without a program for the keyboard's reach, and without a browser: the help is a
    /// window of the program.
    void leaveOnlyOwnHelp() {
        m_desk.setEnvironment(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("i3"));
        for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            m_desk.setEnvironment(QString::fromLatin1(name), m_desk.home());
    }

    void openFromSettings(const SettingsSwitch& settings, const char* button, const char* title) {
        settings.press(QString::fromUtf8(button));
        static_cast<void>(settings.windows().window(QString::fromUtf8(title)));
    }

    /// Once it is there: the trace would go on as long as it runs.
    void closeMixer() {
        const QString mixer = QStringLiteral("pavucontrol");
        ASSERT_TRUE(
            waitUntil([&] { return !visibleWindows(m_desk.display(), mixer).isEmpty(); }, 20s));
        run(QStringLiteral("xdotool"),
            {QStringLiteral("windowkill"), visibleWindows(m_desk.display(), mixer).constFirst()},
            {}, m_desk.display().environment());
    }

    void lookForUpdates() {
        const qsizetype before = windows();
        m_client.click(QStringLiteral("Check for Updates…"));
        EXPECT_TRUE(waitUntil([&] { return windows() > before; }, 20s));
        EXPECT_TRUE(waitUntil([this] { return m_feed.requests().size() == 1; }, 20s));
    }

    void addChord(const SettingsSwitch& settings) {
        settings.press(QStringLiteral("Add combo to Dictate"));
        static_cast<void>(settings.windows().control(SettingsSwitch::window,
                                                     QStringLiteral("Press a combo for Dictate")));
        m_desk.keyboard().tapWith(TestKeyboard::controlLeft, TestKeyboard::altLeft);
        waitForSetting(R"("dictateChords":[12,3])");
    }

    void chooseHeadset(const SettingsSwitch& settings) {
        settings.windows()
            .control(SettingsSwitch::window, QStringLiteral("Input device"))
            .act(QStringLiteral("ShowMenu"));
        m_desk.keyboard().type(QStringLiteral("head\n"));
        waitForSetting(R"("inputDeviceUID":"headset")");
    }

    void waitForSetting(const QByteArray& member) {
        const QString file = m_desk.dataFile(QStringLiteral("config.json"));
        EXPECT_TRUE(waitUntil([&] { return readFile(file).contains(member); }, 20s))
            << readFile(file).toStdString();
    }

    void download(const SettingsSwitch& settings) {
        m_host.offer();
        settings.downloadEnglish();
        EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("model download english: ok"), 60s));
    }

    /// What was downloaded is in use, and is no model.
    void dictateInVain() {
        waitForSetting(R"("model":"english")");
        m_desk.say();
        EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED"), 60s));
    }

    void quit(SayloftProgram& sayloft) {
        m_client.click(QStringLiteral("Quit"));
        ASSERT_TRUE(sayloft.program().waitForEnd(30s));
    }

    /// Where the program asks for new versions.
    const RawHttpServer m_feed{{RawAnswer::ok("<rss/>")}, 8091};
    const QString m_bundle = bundleWith(QStringLiteral(SAYLOFT_WITH_FEED),
                                        QStringLiteral("bin/sayloft"), m_directory.path());
    TrayClient m_client{m_desk.bus()};
    const ModelHost m_host{QStringLiteral("english"), QByteArray(100'000, 'm'), {}};
};

TEST_F(TheProgramAndItsChildren, talkToNobodyBeyondThisMachine) {
    leaveOnlyOwnHelp();
    m_desk.connectTo(m_host);
    m_desk.room().addMicrophone(QStringLiteral("headset"), {{QStringLiteral("device.description"),
                                                             QStringLiteral("Headset")}});
    const SettingsSwitch settings(m_desk);
    writeFile(m_desk.dataFile(QStringLiteral("history.json")), R"(["older words"])");
    m_desk.startSayloftFrom(m_bundle);
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1, 60s));
    m_client.click(QStringLiteral("older words"));
    settings.open();
    settings.press(SettingsSwitch::login);
    addChord(settings);
    chooseHeadset(settings);
    openFromSettings(settings, "Edit dictionary…", "Dictionary");
    openFromSettings(settings, "Open Settings: Accessibility", "Sayloft: keyboard and microphone");
    settings.press(QStringLiteral("Open Settings: Microphone"));
    closeMixer();
    lookForUpdates();
    download(settings);
    dictateInVain();
    quit(m_desk.sayloft());
    for (const std::string& place : reached())
        std::printf("connected to: %s\n", place.c_str());
    EXPECT_THAT(m_host.proxy().asked(),
                testing::Each(testing::AnyOf(m_host.host().toUtf8() + ":443",
                                             QByteArray(ModelHost::storage) + ":443")));
    EXPECT_THAT(reached(),
                testing::IsSupersetOf({"X server", "session bus", "sound server", "AT-SPI",
                                       "127.0.0.1:8090", "model host", "update feed"}));
    EXPECT_THAT(reached(),
                testing::IsSubsetOf({"X server", "session bus", "sound server", "AT-SPI",
                                     "127.0.0.1:8090", "model host", "update feed", "kernel"}));
}

// It downloads its model, and the name of where that lies is all that it asks for.
TEST_F(TheProgramAndItsChildren, lookOnlyForTheHostOfTheModelsAtAFirstStart) {
    SayloftProgram sayloft(m_desk.home(), m_desk.environment(), QStringLiteral(SAYLOFT_BUNDLE_DIR),
                           m_traced);
    EXPECT_TRUE(waitUntil([this] { return windows() > 0; }, 20s));
    EXPECT_TRUE(sayloft.waitForLog(QStringLiteral("download error")));
    quit(sayloft);
    EXPECT_THAT(reached(), testing::IsSupersetOf({"X server", "session bus"}));
    EXPECT_THAT(reached(),
                testing::IsSubsetOf({"X server", "session bus", "sound server", "127.0.0.1:8090",
                                     "AT-SPI", "kernel", "name server"}));
    EXPECT_THAT(namesAskedFor(), testing::Not(testing::IsEmpty()));
    const std::string host =
        QUrl(modelInfo(QStringLiteral("multilingual")).url).host().toStdString();
    EXPECT_THAT(namesAskedFor(), testing::Each(testing::StartsWith(host)));
}

}  // namespace
}  // namespace sayloft::test
