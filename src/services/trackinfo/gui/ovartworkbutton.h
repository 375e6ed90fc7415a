#pragma once

#include <QAbstractButton>
#include <QImage>
#include <QPointer>

class QNetworkAccessManager;
#include <QNetworkReply>

// The track info panel's artwork. For a track without artwork it asks the store for the album's
// cover and shows it, only for display: nothing is written to the track. Any new image, such as
// the next track's, ends a search under way. Dragging the picture out offers PNG data and drops
// a JPEG file into the folder it lands in. Main thread.
class OVArtworkButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit OVArtworkButton(QWidget *parent = nullptr);

    // Shows the image; with download, searches the store for the album by that artist.
    bool setArtwork(const QImage &image, const QString &artist, const QString &album, bool download);
    // Ends a search or download under way, if any.
    bool cancelDownload();
    void setImage(const QImage &image);
    QImage image() const { return image_; }
    bool isDownloading() const { return reply_ != nullptr; }

    // Writes the picture as "yyyy-MM-dd HH-mm-ss.jpg" into an existing folder, atomically; the
    // path, or empty with the reason in `error`.
    QString saveImageInDirectory(const QString &folder, QString *error = nullptr) const;

    QSize sizeHint() const override { return {100, 100}; }

signals:
    // A picture from the store replaced the one given.
    void storeArtworkShown();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool startDownload(const QString &artist, const QString &album);
    void startArtworkDownload(const QString &address);
    void setImageKeepingDownload(const QImage &image);

    QImage image_;
    QNetworkAccessManager *network_;
    QPointer<QNetworkReply> reply_;
    QPoint pressedAt_;
    bool pressed_ = false;
};
