#include "functions/function0023.h"

#include "additions/fileadditions.h"
#include "additions/textadditions.h"
#include "functions/albumfiles.h"
#include "functions/trackrelocation.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"
#include "pool/tagtable.h"

PoolFunctionAnswer Function0023::doMyFunctionCheck()
{
    if (!yourRenameArtworkFront && !yourRenameArtworkBack)
        return PoolAlertCode::IncompleteSettings;
    if ((yourRenameArtworkFront && yourIdentifierArtworkFront.isEmpty())
        || (yourRenameArtworkBack && yourIdentifierArtworkBack.isEmpty()))
        return PoolAlertCode::IncompleteSettings;
    if (yourRenameArtworkFront && yourRenameArtworkBack
        && (yourIdentifierArtworkFront.contains(yourIdentifierArtworkBack, Qt::CaseInsensitive)
            || yourIdentifierArtworkBack.contains(yourIdentifierArtworkFront, Qt::CaseInsensitive)))
        return PoolAlertCode::InvalidSettings;
    return PoolStep::GoOn;
}

QString Function0023::newName(const ITunesTrack &track, const QString &albumFolder) const
{
    if (yourRenameOption == kAfterFolder)
        return lastPathComponent(albumFolder);
    // A separator belongs to the tag after it and is left out with it.
    QString name = yourPrefix;
    if (yourTag1 != 0)
        name += pullTrackTag(track, yourTag1);
    if (yourTag2 != 0)
        name += yourDel1 + pullTrackTag(track, yourTag2);
    if (yourTag3 != 0)
        name += yourDel2 + pullTrackTag(track, yourTag3);
    name += yourSuffix;
    removeIllegalCharacters(name);
    return name;
}

void Function0023::doMyFunctionMain(const ITunesTrack &track)
{
    const QString folder = albumFolderOfTrack(myFunctionPool(), track);
    const QString name = newName(track, folder);
    // Without a name the file would be named after the suffix alone.
    if (name.trimmed().isEmpty())
        return;
    const FunctionPoolPreferences *preferences = myFunctionPool()->myPreferences();
    if (yourRenameArtworkFront
        && runRenameArtwork(name + preferences->prefArtworkFrontSuffix(), folder, yourIdentifierArtworkFront))
        myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    if (yourRenameArtworkBack
        && runRenameArtwork(name + preferences->prefArtworkBackSuffix(), folder, yourIdentifierArtworkBack))
        myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

bool Function0023::runRenameArtwork(const QString &newName, const QString &albumFolderLocation,
                                    const QString &artworkIdentifier)
{
    const QString found = fileFromList(imageFilesIn(myFunctionPool(), albumFolderLocation), artworkIdentifier);
    if (found.isNull())
        return false;
    const QString from = albumFolderLocation + QLatin1Char('/') + found;
    const QString to = albumFolderLocation + QLatin1Char('/') + newName + QLatin1Char('.') + ov_pathExtension(found);
    // The album's next track finds the file renamed already.
    if (pathIsTaken(to))
        return false;
    const RenameResult result = renameOnDisk(from, to);
    if (!result.ok())
        throwFileFailure(QStringLiteral("cannot rename %1 to %2: %3").arg(from, to, result.reason));
    return true;
}

PanelDescription Function0023::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Rename image files");
    panel.summary = QStringLiteral("Renames the front and back image files in each track's album folder, found by "
                                   "a part of their name, after the folder or after tags, followed by the artwork "
                                   "suffixes of the organizer's preferences. A name that is taken is left alone.");
    PanelField option{Kind::Choice, QStringLiteral("yourRenameOption"), QStringLiteral("New name after")};
    option.choiceLabels = {QStringLiteral("The album folder"), QStringLiteral("Tags")};
    option.choiceValues = {kAfterFolder, kAfterTags};
    QList<PanelField> tagFields;
    tagFields << PanelField{Kind::Text, QStringLiteral("yourPrefix"), QStringLiteral("Prefix")};
    for (int i = 1; i <= 3; ++i) {
        if (i > 1)
            tagFields << PanelField{Kind::Text, QStringLiteral("yourDel%1").arg(i - 1), QStringLiteral("Separator")};
        PanelField tag{Kind::Tag, QStringLiteral("yourTag%1").arg(i), QStringLiteral("Tag %1").arg(i)};
        tag.choiceValues = {qint64(0)};
        for (qint64 number = 1; number <= 29; ++number)
            tag.choiceValues << number;
        tagFields << tag;
    }
    tagFields << PanelField{Kind::Text, QStringLiteral("yourSuffix"), QStringLiteral("Suffix")};
    for (PanelField &field : tagFields) {
        field.enabledBy = QStringLiteral("enableTags");
        field.group = QStringLiteral("Name after tags");
    }
    panel.fields << option << tagFields;
    QList<PanelField> files{
        {Kind::Check, QStringLiteral("yourRenameArtworkFront"), QStringLiteral("Rename the front image")},
        {Kind::Text, QStringLiteral("yourIdentifierArtworkFront"), QStringLiteral("Its file name contains")},
        {Kind::Check, QStringLiteral("yourRenameArtworkBack"), QStringLiteral("Rename the back image")},
        {Kind::Text, QStringLiteral("yourIdentifierArtworkBack"), QStringLiteral("Its file name contains")}};
    for (PanelField &field : files)
        field.group = QStringLiteral("Image files");
    panel.fields << files;
    return panel;
}
