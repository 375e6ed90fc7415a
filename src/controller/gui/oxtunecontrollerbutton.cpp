#include "controller/gui/oxtunecontrollerbutton.h"

#include "controller/gui/controllericons.h"
#include "widgets/drawnotificationcenter.h"
#include "widgets/templateicon.h"

#include <QMouseEvent>
#include <QPainter>

OXTuneControllerButton::OXTuneControllerButton(const QRect &frame, ControllerButtonType controllerTyp,
                                               Performer performer, QWidget *parent)
    : QAbstractButton(parent), gesture_(controllerTyp), performer_(std::move(performer))
{
    setGeometry(frame);
    setFocusPolicy(Qt::NoFocus);
    pressedCheckTimer_.setSingleShot(true);
    pressedCheckTimer_.setInterval(ControllerButtonGesture::kHoldMilliseconds);
    connect(&pressedCheckTimer_, &QTimer::timeout, this, &OXTuneControllerButton::doAsLongAsButtonIsDown);
    switch (controllerTyp) {
    case ControllerButtonType::Play:
        toggleState(1);
        break;
    case ControllerButtonType::Next:
        imageNormal_ = ControllerIcons::path("next");
        break;
    case ControllerButtonType::Previous:
        imageNormal_ = ControllerIcons::path("previous");
        break;
    case ControllerButtonType::Menu:
        imageNormal_ = ControllerIcons::path("menu");
        break;
    }
}

void OXTuneControllerButton::toggleState(int state)
{
    if (gesture_.type() != ControllerButtonType::Play)
        return;
    imageNormal_ = ControllerIcons::path(state == 2 ? "pause" : state == 3 ? "stop" : "play");
    update();
}

void OXTuneControllerButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor ink = palette().color(QPalette::WindowText);
    if (down_) {
        // Pressed: the shape shows in the highlight colour, as a menu bar item does.
        ink = palette().color(QPalette::Highlight);
    }
    TemplateIcon::paint(painter, imageNormal_, QRectF(rect()), ink);
    painter.end();
    emit DrawNotificationCenter::defaultCenter().tuneControllerButtonDidDraw(this);
}

void OXTuneControllerButton::mousePressEvent(QMouseEvent *event)
{
    // The base class's handling is left out: a click here is the gesture below, not a
    // QAbstractButton click.
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    down_ = true;
    update();
    gesture_.mouseDown();
    pressedCheckTimer_.start();
}

void OXTuneControllerButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !down_) {
        event->ignore();
        return;
    }
    down_ = false;
    update();
    pressedCheckTimer_.stop();
    // A release outside the button counts as no click, as one the system took elsewhere.
    const int clickCount = rect().contains(event->position().toPoint()) ? 1 : 0;
    perform(gesture_.mouseUp(clickCount), true);
}

void OXTuneControllerButton::doAsLongAsButtonIsDown()
{
    perform(gesture_.holdTimerFired(), false);
}

void OXTuneControllerButton::perform(const QList<ControllerAction> &actions, bool swallowClickFailure)
{
    if (!performer_)
        return;
    // What the player answers may rebuild the strip, and this button with it: the copy keeps
    // resume going out.
    const Performer performer = performer_;
    for (const ControllerAction action : actions) {
        if (!swallowClickFailure || action == ControllerAction::Resume) {
            performer(action);
            continue;
        }
        // A failing click action must not keep resume from going out: the player would stay
        // in fast forward.
        try {
            performer(action);
        } catch (...) {
        }
    }
}
