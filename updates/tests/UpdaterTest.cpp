// SPDX-License-Identifier: MIT
#include "updates/Updater.h"

#include "tests/support/RawHttpServer.h"
#include "tests/support/WaitUntil.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

#include <memory>

namespace sayloft {

/// Stands in for the browser.
class Browser : public QObject {
    Q_OBJECT

public:
    Browser() {
        for (const char* scheme : {"http", "https", "file"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "open");
    }
    ~Browser() override {
        for (const char* scheme : {"http", "https", "file"})
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened.append(address.toString()); }
};

namespace {

using test::RawAnswer;

QByteArray feed(const QByteArray& rest) {
    return R"(<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><item><sparkle:version>2.0</sparkle:version>)" +
           rest + "</item></channel></rss>";
}

class TheUpdater : public testing::Test {
protected:
    void check(const RawAnswer& answer) {
        m_server = std::make_unique<test::RawHttpServer>(std::vector{answer});
        m_updater = std::make_unique<Updater>(
            UpdateSource{QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_server->port())),
                         QStringLiteral("1.0")});
        m_updater->checkForUpdates();
    }

    void checkAndWait(const RawAnswer& answer) {
        check(answer);
        ASSERT_TRUE(test::waitUntil(
            [this] { return sentence() != QStringLiteral("Looking for a newer version…"); }));
    }

    [[nodiscard]] QString sentence() const {
        return m_updater->window().findChild<QLabel*>()->text();
    }
    [[nodiscard]] QTextBrowser& notes() const {
        return *m_updater->window().findChild<QTextBrowser*>();
    }
    [[nodiscard]] QPushButton* button(const char* text) const {
        for (auto* button : m_updater->window().findChildren<QPushButton*>()) {
            if (button->text() == QString::fromLatin1(text) && button->isVisible())
                return button;
        }
        return nullptr;
    }

    Browser m_browser;
    std::unique_ptr<test::RawHttpServer> m_server;
    std::unique_ptr<Updater> m_updater;
};

TEST_F(TheUpdater, showsAtOnceThatItLooks) {
    check(RawAnswer::hang());
    EXPECT_TRUE(m_updater->window().isVisible());
    EXPECT_EQ(sentence(), QStringLiteral("Looking for a newer version…"));
    EXPECT_NE(button("Close"), nullptr);
}

TEST_F(TheUpdater, showsWhatIsNewAndOpensThePage) {
    checkAndWait(
        RawAnswer::ok(feed("<link>https://example.org/2.0</link>"
                           "<description>&lt;p&gt;Faster&lt;/p&gt;</description>")));
    EXPECT_EQ(sentence(), QStringLiteral("Sayloft 2.0 is available. You have 1.0."));
    EXPECT_EQ(notes().toPlainText(), QStringLiteral("Faster"));
    QTest::mouseClick(button("Open Download Page"), Qt::LeftButton);
    EXPECT_EQ(m_browser.opened, QStringList(QStringLiteral("https://example.org/2.0")));
    EXPECT_FALSE(m_updater->window().isVisible());
}

TEST_F(TheUpdater, canBePutOff) {
    checkAndWait(RawAnswer::ok(feed("<link>https://example.org/2.0</link>")));
    QTest::mouseClick(button("Later"), Qt::LeftButton);
    EXPECT_FALSE(m_updater->window().isVisible());
    EXPECT_TRUE(m_browser.opened.isEmpty());
}

TEST_F(TheUpdater, isClosedWithEscape) {
    checkAndWait(RawAnswer::status(404));
    EXPECT_EQ(sentence(), QStringLiteral("The update server answers with an error (404)."));
    EXPECT_EQ(button("Open Download Page"), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(button("Close")->window()));
    QTest::keyClick(button("Close"), Qt::Key_Escape);
    EXPECT_TRUE(test::waitUntil([this] { return !m_updater->window().isVisible(); }));
}

TEST_F(TheUpdater, opensLinksOfTheNotesInTheBrowserButNoFiles) {
    checkAndWait(RawAnswer::ok(feed("<description>&lt;p&gt;new&lt;/p&gt;</description>")));
    Q_EMIT notes().anchorClicked(QUrl(QStringLiteral("https://example.org/more")));
    Q_EMIT notes().anchorClicked(QUrl(QStringLiteral("file:///etc/passwd")));
    EXPECT_EQ(m_browser.opened, QStringList(QStringLiteral("https://example.org/more")));
}

TEST_F(TheUpdater, loadsNothingThatTheNotesMention) {
    const test::RawHttpServer spy({RawAnswer::ok("a picture")});
    checkAndWait(RawAnswer::ok(
        feed(QStringLiteral("<description>&lt;p&gt;new&lt;img src='http://127.0.0.1:%1/a.png'&gt;"
                            "&lt;/p&gt;</description>")
                 .arg(spy.port())
                 .toUtf8())));
    test::turnEventLoopFor(std::chrono::milliseconds(200));
    EXPECT_TRUE(spy.requests().empty());
}

TEST_F(TheUpdater, looksOnlyOnceAtATime) {
    check(RawAnswer::hang());
    ASSERT_TRUE(test::waitUntil([this] { return !m_server->requests().empty(); }));
    m_updater->checkForUpdates();
    test::turnEventLoopFor(std::chrono::milliseconds(100));
    EXPECT_EQ(m_server->requests().size(), 1U);
}

TEST_F(TheUpdater, breaksOffAFeedWithoutAnEnd) {
    checkAndWait(
        {.bytes = "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(qsizetype{6} * 1024 * 1024, 'x')});
    EXPECT_EQ(sentence(), QStringLiteral("The update server sends far too much."));
}

TEST_F(TheUpdater, looksAgainWhenItIsAskedAgain) {
    checkAndWait(RawAnswer::status(404));
    m_updater->checkForUpdates();
    EXPECT_TRUE(test::waitUntil([this] { return m_server->requests().size() == 2; }));
}

}  // namespace
}  // namespace sayloft

#include "UpdaterTest.moc"
