// SPDX-License-Identifier: MIT
#include "platform/linux/DesktopEntry.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

QString programOf(const QByteArray& exec) {
    return DesktopEntry::parse("[Desktop Entry]\nExec=" + exec + "\n").program();
}

struct ExecRow {
    const char* name;
    const char* exec;
    const char* program;
};

class ExecValue : public testing::TestWithParam<ExecRow> {};

TEST_P(ExecValue, namesAProgram) {
    EXPECT_EQ(programOf(GetParam().exec), QString::fromUtf8(GetParam().program));
}

INSTANTIATE_TEST_SUITE_P(
    Values, ExecValue,
    testing::Values(ExecRow{"plain", "/usr/bin/sayloft", "/usr/bin/sayloft"},
                    ExecRow{"withArguments", "/usr/bin/sayloft --quiet %U", "/usr/bin/sayloft"},
                    ExecRow{"bare", "sayloft", "sayloft"},
                    ExecRow{"quoted", R"("/opt/my apps/sayloft" -x)", "/opt/my apps/sayloft"},
                    ExecRow{"quotedQuote", R"("/opt/a\\"b/sayloft")", R"(/opt/a"b/sayloft)"},
                    ExecRow{"quotedBackslash", R"("/opt/a\\\\b/sayloft")", R"(/opt/a\b/sayloft)"},
                    ExecRow{"quotedDollar", R"("/opt/a\\$b/sayloft")", "/opt/a$b/sayloft"},
                    ExecRow{"percent", R"("/opt/100%%/sayloft")", "/opt/100%/sayloft"},
                    ExecRow{"neverClosed", R"("/opt/sayloft)", ""}, ExecRow{"empty", "", ""}),
    [](const auto& row) { return row.param.name; });

class ProgramPath : public testing::TestWithParam<const char*> {};

TEST_P(ProgramPath, isReadAsItWasWritten) {
    const QString path = QString::fromUtf8(GetParam());
    EXPECT_EQ(programOf(execLine(path)), path);
    const QByteArray file = "[Desktop Entry]\nTryExec=" + escapedValue(path) + "\n";
    EXPECT_EQ(DesktopEntry::parse(file).value(QStringLiteral("TryExec")), path);
}

INSTANTIATE_TEST_SUITE_P(Paths, ProgramPath,
                         testing::Values("/usr/lib/sayloft/Contents/bin/sayloft",
                                         "/home/me/My Programs/Sayloft.app/Contents/bin/sayloft",
                                         "/a\"b/sayloft", "/a\\b/sayloft", "/a\\nb/sayloft",
                                         "/a`b/sayloft", "/a$b/sayloft", "/100%u/sayloft",
                                         "/a'b;c&d/sayloft", "/Büro/語/sayloft", "/a\nb/sayloft",
                                         "/a\tb/sayloft"));

TEST(DesktopEntryTest, readsTheGroupOfThatNameOnly) {
    const auto entry = DesktopEntry::parse(
        "# Exec=commented\n[Other]\nExec=other\n[Desktop Entry]\nExec = right \r\n"
        "Exec[de]=rechts\n#Exec=commented\n\n[Desktop Action new]\nExec=action\n");
    EXPECT_EQ(entry.program(), QStringLiteral("right"));
}

TEST(DesktopEntryTest, isEmptyWithoutThatGroup) {
    const auto entry = DesktopEntry::parse("Exec=sayloft\n\xff\xfe");
    EXPECT_EQ(entry.program(), QString());
    EXPECT_EQ(entry.value(QStringLiteral("Exec")), std::nullopt);
    EXPECT_FALSE(entry.isTrue(QStringLiteral("Hidden")));
    EXPECT_FALSE(entry.isFalse(QStringLiteral("Hidden")));
}

}  // namespace
}  // namespace sayloft
