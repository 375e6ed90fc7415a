#pragma once

#include "pool/poolfunction.h"

// Fills up to four tags from the parts of each track's file name ("07 - Artist - Title"),
// split at a delimiter; a name without the delimiter can go whole to a tag of its own.
class Function0007 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourTag1 MEMBER yourTag1)
    Q_PROPERTY(qint64 yourTag2 MEMBER yourTag2)
    Q_PROPERTY(qint64 yourTag3 MEMBER yourTag3)
    Q_PROPERTY(qint64 yourTag4 MEMBER yourTag4)
    Q_PROPERTY(QString yourDel MEMBER yourDel)
    Q_PROPERTY(qint64 yourIgnoreFromBeginning MEMBER yourIgnoreFromBeginning)
    Q_PROPERTY(qint64 yourOption READ yourOption WRITE setYourOption NOTIFY yourOptionChanged)
    Q_PROPERTY(qint64 yourOptionTag MEMBER yourOptionTag)
    Q_PROPERTY(bool enableOptionTag READ enableOptionTag NOTIFY yourOptionChanged)

public:
    using PoolFunction::PoolFunction;

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // 1: a name without the delimiter is left alone; 2: it goes whole to yourOptionTag.
    qint64 yourOption() const { return yourOption_; }
    void setYourOption(qint64 option);
    bool enableOptionTag() const { return yourOption_ != 1; }

    qint64 yourTag1 = 8;
    qint64 yourTag2 = 2;
    qint64 yourTag3 = 1;
    qint64 yourTag4 = 0;
    QString yourDel = QStringLiteral(" - ");
    qint64 yourIgnoreFromBeginning = 0;
    qint64 yourOptionTag = 15;

signals:
    void yourOptionChanged();

private:
    void writePart(const ITunesTrack &track, qint64 tag, const QString &part) const;

    qint64 yourOption_ = 1;
};
