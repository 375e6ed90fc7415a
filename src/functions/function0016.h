#pragma once

#include "pool/poolfunction.h"

// Organizer function 16: embeds the artwork that the library holds beside a track (the cover
// file of its folder) into the track's file. No settings.
class Function0016 : public PoolFunction
{
    Q_OBJECT

public:
    using PoolFunction::PoolFunction;

    PoolFunctionAnswer doMyFunctionCheck() override { return PoolStep::GoOn; }
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;
};
