// SPDX-License-Identifier: MIT
#include "updates/Appcast.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

QByteArray feed(const QByteArray& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Sayloft</title><link>https://example.org/sayloft</link>)" +
           items + "</channel></rss>";
}

std::optional<Release> newest(const QByteArray& items) {
    const auto releases = parseAppcast(feed(items));
    return releases ? newestOf(*releases) : std::nullopt;
}

TEST(AnAppcast, namesAVersionWithItsNotesAndPage) {
    const auto release = newest(R"(<item><title>Version 1.2</title>
        <sparkle:version>12</sparkle:version>
        <sparkle:shortVersionString>1.2</sparkle:shortVersionString>
        <description><![CDATA[<ul><li>Faster</li></ul>]]></description>
        <link>https://example.org/1.2</link></item>)");
    ASSERT_TRUE(release);
    EXPECT_EQ(release->version, QStringLiteral("12"));
    EXPECT_EQ(release->shownVersion, QStringLiteral("1.2"));
    EXPECT_EQ(release->notes, QStringLiteral("<ul><li>Faster</li></ul>"));
    EXPECT_EQ(release->page, QUrl(QStringLiteral("https://example.org/1.2")));
}

TEST(AnAppcast, mayNameTheVersionInItsEnclosure) {
    const auto release = newest(R"(<item><enclosure url="https://example.org/a.zip" length="1"
        sparkle:version="1.2" sparkle:shortVersionString="1.2 final"/></item>)");
    ASSERT_TRUE(release);
    EXPECT_EQ(release->version, QStringLiteral("1.2"));
    EXPECT_EQ(release->shownVersion, QStringLiteral("1.2 final"));
}

TEST(AnAppcast, leadsToTheChannelsPageWhereTheVersionHasNone) {
    const auto release = newest("<item><sparkle:version>2</sparkle:version></item>");
    ASSERT_TRUE(release);
    EXPECT_EQ(release->page, QUrl(QStringLiteral("https://example.org/sayloft")));
}

TEST(AnAppcast, leadsToTheReleaseNotesWhereTheVersionHasNoOtherPage) {
    const auto release = newest(
        "<item><sparkle:version>2</sparkle:version>"
        "<sparkle:releaseNotesLink>https://example.org/notes</sparkle:releaseNotesLink></item>");
    ASSERT_TRUE(release);
    EXPECT_EQ(release->page, QUrl(QStringLiteral("https://example.org/notes")));
}

TEST(AnAppcast, mayMixInElementsOfOthers) {
    const auto release = newest(
        R"(<a:link xmlns:a="http://www.w3.org/2005/Atom" rel="self" href="https://example.org/feed"/>
        <item><sparkle:version>2</sparkle:version><description>new</description>
        <m:description xmlns:m="http://search.yahoo.com/mrss/">a picture</m:description></item>)");
    ASSERT_TRUE(release);
    EXPECT_EQ(release->page, QUrl(QStringLiteral("https://example.org/sayloft")));
    EXPECT_EQ(release->notes, QStringLiteral("new"));
}

TEST(AnAppcast, mayListVersionsInAnyOrder) {
    const auto release = newest(
        "<item><sparkle:version>1.9</sparkle:version></item>"
        "<item><sparkle:version>1.10</sparkle:version></item>"
        "<item><sparkle:version>1.2</sparkle:version></item>");
    ASSERT_TRUE(release);
    EXPECT_EQ(release->version, QStringLiteral("1.10"));
}

struct Row {
    const char* name;
    QByteArray item;
};

class AVersion : public testing::TestWithParam<Row> {};

TEST_P(AVersion, isLeftOutWhenItIsNotForUs) {
    const auto releases = parseAppcast(feed(GetParam().item));
    ASSERT_TRUE(releases);
    EXPECT_TRUE(releases->empty());
}

INSTANTIATE_TEST_SUITE_P(Items, AVersion,
                         testing::Values(Row{"ofAChannel",
                                             "<item><sparkle:version>2</sparkle:version>"
                                             "<sparkle:channel>beta</sparkle:channel></item>"},
                                         Row{"forAnotherSystem",
                                             "<item><sparkle:version>2</sparkle:version>"
                                             "<enclosure url='a' sparkle:os='windows'/></item>"},
                                         Row{"withoutANumber", "<item><title>Soon!</title></item>"},
                                         Row{"ofAnotherNamespace",
                                             "<item><version>2</version></item>"}),
                         [](const auto& row) { return row.param.name; });

TEST(AnAppcast, forLinuxAloneIsForUs) {
    EXPECT_TRUE(
        newest("<item><sparkle:version>2</sparkle:version>"
               "<enclosure url='a' sparkle:os='linux'/></item>"));
}

TEST(AnAppcast, mayListNothing) {
    const auto releases = parseAppcast(feed({}));
    ASSERT_TRUE(releases);
    EXPECT_FALSE(newestOf(*releases));
}

QByteArray manyLaughs() {
    QByteArray entities = "<!DOCTYPE rss [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i)
        entities += "<!ENTITY a" + QByteArray::number(i) + " \"" +
                    ("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
    return entities +
           "]><rss><channel><item><description>&a29;</description></item></channel></rss>";
}

class NoAppcast : public testing::TestWithParam<Row> {};

TEST_P(NoAppcast, isReadAsNone) {
    EXPECT_FALSE(parseAppcast(GetParam().item));
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, NoAppcast,
    testing::Values(
        Row{"nothing", ""}, Row{"noise", QByteArray("\0\xff\xfe\x01", 4)},
        Row{"aWebPage", "<!DOCTYPE html><html><body>Not found</body></html>"},
        Row{"anotherFeed", "<feed xmlns='http://www.w3.org/2005/Atom'></feed>"},
        Row{"noChannel", "<rss version='2.0'></rss>"},
        Row{"cutOff", feed("<item><sparkle:version>2</sparkle:version></item>").chopped(20)},
        Row{"cutOffInATag", feed("<item><sparkle:ver").chopped(17)},
        Row{"manyLaughs", manyLaughs()},
        Row{"aDeepNest", QByteArray("<rss><channel>") + QByteArray("<a>").repeated(100000)}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft
