#include "additions/collectionadditions.h"

bool ov_isKindOfClass(const QVariant &value, ValueClass valueClass)
{
    switch (value.metaType().id()) {
    case QMetaType::QString:
        return valueClass == ValueClass::Text;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
    case QMetaType::Float:
        return valueClass == ValueClass::Number;
    case QMetaType::QVariantMap:
        return valueClass == ValueClass::Map;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return valueClass == ValueClass::List;
    case QMetaType::QByteArray:
        return valueClass == ValueClass::Data;
    case QMetaType::QDateTime:
        return valueClass == ValueClass::Date;
    default:
        return false;
    }
}

QVariant ov_objectForKey(const QVariantMap &map, const QString &key, ValueClass valueClass)
{
    if (key.isEmpty() || valueClass == ValueClass::None || map.isEmpty())
        return {};
    const QVariant value = map.value(key);
    return ov_isKindOfClass(value, valueClass) ? value : QVariant();
}

bool ov_hasObjectForKey(const QVariantMap &map, const QString &key)
{
    return !key.isEmpty() && !map.isEmpty() && map.contains(key);
}

bool ov_setObject(QVariantMap &map, const QVariant &value, const QString &key)
{
    if (key.isEmpty())
        return false;
    const bool noValue = !value.isValid()
        || (value.metaType().id() == QMetaType::QString && value.toString().isEmpty());
    if (noValue)
        return map.remove(key) > 0;
    const auto it = map.constFind(key);
    if (it != map.constEnd() && it.value() == value)
        return false;
    map.insert(key, value);
    return true;
}

QVariant ov_objectAtIndex(const QVariantList &list, qint64 index)
{
    if (index < 0 || index >= list.size())
        return {};
    return list.at(qsizetype(index));
}

QVariant ov_objectAtIndex(const QVariantList &list, qint64 index, ValueClass valueClass)
{
    const QVariant value = ov_objectAtIndex(list, index);
    return ov_isKindOfClass(value, valueClass) ? value : QVariant();
}

QVariant ov_firstObjectWithClass(const QVariantList &list, ValueClass valueClass)
{
    for (const QVariant &value : list) {
        if (ov_isKindOfClass(value, valueClass))
            return value;
    }
    return {};
}
