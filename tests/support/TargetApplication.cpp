// SPDX-License-Identifier: MIT
#include "tests/support/TargetApplication.h"

#include "platform/linux/FocusX11.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFile>

#include <array>
#include <stdexcept>
#include <string>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

struct Program {
    const char* name;
    bool terminal;
    const char* configFile;  ///< below the home directory
    const char* config;
};

const Program& programOf(Target target) {
    // FeatherPad adds a line feed to what it saves, and Xfce's terminal asks before it pastes
    // several lines, unless they are told not to.
    static constexpr std::array programs{
        Program{"mousepad", false, "", ""},
        Program{"featherpad", false, ".config/featherpad/fp.conf",
                "[text]\nappendEmptyLine=false\n"},
        Program{"xterm", true, "", ""},
        Program{"xfce4-terminal", true, ".config/xfce4/terminal/terminalrc",
                "[Configuration]\nMiscShowUnsafePasteDialog=FALSE\n"}};
    return programs.at(static_cast<std::size_t>(target));
}

QProcessEnvironment environmentOf(const XServer& server, const QString& home) {
    QProcessEnvironment environment = server.environment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
    environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=/nonexistent"));
    return environment;
}

}  // namespace

const char* nameOf(Target target) {
    return programOf(target).name;
}

bool isTerminal(Target target) {
    return programOf(target).terminal;
}

TargetApplication::TargetApplication(Target target, const XServer& server, const QString& text)
    : m_target(target) {
    const Program& program = programOf(target);
    if (*program.configFile != '\0')
        writeFile(m_home.filePath(QLatin1String(program.configFile)), program.config);
    if (!program.terminal)
        writeFile(file(), text.toUtf8());
    start(server);
}

void TargetApplication::start(const XServer& server) {
    QStringList arguments = command();
    const QString program = arguments.takeFirst();
    m_program =
        std::make_unique<ChildProgram>(program, arguments, environmentOf(server, m_home.path()));
    if (!waitUntil([this] { return isReady(); }, 20s))
        throw std::runtime_error(std::string(nameOf(m_target)) + " did not come up: " + state());
}

QStringList TargetApplication::command() const {
    const QString record = QStringLiteral("stty raw -echo; cat > '%1'").arg(file());
    switch (m_target) {
        case Target::mousepad:
            return {QStringLiteral("mousepad"), QStringLiteral("--disable-server"), file()};
        case Target::featherpad:
            return {QStringLiteral("featherpad"), QStringLiteral("--standalone"), file()};
        case Target::xterm:
            return {QStringLiteral("xterm"), QStringLiteral("-e"), QStringLiteral("sh"),
                    QStringLiteral("-c"), record};
        case Target::xfce4Terminal:
            return {QStringLiteral("xfce4-terminal"),
                    QStringLiteral("--disable-server"),
                    QStringLiteral("-x"),
                    QStringLiteral("sh"),
                    QStringLiteral("-c"),
                    record};
    }
    return {};
}

QString TargetApplication::file() const {
    return m_home.filePath(QStringLiteral("text.txt"));
}

// The file of a terminal appears when its shell has begun to record.
bool TargetApplication::isReady() const {
    const XcbConnection connection = connectToXServer();
    return connection && QFile::exists(file()) &&
           FocusX11(connection.get()).focused().windowClass.toLower() == nameOf(m_target);
}

std::string TargetApplication::state() const {
    const XcbConnection connection = connectToXServer();
    if (!connection)
        return "the X server does not answer";
    const QByteArray focused = FocusX11(connection.get()).focused().windowClass;
    return std::string(m_program->isRunning() ? "it runs" : "it has ended") +
           ", and the focus is in \"" + focused.toStdString() + '"';
}

QString TargetApplication::textOnce(const QString& expected, std::chrono::milliseconds deadline) {
    // Saving is Control+S of a Latin keyboard, with nothing else on.
    m_keyboard.setLayouts(QStringLiteral("us"));
    m_keyboard.lock(0);
    QString found;
    static_cast<void>(waitUntil(
        [&] {
            found = text();
            return found == expected;
        },
        deadline));
    return found;
}

QString TargetApplication::text() {
    if (!isTerminal(m_target)) {
        m_keyboard.tapWith(TestKeyboard::controlLeft, TestKeyboard::s);
        turnEventLoopFor(100ms);
    }
    QString text = QString::fromUtf8(readFile(file()));
    // A terminal sends a line's end as the Return key does.
    return isTerminal(m_target) ? text.replace(QLatin1Char('\r'), QLatin1Char('\n')) : text;
}

void TargetApplication::selectAll() {
    m_keyboard.tapWith(TestKeyboard::controlLeft, TestKeyboard::a);
}

}  // namespace sayloft::test
