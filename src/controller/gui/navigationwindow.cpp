#include "controller/gui/navigationwindow.h"

#include "additions/localizedstrings.h"
#include "controller/gui/controllericons.h"
#include "controller/tunecontrollerlayout.h"
#include "widgets/templateicon.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include <limits>

// The organizer's button: its icon and title, the icon turning slowly while the panel is open.
class OrganizeLibraryButton : public QAbstractButton
{
public:
    explicit OrganizeLibraryButton(QWidget *parent) : QAbstractButton(parent)
    {
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::PointingHandCursor);
        setFixedHeight(40);
        setMinimumWidth(200);
        spin_.setStartValue(0.0);
        spin_.setEndValue(360.0);
        spin_.setDuration(5000);
        spin_.setEasingCurve(QEasingCurve::OutCubic);
        spin_.setLoopCount(-1);
        QObject::connect(&spin_, &QVariantAnimation::valueChanged, this, [this](const QVariant &angle) {
            angle_ = angle.toDouble();
            update();
        });
    }
    void start()
    {
        stop();
        spin_.start();
    }
    bool stop()
    {
        const bool running = spin_.state() == QAbstractAnimation::Running;
        spin_.stop();
        angle_ = 0;
        update();
        return running;
    }
    bool isSpinning() const { return spin_.state() == QAbstractAnimation::Running; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isDown() || underMouse()) {
            QColor hover = palette().color(QPalette::Highlight);
            hover.setAlphaF(isDown() ? 0.25 : 0.12);
            painter.setPen(Qt::NoPen);
            painter.setBrush(hover);
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
        }
        const QRectF icon(6, (height() - 28) / 2.0, 28, 28);
        painter.save();
        // Rotated about the icon's centre, so it spins in place.
        painter.translate(icon.center());
        painter.rotate(angle_);
        painter.translate(-icon.center());
        TemplateIcon::paint(painter, ControllerIcons::path("organize"), icon, palette().color(QPalette::WindowText));
        painter.restore();
        QFont title = font();
        title.setBold(true);
        painter.setFont(title);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRectF(44, 0, width() - 48, height()), Qt::AlignVCenter | Qt::AlignLeft, text());
    }
    void enterEvent(QEnterEvent *event) override
    {
        QAbstractButton::enterEvent(event);
        update();
    }
    void leaveEvent(QEvent *event) override
    {
        QAbstractButton::leaveEvent(event);
        update();
    }

private:
    QVariantAnimation spin_;
    double angle_ = 0;
};

namespace {

// A button that is only its (coloured) SVG image.
class ImageButton : public QAbstractButton
{
public:
    ImageButton(const QSize &size, QWidget *parent) : QAbstractButton(parent)
    {
        setFixedSize(size);
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::PointingHandCursor);
    }
    void setImage(const QString &resource)
    {
        image_ = resource;
        update();
    }
    QString image() const { return image_; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        TemplateIcon::paint(painter, image_, QRectF(rect()), QColor());
    }

private:
    QString image_;
};

QPushButton *panelButton(const QString &title, QWidget *parent)
{
    auto *button = new QPushButton(title, parent);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

TuneControllerNavigatonWindow::TuneControllerNavigatonWindow(NavigationWindowHooks hooks, QObject *parent)
    : QObject(parent), hooks_(std::move(hooks))
{
    if (hooks_.tuneControllerPosition)
        yourNavigationWindowPoint_ = hooks_.tuneControllerPosition();
    build();
    statusRefresh_.setInterval(1000);
    connect(&statusRefresh_, &QTimer::timeout, this, &TuneControllerNavigatonWindow::refreshLastFMStatus);
}

TuneControllerNavigatonWindow::~TuneControllerNavigatonWindow()
{
    if (window_)
        window_->removeEventFilter(this);
}

void TuneControllerNavigatonWindow::call(const std::function<void()> &hook)
{
    if (hook)
        hook();
}

void TuneControllerNavigatonWindow::build()
{
    window_ = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window_->setWindowTitle(QStringLiteral("Orvane Navigation"));
    window_->setObjectName(QStringLiteral("navigationPanel"));
    // A hairline frame: the panel has no window manager decoration to set it apart.
    window_->setStyleSheet(QStringLiteral("#navigationPanel { border: 1px solid palette(mid); border-radius: 0px; }"));
    window_->installEventFilter(this);

    auto *layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(10, 8, 10, 10);
    layout->setSpacing(8);

    myNavigationOrganizeLibraryButton_ = new OrganizeLibraryButton(window_.get());
    myNavigationOrganizeLibraryButton_->setText(tr("Organizer"));
    myNavigationOrganizeLibraryButton_->setToolTip(tr("Opens the organizer for the library's tracks"));
    connect(myNavigationOrganizeLibraryButton_, &QAbstractButton::clicked, this, [this] {
        call(hooks_.showFunctionPool);
    });
    layout->addWidget(myNavigationOrganizeLibraryButton_);

    auto *lastFM = new QHBoxLayout;
    lastFM->setSpacing(8);
    auto *lastFMSwitch = new ImageButton(QSize(34, 18), window_.get());
    lastFMSwitch->setToolTip(tr("Scrobbles the played tracks to Last.fm"));
    connect(lastFMSwitch, &QAbstractButton::clicked, this, [this] {
        call(hooks_.enableDisableLastFM);
        refreshLastFMStatus();
    });
    lastFMSwitch_ = lastFMSwitch;
    lastFM->addWidget(lastFMSwitch);
    auto *lastFMTitle = new QLabel(QStringLiteral("Last.fm"), window_.get());
    lastFM->addWidget(lastFMTitle);
    lastFM->addStretch(1);
    auto *visit = panelButton(tr("Profile"), window_.get());
    visit->setToolTip(tr("Opens your Last.fm page, or the Last.fm settings when no user is set"));
    connect(visit, &QAbstractButton::clicked, this, [this] { call(hooks_.visitLastFM); });
    lastFM->addWidget(visit);
    layout->addLayout(lastFM);

    auto *status = new QHBoxLayout;
    status->setSpacing(6);
    lastFMStatusIcon_ = new QLabel(window_.get());
    lastFMStatusIcon_->setFixedSize(12, 12);
    status->addWidget(lastFMStatusIcon_);
    lastFMStatusText_ = new QLabel(window_.get());
    QFont small = lastFMStatusText_->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    lastFMStatusText_->setFont(small);
    status->addWidget(lastFMStatusText_, 1);
    layout->addLayout(status);

    auto *rule = new QFrame(window_.get());
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    layout->addWidget(rule);

    auto *buttons = new QHBoxLayout;
    auto *lyrics = panelButton(tr("Lyrics"), window_.get());
    connect(lyrics, &QAbstractButton::clicked, this, [this] { call(hooks_.showLyrics); });
    buttons->addWidget(lyrics);
    buttons->addStretch(1);
    auto *options = panelButton(tr("Options"), window_.get());
    connect(options, &QAbstractButton::clicked, this, &TuneControllerNavigatonWindow::clickNavigationMenuOption);
    optionsButton_ = options;
    buttons->addWidget(options);
    layout->addLayout(buttons);

    const auto addOption = [this](const QString &title, std::function<void()> NavigationWindowHooks::*hook) {
        QAction *action = myNavigationMenuOption_.addAction(title);
        connect(action, &QAction::triggered, this, [this, hook] { call(hooks_.*hook); });
    };
    addOption(tr("Preferences…"), &NavigationWindowHooks::preferences);
    myNavigationMenuOption_.addSeparator();
    addOption(tr("Orvane Help"), &NavigationWindowHooks::help);
    addOption(tr("Support Orvane…"), &NavigationWindowHooks::supportProject);
    addOption(tr("Send Feedback…"), &NavigationWindowHooks::feedback);
    addOption(tr("Check for Updates…"), &NavigationWindowHooks::checkForUpdate);
    myNavigationMenuOption_.addSeparator();
    addOption(tr("About Orvane"), &NavigationWindowHooks::aboutInfos);
    addOption(tr("License"), &NavigationWindowHooks::license);
    myNavigationMenuOption_.addSeparator();
    addOption(tr("Quit Orvane"), &NavigationWindowHooks::terminate);

    refreshLastFMStatus();
    window_->adjustSize();
    const QSize contents = window_->sizeHint();
    const bool navigation = hooks_.controllerShowsNavigation ? hooks_.controllerShowsNavigation() : true;
    // The layout's bottom margin of 10 is the panel's extra height below its contents.
    QRect frame = TuneControllerLayout::navigationPanelFrame(yourNavigationWindowPoint_,
                                                             QSize(contents.width(), contents.height() - 10), navigation);
    window_->setFixedSize(frame.size());
    window_->move(frame.topLeft());
}

// --- Last.fm state.

QString TuneControllerNavigatonWindow::buttonImageLastFM(bool useLastFM)
{
    return ControllerIcons::path(useLastFM ? "switch-on" : "switch-off");
}

QString TuneControllerNavigatonWindow::buttonLastFMStatus(const LastFMScrobbler *scrobbler)
{
    const int state = scrobbler ? scrobbler->yourScrobbleState() : -1;
    if (state == 1)
        return ControllerIcons::path("status-online");
    if (state == 2)
        return ControllerIcons::path("status-error");
    return ControllerIcons::path("status-offline");
}

QString TuneControllerNavigatonWindow::scrobbleStateMessageKey(const LastFMScrobbler *scrobbler)
{
    const int state = scrobbler ? scrobbler->yourScrobbleState() : 0;
    switch (state) {
    case 0:
        return QStringLiteral("0004.0007");
    case 1:
        return QStringLiteral("0004.0008");
    case 2:
        return QStringLiteral("0004.0009");
    default:
        return QStringLiteral("0004.0010");
    }
}

QString TuneControllerNavigatonWindow::scrobbleStateMessage() const
{
    return ov_localizedString(scrobbleStateMessageKey(hooks_.scrobbler ? hooks_.scrobbler() : nullptr));
}

void TuneControllerNavigatonWindow::refreshLastFMStatus()
{
    const LastFMScrobbler *scrobbler = hooks_.scrobbler ? hooks_.scrobbler() : nullptr;
    const bool use = hooks_.useLastFM && hooks_.useLastFM();
    static_cast<ImageButton *>(lastFMSwitch_)->setImage(buttonImageLastFM(use));
    const qreal ratio = window_->devicePixelRatioF();
    lastFMStatusIcon_->setPixmap(TemplateIcon::pixmap(buttonLastFMStatus(scrobbler), QSizeF(12, 12), ratio, QColor()));
    lastFMStatusText_->setText(scrobbleStateMessage());
}

// --- Opening and closing.

void TuneControllerNavigatonWindow::showWindow()
{
    openNavigationWindow();
}

void TuneControllerNavigatonWindow::makeKeyAndOrderFront()
{
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void TuneControllerNavigatonWindow::orderFrontRegardless()
{
    window_->show();
    window_->raise();
}

bool TuneControllerNavigatonWindow::isWindowVisible() const
{
    return window_->isVisible();
}

void TuneControllerNavigatonWindow::closeWindow()
{
    closeNavigationWindow();
}

void TuneControllerNavigatonWindow::openNavigationWindow()
{
    yourAllowWindowChanges_ = false;
    closing_ = false;
    refreshLastFMStatus();
    statusRefresh_.start();
    if (yourFadeTime_ > 0) {
        window_->setWindowOpacity(0.0);
        fade(true);
        makeKeyAndOrderFront();
    } else {
        makeKeyAndOrderFront();
        yourAllowWindowChanges_ = true;
    }
}

void TuneControllerNavigatonWindow::closeNavigationWindow()
{
    // Ignored while fading: the second click of a double click must not undo the first.
    if (!yourAllowWindowChanges_)
        return;
    yourAllowWindowChanges_ = false;
    if (yourFadeTime_ > 0)
        fade(false);
    else
        closeNow();
}

void TuneControllerNavigatonWindow::fade(bool in)
{
    if (fade_)
        fade_->stop();
    auto *animation = new QPropertyAnimation(window_.get(), "windowOpacity", this);
    animation->setDuration(int(yourFadeTime_ * 1000));
    animation->setStartValue(in ? 0.0 : window_->windowOpacity());
    animation->setEndValue(in ? 1.0 : 0.0);
    connect(animation, &QPropertyAnimation::finished, this, [this, in] { animationDidEnd(in); });
    fade_ = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void TuneControllerNavigatonWindow::animationDidEnd(bool fadeIn)
{
    yourAllowWindowChanges_ = true;
    if (fadeIn) {
        window_->setWindowOpacity(1.0);
        startOrganizeLibraryAnimation();
    } else {
        window_->setWindowOpacity(0.0);
        stopOrganizeLibraryAnimation();
        yourAllowWindowChanges_ = false;
        closeNow();
    }
    emit fadeFinished();
}

void TuneControllerNavigatonWindow::closeNow()
{
    statusRefresh_.stop();
    closing_ = true;
    // Hidden rather than closed: this may run inside the window's own close event, where a
    // nested close() would be ignored.
    window_->hide();
    // The application controller lets the panel go on its next turn.
    if (hooks_.killTargetWindow)
        hooks_.killTargetWindow(5);
}

bool TuneControllerNavigatonWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == window_.get()) {
        if (event->type() == QEvent::Close && !closing_) {
            if (event->spontaneous()) {
                // The window manager's close goes through the fade like every other.
                event->ignore();
                closeNavigationWindow();
                return true;
            }
            // Closed by the program (quitting closes every window first, and must not be held
            // up by a fade): it goes at once, and is reported closed all the same.
            if (fade_)
                fade_->stop();
            stopOrganizeLibraryAnimation();
            statusRefresh_.stop();
            closing_ = true;
            yourAllowWindowChanges_ = false;
            if (hooks_.killTargetWindow)
                hooks_.killTargetWindow(5);
        }
        // A click elsewhere dismisses the panel; its own menu keeps it.
        if (event->type() == QEvent::WindowDeactivate && !myNavigationMenuOption_.isVisible())
            closeNavigationWindow();
    }
    return QObject::eventFilter(watched, event);
}

void TuneControllerNavigatonWindow::updateWindowPosition()
{
    if (!yourAllowWindowChanges_ || !hooks_.tuneControllerPosition)
        return;
    const QPoint point = hooks_.tuneControllerPosition();
    const QRect frame =
        TuneControllerLayout::followedPanelFrame(window_->geometry(), yourNavigationWindowPoint_, point);
    yourNavigationWindowPoint_ = point;
    if (move_)
        move_->stop();
    auto *animation = new QPropertyAnimation(window_.get(), "pos", this);
    animation->setDuration(200);
    animation->setEndValue(frame.topLeft());
    move_ = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void TuneControllerNavigatonWindow::clickNavigationMenuOption()
{
    // Drops below the options button, a little in from its left edge.
    const QPoint at = optionsButton_->mapToGlobal(QPoint(5, optionsButton_->height()));
    myNavigationMenuOption_.popup(at);
}

void TuneControllerNavigatonWindow::startOrganizeLibraryAnimation()
{
    myNavigationOrganizeLibraryButton_->start();
}

bool TuneControllerNavigatonWindow::stopOrganizeLibraryAnimation()
{
    if (!myNavigationOrganizeLibraryButton_)
        return false;
    myNavigationOrganizeLibraryButton_->stop();
    return true;
}

bool TuneControllerNavigatonWindow::isOrganizeLibraryAnimationRunning() const
{
    return myNavigationOrganizeLibraryButton_ && myNavigationOrganizeLibraryButton_->isSpinning();
}
