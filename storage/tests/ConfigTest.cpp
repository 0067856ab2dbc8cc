// SPDX-License-Identifier: MIT
#include "storage/Config.h"

#include "models/Paths.h"
#include "storage/LegacyKeyCode.h"
#include "tests/support/TempHome.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using Chords = std::vector<std::int64_t>;

class ConfigFile : public testing::Test {
protected:
    Config loadFrom(const QByteArray& content) {
        test::writeFile(Config::url(), content);
        return Config::load();
    }

    test::TempHome m_home;
};

TEST_F(ConfigFile, thatIsMissingGivesAllDefaultsAndStaysMissing) {
    const Config config = Config::load();
    EXPECT_EQ(config, Config());
    EXPECT_EQ(config.dictateChords, Chords{12});
    EXPECT_FALSE(QFileInfo::exists(Config::url()));
}

TEST(ConfigDefaults, areTheDocumentedOnes) {
    const Config config;
    EXPECT_EQ(config.dictateChords, Chords{12});
    EXPECT_TRUE(config.dictateEnterChords.empty());
    EXPECT_FALSE(config.inputDeviceUID);
    EXPECT_EQ(config.pillStyle, QStringLiteral("full"));
    EXPECT_EQ(config.animAppear, 0.3);
    EXPECT_EQ(config.animHide, 0.3);
    EXPECT_EQ(config.holdDuration, 1.0);
    EXPECT_FALSE(config.leaveInClipboard);
    EXPECT_TRUE(config.replacements.empty());
    EXPECT_TRUE(config.boostMic);
    EXPECT_FALSE(config.playSounds);
    EXPECT_EQ(config.model, QStringLiteral("multilingual"));
}

struct BadFile {
    const char* name;
    const char* content;
};

class ConfigFileWithoutAnObject : public ConfigFile, public testing::WithParamInterface<BadFile> {};

TEST_P(ConfigFileWithoutAnObject, givesAllDefaults) {
    EXPECT_EQ(loadFrom(GetParam().content), Config());
}

INSTANTIATE_TEST_SUITE_P(
    Content, ConfigFileWithoutAnObject,
    testing::Values(BadFile{"empty", ""}, BadFile{"emptyObject", "{}"}, BadFile{"array", "[12]"},
                    BadFile{"string", "\"model\""}, BadFile{"number", "12"},
                    BadFile{"null", "null"}, BadFile{"notJson", "model = starter"},
                    BadFile{"cutOff", "{\"playSounds\":true"},
                    BadFile{"tooLargeNumber", "{\"playSounds\":true,\"holdDuration\":1e400}"},
                    BadFile{"twoValues", "{\"playSounds\":true}{}"},
                    BadFile{"notUtf8", "{\"playSounds\":true,\"model\":\"\xff\xfe\"}"}),
    [](const auto& file) { return file.param.name; });

TEST_F(ConfigFile, thatCannotBeReadGivesAllDefaults) {
    test::writeFile(Config::url() + QStringLiteral("/inside"), "the path is a directory");
    EXPECT_EQ(Config::load(), Config());
}

struct ChordRow {
    const char* name;
    const char* content;
    Chords dictate;
    Chords dictateEnter;
};

class ConfiguredChords : public ConfigFile, public testing::WithParamInterface<ChordRow> {};

TEST_P(ConfiguredChords, areReadWithTheirLegacyKeysAsFallback) {
    const Config config = loadFrom(GetParam().content);
    EXPECT_EQ(config.dictateChords, GetParam().dictate);
    EXPECT_EQ(config.dictateEnterChords, GetParam().dictateEnter);
}

INSTANTIATE_TEST_SUITE_P(
    Content, ConfiguredChords,
    testing::Values(
        ChordRow{"asTheyStand",
                 R"({"dictateChords":[9,9,0,99],"dictateEnterChords":[16]})",
                 {9, 9, 0, 99},
                 {16}},
        ChordRow{"emptyStaysEmpty", R"({"dictateChords":[],"dictateKeys":[55]})", {}, {}},
        ChordRow{"stringFallsBack", R"({"dictateChords":"12","dictateKeys":[55,56]})", {8, 4}, {}},
        ChordRow{"nullFallsBack", R"({"dictateChords":null,"dictateKeys":[63]})", {16}, {}},
        ChordRow{
            "oneBadElementFallsBack", R"({"dictateChords":[12,"9"],"dictateKeys":[58]})", {2}, {}},
        ChordRow{"fractionFallsBack", R"({"dictateChords":[12.5],"dictateKeys":[58]})", {2}, {}},
        ChordRow{"hugeNumberFallsBack",
                 R"({"dictateChords":[18446744073709551615],"dictateKeys":[58]})",
                 {2},
                 {}},
        ChordRow{"codesWithoutAChordAreDropped", R"({"dictateKeys":[55,57,63]})", {8, 16}, {}},
        ChordRow{"duplicatesAreKept", R"({"dictateKeys":[54,55]})", {8, 8}, {}},
        ChordRow{"codesThatAllDisappearGiveAnEmptyList", R"({"dictateKeys":[57]})", {}, {}},
        ChordRow{"codeOutOfRangeKeepsTheDefault", R"({"dictateKeys":[70000]})", {12}, {}},
        ChordRow{"negativeCodeKeepsTheDefault", R"({"dictateKeys":[-1]})", {12}, {}},
        ChordRow{"theNewKeyWins", R"({"dictateChords":[3],"dictateKeys":[55]})", {3}, {}},
        ChordRow{"enterListHasItsOwnLegacyKey", R"({"dictateEnterKeys":[59,62]})", {12}, {1, 1}},
        ChordRow{"enterListKeepsItsDefault", R"({"dictateEnterKeys":["59"]})", {12}, {}}),
    [](const auto& row) { return row.param.name; });

struct LegacyRow {
    std::uint16_t code;
    std::int64_t chord;
};

class LegacyKeyCode : public testing::TestWithParam<LegacyRow> {};

TEST_P(LegacyKeyCode, mapsToItsChord) {
    EXPECT_EQ(chordForLegacyKeyCode(GetParam().code), GetParam().chord);
}

INSTANTIATE_TEST_SUITE_P(Codes, LegacyKeyCode,
                         testing::Values(LegacyRow{0, 0}, LegacyRow{53, 0}, LegacyRow{54, 8},
                                         LegacyRow{55, 8}, LegacyRow{56, 4}, LegacyRow{57, 0},
                                         LegacyRow{58, 2}, LegacyRow{59, 1}, LegacyRow{60, 4},
                                         LegacyRow{61, 2}, LegacyRow{62, 1}, LegacyRow{63, 16},
                                         LegacyRow{64, 0}, LegacyRow{65535, 0}),
                         [](const auto& row) { return "code" + std::to_string(row.param.code); });

TEST_F(ConfigFile, losesOnlyTheKeyThatIsBad) {
    const Config config = loadFrom(
        R"({"animAppear":"fast","animHide":0.5,"holdDuration":2,"leaveInClipboard":1,
            "boostMic":false,"playSounds":true,"model":7,"pillStyle":"minimal",
            "replacements":[["a","b"],["only one"],[]],"inputDeviceUID":42,"unknown":{"x":1}})");
    EXPECT_EQ(config.animAppear, 0.3);
    EXPECT_EQ(config.animHide, 0.5);
    EXPECT_EQ(config.holdDuration, 2.0);
    EXPECT_FALSE(config.leaveInClipboard);
    EXPECT_FALSE(config.boostMic);
    EXPECT_TRUE(config.playSounds);
    EXPECT_EQ(config.model, QStringLiteral("multilingual"));
    EXPECT_EQ(config.pillStyle, QStringLiteral("minimal"));
    EXPECT_EQ(config.replacements.size(), 3U);
    EXPECT_FALSE(config.inputDeviceUID);
}

TEST_F(ConfigFile, withOneBadReplacementKeepsTheEmptyDictionary) {
    EXPECT_TRUE(loadFrom(R"({"replacements":[["a","b"],["c",3]]})").replacements.empty());
}

TEST_F(ConfigFile, readsAndWritesAnAbsentDeviceAsNull) {
    const Config config = loadFrom(R"({"inputDeviceUID":null})");
    EXPECT_FALSE(config.inputDeviceUID);
    config.save();
    EXPECT_TRUE(test::readFile(Config::url()).contains(R"("inputDeviceUID":null)"));
}

TEST_F(ConfigFile, holdsTheTwelveKeysInOrderOnOneLineAfterASave) {
    const Config config = loadFrom(R"({"dictateKeys":[56],"dictateEnterKeys":[],"other":true})");
    config.save();
    EXPECT_EQ(test::readFile(Config::url()),
              R"({"dictateChords":[4],"dictateEnterChords":[],"inputDeviceUID":null,)"
              R"("pillStyle":"full","animAppear":0.3,"animHide":0.3,"holdDuration":1.0,)"
              R"("leaveInClipboard":false,"replacements":[],"boostMic":true,"playSounds":false,)"
              R"("model":"multilingual"})");
}

TEST_F(ConfigFile, givesBackEverythingThatWasSaved) {
    Config config;
    config.dictateChords = {9, 16};
    config.dictateEnterChords = {12};
    config.inputDeviceUID = QStringLiteral("alsa_input.usb-Größe_\"quoted\"-00");
    config.pillStyle = QStringLiteral("minimal");
    config.animAppear = 0.1;
    config.animHide = 0.987654321;
    config.holdDuration = 2.5;
    config.leaveInClipboard = true;
    config.replacements = {{QStringLiteral("smile"), QStringLiteral("😀\n")},
                           {QStringLiteral("odd")}};
    config.boostMic = false;
    config.playSounds = true;
    config.model = QStringLiteral("english");
    config.save();
    EXPECT_EQ(Config::load(), config);
}

TEST_F(ConfigFile, isRewrittenInPlaceAndShrinks) {
    loadFrom(QByteArray(5000, ' ') + "{}");
    Config().save();
    EXPECT_LT(QFileInfo(Config::url()).size(), 1000);
    EXPECT_EQ(Config::load(), Config());
}

TEST_F(ConfigFile, thatCannotBeWrittenIsNoError) {
    test::writeFile(DATA_DIR, "a file where the directory should be");
    Config().save();
    EXPECT_EQ(test::readFile(DATA_DIR), "a file where the directory should be");
}

}  // namespace
}  // namespace sayloft
