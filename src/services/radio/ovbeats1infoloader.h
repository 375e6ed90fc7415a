#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <optional>

class QNetworkAccessManager;
#include <QNetworkReply>

// Finds out what the live radio station is playing, since the player only knows the stream.
// Each round fetches the station's HLS media playlist ("RadioPlaylistURL"), picks a recent
// segment, fetches its first 8193 bytes, reads the ID3 frames for title, artist and album and
// the artwork address out of them, downloads the artwork and emits updated(). It then waits
// until the chosen segment should have ended (5 s after a failure or without a date) and starts
// over, until stopped or destroyed. A failure empties what was learnt and emits updated() all
// the same: listeners learn of it by finding no values. Main thread only.
class OVBeats1InfoLoader : public QObject
{
    Q_OBJECT
public:
    enum class Action { None = 0, Playlist = 1, Track = 2, Artwork = 3 };

    explicit OVBeats1InfoLoader(QObject *parent = nullptr);
    ~OVBeats1InfoLoader() override;

    // Stops what runs and begins a round; false if the playlist request couldn't be made.
    bool start();
    // Ends a transfer under way and forgets what was learnt; false if none ran. A pending
    // wait is left alone.
    bool stop();
    // Ends the wait, the transfer's bookkeeping and what was learnt.
    void cleanup();

    // Empty when unknown.
    QString infoTrackName() const { return trackName_; }
    QString infoTrackArtist() const { return trackArtist_; }
    QString infoTrackAlbum() const { return trackAlbum_; }
    QImage infoTrackArtwork() const { return trackArtwork_; }
    QString artworkWebAddress() const { return artworkAddress_; }
    std::optional<QDateTime> trackDate() const { return date_; }

    Action loadingAction() const { return action_; }
    bool isWaiting() const { return timer_.isActive(); }
    // The wait the next round would take, in seconds (0: the default).
    double playlistLoadingTimeInterval() const;

signals:
    // A round ended, with values or (after a failure) without.
    void updated();

private:
    bool startRequest(const QUrl &url, Action action, const QByteArray &range = {});
    void handleReceivedData(const std::optional<QByteArray> &data);
    bool handlePlaylist(const std::optional<QByteArray> &data);
    bool handleTrack(const std::optional<QByteArray> &data);
    bool handleArtwork(const std::optional<QByteArray> &data);
    void clearInfo();
    void postUpdate();
    bool startTimer();

    QNetworkAccessManager *network_;
    QPointer<QNetworkReply> reply_;
    QByteArray received_;
    Action action_ = Action::None;
    QTimer timer_;

    QString playlist_;
    QStringList tracks_;
    std::optional<QDateTime> date_;
    QString trackName_, trackArtist_, trackAlbum_, artworkAddress_;
    QImage trackArtwork_;
};
