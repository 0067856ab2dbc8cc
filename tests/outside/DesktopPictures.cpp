// SPDX-License-Identifier: MIT
// Takes pictures of the windows of the real program as desktops show them that are set to large
// pixels, to dark colours, or to large letters, and of the tray's
// tooltip: desktop_pictures <directory> [<look>|tray]
#include "tests/outside/WindowDesk.h"
#include "tests/support/ModelHost.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"

#include <QCoreApplication>
#include <QDir>

#include <chrono>
#include <stdexcept>
#include <utility>
#include <vector>

#include <cstdio>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

struct Look {
    QString name;
    QByteArray kdeglobals;  ///< what the desktop's settings write, as Qt reads it
    QString scale = QStringLiteral("1");
};

// Breeze Dark's own.
constexpr const char* darkColours = R"(
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
ForegroundNormal=252,252,252
ForegroundLink=29,153,243
ForegroundVisited=155,89,182
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
ForegroundInactive=161,169,177
)";

constexpr const char* largeLetters = "[General]\nfont=DejaVu Sans,18,-1,5,50,0,0,0,0,0\n";

const std::vector<Look>& looks() {
    static const std::vector<Look> all{
        {QStringLiteral("light"), {}},
        {QStringLiteral("scaled"), {}, QStringLiteral("2")},
        {QStringLiteral("dark"), darkColours},
        {QStringLiteral("large-letters"), largeLetters},
        {QStringLiteral("dark-large-letters"), QByteArray(darkColours) + largeLetters},
        {QStringLiteral("scaled-large-letters"), largeLetters, QStringLiteral("2")}};
    return all;
}

enum class Reach { everything, nothing };

/// A desktop with a look, and the pictures of its windows.
class Studio {
public:
    Studio(Look look, QString folder, Reach reach = Reach::everything)
        : m_look(std::move(look)), m_folder(std::move(folder)), m_desk(screen(reach)) {
        writeFile(m_desk.home() + QStringLiteral("/.config/kdeglobals"), m_look.kdeglobals);
        const std::pair<const char*, QString> variables[] = {
            {"XDG_CURRENT_DESKTOP", QStringLiteral("KDE")},
            {"KDE_SESSION_VERSION", QStringLiteral("5")},
            {"XDG_CONFIG_HOME", m_desk.home() + QStringLiteral("/.config")},
            {"QT_SCALE_FACTOR", m_look.scale}};
        for (const auto& [name, value] : variables)
            m_desk.setVariable(QString::fromLatin1(name), value);
        if (reach == Reach::everything)
            m_desk.plugInSound();
    }

    [[nodiscard]] WindowDesk& desk() { return m_desk; }

    void take(const QString& window, const QString& name) {
        static_cast<void>(m_desk.windows().window(window));
        turnEventLoopFor(300ms);
        const QString file = QStringLiteral("%1/%2-%3.png").arg(m_folder, name, m_look.name);
        run(QStringLiteral("import"), {QStringLiteral("-window"), window, file}, {},
            m_desk.display().environment());
    }

private:
    [[nodiscard]] static XServer::Options screen(Reach reach) {
        XServer::Options options{.screen = QStringLiteral("3200x2600x24")};
        if (reach == Reach::nothing)
            options.arguments = {QStringLiteral("-extension"), QStringLiteral("XTEST")};
        return options;
    }

    Look m_look;
    QString m_folder;
    WindowDesk m_desk;
};

QByteArray dictionaryOf(int pairs) {
    QByteArrayList rows;
    for (int i = 0; i < pairs; ++i)
        rows.append(R"(["heard )" + QByteArray::number(i) + R"(","Replacement )" +
                    QByteArray::number(i) + R"("])");
    return rows.join(',');
}

void takeSettings(const Look& look, const QString& folder) {
    Studio studio(look, folder);
    studio.desk().startSayloft(
        R"({"model":"starter","dictateChords":[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15],)"
        R"("dictateEnterChords":[5],"replacements":[)" +
        dictionaryOf(100) + "]}");
    studio.desk().openDictionary();
    studio.take(WindowDesk::dictionary, QStringLiteral("dictionary"));
    studio.desk().openSettings();
    studio.take(WindowDesk::settings, QStringLiteral("settings"));
}

void takeWithNothingInReach(const Look& look, const QString& folder) {
    Studio studio(look, folder, Reach::nothing);
    studio.desk().startSayloft({});
    const QString tray = QStringLiteral("No tray here");
    const auto saysThatThereIsNoTray = [&] {
        return studio.desk()
            .windows()
            .window(WindowDesk::onboarding)
            .find([&](const AccessibleObject& each) { return each.name().startsWith(tray); })
            .has_value();
    };
    if (!waitUntil(saysThatThereIsNoTray, 30s))
        throw std::runtime_error("the first window does not say that there is no tray");
    studio.take(WindowDesk::onboarding, QStringLiteral("onboarding-nothing-in-reach"));
    studio.desk().openSettings();
    studio.take(WindowDesk::settings, QStringLiteral("settings-nothing-in-reach"));
}

void takeDownload(const Look& look, const QString& folder) {
    const ModelHost host(QStringLiteral("multilingual"), QByteArray(2'000'000, 'm'),
                         "limit_rate 10k; limit_rate_after 900k;");
    host.offer();
    Studio studio(look, folder);
    studio.desk().connectTo(host);
    studio.desk().startSayloft({});
    const auto isHalfDone = [&] {
        return studio.desk()
            .windows()
            .textAbout(WindowDesk::onboarding, QStringLiteral("State of the speech model"))
            .contains(QStringLiteral(" 4"));
    };
    if (!waitUntil(isHalfDone, 30s))
        throw std::runtime_error("the download does not come on");
    studio.take(WindowDesk::onboarding, QStringLiteral("onboarding-downloading"));
    studio.desk().openSettings();
    studio.take(WindowDesk::settings, QStringLiteral("settings-downloading"));
}

/// What the panel says when the mouse rests on the item, while there is no sound server.
void takeTooltip(TrayHostKind kind, const QString& file) {
    WindowDesk desk;
    desk.setVariable(QStringLiteral("XDG_CURRENT_DESKTOP"), kind == TrayHostKind::lxqtPanel
                                                                ? QStringLiteral("LXQt")
                                                                : QStringLiteral("XFCE"));
    const TrayHost panel(kind, desk.display(), desk.bus());
    desk.startSayloft();
    const TrayClient client(desk.bus());
    const auto saysWhy = [&] {
        return client.property(QStringLiteral("ToolTip")).contains(QStringLiteral("sound"));
    };
    if (!waitUntil(saysWhy, 30s))
        throw std::runtime_error("the item does not say that there is no sound server");
    // Panels look at movements.
    for (const QPoint place : {QPoint(640, 400), QPoint(1250, 16), QPoint(1264, 15)}) {
        desk.pointer().moveTo(place);
        turnEventLoopFor(1s);
    }
    turnEventLoopFor(2s);
    run(QStringLiteral("import"),
        {QStringLiteral("-window"), QStringLiteral("root"), QStringLiteral("-crop"),
         QStringLiteral("640x120+640+0"), QStringLiteral("+repage"), file},
        {}, desk.display().environment());
}

/// `only` names a look, or the tray; empty for all.
void takeAll(const QString& folder, const QString& only) {
    for (const Look& look : looks()) {
        if (!only.isEmpty() && look.name != only)
            continue;
        takeSettings(look, folder);
        takeWithNothingInReach(look, folder);
        takeDownload(look, folder);
    }
    if (only.isEmpty() || only == QStringLiteral("tray")) {
        takeTooltip(TrayHostKind::xfcePanel, folder + QStringLiteral("/tooltip-xfce.png"));
        takeTooltip(TrayHostKind::lxqtPanel, folder + QStringLiteral("/tooltip-lxqt.png"));
    }
}

}  // namespace
}  // namespace sayloft::test

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString folder = QDir(arguments.value(1, QStringLiteral("."))).absolutePath();
    try {
        QDir().mkpath(folder);
        sayloft::test::takeAll(folder, arguments.value(2));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "desktop_pictures: %s\n", error.what());
        return 1;
    }
    return 0;
}
