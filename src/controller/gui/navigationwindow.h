#pragma once

#include "application/services.h"

#include <QMenu>
#include <QPointer>
#include <QPropertyAnimation>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class QLabel;
class QAbstractButton;
class OrganizeLibraryButton;

// What the panel reaches of the application controller. Unset hooks are skipped.
struct NavigationWindowHooks
{
    // The point the panel hangs from (the controller's currentPosition()).
    std::function<QPoint()> tuneControllerPosition;
    // Whether the strip shows its navigation buttons: the panel hangs further left without.
    std::function<bool()> controllerShowsNavigation;
    std::function<bool()> useLastFM;
    // The live scrobbler, null when there is none.
    std::function<LastFMScrobbler *()> scrobbler;
    std::function<void()> showFunctionPool;
    std::function<void()> showLyrics;
    std::function<void()> enableDisableLastFM;
    std::function<void()> visitLastFM;
    std::function<void()> preferences;
    std::function<void()> help;
    std::function<void()> supportProject;
    std::function<void()> feedback;
    std::function<void()> checkForUpdate;
    std::function<void()> aboutInfos;
    std::function<void()> license;
    std::function<void()> terminate;
    // The panel closed (with 5, the navigation window's number).
    std::function<void(int window)> killTargetWindow;
};

// The panel that drops from the strip's menu button: the organizer, the Last.fm switch and its
// state, the lyrics window, and the options menu. It fades in and out; a close asked for while
// a fade runs is dropped, and losing the focus closes it. It follows the strip's x. Main
// thread; owned by the application controller from its opening until it reports its closing.
class TuneControllerNavigatonWindow : public QObject, public TuneControllerNavigatonWindowController
{
    Q_OBJECT

public:
    explicit TuneControllerNavigatonWindow(NavigationWindowHooks hooks, QObject *parent = nullptr);
    ~TuneControllerNavigatonWindow() override;

    // The Last.fm state as the panel shows it: the switch's image, the state's icon and text.
    static QString buttonImageLastFM(bool useLastFM);
    static QString buttonLastFMStatus(const LastFMScrobbler *scrobbler);
    static QString scrobbleStateMessageKey(const LastFMScrobbler *scrobbler);
    QString scrobbleStateMessage() const;

    // WindowController: showWindow() opens the panel with its fade.
    void showWindow() override;
    void makeKeyAndOrderFront() override;
    void orderFrontRegardless() override;
    bool isWindowVisible() const override;
    void closeWindow() override;

    void openNavigationWindow() override;
    void closeNavigationWindow() override;
    void updateWindowPosition() override;
    void clickNavigationMenuOption();
    void startOrganizeLibraryAnimation();
    bool stopOrganizeLibraryAnimation();

    bool yourAllowWindowChanges() const { return yourAllowWindowChanges_; }
    double yourFadeTime() const { return yourFadeTime_; }
    void setYourFadeTime(double seconds) { yourFadeTime_ = seconds; }
    QPoint yourNavigationWindowPoint() const { return yourNavigationWindowPoint_; }
    QWidget *window() const { return window_.get(); }
    QMenu *optionsMenu() { return &myNavigationMenuOption_; }
    bool isOrganizeLibraryAnimationRunning() const;
    // Reads the Last.fm state again.
    void refreshLastFMStatus();

signals:
    // A fade has ended (the panel is open, or closed).
    void fadeFinished();

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void build();
    void animationDidEnd(bool fadeIn);
    void fade(bool in);
    void closeNow();
    static void call(const std::function<void()> &hook);

    NavigationWindowHooks hooks_;
    QPoint yourNavigationWindowPoint_;
    double yourFadeTime_ = 0.2;
    bool yourAllowWindowChanges_ = true;
    bool closing_ = false;
    std::unique_ptr<QWidget> window_;
    QMenu myNavigationMenuOption_;
    OrganizeLibraryButton *myNavigationOrganizeLibraryButton_ = nullptr;
    QAbstractButton *lastFMSwitch_ = nullptr;
    QLabel *lastFMStatusIcon_ = nullptr;
    QLabel *lastFMStatusText_ = nullptr;
    QAbstractButton *optionsButton_ = nullptr;
    QPointer<QPropertyAnimation> fade_;
    QPointer<QPropertyAnimation> move_;
    QTimer statusRefresh_;
};
