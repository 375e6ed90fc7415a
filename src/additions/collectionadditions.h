#pragma once

#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

// Tolerant access to the maps and lists read from property lists, server documents and
// notifications. None of these throws: bad input answers an invalid QVariant or false.

// The kinds of value a map or list holds. Number covers booleans and every integer and floating
// type; List covers string lists as well.
enum class ValueClass { None, Text, Number, Map, List, Data, Date };

bool ov_isKindOfClass(const QVariant &value, ValueClass valueClass);

// The value only when the key is not empty, a class is given and the value is of that class.
QVariant ov_objectForKey(const QVariantMap &map, const QString &key, ValueClass valueClass);
bool ov_hasObjectForKey(const QVariantMap &map, const QString &key);
// Stores the value, or removes the key for an invalid value or the empty text. Answers whether
// the map changed: storing what the key already holds changes nothing.
bool ov_setObject(QVariantMap &map, const QVariant &value, const QString &key);

QVariant ov_objectAtIndex(const QVariantList &list, qint64 index);
QVariant ov_objectAtIndex(const QVariantList &list, qint64 index, ValueClass valueClass);
QVariant ov_firstObjectWithClass(const QVariantList &list, ValueClass valueClass);
