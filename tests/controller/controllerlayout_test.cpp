#include "controller/tunecontrollerlayout.h"

#include <gtest/gtest.h>

using namespace TuneControllerLayout;

void PrintTo(const QRect &rect, std::ostream *os)
{
    *os << rect.x() << "," << rect.y() << " " << rect.width() << "x" << rect.height();
}

TEST(ControllerLayout, WidthsAndPositionsOfEveryDesign)
{
    // Default design: navigation and love, 70 + 19.
    const Frames standard = layout(true, false, true);
    EXPECT_EQ(standard.previous, QRect(1, 5, 19, 11));
    EXPECT_EQ(standard.play, QRect(19, 5, 15, 11));
    EXPECT_EQ(standard.next, QRect(34, 5, 19, 11));
    EXPECT_EQ(standard.menu, QRect(53, 4, 17, 14));
    EXPECT_TRUE(standard.stars.isNull());
    EXPECT_EQ(standard.loveButton, QRect(70, 5, 19, 12));
    EXPECT_EQ(standard.hoverWidth, 70);
    EXPECT_EQ(standard.totalWidth, 89);

    // Everything off: the lone menu button is 15 high, not 14.
    const Frames bare = layout(false, false, false);
    EXPECT_EQ(bare.menu, QRect(0, 4, 17, 15));
    EXPECT_EQ(bare.totalWidth, 17);
    EXPECT_EQ(bare.hoverWidth, 17);
    EXPECT_TRUE(bare.previous.isNull() && bare.play.isNull() && bare.next.isNull());

    // Navigation off, rating and love on: menu 0, stars 20, love 85, 104 in all.
    const Frames rated = layout(false, true, true);
    EXPECT_EQ(rated.menu, QRect(0, 4, 17, 14));
    EXPECT_EQ(rated.stars, QRect(20, 5, 65, 14));
    EXPECT_EQ(rated.loveButton, QRect(85, 5, 19, 12));
    EXPECT_EQ(rated.totalWidth, 104);

    // All three: the stars follow the navigation, love the stars.
    const Frames full = layout(true, true, true);
    EXPECT_EQ(full.stars, QRect(73, 5, 65, 14));
    EXPECT_EQ(full.loveButton, QRect(138, 5, 19, 12));
    EXPECT_EQ(full.totalWidth, 157);
    EXPECT_EQ(layout(false, true, false).totalWidth, 85);
    EXPECT_EQ(layout(false, false, true).loveButton.x(), 17);
}

TEST(ControllerLayout, BottomUpFramesBecomeTopDownInTheStrip)
{
    // 5 from the bottom and 11 high in a strip of 22: 6 from the top.
    EXPECT_EQ(frameInView(QRect(1, 5, 19, 11)), QRect(1, 6, 19, 11));
    EXPECT_EQ(frameInView(QRect(0, 4, 17, 15)), QRect(0, 3, 17, 15));
    EXPECT_EQ(frameInView(QRect(20, 5, 65, 14)), QRect(20, 3, 65, 14));
    EXPECT_EQ(frameInView(QRect(0, 0, 10, 10), 30), QRect(0, 20, 10, 10));
}

TEST(ControllerLayout, StripAndTheWindowsHangingFromIt)
{
    const QRect screen(0, 30, 1280, 770); // below a desktop panel of 30
    const QRect strip = stripFrame(screen, 89);
    EXPECT_EQ(strip, QRect(1280 - kRightMargin - 89, 30, 89, kThickness));

    // The hang point: 3 left of the strip with navigation, 22 without, at its bottom edge.
    EXPECT_EQ(currentPosition(&strip, true), QPoint(strip.x() - 3, 30 + kThickness));
    EXPECT_EQ(currentPosition(&strip, false), QPoint(strip.x() - 22, 30 + kThickness));
    EXPECT_EQ(currentPosition(nullptr, true), QPoint(-3, kThickness));

    // The panel: 10 over its contents, its top at the point, right edge 106 (72) right of it.
    const QPoint point(1000, 52);
    const QRect withNavigation = navigationPanelFrame(point, QSize(220, 100), true);
    EXPECT_EQ(withNavigation, QRect(1000 - 220 + 106, 52, 220, 110));
    const QRect without = navigationPanelFrame(point, QSize(220, 100), false);
    EXPECT_EQ(withNavigation.x() - without.x(), 34);
    EXPECT_EQ(without.y(), withNavigation.y());

    // The strip moves: only x follows.
    const QRect followed = followedPanelFrame(withNavigation, point, QPoint(960, 80));
    EXPECT_EQ(followed, withNavigation.translated(-40, 0));
}
