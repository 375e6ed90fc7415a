#include "controller/gui/oxtunecontrollerview.h"

#include <QPainter>

OXTuneControllerView::OXTuneControllerView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    yourMouseHoverCheckTimer_.setSingleShot(true);
    connect(&yourMouseHoverCheckTimer_, &QTimer::timeout, this, &OXTuneControllerView::mouseCheckTimerFinished);
}

void OXTuneControllerView::setHoverHandlers(HoverSettingsSource settings, std::function<void()> finished)
{
    hoverSettings_ = std::move(settings);
    hoverFinished_ = std::move(finished);
}

void OXTuneControllerView::mouseEntered()
{
    if (!hoverSettings_)
        return;
    const HoverSettings settings = hoverSettings_();
    if (!settings.enabled)
        return;
    if (settings.seconds > 0) {
        mouseCheckTimerCancel();
        yourMouseHoverCheckTimer_.start(int(settings.seconds * 1000));
    } else {
        mouseCheckTimerFinished();
    }
}

void OXTuneControllerView::mouseExited()
{
    mouseCheckTimerCancel();
}

void OXTuneControllerView::mouseCheckTimerFinished()
{
    mouseCheckTimerCancel();
    if (hoverFinished_)
        hoverFinished_();
}

void OXTuneControllerView::mouseCheckTimerCancel()
{
    yourMouseHoverCheckTimer_.stop();
}

void OXTuneControllerView::enterEvent(QEnterEvent *event)
{
    QWidget::enterEvent(event);
    mouseEntered();
}

void OXTuneControllerView::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    mouseExited();
}

void OXTuneControllerView::paintEvent(QPaintEvent *)
{
    // The strip's ground: the window colour with a hairline below, so it reads as a bar on any
    // desktop.
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(0.25);
    painter.fillRect(QRect(0, height() - 1, width(), 1), line);
}
