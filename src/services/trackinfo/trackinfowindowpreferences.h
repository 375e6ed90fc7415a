#pragma once

#include "application/preferenceobject.h"

// The track info panel's settings, "Track Info Window".plist: how long it stays (0 keeps it until something
// closes it) and three text choices that are kept but select nothing yet. The fade times are
// not stored.
class TrackInfoWindowPreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(qint64 prefDisplayTime READ prefDisplayTime WRITE setPrefDisplayTime NOTIFY settingsChanged)
    Q_PROPERTY(qint64 prefTextInfoA READ prefTextInfoA WRITE setPrefTextInfoA NOTIFY settingsChanged)
    Q_PROPERTY(qint64 prefTextInfoB READ prefTextInfoB WRITE setPrefTextInfoB NOTIFY settingsChanged)
    Q_PROPERTY(qint64 prefTextInfoC READ prefTextInfoC WRITE setPrefTextInfoC NOTIFY settingsChanged)

public:
    explicit TrackInfoWindowPreferences(QObject *parent = nullptr);

    QString preferencesLocation() const override;

    double prefFadeTimeIn = 0.3;
    double prefFadeTimeOut = 0.3;

    // Whole seconds on screen.
    qint64 prefDisplayTime() const { return integerSetting("prefDisplayTime"); }
    void setPrefDisplayTime(qint64 v) { setSetting(QStringLiteral("prefDisplayTime"), v); }
    qint64 prefTextInfoA() const { return integerSetting("prefTextInfoA"); }
    void setPrefTextInfoA(qint64 v) { setSetting(QStringLiteral("prefTextInfoA"), v); }
    qint64 prefTextInfoB() const { return integerSetting("prefTextInfoB"); }
    void setPrefTextInfoB(qint64 v) { setSetting(QStringLiteral("prefTextInfoB"), v); }
    qint64 prefTextInfoC() const { return integerSetting("prefTextInfoC"); }
    void setPrefTextInfoC(qint64 v) { setSetting(QStringLiteral("prefTextInfoC"), v); }
};
