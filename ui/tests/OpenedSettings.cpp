// SPDX-License-Identifier: MIT
#include "ui/tests/OpenedSettings.h"

#include "models/ModelCatalogue.h"
#include "models/Paths.h"
#include "tests/support/WaitUntil.h"
#include "ui/AppWindows.h"
#include "ui/SettingsWindowController.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QStyleOptionButton>
#include <QWindow>
#include <QtTest>

namespace sayloft::test {
namespace {

QString fileOf(const QString& key) {
    return DOWNLOAD_MODELS_DIR + QLatin1Char('/') + modelInfo(key).file;
}

QPoint middleOf(QAbstractButton& button) {
    if (qobject_cast<QCheckBox*>(&button) == nullptr)
        return button.rect().center();
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &button).center();
}

}  // namespace

OpenedSettings::OpenedSettings() {
    fakes.audio.deviceList = {
        {.id = 1, .uid = QStringLiteral("laptop"), .name = QStringLiteral("Built-in Audio")},
        {.id = 2, .uid = QStringLiteral("usb"), .name = QStringLiteral("Desk Microphone")}};
}

OpenedSettings::~OpenedSettings() {
    if (app)
        app->applicationWillTerminate();
}

void OpenedSettings::prepare(const QByteArray& config) {
    writeFile(Config::url(), config);
    app = std::make_unique<AppDelegate>(fakes.platform());
    app->statusItem = std::make_unique<FakeStatusItem>(seen);
    app->overlay = std::make_unique<FakeOverlay>(seen);
    app->windows = std::make_unique<AppWindows>(*app);
}

void OpenedSettings::findWindow() {
    window = &dynamic_cast<AppWindows&>(*app->windows).settingsWC->window();
}

void OpenedSettings::open(const QByteArray& config) {
    prepare(config);
    app->openSettings();
    findWindow();
    if (!waitUntil([this] { return window->isActiveWindow(); }))
        throw std::runtime_error("the settings window did not come up");
    seen.clear();
}

void OpenedSettings::provideModel(const QString& key) {
    writeFile(fileOf(key), "model");
}

bool OpenedSettings::hasModel(const QString& key) {
    return QFileInfo::exists(fileOf(key));
}

void OpenedSettings::serve(const QString& key, const QByteArray& content) {
    m_nginx = std::make_unique<Nginx>("limit_rate_after 400k; limit_rate 20k;");
    m_catalogue = std::make_unique<ServedCatalogue>(*m_nginx);
    m_catalogue->serve(key, content);
}

void OpenedSettings::serveSlowly(const QString& key) {
    serve(key, QByteArray(1'000'000, 'x'));
}

bool OpenedSettings::beginSlowDownload(const QString& key) {
    serveSlowly(key);
    app->models().setModel(key);
    return waitUntil([this] { return app->models().downloadProgress() > 0.3; });
}

bool OpenedSettings::isVisible(const QString& accessibleName) const {
    const QWidget* const control = find<QWidget>(accessibleName);
    return control != nullptr && control->isVisible();
}

bool OpenedSettings::showsText(const QString& text) const {
    const auto labels = window->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&text](const QLabel* label) {
        return label->isVisible() && label->text() == text;
    });
}

void OpenedSettings::click(const QString& accessibleName) const {
    auto& button = get<QAbstractButton>(accessibleName);
    QTest::mouseClick(&button, Qt::LeftButton, {}, middleOf(button));
}

void OpenedSettings::clickEmptySpace() const {
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, QPoint(3, 3));
}

void OpenedSettings::type(const QString& accessibleName, const QString& text) const {
    auto& field = get<QLineEdit>(accessibleName);
    QTest::mouseClick(&field, Qt::LeftButton);
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, text);
}

void OpenedSettings::answer(const QString& buttonText) const {
    const auto* alert = window->findChild<QMessageBox*>();
    if (alert == nullptr)
        throw std::runtime_error("no alert is open");
    for (QAbstractButton* const button : alert->buttons()) {
        if (button->text() == buttonText)
            QTest::mouseClick(button, Qt::LeftButton);
    }
    if (!waitUntil([this] { return window->findChild<QMessageBox*>() == nullptr; }))
        throw std::runtime_error("the alert stays open");
}

}  // namespace sayloft::test
