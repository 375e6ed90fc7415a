#pragma once

#include "controller/controllerrules.h"

#include <QAbstractButton>
#include <QTimer>

#include <functional>

// A transport or menu button of the status strip. One gesture is either a click (released
// within a second) or a hold (the press action starts at one second); what either sends is
// decided by ControllerButtonGesture and carried out by the performer the controller gives.
// Never takes the focus. Main thread; a child of the controller view.
class OXTuneControllerButton : public QAbstractButton
{
    Q_OBJECT

public:
    using Performer = std::function<void(ControllerAction)>;

    OXTuneControllerButton(const QRect &frame, ControllerButtonType controllerTyp, Performer performer,
                           QWidget *parent = nullptr);

    ControllerButtonType controllerTyp() const { return gesture_.type(); }
    // Only the play button has states: 2 shows pause, 3 stop, any other play.
    void toggleState(int state);
    // The icon shown now (a resource path), for the play button's state.
    QString imageNormal() const { return imageNormal_; }
    bool isHoldTimerRunning() const { return pressedCheckTimer_.isActive(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *) override {}

private:
    void doAsLongAsButtonIsDown();
    void perform(const QList<ControllerAction> &actions, bool swallowClickFailure);

    ControllerButtonGesture gesture_;
    Performer performer_;
    QString imageNormal_;
    QTimer pressedCheckTimer_;
    bool down_ = false;
};
