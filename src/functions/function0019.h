#pragma once

#include "pool/poolfunction.h"

// Organizer function 19: writes the front and back artworks of each track to image files named
// after the album (or the track, for a video), in the album folder or a folder chosen at each
// run. A file that is there is never overwritten.
class Function0019 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourExtractOption MEMBER yourExtractOption NOTIFY optionChanged)
    Q_PROPERTY(QString yourExtractTargetFolderOwn MEMBER yourExtractTargetFolderOwn NOTIFY settingsChanged)
    Q_PROPERTY(bool yourExtractArtworkA MEMBER yourExtractArtworkA NOTIFY settingsChanged)
    Q_PROPERTY(bool yourExtractArtworkB MEMBER yourExtractArtworkB NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourExtractTyp MEMBER yourExtractTyp NOTIFY settingsChanged)
    Q_PROPERTY(bool enableChosenFolder READ enableChosenFolder NOTIFY optionChanged)

public:
    static constexpr qint64 kAlbumFolder = 1, kChosenFolder = 2; // yourExtractOption
    static constexpr qint64 kAsStored = -1;                      // yourExtractTyp: 1 jpg ... 5 tiff

    using PoolFunction::PoolFunction;

    bool enableChosenFolder() const { return yourExtractOption == kChosenFolder; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // The name the artworks of the track are written under: the track's name for a video, the
    // album for a compilation, else "album artist - album" (the artist when there is no album
    // artist, the album alone when it equals it). Empty for a track without an album.
    static QString extractBaseName(const ITunesTrack &track);
    // Writes the artwork at the position (from 1) to the path, to which the extension of the
    // type as stored is added when no type was chosen.
    void runWriteArtworkDataToFile(const ITunesTrack &track, const QList<ITunesArtwork> &allArtworks,
                                   const QString &extractPath, qint64 artworkOption);

signals:
    void optionChanged();
    void settingsChanged();

private:
    qint64 yourExtractOption = kChosenFolder;
    QString yourExtractTargetFolderOwn;
    bool yourExtractArtworkA = true;
    bool yourExtractArtworkB = false;
    qint64 yourExtractTyp = kAsStored;
    qint64 yourExtractFileTyp = kAsStored; // the file type of this run, as BitmapImageFileType
    QString yourArtworkSuffixA;
    QString yourArtworkSuffixB;
};
