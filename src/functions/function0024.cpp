#include "functions/function0024.h"

#include "functions/albumfiles.h"
#include "functions/trackrelocation.h"
#include "pool/functionpoolcontroller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

PoolFunctionAnswer Function0024::doMyFunctionCheck()
{
    if (yourArtworkSubFolderName.isEmpty())
        return PoolAlertCode::IncompleteSettings;
    // The subfolder may be removed whole: it must lie inside the album folder.
    if (yourArtworkSubFolderName == QLatin1String(".") || yourArtworkSubFolderName == QLatin1String("..")
        || yourArtworkSubFolderName.contains(QLatin1Char('/')))
        return PoolAlertCode::InvalidSettings;
    yourSel = yourMoveOption == kToSubFolder ? &Function0024::runMoveArtworksFromAlbumFolderToArtworkSubFolder
                                             : &Function0024::runMoveArtworksFromArtworkSubFolderToAlbumFolder;
    return PoolStep::GoOn;
}

void Function0024::doMyFunctionMain(const ITunesTrack &track)
{
    const QString albumFolder = albumFolderOfTrack(myFunctionPool(), track);
    if (yourSel)
        (this->*yourSel)(albumFolder, albumFolder + QLatin1Char('/') + yourArtworkSubFolderName);
}

void Function0024::moveImages(const QStringList &names, const QString &from, const QString &to)
{
    for (const QString &name : names) {
        const RenameResult result = renameOnDisk(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name);
        if (!result.ok())
            throwFileFailure(QStringLiteral("cannot move %1 from %2 to %3: %4").arg(name, from, to, result.reason));
    }
}

void Function0024::runMoveArtworksFromAlbumFolderToArtworkSubFolder(const QString &albumFolder,
                                                                    const QString &artworkFolder)
{
    // The album's later tracks find no images left and leave the subfolder alone.
    const QStringList images = imageFilesIn(myFunctionPool(), albumFolder);
    if (images.isEmpty())
        return;
    if (QFileInfo(artworkFolder).isDir() || isSymbolicLink(artworkFolder)) {
        if (yourMoveFromAlbumFolderToArtworkSubFolderOption == kStop)
            return;
        if (isSymbolicLink(artworkFolder) ? !QFile::remove(artworkFolder)
                                          : !QDir(artworkFolder).removeRecursively())
            throwFileFailure(QStringLiteral("cannot remove the folder %1 to replace it").arg(artworkFolder));
    }
    if (!QDir().mkdir(artworkFolder))
        throwFileFailure(QStringLiteral("cannot make the folder %1; check that %2 may be written to")
                             .arg(artworkFolder, albumFolder));
    moveImages(images, albumFolder, artworkFolder);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0024::runMoveArtworksFromArtworkSubFolderToAlbumFolder(const QString &albumFolder,
                                                                    const QString &artworkFolder)
{
    if (!QFileInfo(artworkFolder).isDir() || isSymbolicLink(artworkFolder))
        return;
    const bool removeFolder = yourMoveFromArtworkSubFolderToAlbumFolderDeleteEmtpyFolder;
    const QStringList images = imageFilesIn(myFunctionPool(), artworkFolder);
    if (images.isEmpty()) {
        if (!removeFolder)
            return;
        if (!QDir(artworkFolder).removeRecursively())
            throwFileFailure(QStringLiteral("cannot remove the folder %1").arg(artworkFolder));
        myFunctionPool()->setYourLogNo(TrackLogState::Changed);
        return;
    }
    const QStringList present = imageFilesIn(myFunctionPool(), albumFolder);
    if (!present.isEmpty()) {
        if (yourMoveFromArtworkSubFolderToAlbumFolderOption == kStop)
            return;
        for (const QString &name : present)
            if (!QFile::remove(albumFolder + QLatin1Char('/') + name))
                throwFileFailure(QStringLiteral("cannot delete %1/%2 to make room for the images of %3")
                                     .arg(albumFolder, name, artworkFolder));
    }
    moveImages(images, artworkFolder, albumFolder);
    // Whatever else the subfolder holds goes with it.
    if (removeFolder && !QDir(artworkFolder).removeRecursively())
        throwFileFailure(QStringLiteral("the images were moved, but the folder %1 cannot be removed").arg(artworkFolder));
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0024::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Move image files");
    panel.summary = QStringLiteral("Moves the image files of each track's album folder into a subfolder, or from "
                                   "the subfolder back into the album folder.");
    PanelField direction{Kind::Choice, QStringLiteral("yourMoveOption"), QStringLiteral("Move")};
    direction.choiceLabels = {QStringLiteral("From the album folder into the subfolder"),
                              QStringLiteral("From the subfolder back into the album folder")};
    direction.choiceValues = {kToSubFolder, kToAlbumFolder};
    PanelField name{Kind::Text, QStringLiteral("yourArtworkSubFolderName"), QStringLiteral("Subfolder")};
    PanelField existing{Kind::Choice, QStringLiteral("yourMoveFromAlbumFolderToArtworkSubFolderOption"),
                        QStringLiteral("When the subfolder exists")};
    existing.choiceLabels = {QStringLiteral("Leave the album alone"), QStringLiteral("Replace the subfolder")};
    existing.choiceValues = {kStop, kReplace};
    existing.enabledBy = QStringLiteral("enableMoveArtworksFromAlbumFolderToArtworkSubFolder");
    PanelField present{Kind::Choice, QStringLiteral("yourMoveFromArtworkSubFolderToAlbumFolderOption"),
                       QStringLiteral("When the album folder has images")};
    present.choiceLabels = {QStringLiteral("Leave the album alone"), QStringLiteral("Delete them")};
    present.choiceValues = {kStop, kReplace};
    present.enabledBy = QStringLiteral("enableMoveArtworksFromArtworkSubFolderToAlbumFolder");
    PanelField remove{Kind::Check, QStringLiteral("yourMoveFromArtworkSubFolderToAlbumFolderDeleteEmtpyFolder"),
                      QStringLiteral("Remove the subfolder afterwards, with all it holds")};
    remove.enabledBy = QStringLiteral("enableMoveArtworksFromArtworkSubFolderToAlbumFolder");
    panel.fields = {direction, name, existing, present, remove};
    return panel;
}
