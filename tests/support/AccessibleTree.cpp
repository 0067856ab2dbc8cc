// SPDX-License-Identifier: MIT
#include "tests/support/AccessibleTree.h"

#include "tests/support/WaitUntil.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

using State = AccessibleObject::State;

const QString comboBox = QStringLiteral("combo box");

/// Objects come and go while they are looked at.
template <typename Look>
bool comesTrue(const Look& look) {
    return waitUntil([&] {
        try {
            return look();
        } catch (const std::runtime_error&) {
            return false;
        }
    });
}

void require(bool isSo, const QString& what) {
    if (!isSo)
        throw std::runtime_error(what.toStdString());
}

void collectControls(const AccessibleObject& from, std::vector<AccessibleObject>& controls) {
    for (const AccessibleObject& child : from.children()) {
        if (!child.is(State::showing))
            continue;
        if (child.is(State::focusable))
            controls.push_back(child);
        // Its list shows only while it is open.
        if (child.role() != comboBox)
            collectControls(child, controls);
    }
}

}  // namespace

QString AccessibleTree::titleOf(const AccessibleObject& control) {
    return control.role() == comboBox ? control.labels().join(QLatin1Char(' ')) : control.name();
}

AccessibleTree::AccessibleTree(const AccessibilityBus& bus)
    : m_programs(bus.connection(), QStringLiteral("org.a11y.atspi.Registry"),
                 QStringLiteral("/org/a11y/atspi/accessible/root")) {}

std::optional<AccessibleObject> AccessibleTree::findWindow(const QString& title) const {
    std::optional<AccessibleObject> found;
    for (const AccessibleObject& program : m_programs.children()) {
        for (const AccessibleObject& window : program.children()) {
            if (window.name() != title || !window.is(State::showing))
                continue;
            if (window.is(State::active))
                return window;
            found = window;
        }
    }
    return found;
}

AccessibleObject AccessibleTree::window(const QString& title) const {
    std::optional<AccessibleObject> window;
    require(comesTrue([&] {
                window = findWindow(title);
                return window && window->is(State::active);
            }),
            title + QStringLiteral(" does not come up"));
    return *window;
}

void AccessibleTree::waitUntilGone(const QString& windowTitle) const {
    require(comesTrue([&] { return !findWindow(windowTitle); }),
            windowTitle + QStringLiteral(" does not go"));
}

std::optional<AccessibleObject> AccessibleTree::findControl(const QString& windowTitle,
                                                            const QString& title) const {
    const auto window = findWindow(windowTitle);
    if (!window)
        return std::nullopt;
    return window->find([&](const AccessibleObject& control) {
        return control.is(State::focusable) && titleOf(control) == title;
    });
}

AccessibleObject AccessibleTree::control(const QString& windowTitle, const QString& title) const {
    std::optional<AccessibleObject> control;
    require(comesTrue([&] {
                control = findControl(windowTitle, title);
                return control.has_value();
            }),
            title + QStringLiteral(" is not in ") + windowTitle);
    return *control;
}

void AccessibleTree::press(const QString& windowTitle, const QString& title) const {
    const AccessibleObject pressed = control(windowTitle, title);
    pressed.act(pressed.actions().value(0));
}

QString AccessibleTree::textAbout(const QString& windowTitle, const QString& description) const {
    const auto window = findWindow(windowTitle);
    const auto label = window ? window->find([&](const AccessibleObject& each) {
        return each.description() == description && !each.is(State::focusable);
    })
                              : std::nullopt;
    return label ? label->name() : QString();
}

bool AccessibleTree::says(const QString& windowTitle, const QString& description,
                          const QString& text) const {
    return comesTrue([&] { return textAbout(windowTitle, description) == text; });
}

std::vector<AccessibleObject> AccessibleTree::controls(const QString& windowTitle) const {
    std::vector<AccessibleObject> controls;
    collectControls(window(windowTitle), controls);
    return controls;
}

}  // namespace sayloft::test
