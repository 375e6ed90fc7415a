#pragma once

#include "application/preferenceobject.h"

// The program's settings files and info files by number, the numbers earlier versions used.
enum class PreferenceLocation {
    TrackInfoWindow = 1,
    LyricsWindow = 2,
    LastFm = 3,
    General = 4,
    ServerDocument = 5, // the cached server document (hidden, in "Info")
    ExceptionLog = 6,
    StatusItem = 7,
    Rating = 8,
    KeyBindings = 9,
};

// The general settings, "General".plist, and where every other settings file lives. Made by the
// composition root on the main thread and handed to whoever needs it (the application
// controller first); its settings are written on the main thread and may be read from any
// thread (PreferenceObject's lock). Creation loads the defaults only: the application
// controller migrates earlier settings and then calls readUserPreferences() itself.
class AppPreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(QString prefAppSupportParentLocation READ prefAppSupportParentLocation CONSTANT)
    Q_PROPERTY(double prefStatusItemAnimationTimeIn READ prefStatusItemAnimationTimeIn CONSTANT)
    Q_PROPERTY(double prefStatusItemAnimationTimeOut READ prefStatusItemAnimationTimeOut CONSTANT)
    Q_PROPERTY(double prefWindowFadeTimeIn READ prefWindowFadeTimeIn CONSTANT)
    Q_PROPERTY(double prefWindowFadeTimeOut READ prefWindowFadeTimeOut CONSTANT)
    Q_PROPERTY(double prefViewFadeTime READ prefViewFadeTime CONSTANT)
    Q_PROPERTY(double prefBorderHeight READ prefBorderHeight CONSTANT)

    Q_PROPERTY(bool prefLaunchMeOnLogin READ prefLaunchMeOnLogin WRITE setPrefLaunchMeOnLogin NOTIFY settingsChanged)
    Q_PROPERTY(bool prefLaunchYourTunes READ prefLaunchYourTunes WRITE setPrefLaunchYourTunes NOTIFY settingsChanged)
    Q_PROPERTY(bool prefShowTrackInfoWindowWhenSkippingTrack READ prefShowTrackInfoWindowWhenSkippingTrack
                   WRITE setPrefShowTrackInfoWindowWhenSkippingTrack NOTIFY settingsChanged)
    Q_PROPERTY(bool prefUseLastFM READ prefUseLastFM WRITE setPrefUseLastFM NOTIFY settingsChanged)
    Q_PROPERTY(bool prefUseRatingNotifier READ prefUseRatingNotifier WRITE setPrefUseRatingNotifier NOTIFY settingsChanged)
    Q_PROPERTY(bool prefUseHotkeyListener READ prefUseHotkeyListener WRITE setPrefUseHotkeyListener NOTIFY settingsChanged)
    Q_PROPERTY(bool prefUseAutoLove READ prefUseAutoLove WRITE setPrefUseAutoLove NOTIFY settingsChanged)
    Q_PROPERTY(int prefUseAutoLoveValue READ prefUseAutoLoveValue WRITE setPrefUseAutoLoveValue NOTIFY settingsChanged)
    Q_PROPERTY(int prefLaunchAppMode READ prefLaunchAppMode WRITE setPrefLaunchAppMode NOTIFY settingsChanged)
    Q_PROPERTY(bool prefLaunchLyricsWindow READ prefLaunchLyricsWindow WRITE setPrefLaunchLyricsWindow NOTIFY settingsChanged)
    Q_PROPERTY(bool prefLaunchFunctionPool READ prefLaunchFunctionPool WRITE setPrefLaunchFunctionPool NOTIFY settingsChanged)

    Q_PROPERTY(bool prefDevErrorShowDialog READ prefDevErrorShowDialog WRITE setPrefDevErrorShowDialog
                   NOTIFY devErrorChanged)
    Q_PROPERTY(bool prefDevErrorWriteLogFile READ prefDevErrorWriteLogFile WRITE setPrefDevErrorWriteLogFile
                   NOTIFY devErrorChanged)

public:
    explicit AppPreferences(QObject *parent = nullptr);

    // The fixed fade and layout times, for windows that only need those.
    static constexpr double kStatusItemAnimationTime = 0.6;
    static constexpr double kWindowFadeTimeIn = 0.08;
    static constexpr double kWindowFadeTimeOut = 0.2;
    static constexpr double kViewFadeTime = 0.2;

    // The path of a settings file; empty for a number outside the set or when the folder
    // cannot be made.
    static QString locationToPreferences(PreferenceLocation location);
    QString preferencesLocation() const override { return locationToPreferences(PreferenceLocation::General); }

    // Writes the file, then brings the login item into line with the launch settings; a file
    // that cannot be built is logged and replaced by the defaults.
    void saveUserPreferences() override;

    // Carries the settings of version 3.5 over once; true when that happened.
    bool deprecatedPreferencsConvert();

    QString prefAppSupportParentLocation() const { return prefAppSupportParentLocation_; }
    double prefStatusItemAnimationTimeIn() const { return kStatusItemAnimationTime; }
    double prefStatusItemAnimationTimeOut() const { return kStatusItemAnimationTime; }
    double prefWindowFadeTimeIn() const { return kWindowFadeTimeIn; }
    double prefWindowFadeTimeOut() const { return kWindowFadeTimeOut; }
    double prefViewFadeTime() const { return kViewFadeTime; }
    double prefBorderHeight() const { return 44; }

    bool prefLaunchMeOnLogin() const { return boolSetting("prefLaunchMeOnLogin"); }
    void setPrefLaunchMeOnLogin(bool on) { setSetting(QStringLiteral("prefLaunchMeOnLogin"), on); }
    bool prefLaunchYourTunes() const { return boolSetting("prefLaunchYourTunes"); }
    void setPrefLaunchYourTunes(bool on) { setSetting(QStringLiteral("prefLaunchYourTunes"), on); }
    bool prefShowTrackInfoWindowWhenSkippingTrack() const
    {
        return boolSetting("prefShowTrackInfoWindowWhenSkippingTrack");
    }
    void setPrefShowTrackInfoWindowWhenSkippingTrack(bool on)
    {
        setSetting(QStringLiteral("prefShowTrackInfoWindowWhenSkippingTrack"), on);
    }
    bool prefUseLastFM() const { return boolSetting("prefUseLastFM"); }
    void setPrefUseLastFM(bool on) { setSetting(QStringLiteral("prefUseLastFM"), on); }
    bool prefUseRatingNotifier() const { return boolSetting("prefUseRatingNotifier"); }
    void setPrefUseRatingNotifier(bool on) { setSetting(QStringLiteral("prefUseRatingNotifier"), on); }
    bool prefUseHotkeyListener() const { return boolSetting("prefUseHotkeyListener"); }
    void setPrefUseHotkeyListener(bool on) { setSetting(QStringLiteral("prefUseHotkeyListener"), on); }
    bool prefUseAutoLove() const { return boolSetting("prefUseAutoLove"); }
    void setPrefUseAutoLove(bool on) { setSetting(QStringLiteral("prefUseAutoLove"), on); }
    int prefUseAutoLoveValue() const { return int(integerSetting("prefUseAutoLoveValue")); }
    void setPrefUseAutoLoveValue(int value) { setSetting(QStringLiteral("prefUseAutoLoveValue"), value); }
    // 1 default mode, 2 organize mode.
    int prefLaunchAppMode() const { return int(integerSetting("prefLaunchAppMode")); }
    void setPrefLaunchAppMode(int mode) { setSetting(QStringLiteral("prefLaunchAppMode"), mode); }
    bool prefLaunchLyricsWindow() const { return boolSetting("prefLaunchLyricsWindow"); }
    void setPrefLaunchLyricsWindow(bool on) { setSetting(QStringLiteral("prefLaunchLyricsWindow"), on); }
    bool prefLaunchFunctionPool() const { return boolSetting("prefLaunchFunctionPool"); }
    void setPrefLaunchFunctionPool(bool on) { setSetting(QStringLiteral("prefLaunchFunctionPool"), on); }

    // Switches of the exception log; false at each launch and stored nowhere.
    bool prefDevErrorShowDialog() const { return prefDevErrorShowDialog_; }
    void setPrefDevErrorShowDialog(bool on);
    bool prefDevErrorWriteLogFile() const { return prefDevErrorWriteLogFile_; }
    void setPrefDevErrorWriteLogFile(bool on);

signals:
    void devErrorChanged();

private:
    QString prefAppSupportParentLocation_;
    bool prefDevErrorShowDialog_ = false;
    bool prefDevErrorWriteLogFile_ = false;
};
