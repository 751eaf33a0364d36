#include "app/controls/frame/WindowGeometry.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace tessaly {
namespace {

constexpr QSize window{800, 600};

TEST(WindowGeometry, theTitleBarIsTheTopOfTheWindow)
{
    EXPECT_EQ(titleBarRect(window), QRect(0, 0, 800, 34));
}

TEST(WindowGeometry, theUpperHalfOfAnOddHeightIsTheSmallerOne)
{
    const QRectF titleBar(0, 0, 100, 35);
    EXPECT_EQ(upperTitleHalf(titleBar), QRectF(0, 0, 100, 17));
    EXPECT_EQ(lowerTitleHalf(titleBar), QRectF(0, 17, 100, 18));
}

TEST(WindowGeometry, theTitleStandsTwentyToTheRightAndLowerByFourAtItsTop)
{
    EXPECT_EQ(titleTextRect({0, 0, 800, 34}), QRectF(20, 4, 800, 30));
}

TEST(WindowGeometry, buttonsLieApartFromEachOtherAndFromTheEdges)
{
    const QRect inside =
        QRect({0, 0}, window).adjusted(resizeMargin, resizeMargin, -resizeMargin, 0);
    QRect last;
    for (const TitleBarPart part : {TitleBarPart::applicationMenu, TitleBarPart::minimize,
                                    TitleBarPart::zoom, TitleBarPart::close}) {
        const QRect place = titleBarPartRect(part, window.width());
        EXPECT_TRUE(inside.contains(place));
        EXPECT_TRUE(titleBarRect(window).contains(place));
        EXPECT_FALSE(place.intersects(last));
        EXPECT_GT(place.x(), last.x());
        last = place;
    }
}

TEST(WindowGeometry, edgesEndWhereTheMarginDoes)
{
    EXPECT_EQ(edgesAt({0, 300}, window), Qt::LeftEdge);
    EXPECT_EQ(edgesAt({5, 300}, window), Qt::LeftEdge);
    EXPECT_EQ(edgesAt({6, 300}, window), Qt::Edges());
    EXPECT_EQ(edgesAt({799, 300}, window), Qt::RightEdge);
    EXPECT_EQ(edgesAt({794, 300}, window), Qt::RightEdge);
    EXPECT_EQ(edgesAt({793, 300}, window), Qt::Edges());
    EXPECT_EQ(edgesAt({400, 5}, window), Qt::TopEdge);
    EXPECT_EQ(edgesAt({400, 594}, window), Qt::BottomEdge);
    EXPECT_EQ(edgesAt({-1, 300}, window), Qt::Edges());
    EXPECT_EQ(edgesAt({400, 600}, window), Qt::Edges());
    EXPECT_EQ(edgesAt({2, 300}, window, 3), Qt::LeftEdge);
    EXPECT_EQ(edgesAt({3, 300}, window, 3), Qt::Edges());
}

TEST(WindowGeometry, cornersReachAlongTheEdges)
{
    EXPECT_EQ(edgesAt({15, 0}, window), Qt::LeftEdge | Qt::TopEdge);
    EXPECT_EQ(edgesAt({16, 0}, window), Qt::TopEdge);
    EXPECT_EQ(edgesAt({0, 584}, window), Qt::LeftEdge | Qt::BottomEdge);
    EXPECT_EQ(edgesAt({784, 599}, window), Qt::RightEdge | Qt::BottomEdge);
    EXPECT_EQ(edgesAt({799, 15}, window), Qt::RightEdge | Qt::TopEdge);
    EXPECT_EQ(edgesAt({15, 15}, window), Qt::Edges());
}

TEST(WindowGeometry, thePointerShowsHowADragResizes)
{
    EXPECT_EQ(cursorForEdges(Qt::LeftEdge), Qt::SizeHorCursor);
    EXPECT_EQ(cursorForEdges(Qt::RightEdge), Qt::SizeHorCursor);
    EXPECT_EQ(cursorForEdges(Qt::TopEdge), Qt::SizeVerCursor);
    EXPECT_EQ(cursorForEdges(Qt::BottomEdge), Qt::SizeVerCursor);
    EXPECT_EQ(cursorForEdges(Qt::LeftEdge | Qt::TopEdge), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorForEdges(Qt::RightEdge | Qt::BottomEdge), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorForEdges(Qt::RightEdge | Qt::TopEdge), Qt::SizeBDiagCursor);
    EXPECT_EQ(cursorForEdges(Qt::LeftEdge | Qt::BottomEdge), Qt::SizeBDiagCursor);
    EXPECT_EQ(cursorForEdges({}), Qt::ArrowCursor);
}

TEST(WindowGeometry, aFrameWithinTheScreenStays)
{
    EXPECT_EQ(frameWithin({100, 100, 800, 600}, {0, 0, 1920, 1080}), QRect(100, 100, 800, 600));
    EXPECT_EQ(frameWithin({0, 0, 1920, 1080}, {0, 0, 1920, 1080}), QRect(0, 0, 1920, 1080));
}

TEST(WindowGeometry, aFrameThatIsPartlyOffTheScreenIsMovedOntoIt)
{
    const QRect screen(100, 50, 1920, 1080);
    EXPECT_EQ(frameWithin({-300, 20, 800, 600}, screen), QRect(100, 50, 800, 600));
    EXPECT_EQ(frameWithin({1500, 900, 800, 600}, screen), QRect(1220, 530, 800, 600));
}

TEST(WindowGeometry, aFrameLargerThanTheScreenIsMadeAsLarge)
{
    EXPECT_EQ(frameWithin({-10, 200, 3000, 700}, {0, 0, 1920, 1080}), QRect(0, 200, 1920, 700));
}

TEST(WindowGeometry, withoutAScreenAFrameStays)
{
    EXPECT_EQ(frameWithin({-10, 200, 3000, 700}, {}), QRect(-10, 200, 3000, 700));
    EXPECT_EQ(frameOnScreens({-10, 200, 3000, 700}, {}), QRect(-10, 200, 3000, 700));
}

TEST(WindowGeometry, aFrameComesToTheScreenThatShowsMostOfIt)
{
    const QList<QRect> screens{{0, 0, 1000, 1000}, {1000, 0, 2000, 1000}};
    EXPECT_EQ(frameOnScreens({900, 100, 800, 600}, screens), QRect(1000, 100, 800, 600));
    EXPECT_EQ(frameOnScreens({300, 100, 800, 600}, screens), QRect(200, 100, 800, 600));
}

TEST(WindowGeometry, aFrameOnNoScreenComesToTheMiddleOfTheFirst)
{
    const QList<QRect> screens{{0, 0, 1000, 1000}, {1000, 0, 2000, 1000}};
    EXPECT_EQ(frameOnScreens({5000, -900, 800, 600}, screens), QRect(100, 200, 800, 600));
}

TEST(WindowGeometry, veryLargeFramesAreComparedWithoutOverflow)
{
    constexpr int large = std::numeric_limits<int>::max() / 4;
    const QList<QRect> screens{{0, 0, 100, 100}, {0, 0, large, large}};
    EXPECT_EQ(frameOnScreens({0, 0, large, large}, screens), QRect(0, 0, large, large));
}

} // namespace
} // namespace tessaly
