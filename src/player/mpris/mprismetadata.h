#pragma once

#include "player/fourcharcode.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

// What an MPRIS2 player says, turned into the values the bridge speaks. Pure functions, no
// bus: the player backend feeds them what arrived in PropertiesChanged or a Get reply.
namespace Mpris {

inline const QString kNamePrefix = QStringLiteral("org.mpris.MediaPlayer2.");
inline const QString kObjectPath = QStringLiteral("/org/mpris/MediaPlayer2");
inline const QString kRootInterface = QStringLiteral("org.mpris.MediaPlayer2");
inline const QString kPlayerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
inline const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// Nested containers arrive as QDBusArgument, variants as QDBusVariant, object paths as
// QDBusObjectPath; this unwraps all of them into maps, lists, text and numbers.
QVariant plainValue(const QVariant &value);

// "Playing", "Paused", "Stopped" -> kPSP, kPSp, kPSS; anything else counts as stopped.
FourCharCode playerStateFromStatus(const QString &status);
// kPSP -> "Playing" and so on: the notification's "Player State".
QString statusText(FourCharCode playerState);

// A snapshot of the player's Metadata property, read through the xesam and mpris keys.
class Metadata
{
public:
    Metadata() = default;
    explicit Metadata(QVariantMap values) : values_(std::move(values)) {}

    const QVariantMap &values() const { return values_; }
    bool isEmpty() const { return url().isEmpty(); }

    QString url() const;       // xesam:url as given
    QString filePath() const;  // the local path of a file:// url, else empty
    QString trackId() const;   // mpris:trackid
    QString title() const;
    QString text(const QString &key) const; // lists joined with ", "
    qint64 integer(const QString &key) const;
    qint64 year() const;       // from xesam:contentCreated
    qint64 lengthMicroseconds() const;
    // A stable 16-digit hexadecimal identity for a track the library does not know, derived
    // from its address so that the same file or stream always gives the same ID.
    QString derivedPersistentID() const;

private:
    QVariantMap values_;
};

// The player notification's user information for a state and a metadata snapshot, with the
// keys a player notification carries ("Player State", "Name", "Artist", "Album", "Location",
// "Total Time" in milliseconds ...). A stopped player tells its state alone.
QVariantMap playerInfo(FourCharCode playerState, const Metadata &metadata);

// "3:05", "1:02:03"


} // namespace Mpris
