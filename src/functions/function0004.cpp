#include "functions/function0004.h"

#include "additions/textsearch.h"
#include "functions/function0003tagedit.h"
#include "pool/tagtable.h"

Function0004::Function0004(FunctionPoolController *pool, QObject *parent)
    : PoolFunction(pool, parent)
{
}

PoolFunctionAnswer Function0004::doMyFunctionCheck()
{
    if (yourCutChoose_ == kCutByText) {
        if (yourTextValue_.isEmpty())
            return PoolAlertCode::IncompleteSettings;
        yourSel_ = &Function0004::runCutByText;
    } else if (yourCutChoose_ == kCutByNumber) {
        if (yourNumericValue_ < 1)
            return PoolAlertCode::ContradictorySettings;
        yourSel_ = &Function0004::runCutByNumber;
    } else {
        return PoolStep::Stop;
    }
    return PoolStep::GoOn;
}

void Function0004::doMyFunctionMain(const ITunesTrack &track)
{
    if (yourSel_)
        (this->*yourSel_)(track);
}

void Function0004::runCutByNumber(const ITunesTrack &track)
{
    cutTag(track, &Function0004::cutByNumber);
}

void Function0004::runCutByText(const ITunesTrack &track)
{
    cutTag(track, &Function0004::cutByText);
}

void Function0004::cutTag(const ITunesTrack &track, void (Function0004::*cut)(QString &) const)
{
    const QString original = pullTrackTag(track, yourPerformOn_);
    QString text = original;
    (this->*cut)(text);
    TagEdit::pushTagIfChanged(myFunctionPool(), track, yourPerformOn_, original, text, yourRemoveSpaces_ != 0);
}

void Function0004::cutByNumber(QString &text) const
{
    // A text no longer than the number is left whole, whichever way it would be cut.
    if (text.size() <= yourNumericValue_)
        return;
    switch (yourNumericCutOption_) {
    case 1: cutTextFromBeginning(text, yourNumericValue_); break;
    case 2: cutTextFromEnd(text, yourNumericValue_); break;
    case 3: keepTextFromBeginning(text, yourNumericValue_); break;
    case 4: keepTextFromEnd(text, yourNumericValue_); break;
    default: break;
    }
}

void Function0004::cutByText(QString &text) const
{
    if (yourTextCutOption_ == 1) {
        const TextRange range = rangeOfString(text, yourTextValue_, SearchOption::CaseInsensitive);
        if (range.found())
            text.truncate(range.location);
    } else {
        const TextRange range =
            rangeOfString(text, yourTextValue_, SearchOption::CaseInsensitive | SearchOption::Backwards);
        if (range.found())
            text.remove(0, range.location + range.length);
    }
}

PanelDescription Function0004::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Cut Tags");
    panel.summary = QStringLiteral("Shortens a tag by a number of characters, or cuts it where a text occurs.");
    panel.fields = {
        {.kind = Kind::Tag, .property = QStringLiteral("yourPerformOn"), .label = QStringLiteral("Tag")},
        {.kind = Kind::Choice, .property = QStringLiteral("yourCutChoose"), .label = QStringLiteral("Cut"),
         .choiceLabels = {QStringLiteral("By number of characters"), QStringLiteral("At a text")},
         .choiceValues = {kCutByNumber, kCutByText}},
        {.kind = Kind::Number, .property = QStringLiteral("yourNumericValue"), .label = QStringLiteral("Characters"),
         .minimum = 1, .enabledBy = QStringLiteral("enableCutByNumeric"), .group = QStringLiteral("By number")},
        {.kind = Kind::Choice, .property = QStringLiteral("yourNumericCutOption"),
         .choiceLabels = {QStringLiteral("Cut from the beginning"), QStringLiteral("Cut from the end"),
                          QStringLiteral("Keep from the beginning"), QStringLiteral("Keep from the end")},
         .choiceValues = {1, 2, 3, 4}, .enabledBy = QStringLiteral("enableCutByNumeric"),
         .group = QStringLiteral("By number")},
        {.kind = Kind::Text, .property = QStringLiteral("yourTextValue"), .label = QStringLiteral("Text"),
         .enabledBy = QStringLiteral("enableCutByText"), .group = QStringLiteral("At a text")},
        {.kind = Kind::Choice, .property = QStringLiteral("yourTextCutOption"),
         .choiceLabels = {QStringLiteral("Cut from the first occurrence to the end"),
                          QStringLiteral("Cut from the beginning through the last occurrence")},
         .choiceValues = {1, 2}, .enabledBy = QStringLiteral("enableCutByText"), .group = QStringLiteral("At a text")},
        {.kind = Kind::Check, .property = QStringLiteral("yourRemoveSpaces"),
         .label = QStringLiteral("Remove unnecessary spaces")},
    };
    return panel;
}
