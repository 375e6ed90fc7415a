#include "services/trackinfo/gui/ovartworkbutton.h"

#include "additions/filewriting.h"
#include "additions/ovurlconnection.h"
#include "services/trackinfo/trackinfotext.h"

#include <QApplication>
#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QDrag>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPainter>
#include <QPainterPath>
#include <QTemporaryDir>

#include <utility>

namespace {

constexpr int RequestTimeoutMs = 10000;

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, 100))
        return {};
    return bytes;
}

} // namespace

OVArtworkButton::OVArtworkButton(QWidget *parent)
    : QAbstractButton(parent)
    , network_(new QNetworkAccessManager(this))
{
    setCursor(Qt::OpenHandCursor);
    setToolTip(tr("Drag the artwork into a folder to save it"));
}

bool OVArtworkButton::setArtwork(const QImage &image, const QString &artist, const QString &album, bool download)
{
    setImage(image);
    if (download)
        startDownload(artist, album);
    return true;
}

bool OVArtworkButton::cancelDownload()
{
    if (!reply_)
        return false;
    ov_abandonReply(std::exchange(reply_, nullptr), this);
    return true;
}

void OVArtworkButton::setImage(const QImage &image)
{
    cancelDownload();
    setImageKeepingDownload(image);
}

void OVArtworkButton::setImageKeepingDownload(const QImage &image)
{
    image_ = image;
    update();
}

bool OVArtworkButton::startDownload(const QString &artist, const QString &album)
{
    cancelDownload();
    const QUrl url = TrackInfoText::storeSearchUrl(artist, album);
    if (!url.isValid())
        return false;
    QNetworkRequest request(url);
    request.setTransferTimeout(RequestTimeoutMs);
    QNetworkReply *reply = network_->get(request);
    reply_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply, artist, album] {
        reply->deleteLater();
        if (reply != reply_)
            return;
        reply_ = nullptr;
        if (reply->error() != QNetworkReply::NoError)
            return; // the placeholder stays
        const QString address = TrackInfoText::storeArtworkAddressFromAnswer(artist, album, reply->readAll());
        if (!address.isEmpty())
            startArtworkDownload(address);
    });
    return true;
}

void OVArtworkButton::startArtworkDownload(const QString &address)
{
    cancelDownload();
    QNetworkRequest request{QUrl(address)};
    request.setTransferTimeout(RequestTimeoutMs);
    QNetworkReply *reply = network_->get(request);
    reply_ = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        if (reply != reply_)
            return;
        reply_ = nullptr;
        const QImage picture = reply->error() == QNetworkReply::NoError ? QImage::fromData(reply->readAll()) : QImage();
        // A cover that can't be had leaves the placeholder the panel gave.
        if (picture.isNull())
            return;
        setImage(picture);
        emit storeArtworkShown();
    });
}

QString OVArtworkButton::saveImageInDirectory(const QString &folder, QString *error) const
{
    auto fail = [error](const QString &reason) {
        if (error)
            *error = reason;
        return QString();
    };
    if (image_.isNull())
        return fail(tr("There is no artwork to save."));
    if (!QFileInfo(folder).isDir())
        return fail(tr("The folder \"%1\" doesn't exist; drop the artwork into an existing folder.").arg(folder));
    const QByteArray bytes = encoded(image_.convertToFormat(QImage::Format_RGB32), "JPG");
    if (bytes.isEmpty())
        return fail(tr("The artwork couldn't be converted to JPEG."));
    const QString path = QDir(folder).filePath(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"))
                                               + QStringLiteral(".jpg"));
    if (!writeFileAtomically(path, bytes))
        return fail(tr("The artwork couldn't be saved to \"%1\". Check that the folder is writable and not full.").arg(path));
    return path;
}

void OVArtworkButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(rect()), 4, 4);
    painter.setClipPath(clip);
    if (image_.isNull()) {
        painter.fillRect(rect(), QColor(60, 60, 64));
        return;
    }
    const QSize scaled = image_.size().scaled(size(), Qt::KeepAspectRatio);
    const QRect target(QPoint((width() - scaled.width()) / 2, (height() - scaled.height()) / 2), scaled);
    painter.drawImage(target, image_);
}

void OVArtworkButton::mousePressEvent(QMouseEvent *event)
{
    // A press does nothing by itself: it may start a drag or end as a click.
    pressed_ = event->button() == Qt::LeftButton;
    pressedAt_ = event->position().toPoint();
}

void OVArtworkButton::mouseMoveEvent(QMouseEvent *event)
{
    if (!pressed_ || image_.isNull()
        || (event->position().toPoint() - pressedAt_).manhattanLength() < QApplication::startDragDistance())
        return;
    pressed_ = false;

    // The file is written when the drag starts, into a private folder, and offered by address;
    // a file manager copies it where the drop lands.
    auto *folder = new QTemporaryDir;
    const QString path = folder->isValid() ? saveImageInDirectory(folder->path()) : QString();
    auto *mime = new QMimeData;
    mime->setData(QStringLiteral("image/png"), encoded(image_, "PNG"));
    mime->setImageData(image_);
    if (!path.isEmpty())
        mime->setUrls({QUrl::fromLocalFile(path)});
    auto *drag = new QDrag(this);
    drag->setMimeData(mime);
    drag->setPixmap(QPixmap::fromImage(image_.scaled(64, 64, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    drag->exec(Qt::CopyAction);
    // The target has read the file by the time the drag ends.
    delete folder;
}

void OVArtworkButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (pressed_ && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        click();
    pressed_ = false;
}
