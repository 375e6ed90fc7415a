#pragma once

#include "pool/poolfunction.h"

// Organizer function 20: writes the lyrics of each track to a text file "artist - name.txt" in
// the album folder (or a subfolder of it), or in a folder chosen at each run (or a subfolder
// per artist there). A file that is there is never overwritten.
class Function0020 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourExtractOption MEMBER yourExtractOption NOTIFY optionChanged)
    Q_PROPERTY(QString yourExtractTargetFolderOwn MEMBER yourExtractTargetFolderOwn NOTIFY settingsChanged)
    Q_PROPERTY(bool yourExtractToAlbumSubFolder MEMBER yourExtractToAlbumSubFolder NOTIFY optionChanged)
    Q_PROPERTY(QString yourExtractToAlbumSubFolderName MEMBER yourExtractToAlbumSubFolderName NOTIFY settingsChanged)
    Q_PROPERTY(bool yourExtractToArtistFolder MEMBER yourExtractToArtistFolder NOTIFY settingsChanged)
    Q_PROPERTY(bool enableArtistSubFolder READ enableArtistSubFolder NOTIFY optionChanged)
    Q_PROPERTY(bool enableLyricsSubFolder READ enableLyricsSubFolder NOTIFY optionChanged)
    Q_PROPERTY(bool enableLyricsSubFolderName READ enableLyricsSubFolderName NOTIFY optionChanged)

public:
    static constexpr qint64 kAlbumFolder = 1, kChosenFolder = 2; // yourExtractOption

    using PoolFunction::PoolFunction;

    bool enableArtistSubFolder() const { return yourExtractOption == kChosenFolder; }
    bool enableLyricsSubFolder() const { return yourExtractOption == kAlbumFolder; }
    bool enableLyricsSubFolderName() const { return enableLyricsSubFolder() && yourExtractToAlbumSubFolder; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

signals:
    void optionChanged();
    void settingsChanged();

private:
    qint64 yourExtractOption = kChosenFolder;
    QString yourExtractTargetFolderOwn;
    bool yourExtractToAlbumSubFolder = true;
    QString yourExtractToAlbumSubFolderName = QStringLiteral("Lyrics");
    bool yourExtractToArtistFolder = true;
};
