#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

class ITunesTrack;

// The store values of a track's file, searched the way the file's metadata reader hands them
// out: a list per metadata format, each a list of one-entry maps from the item's identifier
// ("itsk/apID") to its text.

// The items of the track's file; an empty list for a track without a file or without items.
QVariantList ov_metadataItemsFromTrack(const ITunesTrack &track);

// Depth-first search of nested lists and maps for the first value of a key. Within a list an
// empty list stops the whole search, while an empty map or any other value is passed over.
QVariant ov_findObjectForKeyInItems(const QString &key, const QVariantList &items);
// The key's value in a map; a list or map found there is searched further.
QVariant ov_findObjectForKeyInInfo(const QString &key, const QVariantMap &info);

// The value of one metadata key of the track's file, as the file's items give it.
QVariant ov_metadataObjectForKey(const QString &key, const ITunesTrack &fromTrack);

// The store values. Each reads the file afresh and gives a null text (an invalid date) when the
// track, its file or the value is missing. The identifier is read from the file's first
// kilobyte; a file of fewer than 8 bytes raises OVException "NSRangeException", which the engine
// logs against the track.
QString ov_iTunesStoreIdentifierFromTrack(const ITunesTrack &track);
QString ov_iTunesStoreAppleIdFromTrack(const ITunesTrack &track);        // "itsk/apID"
QString ov_iTunesStorePurchasedByFromTrack(const ITunesTrack &track);    // "itsk/ownr"
QDateTime ov_iTunesStorePurchaseDateFromTrack(const ITunesTrack &track); // "itsk/purd"
QString ov_iTunesStorePurchaseDateDescriptionFromTrack(const ITunesTrack &track);
QString ov_iTunesStoreAdvisoryFromTrack(const ITunesTrack &track);       // "itsk/rtng"
