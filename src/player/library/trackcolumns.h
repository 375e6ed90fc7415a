#pragma once

#include "player/fourcharcode.h"
#include "player/remoteobject.h"

#include <QList>

// How each stored track property is kept. File properties live in the audio file's tags and
// are mirrored in the database; database properties exist only in the database; file facts
// (kind, length, size ...) are measured from the file on import and on relinking.
enum class TrackStorage { File, Database, FileFact };

enum class ColumnType { Text, Integer, Real, Boolean, Code, Date };

struct TrackColumn
{
    Prop property;
    ColumnType type;
    TrackStorage storage;
    bool writable;
};

// The stored columns of the tracks table, in the order of a cached row. The column of each is
// named as the property (propertyName()).
const QList<TrackColumn> &trackColumns();
// The index of a property in trackColumns(), or -1 when the property is not a stored column.
int trackColumnIndex(Prop property);

// A property value in the form the database holds, and back.
QVariant columnValueToSql(ColumnType type, const QVariant &value);
QVariant columnValueFromSql(ColumnType type, const QVariant &value);

// "3:25", or "1:02:03" from an hour on.
QString formattedDuration(double seconds);
