// SPDX-License-Identifier: MIT
#include "platform/SessionBusAddress.h"

#include "platform/SessionBusConnection.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class TheSessionBusAddress : public testing::Test {
protected:
    TheSessionBusAddress() {
        // Whoever starts a bus on our behalf finds this program first.
        test::writeFile(m_programs.filePath(QStringLiteral("dbus-launch")),
                        "#!/bin/sh\ntouch \"$(dirname \"$0\")/launched\"\n");
        QFile(m_programs.filePath(QStringLiteral("dbus-launch")))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", m_programs.path().toLocal8Bit() + ':' + qgetenv("PATH"));
        qputenv("DISPLAY", ":60001");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toLocal8Bit());
    }

    [[nodiscard]] QString socket() const { return m_runtime.filePath(QStringLiteral("bus")); }
    [[nodiscard]] bool wasLaunched() const {
        return QFile::exists(m_programs.filePath(QStringLiteral("launched")));
    }

    QTemporaryDir m_programs;
    QTemporaryDir m_runtime;
};

TEST_F(TheSessionBusAddress, isTheOneOfTheRuntimeDirectory) {
    const test::SessionBus bus(test::SessionBus::Options{.socket = socket()});
    const SessionBusConnection connection(sessionBusAddress());
    EXPECT_TRUE(connection.bus());
}

TEST_F(TheSessionBusAddress, isNoneAndStartsNoneWhereThereIsNone) {
    EXPECT_FALSE(sessionBusAddress());
    EXPECT_FALSE(wasLaunched());
}

TEST_F(TheSessionBusAddress, isNoneWithoutARuntimeDirectory) {
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_FALSE(sessionBusAddress());
    EXPECT_FALSE(wasLaunched());
}

TEST_F(TheSessionBusAddress, isNoneWhereAFileStandsInItsPlace) {
    test::writeFile(socket(), "no socket");
    EXPECT_FALSE(sessionBusAddress());
    EXPECT_FALSE(wasLaunched());
}

TEST_F(TheSessionBusAddress, isNoneWhereItWouldHaveToBeStarted) {
    for (const char* address : {"", "autolaunch:", "autolaunch:scope=*user"}) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        EXPECT_FALSE(sessionBusAddress()) << address;
        EXPECT_FALSE(wasLaunched()) << address;
    }
}

}  // namespace
}  // namespace sayloft
