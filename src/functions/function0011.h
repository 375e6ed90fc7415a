#pragma once

#include "pool/poolfunction.h"

#include <QStringList>

// Organizer function 11: track count, disc number and disc count of a track, read from the
// folders its file lies in. An album is a folder; its discs are subfolders whose names begin
// with the organizer's disc folder name ("CD1", "CD2", ...).
class Function0011 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(bool yourCountTracks READ yourCountTracks WRITE setYourCountTracks NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourCountTracksOption MEMBER yourCountTracksOption_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourCountDiscs MEMBER yourCountDiscs_ NOTIFY settingsChanged)
    Q_PROPERTY(bool enableCountTracksOption READ enableCountTracksOption NOTIFY settingsChanged)

public:
    // Tracks of all discs of the album together, or of the track's own disc only.
    static constexpr qint64 kCountAlbum = 1;
    static constexpr qint64 kCountDisc = 2;

    using PoolFunction::PoolFunction;

    bool yourCountTracks() const { return yourCountTracks_; }
    void setYourCountTracks(bool on);
    bool enableCountTracksOption() const { return yourCountTracks_; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // The highest disc number among the disc folder names: folders CD1 and CD3 make three.
    static qint64 countDiscFolders(const QStringList &names, const QString &discFolderName);
    // The audio files of every disc folder of the album together.
    static qint64 countMusicFilesInAlbumFolder(const QStringList &names, const QString &albumFolderLocation,
                                               const QString &discFolderName,
                                               const QStringList &audioSuffixes);

signals:
    void settingsChanged();

private:
    bool yourCountTracks_ = true;
    qint64 yourCountTracksOption_ = kCountAlbum;
    bool yourCountDiscs_ = true;
};
