#include "player/library/trackcolumns.h"

#include "player/playervalues.h"

#include <QDateTime>
#include <QHash>

const QList<TrackColumn> &trackColumns()
{
    using T = ColumnType;
    constexpr TrackStorage F = TrackStorage::File;
    constexpr TrackStorage D = TrackStorage::Database;
    constexpr TrackStorage X = TrackStorage::FileFact;
    static const QList<TrackColumn> columns = {
        {Prop::name, T::Text, F, true},
        {Prop::album, T::Text, F, true},
        {Prop::albumArtist, T::Text, F, true},
        {Prop::artist, T::Text, F, true},
        {Prop::composer, T::Text, F, true},
        {Prop::genre, T::Text, F, true},
        {Prop::grouping, T::Text, F, true},
        {Prop::comment, T::Text, F, true},
        {Prop::lyrics, T::Text, F, true},
        {Prop::show, T::Text, F, true},
        {Prop::episodeID, T::Text, F, true},
        {Prop::objectDescription, T::Text, F, true},
        {Prop::sortName, T::Text, F, true},
        {Prop::sortAlbum, T::Text, F, true},
        {Prop::sortAlbumArtist, T::Text, F, true},
        {Prop::sortArtist, T::Text, F, true},
        {Prop::sortComposer, T::Text, F, true},
        {Prop::sortShow, T::Text, F, true},
        {Prop::year, T::Integer, F, true},
        {Prop::bpm, T::Integer, F, true},
        {Prop::trackNumber, T::Integer, F, true},
        {Prop::trackCount, T::Integer, F, true},
        {Prop::discNumber, T::Integer, F, true},
        {Prop::discCount, T::Integer, F, true},
        {Prop::episodeNumber, T::Integer, F, true},
        {Prop::seasonNumber, T::Integer, F, true},
        {Prop::compilation, T::Boolean, F, false},
        {Prop::playedCount, T::Integer, D, true},
        {Prop::start, T::Real, D, true},
        {Prop::finish, T::Real, D, true},
        {Prop::rating, T::Integer, D, true},
        {Prop::albumRating, T::Integer, D, true},
        {Prop::loved, T::Boolean, D, true},
        {Prop::albumLoved, T::Boolean, D, true},
        {Prop::ratingKind, T::Code, D, false},
        {Prop::albumRatingKind, T::Code, D, false},
        {Prop::mediaKind, T::Code, D, false},
        {Prop::videoKind, T::Code, D, false},
        {Prop::enabled, T::Boolean, D, false},
        {Prop::gapless, T::Boolean, D, false},
        {Prop::shufflable, T::Boolean, D, false},
        {Prop::bookmarkable, T::Boolean, D, false},
        {Prop::dateAdded, T::Date, D, false},
        {Prop::modificationDate, T::Date, D, false},
        {Prop::playedDate, T::Date, D, false},
        {Prop::skippedDate, T::Date, D, false},
        {Prop::skippedCount, T::Integer, D, false},
        {Prop::EQ, T::Text, D, false},
        {Prop::volumeAdjustment, T::Integer, D, false},
        {Prop::kind, T::Text, X, false},
        {Prop::duration, T::Real, X, false},
        {Prop::size, T::Integer, X, false},
        {Prop::bitRate, T::Integer, X, false},
        {Prop::sampleRate, T::Integer, X, false},
    };
    return columns;
}

int trackColumnIndex(Prop property)
{
    static const QHash<Prop, int> indexes = [] {
        QHash<Prop, int> map;
        for (int i = 0; i < trackColumns().size(); ++i)
            map.insert(trackColumns().at(i).property, i);
        return map;
    }();
    return indexes.value(property, -1);
}

QVariant columnValueToSql(ColumnType type, const QVariant &value)
{
    switch (type) {
    case ColumnType::Text: return value.toString().isNull() ? QStringLiteral("") : value.toString();
    case ColumnType::Integer: return value.toLongLong();
    case ColumnType::Real: return value.toDouble();
    case ColumnType::Boolean: return value.toBool() ? 1 : 0;
    case ColumnType::Code: return qint64(value.toUInt());
    case ColumnType::Date: {
        const QDateTime date = value.toDateTime();
        return date.isValid() ? QVariant(date.toMSecsSinceEpoch()) : QVariant();
    }
    }
    return {};
}

QVariant columnValueFromSql(ColumnType type, const QVariant &value)
{
    switch (type) {
    case ColumnType::Text: return value.toString();
    case ColumnType::Integer: return value.toLongLong();
    case ColumnType::Real: return value.toDouble();
    case ColumnType::Boolean: return value.toLongLong() != 0;
    case ColumnType::Code: return FourCharCode(value.toLongLong());
    case ColumnType::Date:
        return value.isNull() ? QDateTime()
                              : QDateTime::fromMSecsSinceEpoch(value.toLongLong(), Qt::UTC);
    }
    return {};
}

QString formattedDuration(double duration)
{
    return durationText(duration);
}
