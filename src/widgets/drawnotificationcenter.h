#pragma once

#include <QObject>

class QWidget;

// Tells who listens that a part of the status strip has just painted itself, so that its
// neighbours repaint in the same pass and the strip never shows half old, half new. Main
// thread; one per process.
class DrawNotificationCenter : public QObject
{
    Q_OBJECT

public:
    static DrawNotificationCenter &defaultCenter();

signals:
    // OXTuneControllerButtonDidDrawNotification: posted at the end of every button paint.
    void tuneControllerButtonDidDraw(QWidget *button);
};
