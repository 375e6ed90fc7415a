#pragma once

#include "pool/poolfunction.h"

// Organizer function 22: scales one artwork of each track to a width or a height.
class Function0022 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourScaleArtworkTargetPosition MEMBER yourScaleArtworkTargetPosition NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourScaleArtworkOption MEMBER yourScaleArtworkOption NOTIFY settingsChanged)
    Q_PROPERTY(double yourScaleArtworkTargetSize MEMBER yourScaleArtworkTargetSize NOTIFY settingsChanged)
    Q_PROPERTY(bool yourScaleArtworkUp MEMBER yourScaleArtworkUp NOTIFY settingsChanged)

public:
    static constexpr qint64 kWidth = 1, kHeight = 2; // yourScaleArtworkOption

    using PoolFunction::PoolFunction;

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

signals:
    void settingsChanged();

private:
    qint64 yourScaleArtworkTargetPosition = 0;
    qint64 yourScaleArtworkOption = kWidth;
    double yourScaleArtworkTargetSize = 500.0;
    bool yourScaleArtworkUp = false;
};
