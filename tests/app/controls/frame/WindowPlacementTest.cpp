#include "app/controls/frame/WindowPlacement.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace tessaly {
namespace {

constexpr QRect frame{-30, 40, 1080, 700};

TEST(WindowPlacement, bytesAreReadBack)
{
    for (const bool isMaximized : {false, true}) {
        const auto read = WindowPlacement::fromBytes(WindowPlacement{frame, isMaximized}.bytes());
        ASSERT_TRUE(read);
        EXPECT_EQ(read->frame, frame);
        EXPECT_EQ(read->isMaximized, isMaximized);
    }
}

TEST(WindowPlacement, bytesOfAnyOtherLengthAreRefused)
{
    const QByteArray bytes = WindowPlacement{frame, false}.bytes();
    for (int length = 0; length < bytes.size(); ++length) {
        EXPECT_FALSE(WindowPlacement::fromBytes(bytes.left(length))) << length;
    }
    EXPECT_FALSE(WindowPlacement::fromBytes(bytes + '\0'));
}

TEST(WindowPlacement, foreignBytesAreRefused)
{
    const QByteArray bytes = WindowPlacement{frame, false}.bytes();
    EXPECT_FALSE(WindowPlacement::fromBytes(QByteArray(bytes.size(), '\xff')));
    EXPECT_FALSE(WindowPlacement::fromBytes(QByteArray(bytes.size(), '\0')));
    QByteArray laterVersion = bytes;
    laterVersion[3] = static_cast<char>(laterVersion[3] + 1);
    EXPECT_FALSE(WindowPlacement::fromBytes(laterVersion));
}

TEST(WindowPlacement, framesThatNoScreenHasAreRefused)
{
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    for (const QRect &bad :
         {QRect(0, 0, 0, 700), QRect(0, 0, 1080, -1), QRect(0, 0, 0, 0),
          QRect({most, 0}, QPoint(most, 0)), QRect(0, least, 1, 1), QRect(0, 0, most, 700),
          QRect(0, 0, 1080, 1'000'001), QRect(-1'000'001, 0, 1080, 700)}) {
        EXPECT_FALSE(WindowPlacement::fromBytes(WindowPlacement{bad, false}.bytes()));
    }
}

} // namespace
} // namespace tessaly
