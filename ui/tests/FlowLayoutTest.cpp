// SPDX-License-Identifier: MIT
#include "ui/FlowLayout.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class FlowLayoutTest : public testing::Test {
protected:
    FlowLayoutTest() { m_parent.setLayout(m_flow); }

    QWidget& add(int width, int height = 20) {
        auto* item = new QWidget;
        item->setFixedSize(width, height);
        m_flow->insertWidget(m_flow->count(), item);
        return *item;
    }

    void layOut(int width) {
        m_parent.resize(width, m_flow->heightForWidth(width));
        m_flow->activate();
        m_flow->setGeometry(m_parent.rect());
    }

    QWidget m_parent;
    FlowLayout* m_flow = new FlowLayout(8);
};

TEST_F(FlowLayoutTest, putsItemsBesideEachOther) {
    const QWidget& first = add(50);
    const QWidget& second = add(60);
    layOut(118);
    EXPECT_EQ(first.geometry(), QRect(0, 0, 50, 20));
    EXPECT_EQ(second.geometry(), QRect(58, 0, 60, 20));
    EXPECT_EQ(m_flow->heightForWidth(118), 20);
}

TEST_F(FlowLayoutTest, beginsANewLineWhereOneIsFull) {
    add(50);
    const QWidget& second = add(60);
    layOut(117);
    EXPECT_EQ(second.geometry(), QRect(0, 28, 60, 20));
    EXPECT_EQ(m_flow->heightForWidth(117), 48);
}

TEST_F(FlowLayoutTest, centresItemsWithinTheirLine) {
    add(50, 40);
    const QWidget& low = add(50, 20);
    layOut(200);
    EXPECT_EQ(low.geometry().top(), 10);
}

TEST_F(FlowLayoutTest, leavesNoGapForHiddenItems) {
    add(50).hide();
    const QWidget& second = add(60);
    layOut(200);
    EXPECT_EQ(second.geometry().left(), 0);
}

TEST_F(FlowLayoutTest, needsTheWidthOfItsWidestItem) {
    add(50);
    add(60, 30);
    EXPECT_EQ(m_flow->minimumSize(), QSize(60, 30));
}

TEST_F(FlowLayoutTest, beginsOnTheRightWhereTextDoes) {
    m_parent.setLayoutDirection(Qt::RightToLeft);
    const QWidget& first = add(50);
    layOut(200);
    EXPECT_EQ(first.geometry().left(), 150);
}

TEST_F(FlowLayoutTest, hasNoHeightWithoutItems) {
    EXPECT_EQ(m_flow->heightForWidth(200), 0);
}

}  // namespace
}  // namespace sayloft
