#include "functions/function0013.h"

#include "pool/functionpoolcontroller.h"

PoolFunctionAnswer Function0013::doMyFunctionCheck()
{
    if (yourSourceArtwork < 1)
        return PoolAlertCode::ContradictorySettings;
    if (yourTargetOption == kTargetPosition) {
        if (yourSourceArtwork == yourTargetArtwork)
            return PoolAlertCode::InvalidSettings;
        if (yourTargetArtwork < 1)
            return PoolAlertCode::ContradictorySettings;
    }
    return PoolStep::GoOn;
}

PoolFunctionAnswer Function0013::doMyFunctionPre()
{
    yourSel = yourCopySwapChoose == kCopy ? &Function0013::runCopyArtwork : &Function0013::runSwapArtwork;
    return PoolStep::GoOn;
}

void Function0013::doMyFunctionMain(const ITunesTrack &track)
{
    if (yourSel)
        (this->*yourSel)(track);
}

// The pictures move as the bytes they are stored as, so that a copy or swap never re-encodes.
void Function0013::runSwapArtwork(const ITunesTrack &track)
{
    const qint64 count = track.artworks().size();
    const qint64 target = yourTargetOption == kTargetPosition ? yourTargetArtwork : count;
    if (target == yourSourceArtwork || count < target || count < yourSourceArtwork)
        return;
    const ITunesArtwork source = track.artworkAt(yourSourceArtwork - 1);
    const ITunesArtwork other = track.artworkAt(target - 1);
    const QByteArray sourceBytes = source.rawData();
    const QByteArray otherBytes = other.rawData();
    source.setRawData(otherBytes);
    other.setRawData(sourceBytes);
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

void Function0013::runCopyArtwork(const ITunesTrack &track)
{
    const qint64 count = track.artworks().size();
    const qint64 source = yourSourceArtwork;
    qint64 target = yourTargetArtwork;
    if (yourTargetOption != kTargetPosition) {
        // To the last position, whatever the overwrite setting says.
        if (count <= source)
            return;
        target = count;
    } else {
        if (count < source)
            return;
        if (count >= target && !yourCopyOverWrite)
            return;
    }
    // A target beyond the last artwork adds one.
    track.artworkAt(target - 1).setRawData(track.artworkAt(source - 1).rawData());
    myFunctionPool()->setYourLogNo(TrackLogState::Changed);
}

PanelDescription Function0013::panelDescription() const
{
    using Kind = PanelField::Kind;
    PanelDescription panel;
    panel.title = QStringLiteral("Copy or swap artworks");
    panel.summary = QStringLiteral("Copies the artwork at one position of each track to another position, or "
                                   "swaps the two. Positions count from 1.");
    PanelField mode{Kind::Choice, QStringLiteral("yourCopySwapChoose"), QStringLiteral("Action")};
    mode.choiceLabels = {QStringLiteral("Copy"), QStringLiteral("Swap")};
    mode.choiceValues = {kCopy, kSwap};
    PanelField source{Kind::Number, QStringLiteral("yourSourceArtwork"), QStringLiteral("From position")};
    source.maximum = 99;
    PanelField targetOption{Kind::Choice, QStringLiteral("yourTargetOption"), QStringLiteral("To")};
    targetOption.choiceLabels = {QStringLiteral("The position"), QStringLiteral("The last artwork")};
    targetOption.choiceValues = {kTargetPosition, kLast};
    PanelField target{Kind::Number, QStringLiteral("yourTargetArtwork"), QStringLiteral("Position")};
    target.maximum = 99;
    target.enabledBy = QStringLiteral("enableTargetOption");
    PanelField overwrite{Kind::Check, QStringLiteral("yourCopyOverWrite"),
                         QStringLiteral("A copy may replace the artwork at the position")};
    overwrite.enabledBy = QStringLiteral("enableCopy");
    panel.fields = {mode, source, targetOption, target, overwrite};
    return panel;
}
