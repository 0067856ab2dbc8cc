// SPDX-License-Identifier: MIT
// Takes pictures of the settings window, to be looked at: settings_pictures <directory>
#include "models/ModelCatalogue.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"
#include "ui/tests/OpenedSettings.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPixmap>

#include <functional>

#include <cstdio>

namespace {

using namespace std::chrono_literals;
using sayloft::test::OpenedSettings;
using sayloft::test::turnEventLoopFor;

const QString english = QStringLiteral("english");
const QString starter = QStringLiteral("starter");
const QString multilingual = QStringLiteral("multilingual");

QPalette darkPalette() {
    const QColor window(40, 42, 46);
    QPalette palette(window, window);
    palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(120, 122, 126));
    return palette;
}

/// Saves one picture of the window, after `prepare` has brought it into its state.
void take(const QString& name, const QByteArray& config,
          const std::function<void(OpenedSettings&)>& prepare) {
    OpenedSettings settings;
    OpenedSettings::provideModel(multilingual);
    OpenedSettings::provideModel(starter);
    prepare(settings);
    settings.open(config);
    turnEventLoopFor(100ms);
    settings.window->grab().save(name);
}

void takeWhile(const QString& name, const std::function<void(OpenedSettings&)>& act) {
    OpenedSettings settings;
    OpenedSettings::provideModel(multilingual);
    OpenedSettings::provideModel(starter);
    settings.open();
    act(settings);
    turnEventLoopFor(100ms);
    QWidget* const alert = settings.window->findChild<QMessageBox*>();
    (alert ? alert : settings.window)->grab().save(name);
}

constexpr const char* manyChords = R"({"dictateChords":[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,
    18,19,20,21,22,23,24,25,26,27,28,29,30,31],"dictateEnterChords":[3,12]})";

void takeAll(const QString& prefix) {
    const auto asItIs = [](OpenedSettings&) {};
    take(prefix + QStringLiteral("plain.png"), R"({"dictateEnterChords":[3]})", asItIs);
    take(prefix + QStringLiteral("many-chords.png"), manyChords, asItIs);
    take(prefix + QStringLiteral("not-granted.png"), "{}", [](OpenedSettings& settings) {
        settings.fakes.privacy.trusted = false;
        settings.fakes.audio.answer = sayloft::AudioInput::Authorization::denied;
    });
    take(prefix + QStringLiteral("two-models.png"), R"({"inputDeviceUID":"usb"})",
         [](OpenedSettings&) { OpenedSettings::provideModel(english); });
    takeWhile(prefix + QStringLiteral("download.png"), [](OpenedSettings& settings) {
        static_cast<void>(settings.beginSlowDownload(english));
    });
    takeWhile(prefix + QStringLiteral("capture.png"), [](OpenedSettings& settings) {
        settings.app->startCapture(sayloft::Capturing::dictate);
    });
    takeWhile(prefix + QStringLiteral("alert.png"), [](OpenedSettings& settings) {
        settings.click(QStringLiteral("Reset to defaults"));
    });
}

void useFontOf(double points) {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    QApplication::setFont(font);
}

void takeInAllLooks(const QString& directory) {
    const QString prefix = directory + QStringLiteral("/settings-");
    const QPalette light = QApplication::palette();
    takeAll(prefix + QStringLiteral("light-"));
    QApplication::setPalette(darkPalette());
    takeAll(prefix + QStringLiteral("dark-"));
    QApplication::setPalette(light);
    useFontOf(11);
    takeAll(prefix + QStringLiteral("usual-font-"));
    useFontOf(16);
    takeAll(prefix + QStringLiteral("large-font-"));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: settings_pictures <directory>\n");
        return 2;
    }
    const QString directory = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    QDir().mkpath(directory);
    const sayloft::test::XServer display({.screen = QStringLiteral("2560x1600x24")});
    const sayloft::test::WindowManager windowManager(display);
    const QApplication application(argc, argv);
    takeInAllLooks(directory);
    return 0;
}
