#pragma once

#include "functions/trackrelocation.h"
#include "pool/poolfunction.h"

// Renames each track's album folder after its tags ("Album Artist - Album"), optionally noting
// the folder's name in the comment. A disc folder ("CD1") is looked through to the album
// folder above it. The library follows the files to the renamed folder.
class Function0010 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourTag1 MEMBER yourTag1)
    Q_PROPERTY(qint64 yourTag2 MEMBER yourTag2)
    Q_PROPERTY(qint64 yourTag3 MEMBER yourTag3)
    Q_PROPERTY(QString yourDel1 MEMBER yourDel1)
    Q_PROPERTY(QString yourDel2 MEMBER yourDel2)
    Q_PROPERTY(QString yourPrefix MEMBER yourPrefix)
    Q_PROPERTY(QString yourSuffix MEMBER yourSuffix)
    Q_PROPERTY(bool yourLeadZeroCD MEMBER yourLeadZeroCD)
    Q_PROPERTY(bool yourWriteToComment MEMBER yourWriteToComment)

public:
    explicit Function0010(FunctionPoolController *pool, QObject *parent = nullptr);

    PoolFunctionAnswer doMyFunctionCheck() override { return PoolStep::GoOn; }
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    // A one-character disc number gets a leading zero when the settings ask for it.
    QString leadingZero(const QString &text, qint64 tagNo) const;
    QString composedName(const ITunesTrack &track) const;

    qint64 yourTag1 = 4;
    qint64 yourTag2 = 3;
    qint64 yourTag3 = 0;
    QString yourDel1 = QStringLiteral(" - ");
    QString yourDel2 = QStringLiteral(" - ");
    QString yourPrefix;
    QString yourSuffix;
    bool yourLeadZeroCD = true;
    bool yourWriteToComment = false;

private:
    LibraryFolderFollower follower_;
};
