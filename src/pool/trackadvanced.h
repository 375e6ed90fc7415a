#pragma once

#include "player/itunes.h"

#include <QStringList>
#include <QVariant>

// A view of one file track with derived attributes: file name parts, artwork measures, store
// values, flags made of several reads. Library search evaluates its rules against this object
// by key path (valueForKey), so the key paths are the names below and those of keyPaths().
// Nothing is cached: every attribute reads the player (and, for store values and artwork
// measures, the file or the picture) afresh. One object serves a whole run, with the track
// swapped per track; use it on one thread at a time.
class ITunesTrackAdvanced
{
public:
    // Positions count from 0 into the track's artworks.
    explicit ITunesTrackAdvanced(const ITunesFileTrack &track = {}, qint64 frontArtworkPosition = 0,
                                 qint64 backArtworkPosition = 1);

    const ITunesFileTrack &yourTrack() const { return yourTrack_; }
    void setYourTrack(const ITunesFileTrack &track) { yourTrack_ = track; }
    qint64 yourFrontArtworkPosition() const { return yourFrontArtworkPosition_; }
    void setYourFrontArtworkPosition(qint64 position) { yourFrontArtworkPosition_ = position; }
    qint64 yourBackArtworkPosition() const { return yourBackArtworkPosition_; }
    void setYourBackArtworkPosition(qint64 position) { yourBackArtworkPosition_ = position; }

    // The attribute of a key path: texts, integers (qint64), doubles, booleans and dates. An
    // invalid QVariant for an unknown key path and for a purchase date that is not there.
    QVariant valueForKey(const QString &keyPath) const;
    // Every key path valueForKey answers: the track's own properties passed through under
    // their names, and the derived attributes below.
    static const QStringList &keyPaths();

    // The object itself as text, its class and persistent ID ("<ITunesFileTrack 4F2A...>"); the
    // track's description tag is objectDescription, as tag 14 reads it.
    QString description() const;

    // Whole seconds, truncated.
    qint64 duration() const;
    qint64 start() const;
    qint64 finish() const;
    double sampleRate() const; // whole kilohertz
    double size() const;       // whole mebibytes
    // Deliberately the opposite of the track's shufflable: the search offers it as "is not
    // shufflable".
    bool shufflable() const;
    bool podcast() const;

    QString appleID() const;
    QString purchasedBy() const;
    QDateTime purchaseDate() const; // invalid when there is none
    bool hasAdvisory() const;
    bool isExplicit() const;
    bool isClean() const;

    QString trackLocation() const;
    QString trackFileName() const;          // last path component without its extension
    QString trackFilePathExtension() const;
    qint64 lyricsParagraphsCount() const;   // 0 for no lyrics, else line breaks + 1

    qint64 artworksCount() const;
    bool artworkFront() const;
    bool artworkBack() const;
    bool artworkFromTheITMS() const;
    // Picture measures in points (pixels at the picture's own resolution, 72 where it names
    // none) and its resolution in dots per inch; -1 when there is no picture at the position
    // or it cannot be read.
    double artworkFrontHeight() const;
    double artworkFrontWidth() const;
    double artworkFrontDPI() const;
    double artworkBackHeight() const;
    double artworkBackWidth() const;
    double artworkBackDPI() const;

    bool playedNotToEnd() const;
    bool ratingViaPC() const;
    bool albumRatingViaPC() const;
    bool loved() const;

private:
    struct ArtworkMeasure
    {
        double height = -1;
        double width = -1;
        double dpi = -1;
    };
    ArtworkMeasure measureArtwork(qint64 position) const;
    qint64 advisory() const; // -1 when there is none

    ITunesFileTrack yourTrack_;
    qint64 yourFrontArtworkPosition_;
    qint64 yourBackArtworkPosition_;
};
