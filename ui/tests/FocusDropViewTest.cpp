// SPDX-License-Identifier: MIT
#include "ui/FocusDropView.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

/// A field that is being edited, with a text and empty space below it.
class FocusDrop : public testing::Test {
protected:
    FocusDrop() {
        auto* layout = new QVBoxLayout(&m_view);
        layout->addWidget(m_field);
        layout->addWidget(m_text);
        layout->addStretch();
        m_view.resize(200, 200);
        m_view.show();
    }

    void SetUp() override {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_view));
        m_field->setFocus();
        QTest::keyClicks(m_field, QStringLiteral("typed"));
        ASSERT_TRUE(m_field->hasFocus());
    }

    void press(Qt::MouseButton button, QPoint place = QPoint(100, 190)) {
        QTest::mouseClick(m_view.windowHandle(), button, {}, place);
    }

    FocusDropView m_view;
    QLineEdit* m_field = new QLineEdit;
    QLabel* m_text = new QLabel(QStringLiteral("text"));
    QSignalSpy m_finished{m_field, &QLineEdit::editingFinished};
};

TEST_F(FocusDrop, endsEditingWhereEmptySpaceIsClicked) {
    press(Qt::LeftButton);
    EXPECT_FALSE(m_field->hasFocus());
    EXPECT_EQ(m_finished.count(), 1);
}

TEST_F(FocusDrop, endsEditingWhereATextIsClicked) {
    press(Qt::LeftButton, m_text->geometry().center());
    EXPECT_FALSE(m_field->hasFocus());
    EXPECT_EQ(m_finished.count(), 1);
}

TEST_F(FocusDrop, doesNothingOfTheKindWithOtherButtons) {
    press(Qt::RightButton);
    press(Qt::MiddleButton);
    press(Qt::BackButton);
    EXPECT_TRUE(m_field->hasFocus());
    EXPECT_EQ(m_finished.count(), 0);
}

TEST_F(FocusDrop, leavesAFieldThatIsClickedAlone) {
    press(Qt::LeftButton, m_field->geometry().center());
    EXPECT_TRUE(m_field->hasFocus());
    EXPECT_EQ(m_finished.count(), 0);
}

TEST_F(FocusDrop, takesAClickWhereNothingIsBeingEdited) {
    press(Qt::LeftButton);
    press(Qt::LeftButton);
    EXPECT_EQ(m_finished.count(), 1);
}

}  // namespace
}  // namespace sayloft
