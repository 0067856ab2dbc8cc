// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/AccessibilityBus.h"
#include "tests/support/AccessibleTree.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/ModelHost.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/TestPointer.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <nlohmann/json.hpp>

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <vector>

namespace sayloft::test {

/// The real program on a desktop of its own, and its user: with keys, with a mouse, or with
/// assistive technology. Functions throw std::runtime_error when what they wait for does not
/// come.
class WindowDesk {
public:
    static inline const QString settings = QStringLiteral("Sayloft Settings");
    static inline const QString dictionary = QStringLiteral("Dictionary");
    static inline const QString onboarding = QStringLiteral("Welcome to Sayloft");

    explicit WindowDesk(const XServer::Options& screen = {});

    /// Without it there is no sound server.
    void plugInSound() { m_room.emplace(); }
    [[nodiscard]] SoundServer& room() { return *m_room; }

    /// As if it had been downloaded, but that nobody can transcribe with it.
    void provideModel(const QString& file) const;

    /// As if this were the network, which it has not otherwise.
    void connectTo(const ModelHost& host) { host.addTo(m_variables); }

    /// What the program's environment says beside what every desktop says.
    void setVariable(const QString& name, const QString& value) { m_variables.insert(name, value); }
    /// Starts another program of this desktop, which it finds in the PATH.
    void startProgram(const QString& program);
    /// Waits until a window of another program is on the screen.
    [[nodiscard]] bool appears(const QString& windowClass) const;

    /// Starts the program; an empty configuration is none.
    void startSayloft(const QByteArray& configuration = R"({"model":"starter"})");
    void endSayloft();
    [[nodiscard]] SayloftProgram& sayloft() { return *m_sayloft; }

    /// From the menu of the tray item.
    void openSettings();
    /// From the settings.
    void openDictionary();

    [[nodiscard]] const AccessibleTree& windows() const { return m_windows; }
    [[nodiscard]] AccessibleObject control(const QString& window, const QString& title) const {
        return m_windows.control(window, title);
    }

    void press(const QString& window, const QString& title) const {
        m_windows.press(window, title);
    }
    void click(const QString& window, const QString& title);
    /// Waits until the field has the keyboard: window managers look at a click before they pass it
    /// on, and keys would overtake it.
    void clickInto(const QString& window, const QString& field);
    /// Presses Tab until the control has the keyboard.
    void tabTo(const QString& window, const QString& title);
    /// Presses Tab, or Shift and Tab, until the keyboard is where it was first; says on what
    /// controls it has been, that one first.
    [[nodiscard]] QStringList walk(const QString& window,
                                   std::optional<TestKeyboard::Key> with = {});

    [[nodiscard]] TestKeyboard& keyboard() { return m_keyboard; }
    [[nodiscard]] TestPointer& pointer() { return m_pointer; }
    [[nodiscard]] const XServer& display() const { return m_display; }
    [[nodiscard]] const SessionBus& bus() const { return m_bus; }

    /// What config.json says on the disk; null as long as there is none.
    [[nodiscard]] nlohmann::json config() const;
    /// Waits until config.json has the value.
    [[nodiscard]] bool isSaved(const char* key, const nlohmann::json& value) const;
    [[nodiscard]] QString home() const { return m_directory.filePath(QStringLiteral("home")); }

private:
    [[nodiscard]] QProcessEnvironment environment() const;

    QTemporaryDir m_directory;
    QProcessEnvironment m_variables;
    XServer m_display;
    WindowManager m_windowManager{m_display};
    SessionBus m_bus;
    AccessibilityBus m_accessibility{m_bus};
    AccessibleTree m_windows{m_accessibility};
    TestKeyboard m_keyboard;
    TestPointer m_pointer;
    std::optional<SoundServer> m_room;
    std::vector<std::unique_ptr<ChildProgram>> m_programs;
    std::unique_ptr<SayloftProgram> m_sayloft;
};

}  // namespace sayloft::test
