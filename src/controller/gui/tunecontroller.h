#pragma once

#include "additions/ovexception.h"
#include "application/services.h"
#include "controller/controllerrules.h"
#include "controller/gui/controllerlovebutton.h"
#include "controller/gui/oxtunecontrollerbutton.h"
#include "controller/gui/oxtunecontrollerview.h"
#include "controller/tunecontrollerlayout.h"
#include "controller/tunecontrollerpreferences.h"
#include "player/itunes.h"
#include "widgets/oxlevelindicatorstarrating.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QPropertyAnimation>

#include <functional>
#include <memory>

class StatusStripWindow;

// What the controller reaches of the application controller. Unset hooks are skipped.
struct TuneControllerHooks
{
    std::function<TrackInfoWindowController *()> trackInfoWindow;
    std::function<TrackLyricsWindowController *()> lyricsWindow;
    std::function<RatingNotifierController *()> ratingNotifier;
    std::function<void()> showTrackInfoWindowByMouseOver;
    std::function<void()> clickNavigationMenu;
    // The strip moved: the windows hanging from it follow.
    std::function<void()> controllerWindowDidMove;
    std::function<void(const QString &className, const QString &operation, const BridgeError &error)> eventDidFail;
    std::function<void(const OVException &exception)> logException;
};

// The player in the status strip: previous, play or pause, next, the stars, the love button and
// the menu button. Showing it builds the whole view anew in the strip, hiding it tears all of
// it down; which the player's track allows is decided by the hiding settings. Keeps its own
// connection to the player, of which it is the delegate, and follows the player's life while
// hiding for a closed player is on. Main thread; owned by the application controller.
class DesktopTuneController : public QObject, public TuneController, public ScriptingBridgeDelegate
{
    Q_OBJECT

public:
    // Reads its settings and shows the controller unless the player forbids it.
    explicit DesktopTuneController(TuneControllerHooks hooks, QObject *parent = nullptr);
    ~DesktopTuneController() override;

    TuneControllerPreferences &yourPreferences() { return yourPreferences_; }
    const ITunesApplication &yourTunes() const { return yourTunes_; }

    // TuneController.
    bool yourControllerIsVissible() const override { return yourControllerIsVissible_; }
    void setYourControllerIsVissible(bool visible) override { yourControllerIsVissible_ = visible; }
    int yourControllerLastAction() const override { return yourControllerLastAction_; }
    void setYourControllerLastAction(int action) override { yourControllerLastAction_ = action; }
    bool yourLyricsWindowWasHiddenByController() const override { return yourLyricsWindowWasHiddenByController_; }
    void setYourLyricsWindowWasHiddenByController(bool hidden) override
    {
        yourLyricsWindowWasHiddenByController_ = hidden;
    }
    bool checkIfTheControllerShouldBeHide(bool updateObservers) override;
    // The fade arguments are taken and ignored: showing and hiding are immediate.
    void showControlls(bool force, bool fadeIn) override;
    void hideControlls(bool hide, bool fadeOut) override;
    void switchPlayButtonStatusTo(int state) override;
    void updateControllerRating() override;
    void emptyControllerRating() override;
    void fadeTuneControllerOut() override;
    QPoint currentPosition() const override;

    void fadeTuneControllerIn();
    // Tears the view down and leaves the strip empty; the dependent windows stay.
    void releaseControlls();
    // Puts the view into the strip at the length; a length of 0 empties it.
    void tuneControllerChange(OXTuneControllerView *view, int newLength);

    // The star control's action: the Alt key rates the album.
    void rateCurrentTrack(Qt::KeyboardModifiers modifiers);
    // The love button's action: the Alt key loves the album.
    void changeLove(Qt::KeyboardModifiers modifiers);
    // False when there is no love button.
    bool updateLoveButton();
    // What a button gesture sends.
    void performAction(ControllerAction action);

    // Which player event is followed: its start, its end, or none.
    enum class Observed { None, Launch, Terminate };
    Observed observedPlayerEvent() const { return observed_; }
    void observeYourTunesLaunch();
    void observeYourTunesTerminate();
    void observeYourTunesRemoveObserver();

    // The parts shown now, null when not shown.
    OXTuneControllerView *yourTuneControllerView() const { return yourTuneControllerView_; }
    OXTuneControllerButton *yourControllerPlayButton() const { return yourControllerPlayButton_; }
    OXLevelIndicatorStarRating *yourControllerRating() const { return yourControllerRating_; }
    ControllerLoveButton *yourControllerLove() const { return yourControllerLove_; }
    bool yourControllerNavigationIsVisible() const { return yourControllerNavigationIsVisible_; }
    bool yourControllerRatingIsVisible() const { return yourControllerRatingIsVisible_; }
    bool yourControllerLoveIsVisible() const { return yourControllerLoveIsVisible_; }
    StatusStripWindow *statusStrip() const { return strip_.get(); }
    // The layout the view was built with.
    const TuneControllerLayout::Frames &frames() const { return frames_; }

    // ScriptingBridgeDelegate.
    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override;

private:
    template <class Body>
    void guarded(Body body);
    void observeYourTunesLaunched();
    void observeYourTunesTerminated();
    void updateInfoWindowRatings();

    TuneControllerHooks hooks_;
    TuneControllerPreferences yourPreferences_;
    ITunesApplication yourTunes_;
    std::unique_ptr<StatusStripWindow> strip_;
    QPointer<OXTuneControllerView> yourTuneControllerView_;
    QPointer<OXTuneControllerButton> yourControllerPlayButton_;
    QPointer<OXLevelIndicatorStarRating> yourControllerRating_;
    QPointer<ControllerLoveButton> yourControllerLove_;
    TuneControllerLayout::Frames frames_;
    bool yourControllerNavigationIsVisible_ = false;
    bool yourControllerRatingIsVisible_ = false;
    bool yourControllerLoveIsVisible_ = false;
    int yourControllerLastAction_ = 0;
    bool yourControllerIsVissible_ = false;
    bool yourLyricsWindowWasHiddenByController_ = false;
    Observed observed_ = Observed::None;
    QMetaObject::Connection observer_;
    QPointer<QPropertyAnimation> fade_;
};
