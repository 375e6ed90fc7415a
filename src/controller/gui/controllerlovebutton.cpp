#include "controller/gui/controllerlovebutton.h"

#include "controller/gui/controllericons.h"
#include "widgets/templateicon.h"

#include <QMouseEvent>
#include <QPainter>

ControllerLoveButton::ControllerLoveButton(const QRect &frame, QWidget *parent) : QAbstractButton(parent)
{
    setGeometry(frame);
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QAbstractButton::clicked, this, [this] { emit clickedWithModifiers(releaseModifiers_); });
}

void ControllerLoveButton::setLovedImage(bool loved)
{
    if (loved_ == loved)
        return;
    loved_ = loved;
    update();
}

void ControllerLoveButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor ink = palette().color(isDown() ? QPalette::Highlight : QPalette::WindowText);
    TemplateIcon::paint(painter, ControllerIcons::path(loved_ ? "love-on" : "love-off"), QRectF(rect()), ink);
}

void ControllerLoveButton::mouseReleaseEvent(QMouseEvent *event)
{
    releaseModifiers_ = event->modifiers();
    QAbstractButton::mouseReleaseEvent(event);
}
