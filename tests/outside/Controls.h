// SPDX-License-Identifier: MIT
#pragma once

#include "tests/outside/WindowDesk.h"

#include <QString>
#include <QStringList>

#include <ostream>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

/// The roles of controls.
namespace roles {
inline const QString button = QStringLiteral("push button");
inline const QString checkBox = QStringLiteral("check box");
inline const QString comboBox = QStringLiteral("combo box");
inline const QString slider = QStringLiteral("slider");
inline const QString field = QStringLiteral("text");
}  // namespace roles

/// What a control is for whoever cannot see it.
struct Control {
    QString title;
    QString role;
    bool isDescribed = true;

    bool operator==(const Control&) const = default;
};

inline void PrintTo(const Control& control, std::ostream* out) {
    *out << control.role.toStdString() << " \"" << control.title.toStdString() << '"'
         << (control.isDescribed ? "" : " without a description");
}

/// The controls of a window that can be used just now.
[[nodiscard]] inline std::vector<Control> controlsOf(const WindowDesk& desk,
                                                     const QString& window) {
    std::vector<Control> controls;
    for (const AccessibleObject& each : desk.windows().controls(window)) {
        if (each.is(AccessibleObject::State::sensitive))
            controls.push_back(
                {AccessibleTree::titleOf(each), each.role(), !each.description().isEmpty()});
    }
    return controls;
}

[[nodiscard]] inline QStringList titlesOf(const std::vector<Control>& controls) {
    QStringList titles;
    for (const Control& control : controls)
        titles.append(control.title);
    return titles;
}

/// The same list with another one in front.
[[nodiscard]] inline QStringList beginningWith(const QString& first, const QStringList& list) {
    const auto index = list.indexOf(first);
    return list.mid(index) + list.mid(0, index);
}

[[nodiscard]] inline QStringList backwards(const QStringList& list) {
    return {list.rbegin(), list.rend()};
}

}  // namespace sayloft::test
