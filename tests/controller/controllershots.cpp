// Pictures of the status strip and its panel for judging them by eye, not a test: run under an
// X server (tests/support/xsession.sh), e.g.
//   controller_shots strips OUT_DIR          the layouts and the panel, as the screen shows them
//   controller_shots screen OUT.png [X Y W H] the screen (or a part of it), to see the program
// With QT_SCALE_FACTOR=2 the strips come out at 2x.
#include "additions/appcontext.h"
#include "controller/gui/navigationwindow.h"
#include "controller/gui/statusstripwindow.h"
#include "controller/gui/tunecontroller.h"
#include "player/memoryplayer.h"
#include "testenvironment.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QSignalSpy>

#include <cstdio>

namespace {

int strips(const QString &folder)
{
    TestEnvironment environment; // the settings files go to a private home
    AppContext context;
    context.install();
    QDir().mkpath(folder);
    const MemoryPlayerPtr player = MemoryPlayer::create();
    player->makeDefault();
    const MemoryObjectPtr track = player->addFileTrack(
        QStringLiteral("Song"), QStringLiteral("/music/song.mp3"),
        {{Prop::rating, 80}, {Prop::ratingKind, kRtU}, {Prop::loved, true}});
    player->setCurrentTrack(track);
    player->setPlayerState(kPSP);

    const QString ratio = QString::number(qApp->devicePixelRatio());
    const auto shoot = [&](const QString &name, bool navigation, bool rating, bool love) {
        TuneControllerPreferences settings;
        settings.setPrefShowControllerNavigation(navigation);
        settings.setPrefShowControllerRating(rating);
        settings.setPrefShowControllerLove(love);
        settings.saveUserPreferences();
        DesktopTuneController controller({});
        QCoreApplication::processEvents();
        const QString path = folder + QStringLiteral("/strip-%1@%2x.png").arg(name, ratio);
        controller.statusStrip()->grab().save(path);
        std::printf("%s\n", qPrintable(path));
    };
    shoot(QStringLiteral("default"), true, false, true);
    shoot(QStringLiteral("all-off"), false, false, false);
    shoot(QStringLiteral("rating-love"), false, true, true);
    shoot(QStringLiteral("playing-rated"), true, true, true);
    player->setPlayerState(kPSp);
    track->setStored({{Prop::rating, 60}, {Prop::ratingKind, kRtC}, {Prop::loved, false}});
    shoot(QStringLiteral("paused-computed"), true, true, true);

    NavigationWindowHooks hooks;
    hooks.tuneControllerPosition = [] { return QPoint(1000, 22); };
    hooks.useLastFM = [] { return true; };
    TuneControllerNavigatonWindow panel(hooks);
    panel.setYourFadeTime(0);
    panel.showWindow();
    QCoreApplication::processEvents();
    const QString path = folder + QStringLiteral("/navigation-panel@%1x.png").arg(ratio);
    panel.window()->grab().save(path);
    std::printf("%s\n", qPrintable(path));
    return 0;
}

int screen(const QStringList &arguments)
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 1;
    QPixmap shot = screen->grabWindow(0);
    if (arguments.size() >= 6)
        shot = shot.copy(arguments[2].toInt(), arguments[3].toInt(), arguments[4].toInt(), arguments[5].toInt());
    return shot.save(arguments[1]) ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments().mid(1);
    if (arguments.size() >= 2 && arguments[0] == QLatin1String("strips"))
        return strips(arguments[1]);
    if (arguments.size() >= 2 && arguments[0] == QLatin1String("screen"))
        return screen(arguments);
    std::fprintf(stderr, "usage: controller_shots strips DIR | screen OUT.png [X Y W H]\n");
    return 2;
}
