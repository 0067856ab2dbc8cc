// SPDX-License-Identifier: MIT
#include "platform/linux/LoginItemXdg.h"

#include "platform/linux/DesktopEntry.h"
#include "platform/tests/LoginItemFixture.h"
#include "tests/support/ChildProgram.h"

#include <QDir>

namespace sayloft {
namespace {

class LoginItem : public test::LoginItemFixture {};

struct EntryRow {
    const char* name;
    const char* entry;  ///< `@` is the program
    bool isEnabled;
};

class LoginEntry : public test::LoginItemFixture, public testing::WithParamInterface<EntryRow> {};

TEST_P(LoginEntry, saysWhetherALoginStartsTheProgram) {
    writeEntry(users, GetParam().entry);
    EXPECT_EQ(item.isEnabled(), GetParam().isEnabled);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, LoginEntry,
    testing::Values(
        EntryRow{"plain", "Exec=\"@\"\n", true},
        EntryRow{"withArguments", "Exec=\"@\" --quiet\n", true},
        EntryRow{"tryExecToo", "Exec=\"@\"\nTryExec=@\n", true},
        EntryRow{"wrapped", "Exec=env LANG=C \"@\"\nTryExec=@\n", true},
        EntryRow{"hidden", "Exec=\"@\"\nHidden=true\n", false},
        EntryRow{"notHidden", "Exec=\"@\"\nHidden=false\n", true},
        EntryRow{"switchedOffInGnome", "Exec=\"@\"\nX-GNOME-Autostart-enabled=false\n", false},
        EntryRow{"switchedOnInGnome", "Exec=\"@\"\nX-GNOME-Autostart-enabled=true\n", true},
        EntryRow{"hiddenThoughSwitchedOn",
                 "Hidden=true\nX-GNOME-Autostart-enabled=true\nExec=\"@\"\n", false},
        EntryRow{"switchedOffElsewhere", "Exec=\"@\"\n[Other]\nHidden=true\n", true},
        EntryRow{"ofAnotherProgram", "Exec=/bin/sh\n", false},
        EntryRow{"ofOneThatIsGone", "Exec=/no/such/sayloft\n", false},
        EntryRow{"withTryExecThatIsGone", "Exec=\"@\"\nTryExec=/no/such/sayloft\n", false},
        EntryRow{"withoutExec", "Comment=none\n", false}, EntryRow{"empty", "", false}),
    [](const auto& row) { return row.param.name; });

TEST_F(LoginItem, isOffWithoutAnEntry) {
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(LoginItem, isOnOnceItHasBeenSwitchedOn) {
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_TRUE(item.isEnabled());
    EXPECT_TRUE(QFileInfo::exists(users));
}

TEST_F(LoginItem, isOffOnceItHasBeenSwitchedOff) {
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_EQ(item.setEnabled(false), std::nullopt);
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(QFileInfo::exists(users));
}

TEST_F(LoginItem, isSwitchedOffWhereItAlreadyIs) {
    EXPECT_EQ(item.setEnabled(false), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(users));
}

TEST_F(LoginItem, isAskedOfTheSystemEveryTime) {
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    writeEntry(users, "Exec=\"@\"\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(QFile::remove(users));
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(LoginItem, replacesAnEntryThatIsSwitchedOff) {
    writeEntry(users, "Exec=/no/such/sayloft\nHidden=true\n");
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItem, writesWhatTheValidatorAccepts) {
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_EQ(test::run(QStringLiteral("desktop-file-validate"), {users}), QByteArray());
    writeEntry(systems, "Exec=\"@\"\n");
    EXPECT_EQ(item.setEnabled(false), std::nullopt);
    EXPECT_EQ(test::run(QStringLiteral("desktop-file-validate"), {users}), QByteArray());
}

TEST_F(LoginItem, leavesNothingElseInTheFolder) {
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_EQ(QFileInfo(users).dir().entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(LoginItem, isOnWhereTheSystemSwitchesItOnForAll) {
    writeEntry(systems, "Exec=\"@\"\n");
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItem, isFoundByItsNameOnThePath) {
    QDir().mkpath(path("bin"));
    ASSERT_TRUE(QFile::link(program, path("bin/sayloft")));
    const test::EnvironmentValue searched("PATH", path("bin"));
    writeEntry(systems, "Exec=sayloft\nTryExec=sayloft\n");
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItem, isSwitchedOffForTheUserAloneWhereTheSystemSwitchesItOn) {
    writeEntry(systems, "Exec=\"@\"\n");
    EXPECT_EQ(item.setEnabled(false), std::nullopt);
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(DesktopEntry::parse(test::readFile(users)).isTrue(QStringLiteral("Hidden")));
    EXPECT_TRUE(QFileInfo::exists(systems));
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(LoginItem, isInTheHomeDirectoryUnlessAnotherPlaceIsNamed) {
    const test::EnvironmentValue home("HOME", path("home"));
    for (const QString& unusable : {QString(), QStringLiteral("relative")}) {
        const test::EnvironmentValue configHome("XDG_CONFIG_HOME", unusable);
        EXPECT_EQ(item.setEnabled(true), std::nullopt);
        const QString file = path("home/.config/autostart/org.sayloft.Sayloft.desktop");
        EXPECT_TRUE(QFile::remove(file)) << file.toStdString();
    }
}

TEST_F(LoginItem, saysWhyItCannotBeSwitchedOn) {
    test::writeFile(path("config/autostart"), "a file where the folder should be");
    EXPECT_EQ(item.setEnabled(true), QStringLiteral("Not a directory"));
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(LoginItem, saysWhyItCannotBeWritten) {
    QDir().mkpath(users);
    const auto error = item.setEnabled(true);
    ASSERT_TRUE(error);
    EXPECT_FALSE(error->isEmpty());
}

TEST_F(LoginItem, saysWhyItCannotBeSwitchedOff) {
    QDir().mkpath(users + QStringLiteral("/not-empty"));
    EXPECT_EQ(item.setEnabled(false), QStringLiteral("Is a directory"));
}

}  // namespace
}  // namespace sayloft
