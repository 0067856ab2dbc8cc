// SPDX-License-Identifier: MIT
#include "storage/KeptFile.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/Json.h"
#include "storage/StoredFiles.h"
#include "tests/support/TempHome.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using Source = KeptFile::Source;

/// Settings and history that were saved twice and have reached the disk.
class AKeptFile : public testing::Test {
protected:
    AKeptFile() {
        m_config.replacements = {{QStringLiteral("größe"), QStringLiteral("\"😀\"\n")}};
        m_config.animAppear = 0.125;
        Config().save();
        m_config.save();
        m_history.add(QStringLiteral("older words"));
        m_history.add(QStringLiteral("newer wörds 😀"));
        KeptFile::waitForDisk(10s);
        m_text = test::readFile(Config::url());
    }

    static QString beside(const char* suffix) {
        return Config::url() + QString::fromLatin1(suffix);
    }

    /// As a start of the program does it.
    static Config start() {
        EXPECT_TRUE(mendStoredFiles());
        return Config::load();
    }

    test::TempHome m_home;
    Config m_config;
    History m_history;
    QByteArray m_text;
};

TEST_F(AKeptFile, hasACopyThatIsOnTheDisk) {
    EXPECT_EQ(test::readFile(beside(".saved")), m_text);
    EXPECT_FALSE(QFileInfo::exists(beside(".new")));
    EXPECT_FALSE(QFileInfo::exists(beside(".new.part")));
}

TEST_F(AKeptFile, isReadFromItsCopyWhereverItIsCutOff) {
    for (qsizetype length = 0; length < m_text.size(); ++length) {
        test::writeFile(Config::url(), m_text.first(length));
        EXPECT_EQ(Config::file().read().source, Source::copy) << length;
        ASSERT_EQ(Config::load(), m_config) << length;
    }
    EXPECT_EQ(m_home.log(), QString());
}

TEST_F(AKeptFile, isReadFromItsCopyWhereverAHoleIsInIt) {
    for (qsizetype hole = 0; hole < m_text.size(); ++hole) {
        QByteArray holed = m_text;
        holed[hole] = '\0';
        test::writeFile(Config::url(), holed);
        ASSERT_EQ(Config::load(), m_config) << hole;
    }
}

// As a power cut has left it, and nothing better can be put in its place.
TEST_F(AKeptFile, keepsItsSavedCopyWhereTheNewOneIsDamaged) {
    test::writeFile(Config::url(), m_text.chopped(9));
    test::writeFile(beside(".new"), QByteArray(m_text.size(), '\0'));
    QDir().mkpath(beside(".new.part"));
    EXPECT_EQ(start(), m_config);
    KeptFile::waitForDisk(10s);
    EXPECT_EQ(test::readFile(beside(".saved")), m_text);
}

TEST_F(AKeptFile, ofTheHistoryIsReadFromItsCopyWhereverItIsCutOff) {
    const QByteArray text = test::readFile(History::url());
    for (qsizetype length = 0; length < text.size(); ++length) {
        test::writeFile(History::url(), text.first(length));
        ASSERT_EQ(History().items(), m_history.items()) << length;
    }
}

TEST_F(AKeptFile, ofTheHistoryIsReadFromItsCopyWhereverAHoleIsInIt) {
    const QByteArray text = test::readFile(History::url());
    for (qsizetype hole = 0; hole < text.size(); ++hole) {
        QByteArray holed = text;
        holed[hole] = '\0';
        test::writeFile(History::url(), holed);
        ASSERT_EQ(History().items(), m_history.items()) << hole;
    }
}

TEST_F(AKeptFile, ofTheHistoryIsReadFromItsCopyWhereverABlockOfAnotherFileIsInIt) {
    const QByteArray text = test::readFile(History::url());
    const QByteArray block("]}\x01,{:");
    for (qsizetype place = 0; place + block.size() <= text.size(); ++place) {
        test::writeFile(History::url(), QByteArray(text).replace(place, block.size(), block));
        ASSERT_EQ(History().items(), m_history.items()) << place;
    }
}

// A byte of a transcript that has become another sign is none that anybody can tell.
TEST_F(AKeptFile, ofTheHistoryIsReadFromItsCopyWhereverAFlippedBitMakesItNoJson) {
    const QByteArray text = test::readFile(History::url());
    int damaged = 0;
    for (qsizetype bit = 0; bit < text.size() * 8; ++bit) {
        QByteArray flipped = text;
        flipped[bit / 8] = static_cast<char>(text.at(bit / 8) ^ (1 << (bit % 8)));
        if (parseJson(flipped))
            continue;
        ++damaged;
        test::writeFile(History::url(), flipped);
        ASSERT_EQ(History().items(), m_history.items()) << bit;
    }
    EXPECT_GT(damaged, text.size());
}

TEST_F(AKeptFile, ofTheHistoryThatIsDamagedIsMendedAtTheNextStartAndKeptAside) {
    const QByteArray text = test::readFile(History::url());
    const QByteArray damaged = QByteArray(text).replace(3, 4, "\"}]{");
    test::writeFile(History::url(), damaged);
    EXPECT_TRUE(mendStoredFiles());
    EXPECT_EQ(test::readFile(History::url()), text);
    EXPECT_EQ(test::readFile(History::url() + QStringLiteral(".broken")), damaged);
    EXPECT_EQ(m_home.log(), QStringLiteral("history.json is damaged: read from its copy\n"
                                           "history.json was changed: that text is kept in "
                                           "history.json.broken\n"));
    EXPECT_EQ(History().items(), m_history.items());
}

TEST_F(AKeptFile, ofTheHistoryThatIsAnotherJsonIsSomebodysWishAndKeptAside) {
    for (const char* other : {"{}", "[1]"}) {
        test::writeFile(History::url(), other);
        EXPECT_EQ(History().items(), std::vector<QString>());
    }
    mendStoredFiles();
    EXPECT_EQ(test::readFile(History::url() + QStringLiteral(".broken")), "[1]");
}

TEST_F(AKeptFile, prefersTheNewCopyOfASaveThatWasNotFinished) {
    Config newer = m_config;
    newer.holdDuration = 7;
    test::writeFile(beside(".new"), newer.encode());
    test::writeFile(Config::url(), "");
    EXPECT_EQ(Config::load(), newer);
    EXPECT_EQ(start(), newer);
    EXPECT_EQ(test::readFile(Config::url()), newer.encode());
    KeptFile::waitForDisk(10s);
    EXPECT_EQ(test::readFile(beside(".saved")), newer.encode());
}

TEST_F(AKeptFile, takesNoNewCopyThatIsCutOffItself) {
    for (qsizetype length = 0; length < m_text.size(); ++length) {
        test::writeFile(beside(".new"), m_text.first(length));
        test::writeFile(Config::url(), m_text.first(length / 2));
        ASSERT_EQ(Config::load(), m_config) << length;
    }
}

TEST_F(AKeptFile, isMendedAtTheNextStartWhichIsLogged) {
    test::writeFile(Config::url(), m_text.first(40));
    EXPECT_EQ(start(), m_config);
    EXPECT_EQ(test::readFile(Config::url()), m_text);
    EXPECT_EQ(m_home.log(), QStringLiteral("config.json is cut off: read from its copy\n"));
    EXPECT_FALSE(QFileInfo::exists(beside(".broken")));
    EXPECT_EQ(start(), m_config);
    EXPECT_EQ(m_home.log().count(QStringLiteral("cut off")), 1);
}

TEST_F(AKeptFile, thatTheUserBrokeGivesTheDefaultsAndKeepsItsTextAside) {
    const QByteArray slip = R"({"model":"starter" "playSounds":true})";
    test::writeFile(Config::url(), slip);
    EXPECT_FALSE(mendStoredFiles());
    EXPECT_EQ(Config::load(), Config());
    EXPECT_EQ(test::readFile(Config::url()), slip);
    Config().save();
    EXPECT_EQ(test::readFile(beside(".broken")), slip);
    EXPECT_EQ(m_home.log(), QStringLiteral("config.json is damaged: not read, its text is kept in "
                                           "config.json.broken\n"
                                           "config.json as it was saved last is kept in "
                                           "config.json.last-good\n"));
}

TEST_F(AKeptFile, thatTheUserBrokeKeepsWhatWasSavedBefore) {
    for (int start = 1; start <= 2; ++start) {
        test::writeFile(Config::url(), "model = starter");
        EXPECT_FALSE(mendStoredFiles());
        Config().save();
        KeptFile::waitForDisk(10s);
    }
    EXPECT_EQ(test::readFile(beside(".last-good")), m_text);
    EXPECT_EQ(test::readFile(beside(".saved")), Config().encode());
    EXPECT_EQ(test::readFile(beside(".last-good-2")), Config().encode());
}

TEST_F(AKeptFile, thatTheUserBrokeTwiceKeepsBothTextsEachOnce) {
    for (const char* slip : {"one slip", "one slip", "another slip", "one slip", "another slip"}) {
        test::writeFile(Config::url(), slip);
        EXPECT_FALSE(mendStoredFiles());
    }
    EXPECT_EQ(test::readFile(beside(".broken")), "one slip");
    EXPECT_EQ(test::readFile(beside(".broken-2")), "another slip");
    EXPECT_FALSE(QFileInfo::exists(beside(".broken-3")));
    EXPECT_TRUE(
        m_home.log().contains(QStringLiteral("its text is kept in config.json.broken-2\n")));
}

TEST_F(AKeptFile, thatLostItsEndWhileTheUserChangedItIsToldAndKeptAsideToo) {
    const QByteArray slip = R"({"model":"starter","playSounds":true)";
    test::writeFile(Config::url(), slip);
    EXPECT_FALSE(mendStoredFiles());
    EXPECT_EQ(Config::load(), m_config);
    EXPECT_EQ(test::readFile(beside(".broken")), slip);
}

TEST_F(AKeptFile, thatTheUserChangedIsReadAsItStandsAndCopied) {
    const QByteArray changed = R"({"model":"starter"})";
    test::writeFile(Config::url(), changed);
    EXPECT_EQ(start().model, QStringLiteral("starter"));
    KeptFile::waitForDisk(10s);
    EXPECT_EQ(test::readFile(beside(".saved")), changed);
    EXPECT_EQ(test::readFile(Config::url()), changed);
}

TEST_F(AKeptFile, thatWasRemovedStaysRemovedWithItsCopy) {
    QFile::remove(Config::url());
    QFile::remove(History::url());
    EXPECT_EQ(Config::load(), Config());
    EXPECT_EQ(start(), Config());
    EXPECT_TRUE(History().items().empty());
    EXPECT_EQ(QDir(DATA_DIR).entryList(QDir::Files), QStringList());
}

TEST_F(AKeptFile, thatIsALinkIntoNowhereHasNotBeenRemoved) {
    QFile::remove(Config::url());
    ASSERT_TRUE(
        QFile::link(m_home.path() + QStringLiteral("/unplugged/config.json"), Config::url()));
    mendStoredFiles();
    EXPECT_EQ(Config::load(), m_config);
    EXPECT_EQ(test::readFile(beside(".saved")), m_text);
}

TEST_F(AKeptFile, whosePathIsADirectoryIsReadFromItsCopyWhichIsLogged) {
    QFile::remove(Config::url());
    QDir().mkpath(Config::url());
    EXPECT_FALSE(mendStoredFiles());
    EXPECT_EQ(Config::load(), m_config);
    EXPECT_EQ(m_home.log(), QStringLiteral("config.json cannot be read\n"));
    Config().save();
    EXPECT_TRUE(QFileInfo(Config::url()).isDir());
}

TEST_F(AKeptFile, isWrittenWhereNoCopyCanBe) {
    QDir().mkpath(beside(".new.part"));
    Config().save();
    EXPECT_EQ(Config::load(), Config());
}

TEST_F(AKeptFile, fromAnOlderVersionGetsACopyBeforeItIsRewritten) {
    QFile::remove(beside(".saved"));
    mendStoredFiles();
    KeptFile::waitForDisk(10s);
    EXPECT_EQ(test::readFile(beside(".saved")), m_text);
}

TEST_F(AKeptFile, isRewrittenInPlace) {
    const QString link = m_home.path() + QStringLiteral("/elsewhere.json");
    ASSERT_TRUE(QFile::rename(Config::url(), link));
    ASSERT_TRUE(QFile::link(link, Config::url()));
    Config().save();
    EXPECT_TRUE(QFileInfo(Config::url()).isSymLink());
    EXPECT_EQ(test::readFile(link), Config().encode());
}

}  // namespace
}  // namespace sayloft
