#pragma once

#include <QPointer>
#include <QWidget>

class QScreen;

// The status strip: a small frameless window at the top edge of the primary screen that holds
// the controller's view at the length the controller asks for. It stays above other windows
// and never takes the keyboard focus from the user's window (on X11 and under XWayland it is
// left alone by the window manager). Main thread; owned by the controller.
class StatusStripWindow : public QWidget
{
    Q_OBJECT

public:
    explicit StatusStripWindow(QWidget *parent = nullptr);

    // Whether there is a screen to show on; without one the controller is never visible.
    static bool hasScreen();

    // Puts the view in (taking it over) at the given length and shows the strip; a null view
    // or a length of 0 leaves the strip empty and hidden. The view shown before is deleted.
    void setContent(QWidget *view, int length);
    QWidget *content() const { return content_; }

signals:
    // The strip moved or changed its length: windows that hang from it follow.
    void stripMoved();

private:
    void placeOnScreen();

    QPointer<QWidget> content_;
    int length_ = 0;
};
