// SPDX-License-Identifier: MIT
// Pictures of the tray item in every state on every panel that the rig has, as
// <folder>/<panel>-<state>.png. The argument is the folder.
#include "app/StatusItem.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <array>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::TrayHostKind;

// Each looks unlike the one before it.
constexpr std::array states{
    std::pair{IconState::warming, "warming"}, std::pair{IconState::ready, "ready"},
    std::pair{IconState::recording, "recording"}, std::pair{IconState::processing, "processing"},
    std::pair{IconState::error, "error"}};

/// The right end of the panel, where the item is; of the height that panels have here.
QImage picture(const QProcessEnvironment& environment, const QString& file) {
    test::run(QStringLiteral("import"),
              {QStringLiteral("-window"), QStringLiteral("root"), QStringLiteral("-crop"),
               QStringLiteral("48x30+1232+0"), QStringLiteral("+repage"), file},
              {}, environment);
    return QImage(file);
}

/// Takes the picture when it is another one than `before` and stays as it is.
QImage nextPicture(const QProcessEnvironment& environment, const QString& file,
                   const QImage& before) {
    QImage last = before;
    QImage now;
    const auto hasSettled = [&] {
        last = std::exchange(now, picture(environment, file));
        return now != before && now == last;
    };
    if (!test::waitUntil(hasSettled))
        throw std::runtime_error("the panel does not change: " + file.toStdString());
    return now;
}

void takePictures(TrayHostKind kind, const QString& prefix) {
    const test::XServer display;
    const test::WindowManager windowManager(display);
    const test::SessionBus bus;
    const test::TrayHost panel(kind, display, bus);
    const QTemporaryDir home;
    QProcessEnvironment environment = display.environment();
    bus.addTo(environment);
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    QImage last = picture(environment, home.filePath(QStringLiteral("empty.png")));
    test::ChildProgram item(QStringLiteral(SAYLOFT_TRAY_STATES), {}, environment);
    for (const auto& [state, name] : states) {
        item.process().write(QByteArray::number(static_cast<int>(state)) + '\n');
        last =
            nextPicture(environment, prefix + QLatin1String(name) + QStringLiteral(".png"), last);
    }
}

}  // namespace
}  // namespace sayloft

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QString folder = QCoreApplication::arguments().value(1) + QLatin1Char('/');
    try {
        QDir().mkpath(folder);
        sayloft::takePictures(sayloft::TrayHostKind::xfcePanel, folder + QStringLiteral("xfce-"));
        sayloft::takePictures(sayloft::TrayHostKind::lxqtPanel, folder + QStringLiteral("lxqt-"));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tray_pictures: %s\n", error.what());
        return 1;
    }
    return 0;
}
