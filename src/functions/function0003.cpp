#include "functions/function0003.h"

#include "functions/function0003tagedit.h"
#include "pool/tagtable.h"

namespace {

constexpr qint64 kDefaultSourceTag = 15;
constexpr qint64 kFirstSpecialTag = 100;

} // namespace

Function0003::Function0003(FunctionPoolController *pool, QObject *parent)
    : PoolFunction(pool, parent)
{
}

void Function0003::setYourCopySwapChoose(qint64 choose)
{
    if (choose == yourCopySwapChoose_)
        return;
    yourCopySwapChoose_ = choose;
    if (choose != kCopy && yourSourceTag_ >= kFirstSpecialTag) {
        yourSourceTag_ = kDefaultSourceTag;
        emit yourSourceTagChanged();
    }
    emit yourCopySwapChooseChanged();
}

PoolFunctionAnswer Function0003::doMyFunctionCheck()
{
    if (yourSourceTag_ == yourTargetTag_)
        return PoolAlertCode::IncompleteSettings;
    if (yourCopySwapChoose_ == kCopy)
        yourSel_ = &Function0003::runCopyTags;
    else if (yourCopySwapChoose_ == kSwap)
        yourSel_ = &Function0003::runSwapTags;
    else
        return PoolStep::Stop;
    return PoolStep::GoOn;
}

void Function0003::doMyFunctionMain(const ITunesTrack &track)
{
    if (yourSel_)
        (this->*yourSel_)(track);
}

void Function0003::runCopyTags(const ITunesTrack &track)
{
    const QString source = pullTrackTag(track, yourSourceTag_);
    const QString target = pullTrackTag(track, yourTargetTag_);
    if (source == target)
        return;
    // A number tag reads "0" when it is not set, so that copies like an empty text.
    if (source.isEmpty() || source == QLatin1String("0")) {
        if (!yourCopyEmpty_ || !yourCopyOverwrite_)
            return;
    } else if (!target.isEmpty() && !yourCopyOverwrite_) {
        return;
    }
    TagEdit::pushChangedTag(myFunctionPool(), track, yourTargetTag_, source);
}

void Function0003::runSwapTags(const ITunesTrack &track)
{
    const QString source = pullTrackTag(track, yourSourceTag_);
    const QString target = pullTrackTag(track, yourTargetTag_);
    if (source == target)
        return;
    if (source.isEmpty() || target.isEmpty()) {
        if (yourSwapOption_ == 1 && source.isEmpty())
            TagEdit::pushChangedTag(myFunctionPool(), track, yourSourceTag_, target);
        else if (yourSwapOption_ == 1)
            TagEdit::pushChangedTag(myFunctionPool(), track, yourTargetTag_, source);
        else if (yourSwapOption_ == 3)
            swapTags(track, source, target);
        return;
    }
    swapTags(track, source, target);
}

void Function0003::swapTags(const ITunesTrack &track, const QString &source, const QString &target)
{
    TagEdit::pushChangedTag(myFunctionPool(), track, yourSourceTag_, target);
    TagEdit::pushChangedTag(myFunctionPool(), track, yourTargetTag_, source);
}

PanelDescription Function0003::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Copy or Swap Tags");
    panel.summary = QStringLiteral("Copies the value of one tag into another, or swaps the values of two tags.");
    panel.fields = {
        {.kind = Kind::Choice, .property = QStringLiteral("yourCopySwapChoose"), .label = QStringLiteral("Action"),
         .choiceLabels = {QStringLiteral("Copy"), QStringLiteral("Swap")}, .choiceValues = {kCopy, kSwap}},
        {.kind = Kind::Tag, .property = QStringLiteral("yourSourceTag"), .label = QStringLiteral("From"),
         .choiceValues = TagEdit::tagChoices({101, 102, 103, 104, 105})},
        {.kind = Kind::Tag, .property = QStringLiteral("yourTargetTag"), .label = QStringLiteral("To"),
         .choiceValues = TagEdit::tagChoices({100})},
        {.kind = Kind::Check, .property = QStringLiteral("yourCopyOverwrite"),
         .label = QStringLiteral("Overwrite a tag that has a value"), .enabledBy = QStringLiteral("enableCopy"),
         .group = QStringLiteral("Copy")},
        {.kind = Kind::Check, .property = QStringLiteral("yourCopyEmpty"),
         .label = QStringLiteral("Copy an empty value too (needs overwriting)"),
         .enabledBy = QStringLiteral("enableCopy"), .group = QStringLiteral("Copy")},
        {.kind = Kind::Choice, .property = QStringLiteral("yourSwapOption"),
         .label = QStringLiteral("When one of the tags is empty"),
         .choiceLabels = {QStringLiteral("Move the value into the empty tag"), QStringLiteral("Leave both tags alone"),
                          QStringLiteral("Swap anyway")},
         .choiceValues = {1, 2, 3}, .enabledBy = QStringLiteral("enableSwap"), .group = QStringLiteral("Swap")},
    };
    return panel;
}
