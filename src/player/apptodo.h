#pragma once

#include "player/playerbackend.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <functional>

class ITunesTrack;

// Class-level operations with no state of their own, reached from every part of the program.
// Each group below lives in a source file of its own; add new groups the same way.
class AppToDo
{
public:
    // --- The player as a process (apptodo.cpp).
    static QString iTunesBundleIdentifier(); // "com.apple.iTunes"
    static bool isITunesRunning();
    // Asks the default backend to start the player, without bringing it to the front; false
    // when there is no backend or it cannot launch one.
    static bool openITunes();
    static PlayerBackendPtr runningApplicationForApplicationWithBundleIdentifier(
        const QString &bundleIdentifier);

    // --- Love and rating of the playing track, the user's entry points (apptodo.cpp).
    static bool toggleLovedForThePlayingTrack();
    static bool setLovedForThePlayingTrack(bool loved);
    static bool setRatingForThePlayingTrack(qint64 rating);
    static bool toggleLovedForThePlayingAlbum();
    static bool setLovedForThePlayingAlbum(bool loved);
    static bool setRatingForThePlayingAlbum(qint64 rating);
    // Tells Last.fm whether the playing track is loved. False without a ready scrobbler, while
    // Beats 1 plays or without a current track.
    static bool scrobbleLoved();
    // The auto-love settings the application gives the AppContext (so that this module needs
    // neither the preferences nor the scrobbler, both living above it); false and 0 until it
    // does. The value is clamped to 0 to 100.
    static bool autoLoveUse();
    static qint64 autoLoveValue();

    // --- Tag access by number (pool/tagtable.cpp, pool/storemetadata.cpp; module
    // orvane_pool_tags). Tags 1 to 29 read and write the track's own tags, 100 writes album
    // artist and artist, 101 to 105 read the store values kept in the track's file. Number tags
    // read as decimal text and are written from the text's integerValue.
    // The value of a tag, or an invalid QVariant for a tag that cannot be read. Tag 104 is a
    // QDateTime, or with asText its description in the current locale.
    static QVariant pullTrackObject(const ITunesTrack &track, qint64 sourceTag, bool asText);
    // The same with asText, always as text: what is not text reads as the empty text.
    static QString pullTrackTag(const ITunesTrack &track, qint64 sourceTag);
    static void pushTrackTag(const ITunesTrack &track, qint64 targetTag, const QString &tagInfo);

    // The store values. Each reads the file afresh and gives a null text (an invalid date)
    // when the track, its file or the value is missing. The identifier is read from the file's
    // first kilobyte; a file of fewer than 8 bytes raises OVException "NSRangeException", which
    // the engine logs against the track.
    static QString ov_iTunesStoreIdentifierFromTrack(const ITunesTrack &track);
    static QString ov_iTunesStoreAppleIdFromTrack(const ITunesTrack &track);      // "itsk/apID"
    static QString ov_iTunesStorePurchasedByFromTrack(const ITunesTrack &track);  // "itsk/ownr"
    static QDateTime ov_iTunesStorePurchaseDateFromTrack(const ITunesTrack &track); // "itsk/purd"
    static QString ov_iTunesStorePurchaseDateDescriptionFromTrack(const ITunesTrack &track);
    static QString ov_iTunesStoreAdvisoryFromTrack(const ITunesTrack &track);     // "itsk/rtng"
    // The value of one metadata key of the track's file, as the file's items give it.
    static QVariant ov_metadataObjectForKey(const QString &key, const ITunesTrack &fromTrack);

    // --- Small utilities (pool/apptodoutilities.cpp, pool/displayflash.cpp).
    // The kind of an image by its first byte: "image/jpeg", "image/png", "image/gif",
    // "image/tiff", or a null text.
    static QString contentTypeForImageData(const QByteArray &data);
    // The file type to write such an image back with; anything not known is written as PNG.
    enum class BitmapImageFileType { TIFF = 0, BMP = 1, GIF = 2, JPEG = 3, PNG = 4 };
    static BitmapImageFileType contentStorageTypeForImageData(const QByteArray &data);
    // The system's version as "major.minor.patch", "0.0.0" when it cannot be told.
    static QString operatingSystemVersionString();
    // Keyboard modifiers: the four modifier bits of a flags word (shift, control, option and
    // command at bits 17 to 20), and the same bits in the hotkey registration's own layout.
    static quint64 cleanModifierMask(quint64 flags);
    static quint64 carbonModifierMask(quint64 flags);
    // Flashes every screen white for a fifth of a second, blocking the caller meanwhile (the
    // event loop keeps turning); does nothing without a graphical application.
    static void flashDisplays();
};
