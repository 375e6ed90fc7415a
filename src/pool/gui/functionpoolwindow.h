#pragma once

#include "pool/poolfrontend.h"

#include <QMainWindow>
#include <QMap>
#include <QPointer>

class FunctionPoolController;
class FunctionSheetRegistry;
class LogSheet;
class PoolFunctionRegistry;
class PoolPreferencesSheet;
class ProgressSheet;
class QAction;
class QListWidget;
class QPushButton;
class QStackedWidget;

// The organizer window: a toolbar, the navigator of the functions and one panel per function
// (the start panel while none is chosen), each built from the function's description. It owns
// the engine and is the engine's front end: progress, alerts, logs and folder questions are
// its sheets. It has the functions of the registry it is given and their sheets; it keeps
// neither registry. Main thread.
class FunctionPoolWindow : public QMainWindow, public PoolFrontEnd
{
    Q_OBJECT

public:
    static constexpr qint64 kStartPanel = -1;
    // Toolbar items by tag.
    enum ToolbarItem { PreferencesItem = 1, LogItem = 2, LibraryItem = 3 };

    FunctionPoolWindow(const PoolFunctionRegistry &functions, const FunctionSheetRegistry &sheets,
                       QWidget *parent = nullptr);
    ~FunctionPoolWindow() override;

    FunctionPoolController *functionPool() const { return pool_; }
    // The toolbar's Library item calls this; without it the item is disabled.
    void setOpenLibraryWindow(std::function<void()> open);

    // Shows the panel of a function, or the start panel for kStartPanel, fading it in.
    void clickFunctionNavigator(qint64 number);
    qint64 shownFunction() const { return shownFunction_; }
    QWidget *functionView(qint64 number) const { return views_.value(number); }
    // Runs the function whose panel is shown.
    void clickFunctionRun();
    void clickToolbarItem(int tag);
    void openPreferencesPanel();

    ProgressSheet *progressSheet() const { return progress_; }
    LogSheet *logSheet() const { return logSheet_; }
    LogSheet *errorLogSheet() const { return errorLogSheet_; }
    PoolPreferencesSheet *preferencesSheet() const { return preferencesSheet_; }

    // PoolFrontEnd.
    void progressOpen() override;
    void progressEmpty() override;
    void progressValues(qint64 total) override;
    void progressUpdate(qint64 counter) override;
    void progressComment(const QString &text) override;
    void progressClose() override;
    void setCancelEnabled(bool enabled) override;
    void presentAlert(const PoolAlert &alert, AlertCompletion completion) override;
    void chooseFolder(const QString &messageKey, FolderAnswer answer) override;
    bool isAltKeyHeld() const override;
    void openLogPanel() override;
    void openErrorLogPanel() override;
    void revealFile(const QString &path) override;

private:
    void makeToolbar();
    QWidget *makeStartView();
    QWidget *makeFunctionView(qint64 number, const QString &title, const FunctionSheetRegistry &sheets);
    void switchToFunctionView(qint64 number);
    // Alerts attach to the sheet the user is looking at.
    QWidget *sheetParent();

    FunctionPoolController *pool_;
    QListWidget *navigator_;
    QStackedWidget *viewStack_;
    QMap<qint64, QWidget *> views_;
    qint64 shownFunction_ = kStartPanel;
    QAction *libraryAction_ = nullptr;
    std::function<void()> openLibraryWindow_;
    ProgressSheet *progress_;
    LogSheet *logSheet_;
    LogSheet *errorLogSheet_;
    PoolPreferencesSheet *preferencesSheet_;
};
