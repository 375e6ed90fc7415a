#include "functions/function0005.h"

#include "functions/function0003tagedit.h"
#include "pool/tagtable.h"

Function0005::Function0005(FunctionPoolController *pool, QObject *parent)
    : PoolFunction(pool, parent)
{
}

PoolFunctionAnswer Function0005::doMyFunctionCheck()
{
    if (!yourAddText_.isEmpty() || yourAddOption_)
        return PoolStep::GoOn;
    return PoolAlertCode::IncompleteSettings;
}

void Function0005::doMyFunctionMain(const ITunesTrack &track)
{
    const QString original = pullTrackTag(track, yourPerformOn_);
    const QString second = yourAddOption_ ? pullTrackTag(track, yourAddOptionTag_) : QString();
    const QString text = yourAddSide_ == kInFront ? second + yourAddText_ + original
                                                  : original + yourAddText_ + second;
    TagEdit::pushTagIfChanged(myFunctionPool(), track, yourPerformOn_, original, text, yourRemoveSpaces_);
}

PanelDescription Function0005::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Add to Tags");
    panel.summary = QStringLiteral("Puts a text, and if asked the value of a second tag, in front of or behind a tag.");
    panel.fields = {
        {.kind = Kind::Tag, .property = QStringLiteral("yourPerformOn"), .label = QStringLiteral("Tag")},
        {.kind = Kind::Choice, .property = QStringLiteral("yourAddSide"), .label = QStringLiteral("Add"),
         .choiceLabels = {QStringLiteral("In front"), QStringLiteral("Behind")}, .choiceValues = {kInFront, 2}},
        {.kind = Kind::Text, .property = QStringLiteral("yourAddText"), .label = QStringLiteral("Text")},
        {.kind = Kind::Check, .property = QStringLiteral("yourAddOption"),
         .label = QStringLiteral("Add the value of another tag too")},
        {.kind = Kind::Tag, .property = QStringLiteral("yourAddOptionTag"), .choiceValues = TagEdit::tagChoices({101, 102, 103, 104, 105}),
         .enabledBy = QStringLiteral("yourAddOption")},
        {.kind = Kind::Check, .property = QStringLiteral("yourRemoveSpaces"),
         .label = QStringLiteral("Remove unnecessary spaces")},
    };
    return panel;
}
