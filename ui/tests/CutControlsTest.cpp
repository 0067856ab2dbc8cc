// SPDX-License-Identifier: MIT
#include "ui/tests/CutControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <functional>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

const QString text = QStringLiteral("several words in a row");

struct Row {
    const char* name;
    std::function<QWidget*()> make;
};

class CutControls : public testing::TestWithParam<Row> {
protected:
    CutControls() : m_control(GetParam().make()) {
        (new QVBoxLayout(&m_window))->addWidget(m_control);
    }

    [[nodiscard]] QStringList found() {
        m_window.show();
        return test::cutControls(m_window);
    }

    QWidget m_window;
    QWidget* m_control;
};

TEST_P(CutControls, areNoneWhereEverythingHasItsRoom) {
    EXPECT_EQ(found(), QStringList());
}

TEST_P(CutControls, areThoseThatAreTooNarrowForTheirText) {
    m_control->setFixedWidth(m_control->fontMetrics().horizontalAdvance(QStringLiteral("sever")));
    EXPECT_EQ(found(), QStringList(text));
}

TEST_P(CutControls, areThoseThatAreTooLowForTheirText) {
    m_control->setFixedHeight(m_control->fontMetrics().height() - 2);
    EXPECT_EQ(found(), QStringList(text));
}

TEST_P(CutControls, areThoseThatReachOutOfTheWindow) {
    m_window.show();
    m_control->move(m_window.width() - 5, m_control->y());
    EXPECT_EQ(test::cutControls(m_window), QStringList(text));
}

template <typename Widget>
QWidget* withText() {
    return new Widget(text);
}

QWidget* wrappingLabel() {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

QWidget* list() {
    auto* list = new QComboBox;
    list->addItem(text);
    return list;
}

QWidget* field() {
    auto* field = new QLineEdit;
    field->setPlaceholderText(text);
    field->setMinimumWidth(2 * field->fontMetrics().horizontalAdvance(text));
    return field;
}

INSTANTIATE_TEST_SUITE_P(, CutControls,
                         testing::Values(Row{"label", withText<QLabel>},
                                         Row{"wrappingLabel", wrappingLabel},
                                         Row{"button", withText<QPushButton>},
                                         Row{"checkBox", withText<QCheckBox>}, Row{"list", list},
                                         Row{"field", field}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft
