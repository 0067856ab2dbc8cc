// SPDX-License-Identifier: MIT
// What the tray item says while somebody dictates, seen from outside on the bus.
#include "tests/endtoend/DictationDesk.h"
#include "tests/support/Colours.h"
#include "tests/support/TitleWatch.h"
#include "tests/support/TrayClient.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"

#include <QColor>
#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::DictationDesk;
using test::RawAnswer;

const QString oneMoment = QStringLiteral("Sayloft: one moment…");
const QString ready = QStringLiteral("Sayloft: ready");
const QString listening = QStringLiteral("Sayloft: listening");
const QString didNotWork = QStringLiteral("Sayloft: that did not work");

const QString soundKept = QStringLiteral("recording kept in ~/.sayloft/last-failed.wav");

QString withReason(const QString& title) {
    return QStringLiteral("%1 (%2)").arg(title, soundKept);
}

/// What a panel sees of a state.
struct Look {
    QString title;
    QString iconName;
    QColor colour;  ///< of the pictures
    QString reason = {};
};

const Look looksWarming{oneMoment, {}, {134, 134, 134, 140}};
const Look looksReady{ready, QStringLiteral("MenuIcon-symbolic"), {134, 134, 134}};
const Look looksListening{listening, {}, {224, 49, 43}};
const Look looksFailed{didNotWork, {}, {255, 149, 0}, soundKept};
const Look looksReadyAgain{ready, looksReady.iconName, looksReady.colour, soundKept};

class TheTrayItem : public testing::Test {
protected:
    /// Whether the item comes to look like that, in every size, once it has the title.
    [[nodiscard]] testing::AssertionResult looksLike(const Look& look) const {
        const QString whole = look.reason.isEmpty() ? look.title : withReason(look.title);
        if (!test::waitUntil([&] { return title() == whole; }))
            return testing::AssertionFailure() << "it says " << title().toStdString();
        const test::TrayItemProperties seen = m_client.properties();
        for (const QImage& picture : seen.pictures) {
            const QColor colour = test::mainColour(picture);
            if (!test::isAlmost(colour, look.colour))
                return testing::AssertionFailure()
                       << "it is " << colour.name(QColor::HexArgb).toStdString();
        }
        if (seen.iconName != look.iconName || seen.toolTipTitle != look.title ||
            seen.toolTipText != look.reason || seen.pictures.size() != 8)
            return testing::AssertionFailure()
                   << "icon " << seen.iconName.toStdString() << ", tooltip "
                   << seen.toolTipTitle.toStdString() << " / " << seen.toolTipText.toStdString()
                   << ", " << seen.pictures.size() << " pictures";
        return testing::AssertionSuccess();
    }

    void watchFromReady() {
        ASSERT_TRUE(test::waitUntil([this] { return title() == ready; }));
        m_watch = std::make_unique<test::TitleWatch>(m_desk.bus(), m_client.sayloft());
    }

    [[nodiscard]] QString title() const {
        return m_client.property(QStringLiteral("Title")).remove(QLatin1Char('\''));
    }

    /// Waits for that many titles.
    [[nodiscard]] QStringList titles(qsizetype count) {
        static_cast<void>(test::waitUntil([&] { return m_watch->titles().size() >= count; }, 30s));
        return m_watch->titles();
    }

    DictationDesk m_desk;
    test::TrayHost m_panel{test::TrayHostKind::xfcePanel, m_desk.display(), m_desk.bus()};
    test::TrayClient m_client{m_desk.bus()};
    std::unique_ptr<test::TitleWatch> m_watch;
};

TEST_F(TheTrayItem, followsADictationFromReadyToReady) {
    m_desk.startSayloft({RawAnswer::ok("hello world")});
    ASSERT_NO_FATAL_FAILURE(watchFromReady());
    m_desk.say();
    EXPECT_THAT(titles(4), testing::ElementsAre(ready, listening, oneMoment, ready));
    EXPECT_TRUE(test::waitUntil(
        [this] { return m_client.idOf(QStringLiteral("hello world")).has_value(); }));
}

TEST_F(TheTrayItem, showsAFailedDictationForAMoment) {
    m_desk.startSayloft({RawAnswer::status(500)});
    ASSERT_NO_FATAL_FAILURE(watchFromReady());
    m_desk.say();
    // State and reason are said one after the other.
    QStringList states = titles(6);
    for (QString& title : states)
        title.truncate(title.contains(u'(') ? title.indexOf(u'(') - 1 : title.size());
    states.erase(std::unique(states.begin(), states.end()), states.end());
    EXPECT_THAT(states, testing::ElementsAre(ready, listening, oneMoment, didNotWork, ready));
    EXPECT_TRUE(test::waitUntil([this] { return title() == withReason(ready); }));
}

TEST_F(TheTrayItem, looksToEverybodyLikeItsState) {
    RawAnswer slow = RawAnswer::ok("hello world");
    slow.trickleMs = 20;
    m_desk.startSayloftWithoutServer();
    EXPECT_TRUE(looksLike(looksWarming));
    m_desk.startServer({slow, RawAnswer::status(500)});
    EXPECT_TRUE(looksLike(looksReady));
    m_desk.hold();
    EXPECT_TRUE(looksLike(looksListening));
    m_desk.letGo();
    EXPECT_TRUE(looksLike(looksWarming));
    EXPECT_TRUE(looksLike(looksReady));
    m_desk.say();
    EXPECT_TRUE(looksLike(looksFailed));
    EXPECT_TRUE(looksLike(looksReadyAgain));
}

}  // namespace
}  // namespace sayloft
