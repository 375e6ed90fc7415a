#include "functions/function0007.h"

#include "additions/fileadditions.h"
#include "additions/textadditions.h"
#include "additions/textsearch.h"
#include "functions/tagcomposition.h"
#include "functions/trackrelocation.h"
#include "pool/functionpoolcontroller.h"
#include "pool/tagtable.h"

void Function0007::setYourOption(qint64 option)
{
    if (option == yourOption_)
        return;
    yourOption_ = option;
    emit yourOptionChanged();
}

PoolFunctionAnswer Function0007::doMyFunctionCheck()
{
    if (yourDel.isEmpty())
        return PoolAlertCode::IncompleteSettings;
    if (yourTag1 == 0 && yourTag2 == 0 && yourTag3 == 0 && yourTag4 == 0)
        return PoolAlertCode::IncompleteSettings;
    if (yourIgnoreFromBeginning < 0)
        return PoolAlertCode::ContradictorySettings;
    return PoolStep::GoOn;
}

void Function0007::writePart(const ITunesTrack &track, qint64 tag, const QString &part) const
{
    pushTrackTag(track, tag, part);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0007::doMyFunctionMain(const ITunesTrack &track)
{
    QString rest = ov_deletingPathExtension(lastPathComponent(track.as<ITunesFileTrack>().location()));
    if (yourIgnoreFromBeginning >= 1) {
        if (rest.size() <= yourIgnoreFromBeginning)
            return;
        cutTextFromBeginning(rest, yourIgnoreFromBeginning);
    }

    TextRange delimiter = rangeOfString(rest, yourDel, SearchOption::CaseInsensitive);
    if (!delimiter.found()) {
        if (yourOption_ == 2)
            writePart(track, yourOptionTag, rest);
        return;
    }

    const qint64 tags[] = {yourTag1, yourTag2, yourTag3, yourTag4};
    for (qsizetype index = 0; index < 4; ++index) {
        if (index > 0)
            delimiter = rangeOfString(rest, yourDel, SearchOption::CaseInsensitive);
        if (!delimiter.found()) {
            // The last part of the name: whatever follows the last delimiter.
            if (!rest.isEmpty() && tags[index] != 0)
                writePart(track, tags[index], rest);
            return;
        }
        if (tags[index] != 0)
            writePart(track, tags[index], rest.left(delimiter.location));
        rest.remove(0, delimiter.location + delimiter.length);
    }
    // A fourth delimiter: what stands behind it has no tag to go to.
}

PanelDescription Function0007::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Tags from the file name");
    panel.summary = QStringLiteral("Splits the name of each track's file at the delimiter and "
                                   "writes the parts to the chosen tags.");
    const QVariantList tags = writableTagChoices();
    const auto tag = [&](const char *property, const QString &label) {
        PanelField field{Kind::Tag, QString::fromLatin1(property), label};
        field.choiceValues = tags;
        return field;
    };
    PanelField ignore{Kind::Number, QStringLiteral("yourIgnoreFromBeginning"),
                      QStringLiteral("Characters to ignore at the beginning")};
    PanelField option{Kind::Choice, QStringLiteral("yourOption"),
                      QStringLiteral("A name without the delimiter")};
    option.choiceLabels = {QStringLiteral("is left alone"), QStringLiteral("goes whole to a tag")};
    option.choiceValues = {qint64(1), qint64(2)};
    PanelField optionTag = tag("yourOptionTag", QStringLiteral("Tag for the whole name"));
    optionTag.enabledBy = QStringLiteral("enableOptionTag");
    panel.fields = {
        tag("yourTag1", QStringLiteral("First part")),
        tag("yourTag2", QStringLiteral("Second part")),
        tag("yourTag3", QStringLiteral("Third part")),
        tag("yourTag4", QStringLiteral("Fourth part")),
        {Kind::Text, QStringLiteral("yourDel"), QStringLiteral("Delimiter")},
        ignore,
        option,
        optionTag,
    };
    return panel;
}
