#pragma once

#include <QList>
#include <QMutex>
#include <QObject>
#include <QVariant>
#include <QVariantMap>

// Base of the objects that keep one group of settings in one property list. A subclass names
// its file and lists its settings (property, key in the file, default), declares a Q_PROPERTY
// per setting with accessors over setting()/setSetting(), and at the end of its constructor
// calls loadUserPreferencesDefaults() and readUserPreferences(). Every object holds its own
// copy: another object of the same class sees a saved change only after readUserPreferences().
//
// A setting whose key is missing from the file, or holds a value of another kind, takes its
// default, which the next save writes into the file. Lives on the main thread, where its
// settings are written; a setting may be read from any thread (the values are behind a lock).
class PreferenceObject : public QObject
{
    Q_OBJECT

public:
    struct Setting
    {
        const char *property;
        const char *key;
        QVariant defaultValue;
    };

    // Defaults into memory only.
    void loadUserPreferencesDefaults();
    // The file into memory; a missing, empty or unreadable file means resetUserPreferences().
    virtual void readUserPreferences();
    // Memory into the file, atomically. A failure is logged and the file stays as it was.
    virtual void saveUserPreferences();
    void resetUserPreferences();

    QVariant setting(const QString &property) const;
    void setSetting(const QString &property, const QVariant &value);
    bool isSettingNull(const QString &property) const { return !setting(property).isValid(); }

    // The path of the object's property list; empty when its folder cannot be made.
    virtual QString preferencesLocation() const = 0;

signals:
    void settingsChanged();

protected:
    PreferenceObject(QList<Setting> settings, QObject *parent = nullptr);

    // Builds the map of all settings and writes it. Throws OVException on a null setting.
    void writeUserPreferences() const;

    bool boolSetting(const char *property) const { return setting(QLatin1String(property)).toBool(); }
    qint64 integerSetting(const char *property) const
    {
        return setting(QLatin1String(property)).toLongLong();
    }
    double realSetting(const char *property) const { return setting(QLatin1String(property)).toDouble(); }
    QString textSetting(const char *property) const { return setting(QLatin1String(property)).toString(); }

private:
    const QList<Setting> settings_;
    mutable QMutex valuesLock_;
    QVariantMap values_; // by property name, behind valuesLock_
};
