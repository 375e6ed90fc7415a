#pragma once

#include "pool/poolfunction.h"

// Renames each track's file after its tags ("07 - Artist - Title.mp3"), optionally noting the
// new name in the comment; the library follows the file to its new name.
class Function0006 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourTag1 MEMBER yourTag1)
    Q_PROPERTY(qint64 yourTag2 MEMBER yourTag2)
    Q_PROPERTY(qint64 yourTag3 MEMBER yourTag3)
    Q_PROPERTY(qint64 yourTag4 MEMBER yourTag4)
    Q_PROPERTY(QString yourDel1 MEMBER yourDel1)
    Q_PROPERTY(QString yourDel2 MEMBER yourDel2)
    Q_PROPERTY(QString yourDel3 MEMBER yourDel3)
    Q_PROPERTY(QString yourPrefix MEMBER yourPrefix)
    Q_PROPERTY(QString yourSuffix MEMBER yourSuffix)
    Q_PROPERTY(bool yourLeadZeroCD MEMBER yourLeadZeroCD)
    Q_PROPERTY(bool yourLeadZeroTrackNo MEMBER yourLeadZeroTrackNo)
    Q_PROPERTY(bool yourWriteToComment MEMBER yourWriteToComment)

public:
    using PoolFunction::PoolFunction;

    PoolFunctionAnswer doMyFunctionCheck() override { return PoolStep::GoOn; }
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // The tag's text as it goes into the name: one-character disc and track numbers get a
    // leading zero when the settings ask for it.
    QString leadingZero(const QString &text, qint64 tagNo) const;
    // The file name the tags give, without the extension.
    QString composedName(const ITunesTrack &track) const;

    qint64 yourTag1 = 8;
    qint64 yourTag2 = 2;
    qint64 yourTag3 = 1;
    qint64 yourTag4 = 0;
    QString yourDel1 = QStringLiteral(" - ");
    QString yourDel2 = QStringLiteral(" - ");
    QString yourDel3 = QStringLiteral(" - ");
    QString yourPrefix;
    QString yourSuffix;
    bool yourLeadZeroCD = true;
    bool yourLeadZeroTrackNo = true;
    bool yourWriteToComment = false;
};
