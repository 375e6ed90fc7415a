#include "functions/function0006.h"

#include "additions/fileadditions.h"
#include "functions/tagcomposition.h"
#include "functions/trackrelocation.h"
#include "pool/functionpoolcontroller.h"


QString Function0006::leadingZero(const QString &text, qint64 tagNo) const
{
    if ((tagNo == 8 && yourLeadZeroTrackNo) || (tagNo == 7 && yourLeadZeroCD))
        return textWithLeadingZero(text);
    return text;
}

QString Function0006::composedName(const ITunesTrack &track) const
{
    const TagNameRecipe recipe{yourPrefix,
                               {yourTag1, yourTag2, yourTag3, yourTag4},
                               {yourDel1, yourDel2, yourDel3},
                               yourSuffix};
    return composeNameFromTags(track, recipe, [this](const QString &text, qint64 tagNo) {
        return leadingZero(text, tagNo);
    });
}

void Function0006::doMyFunctionMain(const ITunesTrack &track)
{
    const ITunesFileTrack fileTrack = track.as<ITunesFileTrack>();
    const QString path = fileTrack.location();
    const QString extension = ov_pathExtension(path);
    const QString name = composedName(track) + QLatin1Char('.') + extension;
    if (name == lastPathComponent(path))
        return;

    const QString folder = parentFolder(path);
    if (const QString refusal = linkedFolderRefusal(folder, myFunctionPool()->subMusicFolder());
        !refusal.isEmpty())
        throwRenameRefusal(refusal);
    QString source = path;
    QString target = folder + QLatin1Char('/') + name;
    if (isSymbolicLink(target))
        throwRenameRefusal(QStringLiteral("\"%1\" is a symbolic link; Orvane never renames a file onto "
                                          "a link: remove or rename the link, then run the function "
                                          "again").arg(target));
    // Goes through a temporary name, so that a name differing only in case can be taken on a
    // file system that ignores case.
    if (pathIsTaken(target)) {
        const QString temporary = target + QLatin1Char('.') + extension;
        if (renameOnDisk(source, temporary).ok())
            source = temporary;
        target = ov_deletingPathExtension(temporary);
    }
    const RenameResult renamed = renameOnDisk(source, target);
    if (renamed.ok())
        source = target;
    else if (source == path)
        throwRenameRefusal(renamed.reason);
    // Otherwise the name is another file's: the track keeps the temporary one.
    fileTrack.setLocation(source);
    if (myFunctionPool()->currentTrackFailed()) {
        // The library cannot follow: the file goes back to where the library looks for it.
        renameOnDisk(source, path);
        return;
    }

    if (yourWriteToComment)
        track.setComment(ov_deletingPathExtension(lastPathComponent(target)));
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0006::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("File names from tags");
    panel.summary = QStringLiteral("Renames the files of the tracks after their tags, for example "
                                   "\"07 - Artist - Title.mp3\".");
    const QVariantList tags = readableTagChoices();
    const auto tag = [&](const char *property, const QString &label) {
        PanelField field{Kind::Tag, QString::fromLatin1(property), label};
        field.choiceValues = tags;
        field.group = QStringLiteral("Name");
        return field;
    };
    const auto text = [](const char *property, const QString &label, const QString &group) {
        PanelField field{Kind::Text, QString::fromLatin1(property), label};
        field.group = group;
        return field;
    };
    panel.fields = {
        text("yourPrefix", QStringLiteral("Prefix"), QStringLiteral("Name")),
        tag("yourTag1", QStringLiteral("First tag")),
        text("yourDel1", QStringLiteral("Delimiter"), QStringLiteral("Name")),
        tag("yourTag2", QStringLiteral("Second tag")),
        text("yourDel2", QStringLiteral("Delimiter"), QStringLiteral("Name")),
        tag("yourTag3", QStringLiteral("Third tag")),
        text("yourDel3", QStringLiteral("Delimiter"), QStringLiteral("Name")),
        tag("yourTag4", QStringLiteral("Fourth tag")),
        text("yourSuffix", QStringLiteral("Suffix"), QStringLiteral("Name")),
        {Kind::Check, QStringLiteral("yourLeadZeroTrackNo"), QStringLiteral("Track numbers with a leading zero")},
        {Kind::Check, QStringLiteral("yourLeadZeroCD"), QStringLiteral("Disc numbers with a leading zero")},
        {Kind::Check, QStringLiteral("yourWriteToComment"), QStringLiteral("Write the new name to the comment")},
    };
    return panel;
}
