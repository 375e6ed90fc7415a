#include "services/trackinfo/gui/trackinfowindow.h"

#include "additions/localizedstrings.h"
#include "application/windowregistry.h"
#include "player/apptodo.h"
#include "player/fourcharcode.h"
#include "player/runningapplication.h"
#include "services/radio/ovbeats1infoloader.h"
#include "services/trackinfo/gui/ovartworkbutton.h"
#include "services/trackinfo/trackinfotext.h"
#include "widgets/oxlevelindicatorstarrating.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int PanelHeight = 145;
constexpr int MinimumWidth = 265;
constexpr int TextMargin = 152; // artwork, spacing and both margins
constexpr int AnchorOffset = 92;

QImage placeholderArtwork(const QColor &tint)
{
    QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(52, 52, 56));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    // A plain note as the stand-in picture.
    painter.drawEllipse(QRectF(62, 120, 44, 34));
    painter.drawRect(QRectF(96, 50, 10, 88));
    painter.drawRect(QRectF(96, 50, 44, 12));
    return image;
}

QIcon loveIcon(bool loved)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath heart;
    heart.moveTo(16, 27);
    heart.cubicTo(2, 18, 3, 6, 10, 6);
    heart.cubicTo(13, 6, 15, 8, 16, 11);
    heart.cubicTo(17, 8, 19, 6, 22, 6);
    heart.cubicTo(29, 6, 30, 18, 16, 27);
    painter.setPen(QPen(Qt::white, 2));
    painter.setBrush(loved ? QBrush(Qt::white) : QBrush(Qt::NoBrush));
    painter.drawPath(heart);
    return QIcon(pixmap);
}

} // namespace

TrackInfoWindow::TrackInfoWindow(TrackInfoWindowHooks hooks, QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , hooks_(std::move(hooks))
    , nameLabel_(new QLabel(this))
    , artistLabel_(new QLabel(this))
    , albumLabel_(new QLabel(this))
    , timeLabel_(new QLabel(this))
    , yourArtworkButton_(new OVArtworkButton(this))
    , myTrackRatingTitle_(new OXLevelIndicatorStarRating(this))
    , myTrackRatingAlbum_(new OXLevelIndicatorStarRating(this))
    , yourLoveButton_(new QToolButton(this))
    , myTrackProgress_(new QSlider(Qt::Horizontal, this))
{
    setObjectName(QStringLiteral("TrackInfoWindow"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(tr("Track Info"));
    setWindowOpacity(0.0);

    QFont bold = font();
    bold.setPixelSize(16);
    bold.setBold(true);
    QFont normal = font();
    normal.setPixelSize(14);
    QFont small = font();
    small.setPixelSize(11);
    nameLabel_->setFont(bold);
    artistLabel_->setFont(normal);
    albumLabel_->setFont(normal);
    timeLabel_->setFont(small);
    for (QLabel *label : {nameLabel_, artistLabel_, albumLabel_, timeLabel_}) {
        label->setStyleSheet(QStringLiteral("color: white;"));
        label->setTextFormat(Qt::PlainText);
    }
    timeLabel_->setStyleSheet(QStringLiteral("color: rgba(255,255,255,170);"));
    for (OXLevelIndicatorStarRating *stars : {myTrackRatingTitle_, myTrackRatingAlbum_}) {
        stars->changeStarColor(1);
        stars->setFixedSize(stars->sizeHint());
    }
    myTrackRatingTitle_->setToolTip(tr("Rating of the track"));
    myTrackRatingAlbum_->setToolTip(tr("Rating of the album"));
    yourLoveButton_->setAutoRaise(true);
    yourLoveButton_->setIconSize(QSize(16, 16));
    yourLoveButton_->setFixedSize(20, 20);
    yourLoveButton_->setStyleSheet(QStringLiteral("QToolButton { border: none; background: transparent; }"));
    yourLoveButton_->setToolTip(tr("Loved (Alt: the whole album)"));
    yourArtworkButton_->setFixedSize(115, 115);
    myTrackProgress_->setFixedHeight(12);
    myTrackProgress_->setRange(0, 1000);
    myTrackProgress_->setStyleSheet(QStringLiteral(
        "QSlider::groove:horizontal { height: 3px; background: rgba(255,255,255,70); border-radius: 1px; }"
        "QSlider::sub-page:horizontal { background: rgba(255,255,255,200); border-radius: 1px; }"
        "QSlider::handle:horizontal { width: 8px; margin: -3px 0; border-radius: 4px; background: white; }"));

    auto *ratings = new QHBoxLayout;
    ratings->setSpacing(14);
    ratings->addWidget(myTrackRatingTitle_);
    ratings->addWidget(myTrackRatingAlbum_);
    ratings->addStretch(1);
    ratings->addWidget(yourLoveButton_);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(nameLabel_);
    texts->addWidget(artistLabel_);
    texts->addWidget(albumLabel_);
    texts->addStretch(1);
    texts->addLayout(ratings);
    texts->addWidget(myTrackProgress_);
    texts->addWidget(timeLabel_);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 10);
    layout->setSpacing(10);
    layout->addWidget(yourArtworkButton_, 0, Qt::AlignTop);
    layout->addLayout(texts, 1);

    connect(myTrackRatingTitle_, &OXLevelIndicatorStarRating::activated, this, [this] { changeRating(false); });
    connect(myTrackRatingAlbum_, &OXLevelIndicatorStarRating::activated, this, [this] { changeRating(true); });
    connect(yourLoveButton_, &QToolButton::clicked, this, [this] { toggleLoved(); });
    connect(myTrackProgress_, &QSlider::sliderMoved, this, [this](int value) {
        if (yourAllowWindowChanges_ && hooks_.yourTunes)
            hooks_.yourTunes().setPlayerPosition(value / 10.0);
    });

    yourDisplayTimer_.setSingleShot(true);
    connect(&yourDisplayTimer_, &QTimer::timeout, this, [this] { closeTrackInfoWindow(); });
    yourTrackProgressTimer_.setInterval(1000);
    connect(&yourTrackProgressTimer_, &QTimer::timeout, this, [this] { updateTrackProgress(); });

    // Placed beside the controller before it shows, so that it never flashes elsewhere.
    resize(MinimumWidth, PanelHeight);
    yourTrackInfoWindowPoint_ = hooks_.anchor ? hooks_.anchor() : QPoint();
    yourAllowWindowChanges_ = true;
    updateTrackInformations(0);
    yourAllowWindowChanges_ = false;
}

TrackInfoWindow::~TrackInfoWindow()
{
    stopBeats1InfoLoader();
}

QImage TrackInfoWindow::trackArtwork() const
{
    return yourArtworkButton_->image();
}

bool TrackInfoWindow::isPlayingRadio() const
{
    const ITunesURLTrack stream = infoTrack().as<ITunesURLTrack>();
    return stream && RunningApplication::isRadioStationStream(stream.address(), stream.name());
}

ITunesTrack TrackInfoWindow::infoTrack() const
{
    if (!hooks_.yourTunes || !RunningApplication::ov_iTunesIsRunningAndPlaying())
        return {};
    return hooks_.yourTunes().currentTrack().get();
}

QString TrackInfoWindow::infoTrackName() const
{
    if (contentBeats1InfoLoader_ && !contentBeats1InfoLoader_->infoTrackName().isEmpty())
        return contentBeats1InfoLoader_->infoTrackName();
    const ITunesTrack track = infoTrack();
    return track ? track.name() : QString();
}

bool TrackInfoWindow::radioHasAlbumOrArtist() const
{
    return contentBeats1InfoLoader_
        && (!contentBeats1InfoLoader_->infoTrackArtist().isEmpty() || !contentBeats1InfoLoader_->infoTrackAlbum().isEmpty());
}

QString TrackInfoWindow::infoTrackArtist() const
{
    if (contentBeats1InfoLoader_) {
        if (!radioHasAlbumOrArtist())
            return QStringLiteral("Apple Music");
        const QString artist = contentBeats1InfoLoader_->infoTrackArtist();
        return artist.isEmpty() ? QStringLiteral("Beats 1") : artist;
    }
    const ITunesTrack track = infoTrack();
    return track ? track.artist() : QString();
}

QString TrackInfoWindow::infoTrackAlbum() const
{
    if (contentBeats1InfoLoader_) {
        if (!radioHasAlbumOrArtist())
            return QStringLiteral("Radio Station");
        const QString album = contentBeats1InfoLoader_->infoTrackAlbum();
        return album.isEmpty() ? QStringLiteral("Beats 1") : album;
    }
    const ITunesTrack track = infoTrack();
    return track ? track.album() : QString();
}

QString TrackInfoWindow::infoTrackAlbumArtist() const
{
    if (contentBeats1InfoLoader_ && !contentBeats1InfoLoader_->infoTrackArtist().isEmpty())
        return contentBeats1InfoLoader_->infoTrackArtist();
    const ITunesTrack track = infoTrack();
    return track ? track.albumArtist() : QString();
}

bool TrackInfoWindow::infoTrackHasArtwork() const
{
    if (contentBeats1InfoLoader_)
        return true;
    const ITunesTrack track = infoTrack();
    return track && !track.artworks().isEmpty();
}

QImage TrackInfoWindow::infoTrackArtwork() const
{
    if (contentBeats1InfoLoader_) {
        const QImage show = contentBeats1InfoLoader_->infoTrackArtwork();
        return show.isNull() ? placeholderArtwork(QColor(250, 45, 85)) : show;
    }
    const ITunesTrack track = infoTrack();
    if (track) {
        const QList<ITunesArtwork> artworks = track.artworks();
        if (!artworks.isEmpty()) {
            QImage image = QImage::fromData(artworks.first().rawData());
            if (image.isNull())
                image = artworks.first().data();
            if (!image.isNull())
                return image;
        }
    }
    return placeholderArtwork(QColor(150, 150, 156));
}

void TrackInfoWindow::updateTrackInformations(int option)
{
    if (!yourAllowWindowChanges_)
        return;
    if (isPlayingRadio())
        startBeats1InfoLoader();
    else
        stopBeats1InfoLoader();
    readTrackInfo();
    yourTrackProgressTimer_.start();
    if (option)
        displayTimerFire();
}

void TrackInfoWindow::readTrackInfo()
{
    yourTrackInfoA_ = infoTrackName();
    yourTrackInfoB_ = infoTrackArtist();
    yourTrackInfoC_ = infoTrackAlbum();
    if (yourTrackInfoA_.isEmpty() && yourTrackInfoB_.isEmpty() && yourTrackInfoC_.isEmpty()) {
        yourTrackInfoA_ = ov_localizedString(QStringLiteral("0006.0004"));
        yourTrackInfoB_ = ov_localizedString(QStringLiteral("0006.0003"));
        yourTrackInfoC_ = ov_localizedString(QStringLiteral("0006.0002"));
    }
    nameLabel_->setText(yourTrackInfoA_);
    // Window lists and screen readers name the panel by what it shows.
    setWindowTitle(tr("Track Info") + QStringLiteral(": ") + yourTrackInfoA_);
    artistLabel_->setText(yourTrackInfoB_);
    albumLabel_->setText(yourTrackInfoC_);

    QString artist = infoTrackAlbumArtist();
    if (artist.isEmpty())
        artist = infoTrackArtist();
    yourArtworkButton_->setArtwork(infoTrackArtwork(), artist, infoTrackAlbum(), !infoTrackHasArtwork());

    const ITunesTrack track = infoTrack();
    const double duration = track ? track.duration() : 0;
    myTrackProgress_->setVisible(duration >= 1.0);
    if (duration >= 1.0) {
        myTrackProgress_->setMaximum(int(duration * 10));
        if (!myTrackProgress_->isSliderDown())
            myTrackProgress_->setValue(int(hooks_.yourTunes().playerPosition() * 10));
    }
    updateTime();
    updateRatings();
    fitTheWindowToTrackInfo();
}

void TrackInfoWindow::updateTime()
{
    if (!yourAllowWindowChanges_)
        return;
    const ITunesTrack track = infoTrack();
    yourTrackInfoD_.clear();
    if (track) {
        // A stream has no length of its own: its line is the time played.
        if (track.duration() >= 1.0)
            yourTrackInfoD_ = track.time();
        if (yourTrackInfoD_.isEmpty())
            yourTrackInfoD_ = TrackInfoText::playerPositionDescription(hooks_.yourTunes().playerPosition());
    }
    timeLabel_->setText(yourTrackInfoD_);
}

void TrackInfoWindow::updateTrackProgress()
{
    if (!yourAllowWindowChanges_)
        return;
    // A player may name a track before its tags are read; the panel catches up with them.
    if (!contentBeats1InfoLoader_ && infoTrack() && infoTrackName() != yourTrackInfoA_) {
        readTrackInfo();
        return;
    }
    updateTime();
    const ITunesTrack track = infoTrack();
    if (track && track.duration() >= 1.0 && !myTrackProgress_->isSliderDown()) {
        myTrackProgress_->setValue(int(hooks_.yourTunes().playerPosition() * 10));
        myTrackProgress_->setVisible(true);
    }
}

void TrackInfoWindow::updateRatings()
{
    if (!yourAllowWindowChanges_)
        return;
    updateLoveButton();
    const ITunesTrack track = infoTrack();
    myTrackRatingTitle_->setValue(track ? int(track.rating()) : 0);
    myTrackRatingTitle_->setYourRatingTyp(track && track.ratingKind() == kRtU ? 1 : 2);
    myTrackRatingAlbum_->setValue(track ? int(track.albumRating()) : 0);
    myTrackRatingAlbum_->setYourRatingTyp(track && track.albumRatingKind() == kRtU ? 1 : 2);
}

void TrackInfoWindow::updateLoveButton()
{
    const ITunesTrack track = infoTrack();
    yourLoveButton_->setIcon(loveIcon(track && track.loved()));
}

void TrackInfoWindow::changeRating(bool album)
{
    if (!yourAllowWindowChanges_)
        return;
    OXLevelIndicatorStarRating *stars = album ? myTrackRatingAlbum_ : myTrackRatingTitle_;
    stars->setYourRatingTyp(1);
    if (album)
        AppToDo::setRatingForThePlayingAlbum(stars->value());
    else
        AppToDo::setRatingForThePlayingTrack(stars->value());
    updateRatings();
    if (hooks_.updateControllerRating)
        hooks_.updateControllerRating();
}

void TrackInfoWindow::toggleLoved()
{
    if (!yourAllowWindowChanges_)
        return;
    if (QGuiApplication::queryKeyboardModifiers() & Qt::AltModifier)
        AppToDo::toggleLovedForThePlayingAlbum();
    else
        AppToDo::toggleLovedForThePlayingTrack();
    updateRatings();
    if (hooks_.updateControllerRating)
        hooks_.updateControllerRating();
}

void TrackInfoWindow::fitTheWindowToTrackInfo()
{
    QFont bold = nameLabel_->font();
    const int width = std::max({QFontMetrics(bold).horizontalAdvance(yourTrackInfoA_),
                                QFontMetrics(artistLabel_->font()).horizontalAdvance(yourTrackInfoB_),
                                QFontMetrics(albumLabel_->font()).horizontalAdvance(yourTrackInfoC_)})
                      + TextMargin;
    // Not wider than the screen, however long a title is.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const int widest = screen ? screen->availableGeometry().width() - 20 : 1200;
    // The layout's own minimum wins over the text's width, or the frame would grow past the screen.
    const int least = std::max(MinimumWidth, minimumSizeHint().width());
    const int w = std::clamp(width, least, std::max(least, widest));
    setGeometry(yourTrackInfoWindowPoint_.x() - w + AnchorOffset + 30, yourTrackInfoWindowPoint_.y(), w, PanelHeight);
    if (screen) {
        // Kept on the screen when the strip sits near its left edge.
        const QRect area = screen->availableGeometry();
        QRect frame = geometry();
        if (frame.left() < area.left())
            frame.moveLeft(area.left());
        if (frame.right() > area.right())
            frame.moveRight(area.right());
        setGeometry(frame);
    }
}

void TrackInfoWindow::updateWindowPosition()
{
    if (!yourAllowWindowChanges_ || !hooks_.anchor)
        return;
    const QPoint anchor = hooks_.anchor();
    QRect frame = geometry();
    frame.moveTo(frame.x() + anchor.x() - yourTrackInfoWindowPoint_.x(), anchor.y());
    yourTrackInfoWindowPoint_ = anchor;
    setGeometry(frame);
}

void TrackInfoWindow::displayTimerFire()
{
    yourDisplayTimer_.stop();
    if (yourPreferences_.prefDisplayTime() != 0)
        yourDisplayTimer_.start(int(yourPreferences_.prefDisplayTime() * 1000));
}

void TrackInfoWindow::openTrackInfoWindow(bool takeFocus)
{
    if (closing_)
        return;
    show();
    if (takeFocus) {
        raise();
        activateWindow();
    }
    yourAllowWindowChanges_ = false;
    fadeTo(1.0, yourPreferences_.prefFadeTimeIn, false);
}

void TrackInfoWindow::closeTrackInfoWindow()
{
    stopBeats1InfoLoader();
    if (!yourAllowWindowChanges_)
        return;
    yourAllowWindowChanges_ = false;
    closing_ = true;
    yourTrackProgressTimer_.stop();
    yourDisplayTimer_.stop();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    fadeTo(0.0, yourPreferences_.prefFadeTimeOut, true);
}

void TrackInfoWindow::fadeTo(double opacity, double seconds, bool closing)
{
    if (fade_)
        fade_->stop();
    if (seconds <= 0) {
        setWindowOpacity(opacity);
        finishFade(closing);
        return;
    }
    auto *animation = new QPropertyAnimation(this, "windowOpacity", this);
    animation->setDuration(int(seconds * 1000));
    animation->setStartValue(windowOpacity());
    animation->setEndValue(opacity);
    connect(animation, &QPropertyAnimation::finished, this, [this, closing] { finishFade(closing); });
    fade_ = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void TrackInfoWindow::finishFade(bool closing)
{
    yourAllowWindowChanges_ = true;
    if (!closing) {
        displayTimerFire();
        return;
    }
    yourAllowWindowChanges_ = false;
    hide();
    emit closed();
    // The program drops this object then; it is told once the animation's signal has returned.
    if (hooks_.killTargetWindow)
        QMetaObject::invokeMethod(qApp, [kill = hooks_.killTargetWindow] { kill(int(AppWindow::TrackInfo)); },
                                  Qt::QueuedConnection);
}

void TrackInfoWindow::startBeats1InfoLoader()
{
    stopBeats1InfoLoader();
    auto *loader = new OVBeats1InfoLoader(this);
    if (!loader->start()) {
        delete loader;
        return;
    }
    contentBeats1InfoLoader_ = loader;
    connect(loader, &OVBeats1InfoLoader::updated, this, [this] {
        // New content waits for the fade-in to end.
        const int delay = windowOpacity() >= 1.0 ? 0 : int(yourPreferences_.prefFadeTimeIn * 1000);
        QTimer::singleShot(delay, this, [this] {
            if (yourAllowWindowChanges_)
                readTrackInfo();
        });
    });
}

void TrackInfoWindow::stopBeats1InfoLoader()
{
    if (!contentBeats1InfoLoader_)
        return;
    OVBeats1InfoLoader *loader = std::exchange(contentBeats1InfoLoader_, nullptr);
    loader->disconnect(this);
    loader->stop();
    loader->deleteLater();
}

void TrackInfoWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(255, 255, 255, 40), 1));
    painter.setBrush(QColor(28, 28, 30, 235));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
}

void TrackInfoWindow::mousePressEvent(QMouseEvent *event)
{
    // A click holds the panel: it stays until it loses the focus.
    yourDisplayTimer_.stop();
    yourPreferences_.loadUserPreferencesDefaults();
    yourPreferences_.setPrefDisplayTime(0);
    activateWindow();
    QWidget::mousePressEvent(event);
}

void TrackInfoWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && !isActiveWindow() && windowOpacity() > 0
        && yourPreferences_.prefDisplayTime() == 0 && yourAllowWindowChanges_ && !closing_) {
        yourPreferences_.loadUserPreferencesDefaults();
        closeTrackInfoWindow();
    }
    QWidget::changeEvent(event);
}
