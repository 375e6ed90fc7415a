#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// Where every part of the status strip and its dependent windows goes. Pure arithmetic, no
// widgets, so each number is checked directly.
//
// Frames of the controller's parts are given as the strip's layout is designed: x from the
// strip's left edge, y from its bottom edge (the controller was drawn bottom up). frameInView()
// turns one into the top-down frame a widget takes.
namespace TuneControllerLayout {

// The height of the strip: the status bar's thickness.
inline constexpr int kThickness = 22;

struct Frames
{
    bool navigation = false;
    bool rating = false;
    bool love = false;
    // Empty for a part that is not shown.
    QRect previous, play, next, menu, stars, loveButton;
    // The width of the navigation part, over which hovering opens the track info window.
    int hoverWidth = 0;
    int totalWidth = 0;
};

// The parts laid out left to right for the three design settings.
Frames layout(bool navigation, bool rating, bool love);

// A bottom-up frame as a top-down frame inside a strip of the given height.
QRect frameInView(const QRect &frame, int thickness = kThickness);

// The strip on the screen: at the top edge of the available area, its right end kept clear of
// the corner by rightMargin so that the panel hanging from it stays on the screen.
inline constexpr int kRightMargin = 24;
QRect stripFrame(const QRect &availableScreen, int totalWidth, int thickness = kThickness);

// The point from which dependent windows hang: the strip's left edge moved 3 points left with
// navigation shown, 22 without, at the strip's bottom edge. With no strip the x starts at 0.
QPoint currentPosition(const QRect *strip, bool navigation, int thickness = kThickness);

// The navigation panel hanging from that point: its top at the point, its right edge 106
// points right of it with navigation shown, 72 without. The panel is 10 points taller than its
// contents.
QRect navigationPanelFrame(const QPoint &hangPoint, const QSize &contents, bool navigation);

// The panel after the strip moved: only x follows the hang point.
QRect followedPanelFrame(const QRect &panel, const QPoint &oldPoint, const QPoint &newPoint);

} // namespace TuneControllerLayout
