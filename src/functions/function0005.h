#pragma once

#include "pool/poolfunction.h"

// Organizer function 5: adds a text, and optionally the value of a second tag, in front of or
// behind one tag's text. Settings live on the main thread; the worker reads them during a run.
class Function0005 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourAddSide MEMBER yourAddSide_ NOTIFY settingsChanged)
    Q_PROPERTY(QString yourAddText MEMBER yourAddText_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourAddOption MEMBER yourAddOption_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourAddOptionTag MEMBER yourAddOptionTag_ NOTIFY settingsChanged)
    Q_PROPERTY(bool yourRemoveSpaces MEMBER yourRemoveSpaces_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourPerformOn MEMBER yourPerformOn_ NOTIFY settingsChanged)

public:
    static constexpr qint64 kInFront = 1;

    explicit Function0005(FunctionPoolController *pool, QObject *parent = nullptr);

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

signals:
    void settingsChanged();

private:
    qint64 yourAddSide_ = kInFront;
    QString yourAddText_;
    bool yourAddOption_ = false;
    qint64 yourAddOptionTag_ = 1;
    bool yourRemoveSpaces_ = true;
    qint64 yourPerformOn_ = 1;
};
