#include "controllerwiring.h"

#include "application/appcontroller.h"
#include "application/apppreferences.h"
#include "controller/gui/navigationwindow.h"
#include "controller/gui/tunecontroller.h"

void wireDesktopController(ProgramServiceFactory &services, AppController &controller)
{
    services.tuneControllerMaker = [&controller]() -> std::shared_ptr<TuneController> {
        TuneControllerHooks hooks;
        hooks.trackInfoWindow = [&controller] { return controller.yourTrackInfoWindowController(); };
        hooks.lyricsWindow = [&controller] { return controller.yourTrackLyricsWindowController(); };
        hooks.ratingNotifier = [&controller] { return controller.yourRatingNotifierController(); };
        hooks.showTrackInfoWindowByMouseOver = [&controller] { controller.showTrackInfoWindowByMouseOver(); };
        hooks.clickNavigationMenu = [&controller] { controller.clickNavigationMenu(); };
        hooks.controllerWindowDidMove = [&controller] { controller.controllerWindowDidMove(); };
        hooks.eventDidFail = [&controller](const QString &className, const QString &operation,
                                           const BridgeError &error) {
            controller.eventDidFail(className, operation, error);
        };
        hooks.logException = [&controller](const OVException &exception) { controller.logException(exception); };
        return std::make_shared<DesktopTuneController>(std::move(hooks));
    };

    services.navigationWindowMaker = [&controller]() -> std::shared_ptr<TuneControllerNavigatonWindowController> {
        NavigationWindowHooks hooks;
        hooks.tuneControllerPosition = [&controller] { return controller.tuneControllerPosition(); };
        hooks.controllerShowsNavigation = [&controller] {
            auto *strip = dynamic_cast<DesktopTuneController *>(controller.yourTuneController());
            return !strip || strip->yourPreferences().prefShowControllerNavigation();
        };
        hooks.useLastFM = [&controller] { return controller.preferences().prefUseLastFM(); };
        hooks.scrobbler = [&controller] { return controller.yourLastFMScrobbler(); };
        hooks.showFunctionPool = [&controller] { controller.clickNavigationMenuFunctionPool(); };
        hooks.showLyrics = [&controller] { controller.clickNavigationMenuShowLyrics(); };
        hooks.enableDisableLastFM = [&controller] { controller.clickNavigationMenuEnableDisableLastFM(); };
        hooks.visitLastFM = [&controller] { controller.clickNavigationMenuVisitLastFM(); };
        hooks.preferences = [&controller] { controller.chooseOptionPreferences(); };
        hooks.help = [&controller] { controller.chooseOptionHelp(); };
        hooks.supportProject = [&controller] { controller.chooseOptionSupportProject(); };
        hooks.feedback = [&controller] { controller.chooseOptionFeedback(); };
        hooks.checkForUpdate = [&controller] { controller.chooseOptionUpdate(); };
        hooks.aboutInfos = [&controller] { controller.chooseOptionAboutInfos(); };
        hooks.license = [&controller] { controller.chooseOptionLicense(); };
        hooks.terminate = [&controller] { controller.chooseOptionTerminate(); };
        hooks.killTargetWindow = [&controller](int number) {
            if (const std::optional<AppWindow> window = appWindowFromNumber(number))
                controller.killTargetWindow(*window);
        };
        return std::make_shared<TuneControllerNavigatonWindow>(std::move(hooks));
    };
}
