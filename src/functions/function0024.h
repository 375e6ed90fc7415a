#pragma once

#include "pool/poolfunction.h"

// Organizer function 24: moves the image files of each track's album folder into a subfolder
// of it, or back from there.
class Function0024 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourMoveOption MEMBER yourMoveOption NOTIFY optionChanged)
    Q_PROPERTY(qint64 yourMoveFromAlbumFolderToArtworkSubFolderOption MEMBER
                   yourMoveFromAlbumFolderToArtworkSubFolderOption NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourMoveFromArtworkSubFolderToAlbumFolderOption MEMBER
                   yourMoveFromArtworkSubFolderToAlbumFolderOption NOTIFY settingsChanged)
    Q_PROPERTY(bool yourMoveFromArtworkSubFolderToAlbumFolderDeleteEmtpyFolder MEMBER
                   yourMoveFromArtworkSubFolderToAlbumFolderDeleteEmtpyFolder NOTIFY settingsChanged)
    Q_PROPERTY(QString yourArtworkSubFolderName MEMBER yourArtworkSubFolderName NOTIFY settingsChanged)
    Q_PROPERTY(bool enableMoveArtworksFromAlbumFolderToArtworkSubFolder READ
                   enableMoveArtworksFromAlbumFolderToArtworkSubFolder NOTIFY optionChanged)
    Q_PROPERTY(bool enableMoveArtworksFromArtworkSubFolderToAlbumFolder READ
                   enableMoveArtworksFromArtworkSubFolderToAlbumFolder NOTIFY optionChanged)

public:
    static constexpr qint64 kToSubFolder = 1, kToAlbumFolder = 2; // yourMoveOption
    static constexpr qint64 kStop = 1, kReplace = 2;              // what is found at the target

    using PoolFunction::PoolFunction;

    bool enableMoveArtworksFromAlbumFolderToArtworkSubFolder() const { return yourMoveOption == kToSubFolder; }
    bool enableMoveArtworksFromArtworkSubFolderToAlbumFolder() const { return yourMoveOption == kToAlbumFolder; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    void runMoveArtworksFromAlbumFolderToArtworkSubFolder(const QString &albumFolder, const QString &artworkFolder);
    void runMoveArtworksFromArtworkSubFolderToAlbumFolder(const QString &albumFolder, const QString &artworkFolder);

signals:
    void optionChanged();
    void settingsChanged();

private:
    void moveImages(const QStringList &names, const QString &from, const QString &to);

    qint64 yourMoveOption = kToSubFolder;
    qint64 yourMoveFromAlbumFolderToArtworkSubFolderOption = kStop;
    qint64 yourMoveFromArtworkSubFolderToAlbumFolderOption = kStop;
    bool yourMoveFromArtworkSubFolderToAlbumFolderDeleteEmtpyFolder = true;
    QString yourArtworkSubFolderName = QStringLiteral("Cover");
    void (Function0024::*yourSel)(const QString &, const QString &) = nullptr;
};
