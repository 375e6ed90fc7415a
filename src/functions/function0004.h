#pragma once

#include "pool/poolfunction.h"

// Organizer function 4: cuts one tag's text, either by a number of characters or at a text.
// Settings live on the main thread; the worker reads them during a run.
class Function0004 : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(qint64 yourCutChoose MEMBER yourCutChoose_ NOTIFY yourCutChooseChanged)
    Q_PROPERTY(qint64 yourNumericValue MEMBER yourNumericValue_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourNumericCutOption MEMBER yourNumericCutOption_ NOTIFY settingsChanged)
    Q_PROPERTY(QString yourTextValue MEMBER yourTextValue_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourTextCutOption MEMBER yourTextCutOption_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourPerformOn MEMBER yourPerformOn_ NOTIFY settingsChanged)
    Q_PROPERTY(qint64 yourRemoveSpaces MEMBER yourRemoveSpaces_ NOTIFY settingsChanged)
    Q_PROPERTY(bool enableCutByNumeric READ enableCutByNumeric NOTIFY yourCutChooseChanged)
    Q_PROPERTY(bool enableCutByText READ enableCutByText NOTIFY yourCutChooseChanged)

public:
    static constexpr qint64 kCutByNumber = 1;
    static constexpr qint64 kCutByText = 2;

    explicit Function0004(FunctionPoolController *pool, QObject *parent = nullptr);

    PoolFunctionAnswer doMyFunctionCheck() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    PanelDescription panelDescription() const override;

    bool enableCutByNumeric() const { return yourCutChoose_ == kCutByNumber; }
    bool enableCutByText() const { return yourCutChoose_ == kCutByText; }

    void runCutByNumber(const ITunesTrack &track);
    void runCutByText(const ITunesTrack &track);

signals:
    void yourCutChooseChanged();
    void settingsChanged();

private:
    // Cuts the text in place by the run's settings.
    void cutByNumber(QString &text) const;
    void cutByText(QString &text) const;
    void cutTag(const ITunesTrack &track, void (Function0004::*cut)(QString &) const);

    void (Function0004::*yourSel_)(const ITunesTrack &) = nullptr;
    qint64 yourCutChoose_ = kCutByNumber;
    qint64 yourNumericValue_ = 0;
    qint64 yourNumericCutOption_ = 2;
    QString yourTextValue_ = QStringLiteral(" - ");
    qint64 yourTextCutOption_ = 1;
    qint64 yourPerformOn_ = 1;
    qint64 yourRemoveSpaces_ = 1;
};
