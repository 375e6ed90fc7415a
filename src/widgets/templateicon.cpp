#include "widgets/templateicon.h"

#include <QHash>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <memory>

// The stars live in this static library's resource, which the linker would drop unless
// something refers to it. Outside any namespace, as the registration function is global.
static void registerWidgetIcons()
{
    static const bool registered = [] {
        Q_INIT_RESOURCE(widgets);
        return true;
    }();
    Q_UNUSED(registered);
}

namespace {

QSvgRenderer *renderer(const QString &resource)
{
    registerWidgetIcons();
    // Parsed once per resource: the strip repaints often. A resource that cannot be read is
    // kept as null, so it is not parsed again either.
    static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
    auto found = renderers.constFind(resource);
    if (found != renderers.constEnd())
        return found->get();
    auto made = std::make_shared<QSvgRenderer>(resource);
    if (!made->isValid())
        made.reset();
    renderers.insert(resource, made);
    return made.get();
}

} // namespace

namespace TemplateIcon {

QPixmap pixmap(const QString &resource, const QSizeF &size, qreal devicePixelRatio, const QColor &color)
{
    QSvgRenderer *svg = renderer(resource);
    if (!svg || size.isEmpty())
        return {};
    const QSize pixels(int(std::ceil(size.width() * devicePixelRatio)), int(std::ceil(size.height() * devicePixelRatio)));
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        svg->render(&painter, QRectF(QPointF(0, 0), QSizeF(pixels)));
        if (color.isValid()) {
            // Keep the shape's coverage, take the colour.
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(image.rect(), color);
        }
    }
    QPixmap result = QPixmap::fromImage(image);
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

void paint(QPainter &painter, const QString &resource, const QRectF &target, const QColor &color)
{
    const qreal ratio = painter.device() ? painter.device()->devicePixelRatioF() : 1.0;
    const QPixmap drawn = pixmap(resource, target.size(), ratio, color);
    if (!drawn.isNull())
        painter.drawPixmap(target.topLeft(), drawn);
}

} // namespace TemplateIcon
