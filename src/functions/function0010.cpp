#include "functions/function0010.h"

#include "functions/tagcomposition.h"
#include "pool/functionpoolcontroller.h"


Function0010::Function0010(FunctionPoolController *pool, QObject *parent)
    : PoolFunction(pool, parent), follower_(pool)
{
}

PoolFunctionAnswer Function0010::doMyFunctionPre()
{
    follower_.reset();
    return PoolStep::GoOn;
}

QString Function0010::leadingZero(const QString &text, qint64 tagNo) const
{
    return tagNo == 7 && yourLeadZeroCD ? textWithLeadingZero(text) : text;
}

QString Function0010::composedName(const ITunesTrack &track) const
{
    const TagNameRecipe recipe{yourPrefix, {yourTag1, yourTag2, yourTag3}, {yourDel1, yourDel2}, yourSuffix};
    return composeNameFromTags(track, recipe, [this](const QString &text, qint64 tagNo) {
        return leadingZero(text, tagNo);
    });
}

void Function0010::doMyFunctionMain(const ITunesTrack &track)
{
    const QString folder = parentFolder(track.as<ITunesFileTrack>().location());
    const QString album = myFunctionPool()->subAlbumFolderPath(folder);
    const QString name = composedName(track);
    if (name.isEmpty())
        return;

    const QString target = parentFolder(album) + QLatin1Char('/') + name;
    if (name != lastPathComponent(album)) {
        if (const QString refusal = folderRenameRefusal(album, myFunctionPool()->subMusicFolder());
            !refusal.isEmpty())
            throwRenameRefusal(refusal);
        if (isSymbolicLink(target))
            throwRenameRefusal(QStringLiteral("\"%1\" is a symbolic link; Orvane never renames a folder "
                                              "onto a link: remove or rename the link, then run the "
                                              "function again").arg(target));
        follower_.prepare();
        QString source = album;
        if (pathIsTaken(target)) {
            const QString detour = target + name;
            if (renameOnDisk(source, detour).ok())
                source = detour;
        }
        const RenameResult renamed = renameOnDisk(source, target);
        if (renamed.ok())
            source = target;
        else if (source == album)
            throwRenameRefusal(renamed.reason);
        follower_.folderDidMove(album, source);
        myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    }
    if (yourWriteToComment) {
        track.setComment(lastPathComponent(target));
        myFunctionPool()->setYourLogNo(TrackLogState::Changed);
    }
}

PanelDescription Function0010::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Album folder names from tags");
    panel.summary = QStringLiteral("Renames the album folder of each track after its tags, for "
                                   "example \"Album Artist - Album\".");
    const auto tag = [](const char *property, const QString &label) {
        PanelField field{Kind::Tag, QString::fromLatin1(property), label};
        field.choiceValues = readableTagChoices();
        return field;
    };
    panel.fields = {
        {Kind::Text, QStringLiteral("yourPrefix"), QStringLiteral("Prefix")},
        tag("yourTag1", QStringLiteral("First tag")),
        {Kind::Text, QStringLiteral("yourDel1"), QStringLiteral("Delimiter")},
        tag("yourTag2", QStringLiteral("Second tag")),
        {Kind::Text, QStringLiteral("yourDel2"), QStringLiteral("Delimiter")},
        tag("yourTag3", QStringLiteral("Third tag")),
        {Kind::Text, QStringLiteral("yourSuffix"), QStringLiteral("Suffix")},
        {Kind::Check, QStringLiteral("yourLeadZeroCD"), QStringLiteral("Disc numbers with a leading zero")},
        {Kind::Check, QStringLiteral("yourWriteToComment"), QStringLiteral("Write the folder's name to the comment")},
    };
    return panel;
}
