// SPDX-License-Identifier: MIT
// The clipboards of programs that are built on GTK and on Qt.
#include "platform/linux/FocusX11.h"
#include "platform/tests/ClipboardX11Fixture.h"
#include "tests/support/ChildProgram.h"

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

class QtProgram : public ClipboardX11Fixture {
protected:
    /// Starts a Qt program that copies; owns the clipboard when this returns.
    void copy(const QStringList& typesAndFiles) {
        QProcessEnvironment environment = server.environment();
        environment.insert(QStringLiteral("HOME"), home.path());
        m_program = std::make_unique<ChildProgram>(QStringLiteral(QT_CLIPBOARD_OWNER),
                                                   typesAndFiles, environment);
        QByteArray said;
        ASSERT_TRUE(waitUntil([&] {
            said += m_program->standardOutput();
            return said.contains("owned");
        }));
    }

    QString file(const QString& name, const QByteArray& content) {
        QString path = home.path() + QLatin1Char('/') + name;
        writeFile(path, content);
        return path;
    }

    /// A PNG file of random pixels, which no encoder makes smaller.
    QString noiseImage(const QString& size) {
        QString path = home.path() + QStringLiteral("/noise.png");
        run(QStringLiteral("convert"), {QStringLiteral("-size"), size, QStringLiteral("xc:"),
                                        QStringLiteral("+noise"), QStringLiteral("Random"), path});
        return path;
    }

    QList<QByteArray> typesOf(const std::optional<ClipboardSnapshot>& snapshot) {
        QList<QByteArray> types;
        for (const ClipboardRepresentation& representation : snapshot.value().items.at(0))
            types.append(representation.type);
        return types;
    }

private:
    std::unique_ptr<ChildProgram> m_program;
};

TEST_F(QtProgram, getsBackSeveralTypesOfOneItem) {
    const QByteArray binary("a\0b\xff", 4);
    copy({QStringLiteral("text/html"), file(QStringLiteral("a"), "<b>fett</b>"),
          QStringLiteral("text/plain"), file(QStringLiteral("b"), "fett"),
          QStringLiteral("application/x-foo"), file(QStringLiteral("c"), binary)});
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    EXPECT_EQ(snapshot->items.size(), 1U);
    EXPECT_EQ(requestor.read("text/html").value().data, "<b>fett</b>");
    EXPECT_EQ(requestor.read("UTF8_STRING").value().data, "fett");
    EXPECT_EQ(requestor.read("application/x-foo").value().data, binary);
}

TEST_F(QtProgram, getsBackAnImageAndItsTextAlternativeAsOneItem) {
    copy({QStringLiteral("image"), noiseImage(QStringLiteral("64x64")),
          QStringLiteral("text/plain"), file(QStringLiteral("t"), "a picture of noise")});
    const auto imageBefore = requestor.read("image/png");
    const auto snapshot = take().snapshot;
    ASSERT_TRUE(snapshot.has_value());
    ASSERT_EQ(snapshot->items.size(), 1U);
    setText(QStringLiteral("the transcript"));
    EXPECT_FALSE(requestor.read("image/png").has_value());
    restore(*snapshot);
    EXPECT_EQ(requestor.read("image/png").value().data, imageBefore.value().data);
    EXPECT_EQ(requestor.read("UTF8_STRING").value().data, "a picture of noise");
    EXPECT_EQ(typesOf(snapshot).count("image/png"), 1);
    EXPECT_FALSE(requestor.targets().contains("image/bmp"));
}

TEST_F(QtProgram, getsBackAnImageOfFiveMegabytesThatWasPreparedAhead) {
    copy({QStringLiteral("image/png"), noiseImage(QStringLiteral("1350x1300"))});
    const QByteArray png = readFile(home.path() + QStringLiteral("/noise.png"));
    ASSERT_GT(png.size(), 5000000);
    clipboard->prepareSnapshot();
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    EXPECT_EQ(requestor.read("image/png").value().data, png);
}

class GtkProgram : public ClipboardX11Fixture {
protected:
    GtkProgram() {
        writeFile(document, {});
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
        environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           QStringLiteral("unix:path=/nonexistent"));
    }

    void openEditor(const QByteArray& content) {
        writeFile(document, content);
        m_editor = std::make_unique<ChildProgram>(
            QStringLiteral("mousepad"), QStringList{QStringLiteral("--disable-server"), document},
            environment);
        const FocusX11 focus(requestor.connection());
        ASSERT_TRUE(waitUntil(
            [&] { return focus.focused().windowClass.toLower().contains("mousepad"); }, 20s));
    }

    static void press(const char* key) {
        run(QStringLiteral("xdotool"), {QStringLiteral("key"), QLatin1String(key)});
    }

    QProcessEnvironment environment = server.environment();
    QString document = home.path() + QStringLiteral("/document.txt");
    std::unique_ptr<ChildProgram> windowManager = startWindowManager();

private:
    std::unique_ptr<ChildProgram> m_editor;
};

TEST_F(GtkProgram, getsBackWhatItHasCopied) {
    openEditor("copied from GTK: é🎙");
    ASSERT_TRUE(waitUntil([&] {
        press("ctrl+a");
        press("ctrl+c");
        return requestor.owner("CLIPBOARD") != XCB_WINDOW_NONE;
    }));
    clipboard->prepareSnapshot();
    const auto snapshot = take().snapshot;
    setText(QStringLiteral("the transcript"));
    restore(snapshot.value());
    EXPECT_EQ(requestor.read("UTF8_STRING").value().data, "copied from GTK: é🎙");
    EXPECT_FALSE(requestor.targets().contains("GTK_TEXT_BUFFER_CONTENTS"));
}

TEST_F(GtkProgram, pastesTheTranscriptAndIsSeenToFetchIt) {
    openEditor("selected");
    ASSERT_TRUE(waitUntil([&] {
        press("ctrl+a");
        turnEventLoopFor(50ms);
        return requestor.read("UTF8_STRING", "PRIMARY").has_value();
    }));
    setText(QStringLiteral("größer 🎙 é"));
    bool fetched = false;
    press("ctrl+v");
    clipboard->whenTextFetched(20s, [&] { fetched = true; });
    EXPECT_TRUE(waitUntil([&] { return fetched; }, 10s));
    EXPECT_TRUE(waitUntil([&] {
        press("ctrl+s");
        turnEventLoopFor(100ms);
        return readFile(document).trimmed() == "größer 🎙 é";
    })) << readFile(document).toStdString();
}

}  // namespace
}  // namespace sayloft::test
