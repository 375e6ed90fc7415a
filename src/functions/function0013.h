#pragma once

#include "pool/poolfunction.h"

// Organizer function 13: copies an artwork of each track to another position, or swaps two.
// Positions count from 1.
class Function0013 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourSourceArtwork MEMBER yourSourceArtwork NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTargetArtwork MEMBER yourTargetArtwork NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourCopySwapChoose MEMBER yourCopySwapChoose NOTIFY modeChanged)
    Q_PROPERTY(bool yourCopyOverWrite MEMBER yourCopyOverWrite NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTargetOption MEMBER yourTargetOption NOTIFY modeChanged)
    Q_PROPERTY(bool enableCopy READ enableCopy NOTIFY modeChanged)
    Q_PROPERTY(bool enableSwap READ enableSwap NOTIFY modeChanged)
    Q_PROPERTY(bool enableTargetOption READ enableTargetOption NOTIFY modeChanged)

public:
    static constexpr qint64 kCopy = 1, kSwap = 2;              // yourCopySwapChoose
    static constexpr qint64 kTargetPosition = 1, kLast = 2;    // yourTargetOption

    using PoolFunction::PoolFunction;

    bool enableCopy() const { return yourCopySwapChoose == kCopy && yourTargetOption != kLast; }
    bool enableSwap() const { return yourCopySwapChoose == kSwap; }
    bool enableTargetOption() const { return yourTargetOption != kLast; }

    PoolFunctionAnswer doMyFunctionCheck() override;
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    void runCopyArtwork(const ITunesTrack &track);
    void runSwapArtwork(const ITunesTrack &track);

signals:
    void settingsChanged();
    void modeChanged();

private:
    qint64 yourSourceArtwork = 0;
    qint64 yourTargetArtwork = 0;
    qint64 yourCopySwapChoose = kCopy;
    bool yourCopyOverWrite = false;
    qint64 yourTargetOption = kTargetPosition;
    void (Function0013::*yourSel)(const ITunesTrack &) = nullptr;
};
