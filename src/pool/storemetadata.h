#pragma once

#include <QString>
#include <QVariant>

class ITunesTrack;

// The store values of a track's file, searched the way the file's metadata reader hands them
// out: a list per metadata format, each a list of one-entry maps from the item's identifier
// ("itsk/apID") to its text. The AppToDo operations of the tag-access group are built on these.

// The items of the track's file; an empty list for a track without a file or without items.
QVariantList ov_metadataItemsFromTrack(const ITunesTrack &track);

// Depth-first search of nested lists and maps for the first value of a key. Within a list an
// empty list stops the whole search, while an empty map or any other value is passed over.
QVariant ov_findObjectForKeyInItems(const QString &key, const QVariantList &items);
// The key's value in a map; a list or map found there is searched further.
QVariant ov_findObjectForKeyInInfo(const QString &key, const QVariantMap &info);
