#include "services/radio/ovbeats1infoloader.h"

#include "additions/configuration.h"
#include "additions/ovurlconnection.h"
#include "services/radio/radioinfo.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringDecoder>

#include <algorithm>
#include <utility>

namespace {

constexpr int RequestTimeoutMs = 3000;
// A playlist larger than this is no media playlist; reading stops there.
constexpr qsizetype PlaylistLimitBytes = 4 * 1024 * 1024;
constexpr qsizetype ArtworkLimitBytes = 16 * 1024 * 1024;

QUrl playlistUrl()
{
    return QUrl(Configuration::text(QLatin1String(Configuration::RadioPlaylistURL)));
}

} // namespace

OVBeats1InfoLoader::OVBeats1InfoLoader(QObject *parent)
    : QObject(parent)
    , network_(new QNetworkAccessManager(this))
{
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { start(); });
}

OVBeats1InfoLoader::~OVBeats1InfoLoader()
{
    timer_.stop();
    stop();
}

bool OVBeats1InfoLoader::start()
{
    stop();
    cleanup();
    return startRequest(playlistUrl(), Action::Playlist);
}

bool OVBeats1InfoLoader::stop()
{
    if (!reply_)
        return false;
    ov_abandonReply(std::exchange(reply_, nullptr), this);
    cleanup();
    return true;
}

void OVBeats1InfoLoader::cleanup()
{
    timer_.stop();
    action_ = Action::None;
    received_.clear();
    clearInfo();
}

void OVBeats1InfoLoader::clearInfo()
{
    playlist_.clear();
    tracks_.clear();
    date_.reset();
    trackName_.clear();
    trackArtist_.clear();
    trackAlbum_.clear();
    artworkAddress_.clear();
    trackArtwork_ = QImage();
}

bool OVBeats1InfoLoader::startRequest(const QUrl &url, Action action, const QByteArray &range)
{
    if (!url.isValid() || url.isRelative())
        return false;
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setTransferTimeout(RequestTimeoutMs);
    if (!range.isEmpty())
        request.setRawHeader("Range", range);

    action_ = action;
    received_.clear();
    QNetworkReply *reply = network_->get(request);
    reply_ = reply;
    const qsizetype limit = action == Action::Track      ? RadioInfo::SegmentHeadBytes
                            : action == Action::Playlist ? PlaylistLimitBytes
                                                         : ArtworkLimitBytes;
    // Reads as the bytes come, so that a server ignoring the range, or sending without end,
    // costs no more than the limit.
    connect(reply, &QNetworkReply::readyRead, this, [this, reply, limit] {
        if (reply != reply_)
            return;
        received_.append(reply->read(limit - received_.size()));
        if (received_.size() < limit)
            return;
        reply_ = nullptr;
        ov_abandonReply(reply, this);
        QByteArray data = std::exchange(received_, {});
        // A truncated playlist or picture is no answer; a segment's head is all that's asked.
        if (action_ == Action::Track)
            handleReceivedData(data);
        else
            handleReceivedData(std::nullopt);
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply, limit] {
        if (reply != reply_)
            return;
        reply_ = nullptr;
        reply->deleteLater();
        if (reply->error() != QNetworkReply::NoError) {
            received_.clear();
            handleReceivedData(std::nullopt);
            return;
        }
        received_.append(reply->read(limit - received_.size()));
        handleReceivedData(std::exchange(received_, {}));
    });
    return true;
}

void OVBeats1InfoLoader::handleReceivedData(const std::optional<QByteArray> &data)
{
    bool handled = false;
    switch (action_) {
    case Action::Playlist:
        handled = handlePlaylist(data);
        break;
    case Action::Track:
        handled = handleTrack(data);
        break;
    case Action::Artwork:
        handled = handleArtwork(data);
        break;
    case Action::None:
        break;
    }
    if (!handled) {
        cleanup();
        postUpdate();
        startTimer();
    }
}

bool OVBeats1InfoLoader::handlePlaylist(const std::optional<QByteArray> &data)
{
    if (!data || data->isEmpty())
        return false;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(*data);
    if (decoder.hasError() || text.isEmpty())
        return false;
    playlist_ = text;
    tracks_ = RadioInfo::playlistTracksFromText(text);
    const QString track = RadioInfo::chooseTrack(tracks_);
    if (track.isEmpty())
        return false;
    date_ = RadioInfo::trackDateFromName(track);
    return startRequest(playlistUrl().resolved(QUrl(track)), Action::Track, RadioInfo::SegmentRangeHeader);
}

bool OVBeats1InfoLoader::handleTrack(const std::optional<QByteArray> &data)
{
    if (!data)
        return false;
    trackAlbum_ = RadioInfo::frameText("TALB", *data);
    trackArtist_ = RadioInfo::frameText("TPE1", *data);
    trackName_ = RadioInfo::frameText("TIT2", *data);
    artworkAddress_ = RadioInfo::artworkWebAddress(*data);
    // A show without an artwork address counts as a failure, its texts included.
    if (artworkAddress_.isEmpty())
        return false;
    return startRequest(QUrl(artworkAddress_), Action::Artwork);
}

bool OVBeats1InfoLoader::handleArtwork(const std::optional<QByteArray> &data)
{
    // A picture that can't be had leaves the texts standing.
    trackArtwork_ = data ? QImage::fromData(*data) : QImage();
    action_ = Action::Artwork;
    postUpdate();
    return startTimer();
}

double OVBeats1InfoLoader::playlistLoadingTimeInterval() const
{
    return RadioInfo::loadingTimeInterval(date_, RadioInfo::playlistTargetDuration(playlist_),
                                          QDateTime::currentDateTimeUtc());
}

void OVBeats1InfoLoader::postUpdate()
{
    // Listeners hear of it once the event loop is free, as a notification posted when idle.
    QMetaObject::invokeMethod(this, &OVBeats1InfoLoader::updated, Qt::QueuedConnection);
}

bool OVBeats1InfoLoader::startTimer()
{
    timer_.stop();
    const double wait = playlistLoadingTimeInterval();
    const double seconds = wait > 0 ? wait : RadioInfo::DefaultRoundWaitSeconds;
    // Far-off dates would overflow the timer; a day is as long as any wait needs to be.
    timer_.start(int(std::min(seconds, 86400.0) * 1000.0));
    return true;
}
