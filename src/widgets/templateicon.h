#pragma once

#include <QColor>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

// Monochrome icons drawn as SVG ("template" images): only their shape counts, and they take the
// colour of the text around them, so they read on a light or a dark strip alike. Rendered at
// the device's pixel ratio, so they stay crisp at 1x and 2x. Main thread.
namespace TemplateIcon {

// The SVG resource drawn in the given colour at size (device-independent pixels) and ratio;
// a null pixmap when the resource cannot be read.
QPixmap pixmap(const QString &resource, const QSizeF &size, qreal devicePixelRatio, const QColor &color);

// Draws the resource into the rectangle in the colour; an SVG with colours of its own is drawn
// as it is when color is invalid.
void paint(QPainter &painter, const QString &resource, const QRectF &target, const QColor &color);

} // namespace TemplateIcon
