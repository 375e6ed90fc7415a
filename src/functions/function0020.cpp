#include "functions/function0020.h"

#include "additions/textadditions.h"
#include "functions/albumfiles.h"
#include "pool/functionpoolcontroller.h"

#include <QDir>
#include <QFileInfo>

PoolFunctionAnswer Function0020::doMyFunctionCheck()
{
    if (yourExtractOption == kAlbumFolder) {
        if (yourExtractToAlbumSubFolder && yourExtractToAlbumSubFolderName.isEmpty())
            return PoolAlertCode::IncompleteSettings;
        return PoolStep::GoOn;
    }
    // Any other option writes to the chosen folder, so it is asked for as well.
    return askForTargetFolder(myFunctionPool(), QStringLiteral("0003.0006"), [this](const QString &path) {
        yourExtractTargetFolderOwn = path;
        emit settingsChanged();
    });
}

void Function0020::doMyFunctionMain(const ITunesTrack &track)
{
    const QString lyrics = track.lyrics();
    if (lyrics.isEmpty())
        return;
    QString fileName = QStringLiteral("%1 - %2.txt").arg(track.artist(), track.name());
    removeIllegalCharacters(fileName);
    QString folder;
    if (yourExtractOption == kAlbumFolder) {
        folder = albumFolderOfTrack(myFunctionPool(), track);
        if (yourExtractToAlbumSubFolder)
            folder += QLatin1Char('/') + yourExtractToAlbumSubFolderName;
    } else {
        folder = yourExtractTargetFolderOwn;
        if (yourExtractToArtistFolder) {
            QString artist = track.artist();
            removeIllegalCharacters(artist);
            folder += QLatin1Char('/') + artist;
        }
    }
    if (!QFileInfo(folder).isDir() && !QDir().mkpath(folder))
        throwFileFailure(QStringLiteral("cannot make the folder %1 for the lyrics; check that its parent may be "
                                        "written to")
                             .arg(folder));
    // Written once: a second run, also after the lyrics changed, keeps the file.
    const QString path = folder + QLatin1Char('/') + fileName;
    if (QFileInfo::exists(path))
        return;
    writeNewFile(path, lyrics.toUtf8());
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0020::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Lyrics to text files");
    panel.summary = QStringLiteral("Writes the lyrics of each track to a text file \"artist - name.txt\". Files "
                                   "that are there are kept.");
    PanelField where{Kind::Choice, QStringLiteral("yourExtractOption"), QStringLiteral("Write to")};
    where.choiceLabels = {QStringLiteral("The album folder"), QStringLiteral("A folder chosen at each run")};
    where.choiceValues = {kAlbumFolder, kChosenFolder};
    PanelField sub{Kind::Check, QStringLiteral("yourExtractToAlbumSubFolder"),
                   QStringLiteral("In a subfolder of the album folder")};
    sub.enabledBy = QStringLiteral("enableLyricsSubFolder");
    PanelField subName{Kind::Text, QStringLiteral("yourExtractToAlbumSubFolderName"), QStringLiteral("Subfolder")};
    subName.enabledBy = QStringLiteral("enableLyricsSubFolderName");
    PanelField artist{Kind::Check, QStringLiteral("yourExtractToArtistFolder"),
                      QStringLiteral("A subfolder for each artist")};
    artist.enabledBy = QStringLiteral("enableArtistSubFolder");
    panel.fields = {where, sub, subName, artist};
    return panel;
}
