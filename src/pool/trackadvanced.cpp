#include "pool/trackadvanced.h"

#include "additions/textvalues.h"
#include "pool/tagtable.h"

#include <QHash>
#include <QImage>

#include <algorithm>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Accessor = std::function<QVariant(const ITunesTrackAdvanced &)>;

// One accessor for a reader of the track (a pass-through) or of the view itself.
template <class Result, class Class>
Accessor reader(Result (Class::*read)() const)
{
    return [read](const ITunesTrackAdvanced &advanced) {
        if constexpr (std::is_base_of_v<Class, ITunesFileTrack>)
            return QVariant::fromValue((advanced.yourTrack().*read)());
        else
            return QVariant::fromValue((advanced.*read)());
    };
}

using T = ITunesFileTrack;
using A = ITunesTrackAdvanced;

const std::vector<std::pair<QString, Accessor>> &accessors()
{
    static const std::vector<std::pair<QString, Accessor>> table = {
        {"name", reader(&T::name)},
        {"artist", reader(&T::artist)},
        {"album", reader(&T::album)},
        {"albumArtist", reader(&T::albumArtist)},
        {"composer", reader(&T::composer)},
        {"show", reader(&T::show)},
        {"genre", reader(&T::genre)},
        {"grouping", reader(&T::grouping)},
        {"description", reader(&A::description)},
        {"comment", reader(&T::comment)},
        {"lyrics", reader(&T::lyrics)},
        {"episodeID", reader(&T::episodeID)},
        {"sortName", reader(&T::sortName)},
        {"sortArtist", reader(&T::sortArtist)},
        {"sortAlbum", reader(&T::sortAlbum)},
        {"sortAlbumArtist", reader(&T::sortAlbumArtist)},
        {"sortComposer", reader(&T::sortComposer)},
        {"sortShow", reader(&T::sortShow)},
        {"EQ", reader(&T::EQ)},
        {"discCount", reader(&T::discCount)},
        {"trackCount", reader(&T::trackCount)},
        {"discNumber", reader(&T::discNumber)},
        {"trackNumber", reader(&T::trackNumber)},
        {"seasonNumber", reader(&T::seasonNumber)},
        {"episodeNumber", reader(&T::episodeNumber)},
        {"year", reader(&T::year)},
        {"playedCount", reader(&T::playedCount)},
        {"rating", reader(&T::rating)},
        {"albumRating", reader(&T::albumRating)},
        {"bitRate", reader(&T::bitRate)},
        {"bpm", reader(&T::bpm)},
        {"skippedCount", reader(&T::skippedCount)},
        {"volumeAdjustment", reader(&T::volumeAdjustment)},
        {"enabled", reader(&T::enabled)},
        {"bookmarkable", reader(&T::bookmarkable)},
        {"gapless", reader(&T::gapless)},
        {"unplayed", reader(&T::unplayed)},
        {"compilation", reader(&T::compilation)},
        {"dateAdded", reader(&T::dateAdded)},
        {"modificationDate", reader(&T::modificationDate)},
        {"playedDate", reader(&T::playedDate)},
        {"skippedDate", reader(&T::skippedDate)},
        {"duration", reader(&A::duration)},
        {"start", reader(&A::start)},
        {"finish", reader(&A::finish)},
        {"sampleRate", reader(&A::sampleRate)},
        {"size", reader(&A::size)},
        {"shufflable", reader(&A::shufflable)},
        {"podcast", reader(&A::podcast)},
        {"appleID", reader(&A::appleID)},
        {"purchasedBy", reader(&A::purchasedBy)},
        {"purchaseDate",
         [](const A &advanced) {
             const QDateTime date = advanced.purchaseDate();
             return date.isValid() ? QVariant(date) : QVariant();
         }},
        {"trackLocation", reader(&A::trackLocation)},
        {"trackFileName", reader(&A::trackFileName)},
        {"trackFilePathExtension", reader(&A::trackFilePathExtension)},
        {"lyricsParagraphsCount", reader(&A::lyricsParagraphsCount)},
        {"artworksCount", reader(&A::artworksCount)},
        {"artworkFront", reader(&A::artworkFront)},
        {"artworkBack", reader(&A::artworkBack)},
        {"artworkFrontHeight", reader(&A::artworkFrontHeight)},
        {"artworkFrontWidth", reader(&A::artworkFrontWidth)},
        {"artworkBackHeight", reader(&A::artworkBackHeight)},
        {"artworkBackWidth", reader(&A::artworkBackWidth)},
        {"artworkFrontDPI", reader(&A::artworkFrontDPI)},
        {"artworkBackDPI", reader(&A::artworkBackDPI)},
        {"playedNotToEnd", reader(&A::playedNotToEnd)},
        {"artworkFromTheITMS", reader(&A::artworkFromTheITMS)},
        {"ratingViaPC", reader(&A::ratingViaPC)},
        {"albumRatingViaPC", reader(&A::albumRatingViaPC)},
        {"loved", reader(&A::loved)},
        {"hasAdvisory", reader(&A::hasAdvisory)},
        {"isExplicit", reader(&A::isExplicit)},
        {"isClean", reader(&A::isClean)},
    };
    return table;
}

const QHash<QString, Accessor> &accessorsByName()
{
    static const QHash<QString, Accessor> byName = [] {
        QHash<QString, Accessor> hash;
        for (const auto &[name, accessor] : accessors())
            hash.insert(name, accessor);
        return hash;
    }();
    return byName;
}

// Resolution in dots per inch. A picture that names none is read as 72, as the player's own
// pictures are; a QImage then carries the toolkit's default, which is what is tested for.
double dotsPerInch(int dotsPerMeter, int defaultDotsPerMeter)
{
    if (dotsPerMeter <= 0 || dotsPerMeter == defaultDotsPerMeter)
        return 72;
    return qRound(dotsPerMeter * 0.0254); // files keep whole inches; metres round them
}

// The last path component split at its last dot; a leading dot starts a name, not an extension.
std::pair<QString, QString> baseNameAndExtension(const QString &path)
{
    const QString fileName = path.mid(path.lastIndexOf(u'/') + 1);
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot <= 0)
        return {fileName, QString()};
    return {fileName.left(dot), fileName.mid(dot + 1)};
}

// Counted as the platform's newline character set does, so "\r\n" is two breaks.
bool isNewline(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= 0x0A && u <= 0x0D) || u == 0x85 || u == 0x2028 || u == 0x2029;
}

} // namespace

ITunesTrackAdvanced::ITunesTrackAdvanced(const ITunesFileTrack &track, qint64 frontArtworkPosition,
                                         qint64 backArtworkPosition)
    : yourTrack_(track)
    , yourFrontArtworkPosition_(frontArtworkPosition)
    , yourBackArtworkPosition_(backArtworkPosition)
{
}

QVariant ITunesTrackAdvanced::valueForKey(const QString &keyPath) const
{
    const auto found = accessorsByName().constFind(keyPath);
    return found == accessorsByName().cend() ? QVariant() : (*found)(*this);
}

const QStringList &ITunesTrackAdvanced::keyPaths()
{
    static const QStringList names = [] {
        QStringList list;
        for (const auto &entry : accessors())
            list.append(entry.first);
        return list;
    }();
    return names;
}

QString ITunesTrackAdvanced::description() const
{
    if (yourTrack_.isNull())
        return {};
    return QStringLiteral("<%1 %2>").arg(yourTrack_.className(), yourTrack_.persistentID());
}

qint64 ITunesTrackAdvanced::duration() const
{
    return qint64(yourTrack_.duration());
}

qint64 ITunesTrackAdvanced::start() const
{
    return qint64(yourTrack_.start());
}

qint64 ITunesTrackAdvanced::finish() const
{
    return qint64(yourTrack_.finish());
}

double ITunesTrackAdvanced::sampleRate() const
{
    return double(yourTrack_.sampleRate() / 1000);
}

double ITunesTrackAdvanced::size() const
{
    return double(yourTrack_.size() / 1048576);
}

bool ITunesTrackAdvanced::shufflable() const
{
    return !yourTrack_.shufflable();
}

bool ITunesTrackAdvanced::podcast() const
{
    return !yourTrack_.isNull() && yourTrack_.mediaKind() == kMdP;
}

QString ITunesTrackAdvanced::appleID() const
{
    return pullTrackTag(yourTrack_, 102);
}

QString ITunesTrackAdvanced::purchasedBy() const
{
    return pullTrackTag(yourTrack_, 103);
}

QDateTime ITunesTrackAdvanced::purchaseDate() const
{
    return pullTrackObject(yourTrack_, 104, false).toDateTime();
}

qint64 ITunesTrackAdvanced::advisory() const
{
    if (yourTrack_.isNull())
        return -1;
    const QString rating = pullTrackTag(yourTrack_, 105);
    return rating.isEmpty() ? -1 : integerValue(rating);
}

bool ITunesTrackAdvanced::hasAdvisory() const
{
    return advisory() > 0;
}

bool ITunesTrackAdvanced::isExplicit() const
{
    const qint64 rating = advisory();
    return rating == 1 || rating == 4;
}

bool ITunesTrackAdvanced::isClean() const
{
    return advisory() == 2;
}

QString ITunesTrackAdvanced::trackLocation() const
{
    return yourTrack_.location();
}

QString ITunesTrackAdvanced::trackFileName() const
{
    return baseNameAndExtension(trackLocation()).first;
}

QString ITunesTrackAdvanced::trackFilePathExtension() const
{
    return baseNameAndExtension(trackLocation()).second;
}

qint64 ITunesTrackAdvanced::lyricsParagraphsCount() const
{
    const QString lyrics = yourTrack_.lyrics();
    if (lyrics.isEmpty())
        return 0;
    return std::count_if(lyrics.cbegin(), lyrics.cend(), isNewline) + 1;
}

qint64 ITunesTrackAdvanced::artworksCount() const
{
    return yourTrack_.artworks().size();
}

bool ITunesTrackAdvanced::artworkFront() const
{
    return yourFrontArtworkPosition_ >= 0 && yourFrontArtworkPosition_ < artworksCount();
}

bool ITunesTrackAdvanced::artworkBack() const
{
    return yourBackArtworkPosition_ >= 0 && yourBackArtworkPosition_ < artworksCount();
}

bool ITunesTrackAdvanced::artworkFromTheITMS() const
{
    const QList<ITunesArtwork> artworks = yourTrack_.artworks();
    return !artworks.isEmpty() && artworks.first().downloaded();
}

ITunesTrackAdvanced::ArtworkMeasure ITunesTrackAdvanced::measureArtwork(qint64 position) const
{
    const QList<ITunesArtwork> artworks = yourTrack_.artworks();
    if (position < 0 || position >= artworks.size())
        return {};
    const QImage image = QImage::fromData(artworks.at(position).rawData());
    if (image.isNull())
        return {};
    const QImage unspecified(1, 1, QImage::Format_RGB32);
    const double dpiX = dotsPerInch(image.dotsPerMeterX(), unspecified.dotsPerMeterX());
    const double dpiY = dotsPerInch(image.dotsPerMeterY(), unspecified.dotsPerMeterY());
    ArtworkMeasure measure;
    measure.width = image.width() * 72 / dpiX;
    measure.height = image.height() * 72 / dpiY;
    measure.dpi = image.width() * 72 / measure.width;
    return measure;
}

double ITunesTrackAdvanced::artworkFrontHeight() const
{
    return measureArtwork(yourFrontArtworkPosition_).height;
}

double ITunesTrackAdvanced::artworkFrontWidth() const
{
    return measureArtwork(yourFrontArtworkPosition_).width;
}

double ITunesTrackAdvanced::artworkFrontDPI() const
{
    return measureArtwork(yourFrontArtworkPosition_).dpi;
}

double ITunesTrackAdvanced::artworkBackHeight() const
{
    return measureArtwork(yourBackArtworkPosition_).height;
}

double ITunesTrackAdvanced::artworkBackWidth() const
{
    return measureArtwork(yourBackArtworkPosition_).width;
}

double ITunesTrackAdvanced::artworkBackDPI() const
{
    return measureArtwork(yourBackArtworkPosition_).dpi;
}

bool ITunesTrackAdvanced::playedNotToEnd() const
{
    return !yourTrack_.unplayed() && yourTrack_.playedCount() == 0;
}

bool ITunesTrackAdvanced::ratingViaPC() const
{
    return yourTrack_.ratingKind() == kRtC && yourTrack_.rating() > 0;
}

bool ITunesTrackAdvanced::albumRatingViaPC() const
{
    return yourTrack_.albumRatingKind() == kRtC && yourTrack_.albumRating() > 0;
}

bool ITunesTrackAdvanced::loved() const
{
    return yourTrack_.loved();
}
