#include "cli/librarycommand.h"

#include "player/fourcharcode.h"
#include "player/library/librarybackend.h"
#include "player/library/trackcolumns.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

const char kUsage[] = "usage: orvane-cli library add PATH...\n"
                      "       orvane-cli library list [--json]\n"
                      "       orvane-cli library update\n"
                      "       orvane-cli library show ID\n"
                      "       orvane-cli library playlists [--json]\n";

int usage(const QString &problem)
{
    err() << "orvane-cli: " << problem << "\n" << kUsage;
    err().flush();
    return 2;
}

QJsonValue jsonValue(const QVariant &value, ColumnType type)
{
    switch (type) {
    case ColumnType::Code: return fourCharCodeText(FourCharCode(value.toUInt()));
    case ColumnType::Date: {
        const QDateTime date = value.toDateTime();
        return date.isValid() ? QJsonValue(date.toString(Qt::ISODate)) : QJsonValue();
    }
    default: return QJsonValue::fromVariant(value);
    }
}

QJsonObject trackJson(RemoteObject &track)
{
    QJsonObject object;
    object.insert("persistentID", track.read(Prop::persistentID).toString());
    object.insert("databaseID", track.read(Prop::databaseID).toLongLong());
    const QString location = track.read(Prop::location).toString();
    object.insert("location", location.isEmpty() ? QJsonValue() : QJsonValue(location));
    for (const TrackColumn &column : trackColumns())
        object.insert(propertyName(column.property),
                      jsonValue(track.read(column.property), column.type));
    object.insert("time", track.read(Prop::time).toString());
    object.insert("unplayed", track.read(Prop::unplayed).toBool());
    return object;
}

QString jsonLine(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

int add(LibraryBackend &library, const QStringList &paths)
{
    if (paths.isEmpty())
        return usage(QStringLiteral("add needs at least one path"));
    const LibraryStore::ImportResult result = library.importPaths(paths);
    for (const auto &[path, reason] : result.refused)
        err() << "orvane-cli: " << path << ": " << reason << "\n";
    out() << result.added.size() << " added\n";
    return result.refused.isEmpty() ? 0 : 1;
}

int list(LibraryBackend &library, bool json)
{
    for (const RemoteObjectPtr &track : library.tracks()) {
        if (json)
            out() << jsonLine(trackJson(*track)) << "\n";
        else
            out() << track->read(Prop::persistentID).toString() << "\t"
                  << track->read(Prop::artist).toString() << "\t"
                  << track->read(Prop::name).toString() << "\t"
                  << track->read(Prop::location).toString() << "\n";
    }
    return 0;
}

// Files changed outside the library (or by a save a crash cut short) are read again.
int update(LibraryBackend &library)
{
    out() << library.refreshChangedTracks() << " read again\n";
    return 0;
}

int show(LibraryBackend &library, const QString &id)
{
    bool numeric = false;
    const qint64 databaseID = id.toLongLong(&numeric);
    RemoteObjectPtr track = numeric && id.size() < 16 ? library.trackWithDatabaseID(databaseID)
                                                      : library.trackWithPersistentID(id);
    if (!track) {
        err() << "orvane-cli: no track " << id << "\n";
        return 1;
    }
    out() << QString::fromUtf8(QJsonDocument(trackJson(*track)).toJson(QJsonDocument::Indented));
    return 0;
}

int playlists(LibraryBackend &library, bool json)
{
    for (const RemoteObjectPtr &playlist : library.source()->elements(Prop::playlists)) {
        const RemoteObjectPtr parent = playlist->object(Prop::parent);
        QJsonArray tracks;
        for (const RemoteObjectPtr &track : playlist->elements(Prop::tracks))
            tracks.append(track->read(Prop::persistentID).toString());
        const bool user = playlist->objectClass() != ObjectClass::LibraryPlaylist;
        QJsonObject object{
            {"name", playlist->read(Prop::name).toString()},
            {"persistentID", playlist->read(Prop::persistentID).toString()},
            {"parent", parent ? QJsonValue(parent->read(Prop::persistentID).toString())
                              : QJsonValue()},
            {"specialKind",
             fourCharCodeText(FourCharCode(playlist->read(Prop::specialKind).toUInt()))},
            {"smart", user && playlist->read(Prop::smart).toBool()},
            {"tracks", tracks},
        };
        if (json)
            out() << jsonLine(object) << "\n";
        else
            out() << object.value("persistentID").toString() << "\t"
                  << object.value("specialKind").toString() << "\t" << tracks.size() << "\t"
                  << object.value("name").toString() << "\n";
    }
    return 0;
}

} // namespace

int runLibraryCommand(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return usage(QStringLiteral("library needs a command"));
    const QString command = arguments.first();
    const QStringList rest = arguments.mid(1);
    const bool json = rest == QStringList{QStringLiteral("--json")};
    const bool plain = rest.isEmpty();

    LibraryBackend library;
    if (!library.isRunning()) {
        err() << "orvane-cli: " << library.openError() << "\n";
        return 1;
    }
    int status = 0;
    try {
        if (command == QLatin1String("add"))
            status = add(library, rest);
        else if (command == QLatin1String("list") && (json || plain))
            status = list(library, json);
        else if (command == QLatin1String("update") && plain)
            status = update(library);
        else if (command == QLatin1String("show") && rest.size() == 1)
            status = show(library, rest.first());
        else if (command == QLatin1String("playlists") && (json || plain))
            status = playlists(library, json);
        else
            status = usage(QStringLiteral("unknown library command: %1").arg(arguments.join(' ')));
        library.saveAll();
    } catch (const BridgeFailure &failure) {
        err() << "orvane-cli: " << failure.what() << "\n";
        status = 1;
    }
    out().flush();
    err().flush();
    return status;
}
