#pragma once

#include <QJsonArray>
#include <QString>
#include <QUrl>

// Text rules of the track info panel and its artwork button, free of widgets.
namespace TrackInfoText {

// The playing position for the panel's time line: "mm:ss" up to an hour (3600 s included),
// "> N h" beyond, and empty for 0 or less or above 1000 hours.
QString playerPositionDescription(double seconds);

// The store search for an album's cover: StoreBaseURL + "/search?term=artist+album&entity=album".
// Invalid when the artist or the album is empty.
QUrl storeSearchUrl(const QString &artist, const QString &album);

// The large cover's address in a store search's "results": the first entry by the same artist
// (case aside) whose album matches exactly, else the first whose album contains the one asked
// for (an edition note behind the title). "100x100" becomes "1000x1000". Empty for none.
QString storeArtworkAddress(const QString &artist, const QString &album, const QJsonArray &results);

// The same from a search's whole answer; empty for anything but a map with results.
QString storeArtworkAddressFromAnswer(const QString &artist, const QString &album, const QByteArray &json);

} // namespace TrackInfoText
