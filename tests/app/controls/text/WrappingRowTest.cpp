#include "app/controls/text/WrappingRow.hpp"

#include <QTest>

#include <gtest/gtest.h>

namespace tessaly {
namespace {

class Block final : public QWidget {
public:
    explicit Block(QWidget *parent) : QWidget(parent) {}
    [[nodiscard]] QSize sizeHint() const override { return hint; }

    QSize hint{100, 20};
};

class WrappingRowTest : public testing::Test {
protected:
    void show(int width)
    {
        m_row.resize(width, m_row.heightForWidth(width));
        m_row.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_row));
    }

    WrappingRow m_row;
    Block m_first{&m_row};
    Block m_second{&m_row};
    Block m_third{&m_row};
};

TEST_F(WrappingRowTest, isOneLineWhereThereIsRoom)
{
    EXPECT_EQ(m_row.sizeHint(), QSize(336, 20));
    EXPECT_EQ(m_row.heightForWidth(336), 20);
    show(336);
    EXPECT_EQ(m_first.geometry(), QRect(0, 0, 100, 20));
    EXPECT_EQ(m_second.geometry(), QRect(118, 0, 100, 20));
    EXPECT_EQ(m_third.geometry(), QRect(236, 0, 100, 20));
}

TEST_F(WrappingRowTest, takesMoreLinesWhereThereIsNone)
{
    EXPECT_EQ(m_row.minimumSizeHint(), QSize(100, 20));
    EXPECT_EQ(m_row.heightForWidth(335), 42);
    EXPECT_EQ(m_row.heightForWidth(100), 64);
    show(335);
    EXPECT_EQ(m_second.geometry(), QRect(118, 0, 100, 20));
    EXPECT_EQ(m_third.geometry(), QRect(0, 22, 100, 20));
    show(100);
    EXPECT_EQ(m_third.geometry(), QRect(0, 44, 100, 20));
}

TEST_F(WrappingRowTest, runsAsTextsDo)
{
    m_row.setLayoutDirection(Qt::RightToLeft);
    show(400);
    EXPECT_EQ(m_first.geometry(), QRect(300, 0, 100, 20));
    EXPECT_EQ(m_second.geometry(), QRect(182, 0, 100, 20));
}

TEST_F(WrappingRowTest, followsAChildWhoseSizeHintChanges)
{
    show(336);
    m_first.hint = {150, 20};
    m_first.updateGeometry();
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_first.width() == 150; }));
    EXPECT_EQ(m_third.y(), 22);
}

} // namespace
} // namespace tessaly
