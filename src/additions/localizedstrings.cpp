#include "additions/localizedstrings.h"

#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>

namespace {

const QString mainFolder = QStringLiteral(":/strings");

QHash<QString, QString> readTable(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    QHash<QString, QString> table;
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        table.insert(it.key(), it.value().toString());
    return table;
}

QString lookUp(const QString &path, const QString &key)
{
    static QMutex mutex;
    static QHash<QString, QHash<QString, QString>> tables;
    QMutexLocker locker(&mutex);
    auto it = tables.find(path);
    if (it == tables.end())
        it = tables.insert(path, readTable(path));
    return it->value(key, key);
}

} // namespace

// The resource lives in a static library, whose registration the linker would drop unless
// something refers to it. Outside any namespace, as the registration function is global.
static void registerTables()
{
    static const bool registered = [] {
        Q_INIT_RESOURCE(strings);
        return true;
    }();
    Q_UNUSED(registered);
}

QString ov_localizedString(const QString &key)
{
    return ov_localizedString(key, QStringLiteral("Localizable"), QString());
}

QString ov_localizedString(const QString &key, const QString &fromTable)
{
    return ov_localizedString(key, fromTable, QString());
}

QString ov_localizedString(const QString &key, const QString &fromTable, const QString &inBundle)
{
    registerTables();
    const QString table = fromTable.isEmpty() ? QStringLiteral("Localizable") : fromTable;
    const QString folder = inBundle.isEmpty() ? mainFolder : inBundle;
    const QString text = lookUp(folder + u'/' + table + QStringLiteral(".json"), key);
    return text.isEmpty() ? QString() : text;
}
