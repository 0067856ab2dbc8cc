// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <optional>
#include <vector>

class QDBusArgument;

namespace sayloft::test {

/// A window or a control of another program as assistive technology sees it and operates it, over
/// AT-SPI. Functions throw std::runtime_error when the program does not do what it is asked for, as
/// when the object is gone.
class AccessibleObject {
public:
    /// As AT-SPI numbers them.
    enum class State {
        active = 1,
        checked = 4,
        focusable = 11,
        focused = 12,
        sensitive = 24,
        showing = 25,
    };

    AccessibleObject(const QDBusConnection& bus, QString program, QString path);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString description() const;
    /// The names of what labels it, such as the text before a field.
    [[nodiscard]] QStringList labels() const;
    [[nodiscard]] QString role() const;
    [[nodiscard]] bool is(State state) const;
    [[nodiscard]] std::vector<AccessibleObject> children() const;
    /// On the screen.
    [[nodiscard]] QRect place() const;

    [[nodiscard]] QStringList actions() const;
    void act(const QString& action) const;

    [[nodiscard]] QString text() const;
    void setText(const QString& text) const;
    [[nodiscard]] double value() const;
    void setValue(double value) const;
    void grabFocus() const;

    [[nodiscard]] bool operator==(const AccessibleObject& other) const {
        return m_program == other.m_program && m_path == other.m_path;
    }

    using Test = std::function<bool(const AccessibleObject&)>;
    /// The first below this one that shows and passes the test, in the order of the tree.
    [[nodiscard]] std::optional<AccessibleObject> find(const Test& test) const;

private:
    [[nodiscard]] std::vector<AccessibleObject> read(const QDBusArgument& list) const;
    QVariantList call(const char* interface, const char* method,
                      const QVariantList& arguments = {}) const;
    [[nodiscard]] QVariant property(const char* interface, const char* name) const;

    QDBusConnection m_bus;
    QString m_program;
    QString m_path;
};

}  // namespace sayloft::test
