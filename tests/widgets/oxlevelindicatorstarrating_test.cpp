#include "widgets/drawnotificationcenter.h"
#include "widgets/oxlevelindicatorstarrating.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

TEST(OXLevelIndicatorStarRating, ValuesInStepsOfAStar)
{
    OXLevelIndicatorStarRating stars;
    stars.resize(65, 14);
    // 3 points of room, then five stars of 12.
    EXPECT_EQ(stars.valueAt(0), 0);
    EXPECT_EQ(stars.valueAt(2), 0);
    EXPECT_EQ(stars.valueAt(3), 20);
    EXPECT_EQ(stars.valueAt(14), 20);
    EXPECT_EQ(stars.valueAt(15), 40);
    EXPECT_EQ(stars.valueAt(64), 100);
    EXPECT_EQ(stars.valueAt(500), 100);

    stars.setValue(47);
    EXPECT_EQ(stars.value(), 40);
    stars.setValue(50);
    EXPECT_EQ(stars.value(), 60);
    stars.setValue(-10);
    EXPECT_EQ(stars.value(), 0);
    stars.setValue(130);
    EXPECT_EQ(stars.value(), 100);

    // A drag from the third star to the left edge ends at 0 and reports once, with the keys held.
    QSignalSpy activated(&stars, &OXLevelIndicatorStarRating::activated);
    QTest::mousePress(&stars, Qt::LeftButton, {}, QPoint(30, 7));
    EXPECT_EQ(stars.value(), 60);
    QTest::mouseRelease(&stars, Qt::LeftButton, Qt::AltModifier, QPoint(1, 7));
    EXPECT_EQ(stars.value(), 0);
    ASSERT_EQ(activated.size(), 1);
    EXPECT_EQ(activated.at(0).at(0).value<Qt::KeyboardModifiers>(), Qt::KeyboardModifiers(Qt::AltModifier));
}

TEST(OXLevelIndicatorStarRating, DrawsStarsOfTheirKind)
{
    OXLevelIndicatorStarRating stars;
    stars.resize(65, 14);
    stars.setValue(100);
    const QImage user = stars.grab().toImage();
    stars.setYourRatingTyp(2);
    const QImage computed = stars.grab().toImage();
    stars.setValue(0);
    const QImage none = stars.grab().toImage();
    // Full stars cover more than hollow ones, and hollow ones more than the empty marks.
    const auto ink = [](const QImage &image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += qAlpha(image.pixel(x, y)) > 0 && image.pixel(x, y) != image.pixel(0, 0);
        return count;
    };
    EXPECT_GT(ink(user), ink(computed));
    EXPECT_GT(ink(computed), ink(none));
    EXPECT_GT(ink(none), 0);
}
