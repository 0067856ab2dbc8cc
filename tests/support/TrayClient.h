// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/SessionBus.h"
#include "tests/support/TrayItemProperties.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace sayloft::test {

/// Looks at trays and their items from outside, as anybody on the bus can: with gdbus.
class TrayClient {
public:
    explicit TrayClient(const SessionBus& bus);

    /// Whether somebody shows items.
    [[nodiscard]] bool isTrayThere() const;
    /// What the tray has been told to show.
    [[nodiscard]] QStringList registeredItems() const;

    /// The unique bus name of Sayloft; waits for it to appear.
    [[nodiscard]] QString sayloft() const;
    [[nodiscard]] bool isSayloftShown() const;
    /// A property of Sayloft's item, as gdbus prints it.
    [[nodiscard]] QString property(const QString& name) const;
    /// All properties of Sayloft's item at one moment.
    [[nodiscard]] TrayItemProperties properties() const;
    /// Waits until there is the item of Sayloft and its tooltip contains the words, as gdbus prints
    /// them.
    [[nodiscard]] bool tooltipSays(const QString& words) const;
    /// Waits until it does not contain them.
    [[nodiscard]] bool tooltipStopsSaying(const QString& words) const;

    /// The whole menu, as gdbus prints it.
    [[nodiscard]] QString menu() const;
    /// The id of the line with that label; none when there is none.
    [[nodiscard]] std::optional<int> idOf(const QString& label) const;
    /// The labels of all lines that have one, submenus included, in their order.
    [[nodiscard]] QStringList labels() const;
    void click(int id) const;
    void click(const QString& label) const;

    /// What a method of the menu returns, as gdbus prints it; throws std::runtime_error when it
    /// fails.
    [[nodiscard]] QString callMenu(const char* method, const QStringList& arguments) const;

    /// The output of `gdbus call` with these arguments; throws std::runtime_error when it fails.
    [[nodiscard]] QString call(const QString& destination, const QString& object,
                               const QString& method, const QStringList& arguments) const;

private:
    [[nodiscard]] QString watcherProperty(const QString& name) const;

    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

}  // namespace sayloft::test
