// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/Colours.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QTemporaryDir>

#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace sayloft::test {

/// The program on a desktop whose panel the test chooses.
class Tray : public testing::Test {
protected:
    Tray() {
        m_environment = m_display.environment();
        m_bus.addTo(m_environment);
        m_environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        writeConfig(home(), R"({"model":"starter"})");
    }

    [[nodiscard]] QString home() const { return m_directory.filePath(QStringLiteral("home")); }

    void startSayloft() {
        m_sayloft = std::make_unique<SayloftProgram>(home(), m_environment);
        ASSERT_TRUE(m_sayloft->waitForLog(QStringLiteral("event tap installed OK")));
    }

    void startPanel(TrayHostKind kind) { m_panel.emplace(kind, m_display, m_bus); }

    void writeHistory(const QByteArray& json) const {
        writeFile(home() + QStringLiteral("/.sayloft/history.json"), json);
    }

    /// Of the panel at the top of the screen.
    [[nodiscard]] QImage pictureOfThePanel() const {
        const QString path = m_directory.filePath(QStringLiteral("panel.png"));
        run(QStringLiteral("import"),
            {QStringLiteral("-window"), QStringLiteral("root"), QStringLiteral("-crop"),
             QStringLiteral("1280x34+0+0"), QStringLiteral("+repage"), path},
            {}, m_environment);
        return QImage(path);
    }

    /// Where the panel has the colour, or one that no eye tells from it, if anywhere.
    [[nodiscard]] std::optional<QPoint> placeOf(const QColor& colour) const {
        const QImage panel = pictureOfThePanel();
        for (int y = 0; y < panel.height(); ++y) {
            for (int x = 0; x < panel.width(); ++x) {
                if (isAlmost(panel.pixelColor(x, y), colour))
                    return QPoint(x, y);
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] bool panelHas(const QColor& colour) const { return placeOf(colour).has_value(); }

    [[nodiscard]] bool isShown() const {
        return waitUntil([this] { return m_client.isSayloftShown(); });
    }

    XServer m_display;
    WindowManager m_windowManager{m_display};
    SessionBus m_bus;
    TrayClient m_client{m_bus};
    QTemporaryDir m_directory;
    QProcessEnvironment m_environment;
    std::optional<TrayHost> m_panel;
    std::unique_ptr<SayloftProgram> m_sayloft;
};

}  // namespace sayloft::test
