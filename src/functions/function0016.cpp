#include "functions/function0016.h"

#include "pool/functionpoolcontroller.h"

void Function0016::doMyFunctionMain(const ITunesTrack &track)
{
    // Only the first artwork counts: a track with pictures of its own keeps them as they are.
    const QList<ITunesArtwork> artworks = track.artworks();
    if (artworks.isEmpty() || !artworks.first().downloaded())
        return;
    // Writing the downloaded artwork's picture to its own slot embeds it.
    artworks.first().setRawData(artworks.first().rawData());
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0016::panelDescription() const
{
    PanelDescription panel;
    panel.title = QStringLiteral("Embed downloaded artwork");
    panel.summary = QStringLiteral("Embeds the cover file that lies beside each track (cover.jpg, folder.png ...) "
                                   "into the track's file, when the track has no artwork of its own.");
    return panel;
}
