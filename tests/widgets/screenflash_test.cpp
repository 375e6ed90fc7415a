#include "widgets/screenflash.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

TEST(DisplayFlash, CoversEveryScreenWhileItLastsAndLeavesNothing)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    ASSERT_FALSE(screens.isEmpty());
    int mostWindows = 0;
    double highestOpacity = 0;
    bool coversScreens = true;
    QTimer sampler;
    QObject::connect(&sampler, &QTimer::timeout, [&] {
        QList<QWindow *> visible;
        for (QWindow *window : QGuiApplication::topLevelWindows())
            if (window->isVisible())
                visible.append(window);
        mostWindows = std::max(mostWindows, int(visible.size()));
        for (QWindow *window : visible) {
            highestOpacity = std::max(highestOpacity, window->opacity());
            coversScreens = coversScreens && window->geometry() == window->screen()->geometry();
        }
    });
    sampler.start(5);
    ScreenFlash().flashDisplays();
    sampler.stop();

    EXPECT_EQ(mostWindows, screens.size());
    EXPECT_TRUE(coversScreens);
    EXPECT_GT(highestOpacity, 0.0);
    for (QWindow *window : QGuiApplication::topLevelWindows())
        EXPECT_FALSE(window->isVisible());
}

} // namespace
