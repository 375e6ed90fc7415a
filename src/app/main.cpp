#include "applicationmenu.h"
#include "controllerwiring.h"
#include "playerwiring.h"
#include "quitsignals.h"

#include "additions/appcontext.h"
#include "application/appcontroller.h"
#include "application/applicationui_widgets.h"
#include "application/apppreferences.h"
#include "functions/builtinfunctions.h"
#include "functions/gui/functionsheets.h"
#include "orvaneversion.h"
#include "player/library/gui/librarywindowcontroller.h"
#include "player/library/librarybackend.h"
#include "pool/gui/functionsheetregistry.h"
#include "pool/gui/organizerwindowcontroller.h"
#include "pool/poolfunctionregistry.h"
#include "services/currenttrackaction/currenttrackaction.h"
#include "services/hotkeys/globalhotkeylistener.h"
#include "services/ratingnotifier/ratingnotifier.h"
#include "services/lastfm/lastfmwebscrobbler.h"
#include "services/server/gui/servermessagesui_widgets.h"
#include "services/server/ovlink.h"
#include "services/server/servermessages.h"
#include "services/trackinfo/gui/trackinfowindow.h"
#include "widgets/screenflash.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QThreadPool>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral(ORVANE_NAME));
    QApplication::setOrganizationName(QStringLiteral(ORVANE_NAME));
    QApplication::setOrganizationDomain(QStringLiteral("org.orvane"));
    QApplication::setApplicationVersion(QStringLiteral(ORVANE_SHORT_VERSION));
    // The program lives in the status strip and goes on without any window open.
    QApplication::setQuitOnLastWindowClosed(false);

    // The composition root: everything below is made here and handed on; what every part may
    // reach without being handed it is the context, installed on the application object.
    AppContext context;
    context.install();
    AppPreferences preferences;
    // The organizer's functions and their sheets.
    PoolFunctionRegistry functions;
    registerBuiltInFunctions(functions);
    FunctionSheetRegistry sheets;
    registerFunctionSheets(sheets);

    const ProgramPlayer program = createPlayerBackend();
    context.setPlayerBackend(program.player);
    context.setLibraryBackend(program.library);
    // The program goes on with the player alone; the alert says why the library is missing.
    if (!program.library->isRunning()) {
        const QString reason = program.library->openError();
        QTimer::singleShot(0, [reason] {
            auto *alert = new QMessageBox(
                QMessageBox::Warning,
                QApplication::translate("main", "The music library cannot be opened"), reason,
                QMessageBox::Ok);
            alert->setAttribute(Qt::WA_DeleteOnClose);
            alert->show();
        });
    }
    // Made at start, so that a track revealed through the player shows in the window.
    LibraryWindowController libraryWindow(program.library);

    WidgetApplicationUi ui;
    WidgetServerMessagesUi serverUi(ui);
    ProgramServiceFactory services;
    services.appLinksMaker = [&serverUi] { return std::make_shared<ServerMessages>(serverUi); };
    services.currentTrackActionMaker = [] { return std::make_shared<CurrentTrackAction>(); };
    services.lastFMScrobblerMaker = [] { return LastFMWebScrobbler::create(); };
    services.lastFMUserNameReader = [] { return LastFMScrobblerPreferences().prefUserName(); };
    services.functionPoolWindowMaker = [&functions, &sheets](const FunctionPoolWindowHooks &hooks) {
        return std::make_shared<OrganizerWindowController>(hooks, functions, sheets);
    };
    // Before the controller, whose reminder flashes the screens with it.
    ScreenFlash screenFlash;
    AppController controller(context, ui, services, preferences);
    // The windows report their closing by number.
    services.functionPoolWindowHooks.killTargetWindow = [&controller](int number) {
        if (const std::optional<AppWindow> window = appWindowFromNumber(number))
            controller.killTargetWindow(*window);
    };
    services.functionPoolWindowHooks.openLibraryWindow = [&libraryWindow] { libraryWindow.showWindow(); };
    services.ratingNotifierMaker = [&controller, &screenFlash] {
        RatingNotifierHooks hooks;
        hooks.controllerIsHidden = [&controller] {
            const TuneController *tuneController = controller.yourTuneController();
            return tuneController && !tuneController->yourControllerIsVissible();
        };
        hooks.showTrackInfoWindow = [&controller] { controller.showTrackInfoWindow(3); };
        hooks.beep = [] { QApplication::beep(); };
        hooks.displayFlash = &screenFlash;
        return std::make_shared<RatingNotifier>(std::move(hooks));
    };
    services.hotkeyListenerMaker = [&controller] {
        HotkeyActionHooks hooks;
        hooks.hasTrackInfoWindow = [&controller] { return controller.yourTrackInfoWindowController() != nullptr; };
        hooks.closeTrackInfoWindow = [&controller] {
            if (TrackInfoWindowController *info = controller.yourTrackInfoWindowController())
                info->closeTrackInfoWindow();
        };
        hooks.showTrackInfoWindow = [&controller] { controller.showTrackInfoWindow(1); };
        hooks.hasLyricsWindow = [&controller] { return controller.yourTrackLyricsWindowController() != nullptr; };
        hooks.closeTrackLyricsWindow = [&controller] {
            if (TrackLyricsWindowController *lyrics = controller.yourTrackLyricsWindowController())
                lyrics->closeTrackLyricsWindow();
        };
        hooks.showLyricsWindow = [&controller] { controller.clickNavigationMenuShowLyrics(); };
        hooks.showFunctionPool = [&controller] { controller.clickNavigationMenuFunctionPool(); };
        hooks.enableDisableLastFM = [&controller] { controller.clickNavigationMenuEnableDisableLastFM(); };
        hooks.yourTunes = [&controller] { return controller.yourTunes(); };
        return std::make_shared<GlobalHotkeyListener>(std::move(hooks), createX11HotkeyGrabber());
    };
    services.trackInfoWindowMaker = [&controller]() -> std::shared_ptr<TrackInfoWindowController> {
        TrackInfoWindowHooks hooks;
        hooks.anchor = [&controller] { return controller.tuneControllerPosition(); };
        hooks.killTargetWindow = [&controller](int number) {
            if (const std::optional<AppWindow> window = appWindowFromNumber(number))
                controller.killTargetWindow(*window);
        };
        hooks.updateControllerRating = [&controller] {
            if (TuneController *tuneController = controller.yourTuneController())
                tuneController->updateControllerRating();
        };
        hooks.yourTunes = [&controller] { return controller.yourTunes(); };
        return std::make_shared<TrackInfoWindow>(std::move(hooks));
    };
    wireDesktopController(services, controller);

    ApplicationMenu menu({[&libraryWindow] { libraryWindow.showWindow(); },
                          [&controller] { controller.clickNavigationMenuFunctionPool(); },
                          [&controller] { controller.clickNavigationMenu(); },
                          [&controller, &serverUi] {
                              // The store search blocks for up to 3 s: off the main thread.
                              const QString artist = controller.yourTunes().currentTrack().get().artist();
                              QThreadPool::globalInstance()->start(
                                  [&serverUi, artist] { OVLink(serverUi).openStoreForArtist(artist); });
                          },
                          [&controller] { controller.chooseOptionHelp(); },
                          [&controller] { controller.chooseOptionSupportProject(); },
                          [&controller] { controller.chooseOptionUpdate(); },
                          [&controller] { controller.chooseOptionTerminate(); }});
    menu.show();
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &controller,
                     &AppController::applicationWillTerminate);

    QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::requested, &controller, &AppController::chooseOptionTerminate);

    controller.awakeFromNib();
    const int status = application.exec();
    context.setLibraryBackend(nullptr);
    context.setPlayerBackend(nullptr);
    return status;
}
