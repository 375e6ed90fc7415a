#pragma once

#include "application/services.h"
#include "player/itunes.h"
#include "services/trackinfo/trackinfowindowpreferences.h"

#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

class OVArtworkButton;
class OVBeats1InfoLoader;
class OXLevelIndicatorStarRating;
class QLabel;
class QPropertyAnimation;
class QSlider;
class QToolButton;

// What the panel needs of the program.
struct TrackInfoWindowHooks
{
    std::function<QPoint()> anchor;                // where the controller hangs the panel
    std::function<void(int window)> killTargetWindow; // the panel has closed (window number 1)
    std::function<void()> updateControllerRating;  // the panel changed a rating or love
    std::function<ITunesApplication()> yourTunes;
};

// The floating panel beside the status strip: the playing track's name, artist, album, artwork,
// ratings, loved flag and position. It fades in, stays for the display time (0 keeps it) and fades
// out. While the radio station plays, the show's details come from the radio loader. Each
// appearance is a new object, dropped by the program once the panel has closed.
class TrackInfoWindow : public QWidget, public TrackInfoWindowController
{
    Q_OBJECT
public:
    explicit TrackInfoWindow(TrackInfoWindowHooks hooks, QWidget *parent = nullptr);
    ~TrackInfoWindow() override;

    // TrackInfoWindowController
    void showWindow() override { openTrackInfoWindow(false); }
    void makeKeyAndOrderFront() override { openTrackInfoWindow(true); }
    void orderFrontRegardless() override { openTrackInfoWindow(false); }
    bool isWindowVisible() const override { return isVisible(); }
    void closeWindow() override { closeTrackInfoWindow(); }
    void updateTrackInformations(int option) override;
    void closeTrackInfoWindow() override;
    void updateWindowPosition() override;
    void setPrefDisplayTime(double seconds) override { yourPreferences_.setPrefDisplayTime(qint64(seconds)); }
    void setPrefFadeTimeOut(double seconds) override { yourPreferences_.prefFadeTimeOut = seconds; }
    void updateRatings() override;

    // What the panel shows, for its owner and tests.
    QString trackInfoA() const { return yourTrackInfoA_; }
    QString trackInfoB() const { return yourTrackInfoB_; }
    QString trackInfoC() const { return yourTrackInfoC_; }
    QString trackInfoD() const { return yourTrackInfoD_; }
    QImage trackArtwork() const;
    bool allowsWindowChanges() const { return yourAllowWindowChanges_; }
    OVBeats1InfoLoader *radioLoader() const { return contentBeats1InfoLoader_; }
    OVArtworkButton *artworkButton() const { return yourArtworkButton_; }
    TrackInfoWindowPreferences &preferences() { return yourPreferences_; }

signals:
    void closed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void openTrackInfoWindow(bool takeFocus);
    void readTrackInfo();
    void updateTime();
    void updateTrackProgress();
    void updateLoveButton();
    void fitTheWindowToTrackInfo();
    void displayTimerFire();
    void startBeats1InfoLoader();
    void stopBeats1InfoLoader();
    void fadeTo(double opacity, double seconds, bool closing);
    void finishFade(bool closing);
    void changeRating(bool album);
    void toggleLoved();

    bool isPlayingRadio() const;
    ITunesTrack infoTrack() const;
    QString infoTrackName() const;
    QString infoTrackArtist() const;
    QString infoTrackAlbum() const;
    QString infoTrackAlbumArtist() const;
    bool infoTrackHasArtwork() const;
    QImage infoTrackArtwork() const;
    bool radioHasAlbumOrArtist() const;

    TrackInfoWindowHooks hooks_;
    TrackInfoWindowPreferences yourPreferences_;
    QLabel *nameLabel_;
    QLabel *artistLabel_;
    QLabel *albumLabel_;
    QLabel *timeLabel_;
    OVArtworkButton *yourArtworkButton_;
    OXLevelIndicatorStarRating *myTrackRatingTitle_;
    OXLevelIndicatorStarRating *myTrackRatingAlbum_;
    QToolButton *yourLoveButton_;
    QSlider *myTrackProgress_;
    QTimer yourDisplayTimer_;
    QTimer yourTrackProgressTimer_;
    QPointer<QPropertyAnimation> fade_;
    QPoint yourTrackInfoWindowPoint_;
    bool yourAllowWindowChanges_ = false;
    bool closing_ = false;
    QString yourTrackInfoA_, yourTrackInfoB_, yourTrackInfoC_, yourTrackInfoD_;
    OVBeats1InfoLoader *contentBeats1InfoLoader_ = nullptr;
};
