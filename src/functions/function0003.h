#pragma once

#include "pool/poolfunction.h"

// Organizer function 3: copies one tag's value into another, or swaps two tags, by tag number.
// Settings live on the main thread; the worker reads them during a run.
class Function0003 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourSourceTag MEMBER yourSourceTag_ NOTIFY yourSourceTagChanged)
    Q_PROPERTY(qint64 yourTargetTag MEMBER yourTargetTag_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourCopySwapChoose READ yourCopySwapChoose WRITE setYourCopySwapChoose
                   NOTIFY yourCopySwapChooseChanged)
    Q_PROPERTY(bool yourCopyOverwrite MEMBER yourCopyOverwrite_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourCopyEmpty MEMBER yourCopyEmpty_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourSwapOption MEMBER yourSwapOption_ NOTIFY settingsChanged)
    Q_PROPERTY(bool enableCopy READ enableCopy NOTIFY yourCopySwapChooseChanged)
    Q_PROPERTY(bool enableSwap READ enableSwap NOTIFY yourCopySwapChooseChanged)
    Q_PROPERTY(bool enableSomeInterfaceItem READ enableSomeInterfaceItem CONSTANT)

public:
    static constexpr qint64 kCopy = 1;
    static constexpr qint64 kSwap = 2;

    explicit Function0003(FunctionPoolController *pool, QObject *parent = nullptr);

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    qint64 yourCopySwapChoose() const { return yourCopySwapChoose_; }
    // Leaving copy puts a source that only copying can read (a store value) back to the comment.
    void setYourCopySwapChoose(qint64 choose);

    bool enableCopy() const { return yourCopySwapChoose_ == kCopy; }
    bool enableSwap() const { return yourCopySwapChoose_ == kSwap; }
    bool enableSomeInterfaceItem() const { return false; }

    void runCopyTags(const ITunesTrack &track);
    void runSwapTags(const ITunesTrack &track);

signals:
    void yourSourceTagChanged();
    void yourCopySwapChooseChanged();
    void settingsChanged();

private:
    void swapTags(const ITunesTrack &track, const QString &source, const QString &target);

    void (Function0003::*yourSel_)(const ITunesTrack &) = nullptr;
    qint64 yourSourceTag_ = 15;
    qint64 yourTargetTag_ = 15;
    qint64 yourCopySwapChoose_ = kCopy;
    bool yourCopyOverwrite_ = false;
    bool yourCopyEmpty_ = false;
    qint64 yourSwapOption_ = 1;
};
