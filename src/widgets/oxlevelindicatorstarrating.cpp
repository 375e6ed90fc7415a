#include "widgets/oxlevelindicatorstarrating.h"

#include "widgets/drawnotificationcenter.h"
#include "widgets/templateicon.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

// Room left of the first star: a click there clears the rating.
constexpr int kLeadingSpace = 3;

QColor starColour(int color, const QWidget &widget)
{
    if (color == 1)
        return QColor(0xd9, 0x9a, 0x06);
    return widget.palette().color(QPalette::WindowText);
}

} // namespace

OXLevelIndicatorStarRating::OXLevelIndicatorStarRating(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    startNotificationObserver();
}

void OXLevelIndicatorStarRating::setValue(int value)
{
    const int rounded = std::clamp((value + kStep / 2) / kStep * kStep, 0, kStarCount * kStep);
    if (rounded == value_)
        return;
    value_ = rounded;
    update();
    emit valueChanged(value_);
}

void OXLevelIndicatorStarRating::setYourRatingTyp(int type)
{
    if (type == ratingTyp_)
        return;
    ratingTyp_ = type;
    update();
}

void OXLevelIndicatorStarRating::changeStarColor(int color)
{
    if (color == starColor_)
        return;
    starColor_ = color;
    update();
}

int OXLevelIndicatorStarRating::valueAt(int x) const
{
    if (x < kLeadingSpace)
        return 0;
    const int starWidth = std::max(1, (width() - kLeadingSpace) / kStarCount);
    const int star = std::clamp((x - kLeadingSpace) / starWidth + 1, 1, kStarCount);
    return star * kStep;
}

void OXLevelIndicatorStarRating::startNotificationObserver()
{
    connect(&DrawNotificationCenter::defaultCenter(), &DrawNotificationCenter::tuneControllerButtonDidDraw, this,
            [this](QWidget *button) {
                if (button && button->window() == window())
                    surfaceShouldSyncNoteWithNotification();
            });
}

void OXLevelIndicatorStarRating::surfaceShouldSyncNoteWithNotification()
{
    update();
}

void OXLevelIndicatorStarRating::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal starWidth = qreal(width() - kLeadingSpace) / kStarCount;
    const qreal side = std::min<qreal>(starWidth, height());
    const QColor filled = starColour(starColor_, *this);
    QColor empty = palette().color(QPalette::WindowText);
    empty.setAlphaF(0.45);
    const int stars = value_ / kStep;
    for (int i = 0; i < kStarCount; ++i) {
        const QRectF cell(kLeadingSpace + i * starWidth + (starWidth - side) / 2, (height() - side) / 2, side, side);
        if (i < stars) {
            const QString shape = ratingTyp_ == 2 ? QStringLiteral(":/widgets/star-outline.svg")
                                                  : QStringLiteral(":/widgets/star-full.svg");
            TemplateIcon::paint(painter, shape, cell, filled);
        } else {
            TemplateIcon::paint(painter, QStringLiteral(":/widgets/star-empty.svg"), cell, empty);
        }
    }
}

void OXLevelIndicatorStarRating::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    tracking_ = true;
    setValue(valueAt(event->position().toPoint().x()));
}

void OXLevelIndicatorStarRating::mouseMoveEvent(QMouseEvent *event)
{
    if (tracking_)
        setValue(valueAt(event->position().toPoint().x()));
}

void OXLevelIndicatorStarRating::mouseReleaseEvent(QMouseEvent *event)
{
    if (!tracking_ || event->button() != Qt::LeftButton)
        return;
    tracking_ = false;
    setValue(valueAt(event->position().toPoint().x()));
    emit activated(event->modifiers());
}
