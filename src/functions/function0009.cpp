#include "functions/function0009.h"

#include "additions/textadditions.h"
#include "additions/textsearch.h"
#include "functions/tagcomposition.h"
#include "functions/trackrelocation.h"
#include "pool/functionpoolcontroller.h"
#include "pool/tagtable.h"

PoolFunctionAnswer Function0009::doMyFunctionCheck()
{
    if (yourDel.isEmpty())
        return PoolAlertCode::IncompleteSettings;
    if (yourTag1 == 0 && yourTag2 == 0)
        return PoolAlertCode::IncompleteSettings;
    if (yourIgnoreFromBeginning < 0 || yourIgnoreFromEnd < 0)
        return PoolAlertCode::ContradictorySettings;
    return PoolStep::GoOn;
}

void Function0009::doMyFunctionMain(const ITunesTrack &track)
{
    const QString folder = parentFolder(track.as<ITunesFileTrack>().location());
    QString name = lastPathComponent(myFunctionPool()->subAlbumFolderPath(folder));
    if (yourIgnoreFromBeginning > 0) {
        if (name.size() <= yourIgnoreFromBeginning)
            return;
        cutTextFromBeginning(name, yourIgnoreFromBeginning);
    }
    if (yourIgnoreFromEnd > 0) {
        if (name.size() <= yourIgnoreFromEnd)
            return;
        cutTextFromEnd(name, yourIgnoreFromEnd);
    }

    QString first = name;
    QString second = name;
    const TextRange delimiter = rangeOfString(name, yourDel, SearchOption::CaseInsensitive);
    if (delimiter.found()) {
        first = name.left(delimiter.location);
        second = name.mid(delimiter.location + delimiter.length);
    } else if (yourOption != 2) {
        return;
    }
    // Both writes hang on the first tag: without it the second tag is left alone as well,
    // though the track still counts as changed.
    if (yourTag1 != 0) {
        pushTrackTag(track, yourTag1, first);
        pushTrackTag(track, yourTag2, second);
    }
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0009::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Tags from the album folder");
    panel.summary = QStringLiteral("Splits the name of each track's album folder at the delimiter "
                                   "and writes the two parts to the chosen tags.");
    PanelField first{Kind::Tag, QStringLiteral("yourTag1"), QStringLiteral("Before the delimiter")};
    first.choiceValues = writableTagChoices();
    PanelField second{Kind::Tag, QStringLiteral("yourTag2"), QStringLiteral("After the delimiter")};
    second.choiceValues = first.choiceValues;
    PanelField option{Kind::Choice, QStringLiteral("yourOption"),
                      QStringLiteral("A name without the delimiter")};
    option.choiceLabels = {QStringLiteral("is left alone"), QStringLiteral("goes whole to both tags")};
    option.choiceValues = {qint64(1), qint64(2)};
    panel.fields = {
        first,
        {Kind::Text, QStringLiteral("yourDel"), QStringLiteral("Delimiter")},
        second,
        {Kind::Number, QStringLiteral("yourIgnoreFromBeginning"), QStringLiteral("Characters to ignore at the beginning")},
        {Kind::Number, QStringLiteral("yourIgnoreFromEnd"), QStringLiteral("Characters to ignore at the end")},
        option,
    };
    return panel;
}
