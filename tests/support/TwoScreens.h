// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XServer.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

/// A private Xorg with two screens and no hardware: `left` of 1920 by 1080 pixels, which is the
/// main one at first, and `right` of the same size beside it. While it lives, DISPLAY of the test
/// names it. Functions return when the server has done it.
class TwoScreens {
public:
    static inline const QString left = QStringLiteral("DUMMY0");
    static inline const QString right = QStringLiteral("DUMMY1");

    TwoScreens();

    [[nodiscard]] const XServer& server() const { return *m_server; }

    void makeMain(const QString& screen) const;
    void setMode(const QString& screen, const QString& mode) const;
    void switchOff(const QString& screen) const;
    void switchOnRightOfTheOther(const QString& screen) const;

private:
    void xrandr(const QStringList& arguments) const;

    QTemporaryDir m_directory;
    std::unique_ptr<XServer> m_server;
};

}  // namespace sayloft::test
