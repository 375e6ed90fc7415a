#include "playerwiring.h"

#include "additions/configuration.h"
#include "player/compositeplayer.h"
#include "player/library/librarybackend.h"
#include "player/mpris/mprisplayer.h"

#include <QDebug>

ProgramPlayer createPlayerBackend()
{
    auto library = std::make_shared<LibraryBackend>();
    if (!library->isRunning()) {
        qWarning().noquote() << "orvane: the music library cannot be opened:" << library->openError();
    } else {
        // Files changed while the program was away, or a save a crash cut short, are read
        // again before anything works on the library's values.
        try {
            library->refreshChangedTracks();
        } catch (const BridgeFailure &failure) {
            qWarning().noquote() << "orvane: the library could not read changed files again:"
                                 << failure.what();
        }
    }

    // The configured player, or the first MPRIS player on the session bus.
    auto player = std::make_shared<MprisPlayer>(Configuration::text(QStringLiteral("PlayerBusName")));
    // A playing file that the library holds is the library's track, with its ratings and tags.
    std::weak_ptr<LibraryBackend> weakLibrary = library;
    player->setTrackResolver([weakLibrary](const QString &filePath) -> RemoteObjectPtr {
        const auto library = weakLibrary.lock();
        return library ? library->trackWithLocation(filePath) : nullptr;
    });
    return {library, std::make_shared<CompositePlayer>(library, player)};
}
