// SPDX-License-Identifier: MIT
#include "platform/tests/LoginItemFixture.h"

#include <QDir>

namespace sayloft {
namespace {

/// The program after it has been moved from where it had been switched on.
class MovedLoginItem : public test::LoginItemFixture {
protected:
    MovedLoginItem() {
        EXPECT_EQ(item.setEnabled(true), std::nullopt);
        QDir().mkpath(path("elsewhere"));
        EXPECT_TRUE(QFile::rename(program, moved));
    }

    const QString moved = path("elsewhere/sayloft");
    LoginItemXdg itemOfMoved{moved};
};

TEST_F(MovedLoginItem, isOffUntilItFollows) {
    EXPECT_FALSE(itemOfMoved.isEnabled());
    EXPECT_EQ(itemOfMoved.followProgram(), std::nullopt);
    EXPECT_TRUE(itemOfMoved.isEnabled());
}

TEST_F(MovedLoginItem, isSwitchedOnFromItsPresentPlace) {
    EXPECT_EQ(itemOfMoved.setEnabled(true), std::nullopt);
    EXPECT_TRUE(itemOfMoved.isEnabled());
}

TEST_F(MovedLoginItem, staysOffWhereTheUserHasSwitchedItOff) {
    for (const char* off :
         {"Exec=\"@\"\nHidden=true\n", "Exec=\"@\"\nX-GNOME-Autostart-enabled=false\n"}) {
        writeEntry(users, off);
        const QByteArray before = test::readFile(users);
        EXPECT_EQ(itemOfMoved.followProgram(), std::nullopt);
        EXPECT_EQ(test::readFile(users), before);
    }
}

TEST_F(MovedLoginItem, leavesTheEntryOfAnotherCopyThatIsStillThere) {
    install(program);
    const QByteArray before = test::readFile(users);
    EXPECT_EQ(itemOfMoved.followProgram(), std::nullopt);
    EXPECT_EQ(test::readFile(users), before);
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(MovedLoginItem, makesNoEntryWhereThereIsNone) {
    EXPECT_TRUE(QFile::remove(users));
    writeEntry(systems, "Exec=/no/such/sayloft\n");
    EXPECT_EQ(itemOfMoved.followProgram(), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(users));
}

TEST_F(MovedLoginItem, keepsWhatElseTheEntrySays) {
    writeEntry(users, "Exec=\"@\" --quiet\nTryExec=@\nX-GNOME-Autostart-Delay=5\n");
    EXPECT_EQ(itemOfMoved.followProgram(), std::nullopt);
    EXPECT_TRUE(itemOfMoved.isEnabled());
    EXPECT_TRUE(test::readFile(users).contains("\nX-GNOME-Autostart-Delay=5\n"));
}

}  // namespace
}  // namespace sayloft
