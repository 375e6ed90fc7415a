#pragma once

#include "pool/poolfunction.h"

// Fills two tags from the name of each track's album folder ("Artist - Album"), split at the
// first delimiter.
class Function0009 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourTag1 MEMBER yourTag1)
    Q_PROPERTY(qint64 yourTag2 MEMBER yourTag2)
    Q_PROPERTY(QString yourDel MEMBER yourDel)
    Q_PROPERTY(qint64 yourIgnoreFromBeginning MEMBER yourIgnoreFromBeginning)
    Q_PROPERTY(qint64 yourIgnoreFromEnd MEMBER yourIgnoreFromEnd)
    Q_PROPERTY(qint64 yourOption MEMBER yourOption)

public:
    using PoolFunction::PoolFunction;

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    qint64 yourTag1 = 4;
    qint64 yourTag2 = 3;
    QString yourDel = QStringLiteral(" - ");
    qint64 yourIgnoreFromBeginning = 0;
    qint64 yourIgnoreFromEnd = 0;
    // 2: a name without the delimiter goes whole to both tags; any other value leaves it.
    qint64 yourOption = 2;
};
