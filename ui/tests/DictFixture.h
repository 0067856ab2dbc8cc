// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"
#include "ui/DictWindowController.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

using Pair = std::vector<QString>;
using Pairs = std::vector<Pair>;

/// The window as the user has it in front, on fake services.
class DictFixture : public testing::Test {
protected:
    void open(const Pairs& replacements = {}) {
        delegate->cfg.replacements = replacements;
        delegate->cfg.save();
        dict = std::make_unique<DictWindowController>(*delegate);
        show();
    }

    void show() const {
        dict->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }

    [[nodiscard]] QWidget& window() const { return dict->window(); }

    template <typename Control>
    [[nodiscard]] Control* control(const QString& name) const {
        const QList<Control*> all = window().findChildren<Control*>();
        const auto found = std::find_if(all.begin(), all.end(), [&name](Control* each) {
            return each->isVisible() && each->accessibleName() == name;
        });
        if (found == all.end())
            throw std::runtime_error("no control " + name.toStdString());
        return *found;
    }

    [[nodiscard]] QLineEdit* heard(int row) const {
        return control<QLineEdit>(QStringLiteral("Heard %1").arg(row));
    }
    [[nodiscard]] QLineEdit* replacement(int row) const {
        return control<QLineEdit>(QStringLiteral("Replace with %1").arg(row));
    }
    [[nodiscard]] QPushButton* remove(int row) const {
        return control<QPushButton>(QStringLiteral("Remove %1").arg(row));
    }
    [[nodiscard]] QPushButton* add() const {
        return control<QPushButton>(QStringLiteral("＋ Add replacement"));
    }

    /// Number of rows on the screen.
    [[nodiscard]] int rows() const {
        const QList<QLineEdit*> fields = window().findChildren<QLineEdit*>();
        const auto shown = std::count_if(fields.begin(), fields.end(),
                                         [](QLineEdit* field) { return field->isVisible(); });
        return static_cast<int>(shown) / 2;
    }

    static void click(QWidget* target) { QTest::mouseClick(target, Qt::LeftButton); }

    static void type(QLineEdit* field, const char* text) {
        click(field);
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QString::fromUtf8(text));
    }

    [[nodiscard]] static Pairs saved() { return Config::load().replacements; }

    const QString solona = QStringLiteral("solona");
    const QString solana = QStringLiteral("Solana");
    TempHome home;
    FakePlatform fakes;
    std::unique_ptr<AppDelegate> delegate = std::make_unique<AppDelegate>(fakes.platform());
    std::unique_ptr<DictWindowController> dict;
};

}  // namespace sayloft::test
