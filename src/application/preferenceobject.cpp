#include "application/preferenceobject.h"

#include "additions/exceptionsink.h"
#include "additions/filewriting.h"
#include "additions/propertylist.h"

namespace {

// A value from the file as the setting's type, or the default when the key is missing or
// holds something of another kind (text where a number belongs, a list where text does).
QVariant fileValueOrDefault(const QVariantMap &file, const PreferenceObject::Setting &setting)
{
    const auto found = file.constFind(QLatin1String(setting.key));
    if (found == file.constEnd() || !found->isValid())
        return setting.defaultValue;
    const int wanted = setting.defaultValue.typeId();
    const int given = found->typeId();
    const auto isNumber = [](int type) {
        return type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::UInt
               || type == QMetaType::ULongLong || type == QMetaType::Double;
    };
    if (given == wanted || (isNumber(wanted) && isNumber(given))) {
        QVariant value = *found;
        value.convert(setting.defaultValue.metaType());
        return value;
    }
    return setting.defaultValue;
}

} // namespace

PreferenceObject::PreferenceObject(QList<Setting> settings, QObject *parent)
    : QObject(parent), settings_(std::move(settings))
{
}

QVariant PreferenceObject::setting(const QString &property) const
{
    QMutexLocker locker(&valuesLock_);
    return values_.value(property);
}

void PreferenceObject::setSetting(const QString &property, const QVariant &value)
{
    {
        QMutexLocker locker(&valuesLock_);
        const QVariant old = values_.value(property);
        if (old.isValid() == value.isValid() && old == value && old.typeId() == value.typeId())
            return;
        values_.insert(property, value);
    }
    emit settingsChanged();
}

void PreferenceObject::loadUserPreferencesDefaults()
{
    {
        QMutexLocker locker(&valuesLock_);
        for (const Setting &setting : settings_)
            values_.insert(QLatin1String(setting.property), setting.defaultValue);
    }
    emit settingsChanged();
}

void PreferenceObject::readUserPreferences()
{
    try {
        const QVariantMap file = PropertyList::readMap(preferencesLocation());
        if (file.isEmpty()) {
            resetUserPreferences();
            return;
        }
        {
            QMutexLocker locker(&valuesLock_);
            for (const Setting &setting : settings_)
                values_.insert(QLatin1String(setting.property), fileValueOrDefault(file, setting));
        }
        emit settingsChanged();
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        resetUserPreferences();
    }
}

void PreferenceObject::saveUserPreferences()
{
    try {
        writeUserPreferences();
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
    }
}

void PreferenceObject::resetUserPreferences()
{
    loadUserPreferencesDefaults();
    saveUserPreferences();
}

void PreferenceObject::writeUserPreferences() const
{
    QVariantMap file;
    {
        QMutexLocker locker(&valuesLock_);
        for (const Setting &setting : settings_)
            file.insert(QLatin1String(setting.key), values_.value(QLatin1String(setting.property)));
    }
    // Built first, so a null setting throws even when there is nowhere to write.
    const QByteArray xml = PropertyList::toXml(file);
    writeFileAtomically(preferencesLocation(), xml);
}
