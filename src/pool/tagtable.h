#pragma once

#include <QString>
#include <QVariant>

class ITunesTrack;

// Tag access by number. Tags 1 to 29 read and write the track's own tags, 100 writes album
// artist and artist, 101 to 105 read the store values kept in the track's file. Number tags
// read as decimal text and are written from the text's integerValue.

// The value of a tag, or an invalid QVariant for a tag that cannot be read. Tag 104 is a
// QDateTime, or with asText its description in the current locale.
QVariant pullTrackObject(const ITunesTrack &track, qint64 sourceTag, bool asText);
// The same with asText, always as text: what is not text reads as the empty text.
QString pullTrackTag(const ITunesTrack &track, qint64 sourceTag);
void pushTrackTag(const ITunesTrack &track, qint64 targetTag, const QString &tagInfo);
