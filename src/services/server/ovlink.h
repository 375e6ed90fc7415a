#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

class ServerMessagesUi;

// The store page of an artist: asks the store's search service for the artist and opens the
// page it names in the store. Blocks its caller up to 3 seconds, so callers run it off the main
// thread.
class OVLink
{
public:
    explicit OVLink(ServerMessagesUi &ui) : ui_(ui) {}

    // True when the store was asked to show the artist; false, with no message, when any step
    // found nothing.
    bool openStoreForArtist(const QString &artist);

    // The search address for the artist: spaces as "+", escaped for a query.
    static QUrl iTMSsearchAddressForArtist(const QString &artist);
    // The artist's page from the search answer: the first result whose "artistName" equals the
    // artist in any case, its "artistLinkUrl" or else "artistViewUrl". Empty when none.
    static QUrl iTMSfindWebAddressForArtist(const QString &artist, const QByteArray &answer);

private:
    ServerMessagesUi &ui_;
};
