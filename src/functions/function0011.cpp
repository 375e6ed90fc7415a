#include "functions/function0011.h"

#include "additions/fileadditions.h"
#include "additions/textvalues.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"

#include <QDir>
#include <QFileInfo>

namespace {

QStringList entryNames(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Unsorted);
}

} // namespace

void Function0011::setYourCountTracks(bool on)
{
    if (on == yourCountTracks_)
        return;
    yourCountTracks_ = on;
    emit settingsChanged();
}

PoolFunctionAnswer Function0011::doMyFunctionCheck()
{
    if (yourCountTracks_ || yourCountDiscs_)
        return PoolStep::GoOn;
    return PoolAlertCode::IncompleteSettings;
}

void Function0011::doMyFunctionMain(const ITunesTrack &track)
{
    FunctionPoolController *pool = myFunctionPool();
    const FunctionPoolPreferences *preferences = pool->myPreferences();
    const QString discFolderName = preferences->prefAlbumDiscFolderName();
    const QStringList audioSuffixes = preferences->prefFileAudioSuffixList();

    const QString fileFolder = QFileInfo(track.as<ITunesFileTrack>().location()).path();
    const QString albumFolder = pool->subAlbumFolderPath(fileFolder);

    qint64 discNumber = 1;
    qint64 discCount = 1;
    if (fileFolder == albumFolder) {
        if (yourCountTracks_) {
            track.setTrackCount(filesWithSuffixs(audioSuffixes, albumFolder).size());
            pool->setYourLogNo(TrackLogState::Changed);
        }
    } else {
        const QStringList names = entryNames(albumFolder);
        discNumber = integerValue(QFileInfo(fileFolder).fileName().remove(discFolderName, Qt::CaseSensitive));
        if (discNumber <= 0)
            discNumber = 1;
        discCount = countDiscFolders(names, discFolderName);
        if (discCount <= 0)
            discCount = 1;
        if (yourCountTracks_) {
            track.setTrackCount(yourCountTracksOption_ == kCountAlbum
                                    ? countMusicFilesInAlbumFolder(names, albumFolder, discFolderName, audioSuffixes)
                                    : filesWithSuffixs(audioSuffixes, fileFolder).size());
            pool->setYourLogNo(TrackLogState::Changed);
        }
    }
    if (yourCountDiscs_) {
        track.setDiscNumber(discNumber);
        track.setDiscCount(discCount);
        pool->setYourLogNo(TrackLogState::Changed);
    }
}

qint64 Function0011::countDiscFolders(const QStringList &names, const QString &discFolderName)
{
    qint64 highest = 0;
    for (const QString &name : names)
        if (name.startsWith(discFolderName, Qt::CaseSensitive))
            highest = std::max(highest, integerValue(QStringView(name).mid(discFolderName.size())));
    return highest;
}

qint64 Function0011::countMusicFilesInAlbumFolder(const QStringList &names, const QString &albumFolderLocation,
                                                  const QString &discFolderName,
                                                  const QStringList &audioSuffixes)
{
    qint64 count = 0;
    for (const QString &name : names)
        if (name.startsWith(discFolderName, Qt::CaseSensitive))
            count += filesWithSuffixs(audioSuffixes, QStringLiteral("%1/%2").arg(albumFolderLocation, name)).size();
    return count;
}

PanelDescription Function0011::panelDescription() const
{
    PanelDescription panel;
    panel.title = QStringLiteral("Track and disc numbers from the folders");
    panel.summary = QStringLiteral("Sets track count, disc number and disc count from the album folder on disk: "
                                   "disc subfolders such as \"CD1\" and \"CD2\" give the disc numbers.");
    PanelField countTracks{PanelField::Kind::Check, QStringLiteral("yourCountTracks"),
                           QStringLiteral("Count the tracks")};
    PanelField option{PanelField::Kind::Choice, QStringLiteral("yourCountTracksOption"),
                      QStringLiteral("Tracks counted")};
    option.choiceLabels = {QStringLiteral("All discs of the album"), QStringLiteral("The track's disc only")};
    option.choiceValues = {kCountAlbum, kCountDisc};
    option.enabledBy = QStringLiteral("enableCountTracksOption");
    PanelField countDiscs{PanelField::Kind::Check, QStringLiteral("yourCountDiscs"),
                          QStringLiteral("Set disc number and disc count")};
    panel.fields = {countTracks, option, countDiscs};
    return panel;
}
