#include "playerwiring.h"
#include "quitsignals.h"

#include "application/appcontroller.h"
#include "application/applicationui_widgets.h"
#include "orvaneversion.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral(ORVANE_NAME));
    QApplication::setOrganizationName(QStringLiteral(ORVANE_NAME));
    QApplication::setOrganizationDomain(QStringLiteral("org.orvane"));
    QApplication::setApplicationVersion(QStringLiteral(ORVANE_SHORT_VERSION));
    // The program lives in the status strip and goes on without any window open.
    QApplication::setQuitOnLastWindowClosed(false);

    const auto player = createPlayerBackend();
    PlayerBackends::setDefaultBackend(player);
    PlayerBackends::setLibraryBackend(player->library());

    WidgetApplicationUi ui;
    ProgramServiceFactory services;
    AppController controller(ui, services);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &controller,
                     &AppController::applicationWillTerminate);

    QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::requested, &controller, &AppController::chooseOptionTerminate);

    controller.awakeFromNib();
    const int status = application.exec();
    PlayerBackends::setLibraryBackend(nullptr);
    PlayerBackends::setDefaultBackend(nullptr);
    return status;
}
