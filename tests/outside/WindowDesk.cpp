// SPDX-License-Identifier: MIT
#include "tests/outside/WindowDesk.h"

#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/VisibleWindows.h"
#include "tests/support/WaitUntil.h"

#include <QDir>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <vector>

namespace sayloft::test {
namespace {

using State = AccessibleObject::State;

QString withoutServices(const QTemporaryDir& directory) {
    QString services = directory.filePath(QStringLiteral("services"));
    QDir().mkpath(services);
    return services;
}

/// Which of the controls has the keyboard; their number when none has.
std::size_t focusedOf(const std::vector<AccessibleObject>& controls) {
    const auto focused =
        std::find_if(controls.begin(), controls.end(),
                     [](const AccessibleObject& each) { return each.is(State::focused); });
    return static_cast<std::size_t>(focused - controls.begin());
}

std::size_t waitForFocus(const std::vector<AccessibleObject>& controls,
                         std::optional<std::size_t> before = {}) {
    std::size_t focused = 0;
    const bool came = waitUntil([&] {
        focused = focusedOf(controls);
        return focused < controls.size() && focused != before;
    });
    if (!came)
        throw std::runtime_error("the keyboard goes to no control");
    return focused;
}

}  // namespace

WindowDesk::WindowDesk(const XServer::Options& screen)
    : m_display(screen), m_bus({.services = withoutServices(m_directory)}) {}

void WindowDesk::provideModel(const QString& file) const {
    writeFile(home() + QStringLiteral("/.sayloft/models/") + file, "no model");
}

void WindowDesk::startProgram(const QString& program) {
    QDir().mkpath(home());
    QProcessEnvironment environment = this->environment();
    environment.insert(QStringLiteral("HOME"), home());
    m_programs.push_back(std::make_unique<ChildProgram>(program, QStringList(), environment));
}

bool WindowDesk::appears(const QString& windowClass) const {
    return waitUntil([&] { return !visibleWindows(m_display, windowClass).isEmpty(); },
                     std::chrono::seconds(20));
}

void WindowDesk::startSayloft(const QByteArray& configuration) {
    QDir().mkpath(home());
    if (!configuration.isEmpty())
        writeConfig(home(), configuration);
    m_sayloft = std::make_unique<SayloftProgram>(home(), environment());
    if (!m_sayloft->waitForLog(QStringLiteral("event tap installed OK")))
        throw std::runtime_error("Sayloft did not come up: " + m_sayloft->log().toStdString());
}

void WindowDesk::endSayloft() {
    m_sayloft.reset();
}

QProcessEnvironment WindowDesk::environment() const {
    QProcessEnvironment environment = m_display.environment();
    m_bus.addTo(environment);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_directory.path());
    environment.insert(QStringLiteral("https_proxy"), QStringLiteral("http://127.0.0.1:9"));
    environment.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
    if (m_room)
        m_room->addTo(environment);
    environment.insert(m_variables);
    return environment;
}

void WindowDesk::openSettings() {
    TrayClient(m_bus).click(QStringLiteral("Settings…"));
    static_cast<void>(m_windows.window(settings));
}

void WindowDesk::openDictionary() {
    openSettings();
    press(settings, QStringLiteral("Edit dictionary…"));
    static_cast<void>(m_windows.window(dictionary));
}

void WindowDesk::click(const QString& window, const QString& title) {
    const AccessibleObject clicked = control(window, title);
    // Only now the window manager has put it where it stays.
    static_cast<void>(m_windows.window(window));
    m_pointer.click(clicked.place().center());
}

void WindowDesk::clickInto(const QString& window, const QString& field) {
    click(window, field);
    if (!waitUntil([&] { return control(window, field).is(State::focused); }))
        throw std::runtime_error("the keyboard does not go to " + field.toStdString());
}

void WindowDesk::tabTo(const QString& window, const QString& title) {
    const std::vector<AccessibleObject> controls = m_windows.controls(window);
    std::size_t focused = waitForFocus(controls);
    for (std::size_t steps = 0; steps <= controls.size(); ++steps) {
        if (AccessibleTree::titleOf(controls[focused]) == title)
            return;
        m_keyboard.tap(TestKeyboard::tab);
        focused = waitForFocus(controls, focused);
    }
    throw std::runtime_error("no way with Tab to " + title.toStdString());
}

QStringList WindowDesk::walk(const QString& window, std::optional<TestKeyboard::Key> with) {
    const std::vector<AccessibleObject> controls = m_windows.controls(window);
    const std::size_t first = waitForFocus(controls);
    QStringList way;
    std::size_t focused = first;
    do {
        way.append(AccessibleTree::titleOf(controls[focused]));
        if (with)
            m_keyboard.tapWith(*with, TestKeyboard::tab);
        else
            m_keyboard.tap(TestKeyboard::tab);
        focused = waitForFocus(controls, focused);
    } while (focused != first && way.size() <= static_cast<qsizetype>(controls.size()));
    return way;
}

nlohmann::json WindowDesk::config() const {
    const QByteArray file = readFile(home() + QStringLiteral("/.sayloft/config.json"));
    // It may be read while it is being written.
    const auto json = nlohmann::json::parse(file.begin(), file.end(), nullptr, false);
    return json.is_discarded() ? nlohmann::json() : json;
}

bool WindowDesk::isSaved(const char* key, const nlohmann::json& value) const {
    return waitUntil([&] {
        const nlohmann::json saved = config();
        return saved.is_object() && saved.value(key, nlohmann::json()) == value;
    });
}

}  // namespace sayloft::test
