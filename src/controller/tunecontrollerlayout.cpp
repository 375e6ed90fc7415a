#include "controller/tunecontrollerlayout.h"

namespace TuneControllerLayout {

Frames layout(bool navigation, bool rating, bool love)
{
    Frames frames;
    frames.navigation = navigation;
    frames.rating = rating;
    frames.love = love;
    if (!navigation && !rating && !love) {
        // The lone menu button is one point taller than beside the other parts.
        frames.menu = QRect(0, 4, 17, 15);
        frames.hoverWidth = 17;
        frames.totalWidth = 17;
        return frames;
    }
    if (navigation) {
        frames.previous = QRect(1, 5, 19, 11);
        frames.play = QRect(19, 5, 15, 11);
        frames.next = QRect(34, 5, 19, 11);
        frames.menu = QRect(53, 4, 17, 14);
        frames.hoverWidth = 70;
    } else {
        frames.menu = QRect(0, 4, 17, 14);
        frames.hoverWidth = 17;
    }
    int width = frames.hoverWidth;
    if (rating) {
        frames.stars = QRect(frames.hoverWidth + 3, 5, 65, 14);
        width += 68;
    }
    if (love) {
        frames.loveButton = QRect(width, 5, 19, 12);
        width += 19;
    }
    frames.totalWidth = width;
    return frames;
}

QRect frameInView(const QRect &frame, int thickness)
{
    return QRect(frame.x(), thickness - frame.y() - frame.height(), frame.width(), frame.height());
}

QRect stripFrame(const QRect &availableScreen, int totalWidth, int thickness)
{
    const int right = availableScreen.x() + availableScreen.width() - kRightMargin;
    return QRect(right - totalWidth, availableScreen.y(), totalWidth, thickness);
}

QPoint currentPosition(const QRect *strip, bool navigation, int thickness)
{
    const int x = strip ? strip->x() : 0;
    const int y = strip ? strip->y() + strip->height() : thickness;
    return QPoint(x + (navigation ? -3 : -22), y);
}

QRect navigationPanelFrame(const QPoint &hangPoint, const QSize &contents, bool navigation)
{
    const int height = contents.height() + 10;
    const int width = contents.width();
    const int x = hangPoint.x() - width + (navigation ? 106 : 72);
    return QRect(x, hangPoint.y(), width, height);
}

QRect followedPanelFrame(const QRect &panel, const QPoint &oldPoint, const QPoint &newPoint)
{
    return panel.translated(newPoint.x() - oldPoint.x(), 0);
}

} // namespace TuneControllerLayout
