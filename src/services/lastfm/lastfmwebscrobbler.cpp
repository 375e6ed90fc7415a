#include "services/lastfm/lastfmwebscrobbler.h"

#include "additions/configuration.h"
#include "additions/exceptionsink.h"
#include "additions/ovurlconnection.h"
#include "additions/urlparameters.h"
#include "orvaneversion.h"
#include "player/apptodo.h"
#include "services/keychain/ixkeychainitem.h"

#include <QDateTime>
#include <QNetworkRequest>
#include <QUrlQuery>

namespace {

constexpr int kSessionKeyLength = 32;
// The service's code for a session key it no longer accepts.
constexpr qint64 kInvalidSessionKey = 9;
const QString kClassName = QStringLiteral("LastFMScrobbler");

// Text as the service may take it: whatever the player gave, as valid UTF-8.
QString validText(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

void report(const QString &reason)
{
    ExceptionSink::logException(OVException(kClassName, reason));
}

template <class Body>
void guarded(Body body)
{
    try {
        body();
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
    }
}

} // namespace

QString LastFMWebScrobbler::keychainService()
{
    return QStringLiteral("Last.fm with " ORVANE_NAME);
}

QString LastFMWebScrobbler::keychainAccount()
{
    // The program's display name; the desktop program and orvane-cli share the item.
    return QStringLiteral(ORVANE_NAME);
}

LastFMWebScrobbler::LastFMWebScrobbler(Environment environment, QObject *parent)
    : QObject(parent), environment_(std::move(environment))
{
    const QString player = environment_.bundleIdentifier.isEmpty() ? AppToDo::iTunesBundleIdentifier()
                                                                   : environment_.bundleIdentifier;
    yourTunes_ = ITunesApplication::initWithBundleIdentifier(player);
    yourTunes_.setDelegate(this);
    yourCurrentTrack_ = yourTunes_.currentTrack();

    yourScrobbleTimer_.setSingleShot(true);
    connect(&yourScrobbleTimer_, &QTimer::timeout, this, &LastFMWebScrobbler::scrobbleTrackNow);

    // A stored key that cannot be a session key is of no use to anyone: it goes.
    if (const std::unique_ptr<IXKeychainItemGeneric> item = findKeychainItem()) {
        const std::optional<QString> stored = item->getPassword();
        if (stored && stored->size() == kSessionKeyLength) {
            yourScrobbleSessionKey_ = *stored;
            isSessionKeyValid();
        } else {
            item->removeFromKeychain();
        }
    }
}

std::shared_ptr<LastFMWebScrobbler> LastFMWebScrobbler::create(Environment environment)
{
    return std::shared_ptr<LastFMWebScrobbler>(new LastFMWebScrobbler(std::move(environment)),
                                               [](LastFMWebScrobbler *scrobbler) { scrobbler->deleteLater(); });
}

LastFMWebScrobbler::~LastFMWebScrobbler()
{
    yourTunes_.setDelegate(nullptr);
}

std::unique_ptr<IXKeychainItemGeneric> LastFMWebScrobbler::findKeychainItem() const
{
    return IXKeychainItemGeneric::findFirstGenericKeychainItemForService(keychainService(), keychainAccount(),
                                                                         environment_.keychain);
}

qint64 LastFMWebScrobbler::now() const
{
    return environment_.clock ? environment_.clock() : QDateTime::currentSecsSinceEpoch();
}

// --- The player's events.

void LastFMWebScrobbler::scrobbleTrack()
{
    // A burst of track changes gives one snapshot, after the last of them.
    scrobbleTimerCancel();
    yourScrobbleTimer_.start(environment_.snapshotDelayMs);
}

void LastFMWebScrobbler::scrobbleTimerCancel()
{
    yourScrobbleTimer_.stop();
}

void LastFMWebScrobbler::scrobbleTrackNow()
{
    const auto alive = keepAlive();
    guarded([this] {
        scrobbleTimerCancel();
        if (!AppToDo::isITunesRunning() || yourTunes_.playerState() == kPSS)
            return;
        // The track that has ended has its chance first.
        if (yourTrackInfo_)
            scrobbleSubmission();
        if (yourTunes_.playerState() == kPSp)
            return;

        TrackInfo info;
        info.artist = validText(yourCurrentTrack_.artist());
        if (info.artist.isEmpty()) {
            yourTrackInfo_.reset();
            return;
        }
        info.name = validText(yourCurrentTrack_.name());
        if (info.name.isEmpty()) {
            yourTrackInfo_.reset();
            return;
        }
        info.track = yourCurrentTrack_.get();
        info.album = validText(yourCurrentTrack_.album());
        info.albumArtist = validText(yourCurrentTrack_.albumArtist());
        info.duration = QString::asprintf("%.0f", yourCurrentTrack_.duration());
        info.trackNumber = QString::number(yourCurrentTrack_.trackNumber());
        info.startTime = QString::number(now());
        info.rating = QString::number(yourCurrentTrack_.rating());
        yourTrackInfo_ = info;
        scrobbleNowPlayingNotification();
    });
}

LastFMParameters LastFMWebScrobbler::trackParameters(const TrackInfo &info, const QString &suffix) const
{
    LastFMParameters parameters{{"track" + suffix, info.name}, {"artist" + suffix, info.artist}};
    if (info.trackNumber.toLongLong() > 0)
        parameters.insert("trackNumber" + suffix, info.trackNumber);
    if (info.duration.toLongLong() > 0)
        parameters.insert("duration" + suffix, info.duration);
    if (!info.albumArtist.isEmpty() && info.albumArtist != info.artist)
        parameters.insert("albumArtist" + suffix, info.albumArtist);
    if (!info.album.isEmpty())
        parameters.insert("album" + suffix, info.album);
    return parameters;
}

void LastFMWebScrobbler::scrobbleSubmission()
{
    const auto alive = keepAlive();
    if (!isSessionKeyValid() || !yourTrackInfo_)
        return;
    const TrackInfo info = *yourTrackInfo_;
    const qint64 duration = info.duration.toLongLong();
    if (duration < kMinimumDuration)
        return;
    // The share heard, in percent, with three points of grace for the snapshot's delay.
    const qint64 elapsed = now() - info.startTime.toLongLong();
    const double played = double(elapsed) / double(duration) * 100.0 + 3.0;
    if (double(float(yourPreferences_.prefScrobblePercentValue())) > played)
        return;

    LastFMParameters parameters = trackParameters(info, QStringLiteral("[0]"));
    parameters.insert(QStringLiteral("timestamp[0]"), info.startTime);
    const std::optional<LastFMReply> reply = executeLastFMAction(QStringLiteral("track.scrobble"), parameters);
    // The flag goes with every submission: the playing track's, which after a track change is
    // already the next one.
    syncLovedFlag();
    if (!reply)
        return;
    yourTrackInfo_.reset();
    if (!reply->isRequestXmlOk())
        handleFailedReply(QStringLiteral("track.scrobble"), *reply, true);
}

void LastFMWebScrobbler::scrobbleClean()
{
    yourTrackInfo_.reset();
}

void LastFMWebScrobbler::scrobbleNowPlayingNotification()
{
    const auto alive = keepAlive();
    if (!yourPreferences_.prefNowPlayingNotification() || !isSessionKeyValid() || !yourTrackInfo_)
        return;
    const std::optional<LastFMReply> reply =
        executeLastFMAction(QStringLiteral("track.updateNowPlaying"), trackParameters(*yourTrackInfo_, QString()));
    syncLovedFlag();
    if (reply && !reply->isRequestXmlOk())
        handleFailedReply(QStringLiteral("track.updateNowPlaying"), *reply, true);
}

// --- Loved flag.

void LastFMWebScrobbler::syncLovedFlag()
{
    if (yourCurrentTrack_.loved())
        loveCurrentTrack();
    else
        unloveCurrentTrack();
}

void LastFMWebScrobbler::loveCurrentTrack()
{
    loveTrackWithName(validText(yourCurrentTrack_.name()), validText(yourCurrentTrack_.artist()));
}

void LastFMWebScrobbler::unloveCurrentTrack()
{
    unloveTrackWithName(validText(yourCurrentTrack_.name()), validText(yourCurrentTrack_.artist()));
}

void LastFMWebScrobbler::loveTrackWithName(const QString &name, const QString &artist)
{
    sendLove(QStringLiteral("track.love"), name, artist);
}

void LastFMWebScrobbler::unloveTrackWithName(const QString &name, const QString &artist)
{
    sendLove(QStringLiteral("track.unlove"), name, artist);
}

void LastFMWebScrobbler::sendLove(const QString &method, const QString &name, const QString &artist)
{
    const auto alive = keepAlive();
    if (!isSessionKeyValid() || name.isEmpty() || artist.isEmpty())
        return;
    const std::optional<LastFMReply> reply = executeLastFMAction(method, {{"track", name}, {"artist", artist}});
    if (reply && !reply->isRequestXmlOk())
        handleFailedReply(method, *reply, true);
}

void LastFMWebScrobbler::handleFailedReply(const QString &method, const LastFMReply &reply, bool sessionCall)
{
    report(QStringLiteral("%1: %2 | %3")
               .arg(method)
               .arg(reply.errorCode())
               .arg(reply.errorText().value_or(QStringLiteral("(null)"))));
    if (sessionCall && reply.errorCode() == kInvalidSessionKey)
        resetSessionInfos();
}

// --- Session.

bool LastFMWebScrobbler::isSessionKeyValid() const
{
    const bool valid = yourScrobbleSessionKey_.size() == kSessionKeyLength;
    const int state = valid ? Connected : prefUserName().isEmpty() ? NotConnected : AuthorisationNeeded;
    if (state != yourScrobbleState_) {
        yourScrobbleState_ = state;
        emit const_cast<LastFMWebScrobbler *>(this)->yourScrobbleStateChanged(state);
    }
    return valid;
}

void LastFMWebScrobbler::resetSessionInfos()
{
    const auto alive = keepAlive();
    if (const std::unique_ptr<IXKeychainItemGeneric> item = findKeychainItem())
        item->removeFromKeychain();
    yourScrobbleToken_.clear();
    yourScrobbleSessionKey_.clear();
    isSessionKeyValid();
}

// --- Authorisation.

QString LastFMWebScrobbler::fetchAuthToken()
{
    const auto alive = keepAlive();
    const QString method = QStringLiteral("auth.getToken");
    const std::optional<LastFMReply> reply =
        executeLastFMAction(method, {{"api_key", Configuration::text(Configuration::LastfmApiKey)}});
    if (!reply)
        return {};
    if (!reply->isRequestXmlOk()) {
        handleFailedReply(method, *reply, false);
        return {};
    }
    const QString token = reply->text(QStringLiteral("token")).value_or(QString());
    if (token.size() != kSessionKeyLength)
        return {};
    yourScrobbleToken_ = token;
    return token;
}

QUrl LastFMWebScrobbler::fetchAuthURL()
{
    const QString token = fetchAuthToken();
    if (token.isEmpty())
        return {};
    QUrl address(Configuration::text(Configuration::LastfmAuthURL).trimmed());
    QUrlQuery query(address);
    query.addQueryItem(QStringLiteral("api_key"), Configuration::text(Configuration::LastfmApiKey));
    query.addQueryItem(QStringLiteral("token"), token);
    address.setQuery(query);
    return address;
}

bool LastFMWebScrobbler::fetchNewSessionKey()
{
    const auto alive = keepAlive();
    if (yourScrobbleToken_.isEmpty())
        return false;
    const QString method = QStringLiteral("auth.getSession");
    const std::optional<LastFMReply> reply = executeLastFMAction(
        method, {{"token", yourScrobbleToken_}, {"api_key", Configuration::text(Configuration::LastfmApiKey)}});
    // Whatever the answer, the old session is over.
    resetSessionInfos();
    if (!reply)
        return false;
    if (!reply->isRequestXmlOk()) {
        handleFailedReply(method, *reply, false);
        return false;
    }
    const QString key = reply->text(QStringLiteral("session/key")).value_or(QString());
    if (key.size() != kSessionKeyLength)
        return false;
    yourScrobbleSessionKey_ = key;
    isSessionKeyValid();
    // The session holds for this run even if the keyring refuses it.
    if (const std::unique_ptr<IXKeychainItemGeneric> item = findKeychainItem())
        item->editPassword(key);
    else
        IXKeychainItemGeneric::genericKeychainItemWithService(keychainService(), keychainAccount(), key,
                                                             environment_.keychain);
    return true;
}

// --- The service.

std::optional<LastFMReply> LastFMWebScrobbler::executeLastFMAction(const QString &method,
                                                                   const LastFMParameters &parameters)
{
    const auto alive = keepAlive();
    const QString apiKey = Configuration::text(Configuration::LastfmApiKey);
    const QString secret = Configuration::text(Configuration::LastfmApiSecret);
    // Without the program's key the service cannot be asked at all.
    if (apiKey.isEmpty() || secret.isEmpty())
        return std::nullopt;

    LastFMParameters signedParameters = parameters;
    signedParameters.insert(QStringLiteral("method"), method);
    signedParameters.insert(QStringLiteral("api_key"), apiKey);
    if (!yourScrobbleSessionKey_.isEmpty())
        signedParameters.insert(QStringLiteral("sk"), yourScrobbleSessionKey_);
    signedParameters.insert(QStringLiteral("api_sig"), LastFMCall::signature(signedParameters, secret));
    const QByteArray body = LastFMCall::body(signedParameters);

    QNetworkRequest request(QUrl(Configuration::baseURL(Configuration::LastfmBaseURL) + QStringLiteral("/2.0/")));
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setTransferTimeout(kRequestTimeoutMs);
    const QString userAgent = QStringLiteral(ORVANE_NAME " ") + QStringLiteral(ORVANE_SHORT_VERSION);
    request.setRawHeader("User-Agent", escapeTextWithEncoding(userAgent, TextEncoding::UTF8).toUtf8());
    request.setRawHeader("Content-Length", QByteArray::number(body.size()));
    request.setRawHeader("Content-Type", "application/x-www-form-urlencoded");
    return LastFMReply::parse(ov_sendSynchronousRequest(request, "POST", body));
}

void LastFMWebScrobbler::eventDidFail(const QString &className, const QString &operation, const BridgeError &withError)
{
    ExceptionSink::logException(OVException(withError.domain, kClassName,
                                            {{QStringLiteral("class"), className},
                                             {QStringLiteral("operation"), operation},
                                             {QStringLiteral("message"), withError.message}}));
}
