// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/SessionBus.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

namespace sayloft::test {

/// Every title that the item of Sayloft has on the bus, from the moment this object is there.
class TitleWatch : public QObject {
    Q_OBJECT

public:
    /// `item` is the bus name of the program.
    TitleWatch(const SessionBus& bus, QString item);
    ~TitleWatch() override;
    TitleWatch(const TitleWatch&) = delete;
    TitleWatch& operator=(const TitleWatch&) = delete;

    [[nodiscard]] const QStringList& titles() const { return m_titles; }

private Q_SLOTS:
    void readTitle();

private:
    QString m_item;
    QDBusConnection m_connection;
    QStringList m_titles;
};

}  // namespace sayloft::test
