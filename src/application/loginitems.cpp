#include "application/loginitems.h"

#include "additions/filewriting.h"
#include "additions/ovapplication.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>

namespace {

const QLatin1String kHiddenKey("X-Orvane-Hidden");

bool samePath(const QString &a, const QString &b)
{
    return !a.isEmpty() && !b.isEmpty() && a.compare(b, Qt::CaseInsensitive) == 0;
}

// Desktop entry values escape backslashes and control characters.
QString unescapeValue(const QString &value)
{
    QString out;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            out += c;
            continue;
        }
        const QChar next = value.at(++i);
        switch (next.unicode()) {
        case 's': out += QLatin1Char(' '); break;
        case 'n': out += QLatin1Char('\n'); break;
        case 't': out += QLatin1Char('\t'); break;
        case 'r': out += QLatin1Char('\r'); break;
        default: out += next; break;
        }
    }
    return out;
}

QString escapeValue(QString value)
{
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    value.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    value.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    value.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    return value;
}

// The keys of the "[Desktop Entry]" group, values unescaped.
QHash<QString, QString> readDesktopEntry(const QString &file)
{
    QFile in(file);
    QHash<QString, QString> entry;
    if (!in.open(QIODevice::ReadOnly))
        return entry;
    bool inGroup = false;
    for (const QString &raw : QString::fromUtf8(in.readAll()).split(QLatin1Char('\n'))) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (inGroup && equals > 0)
            entry.insert(line.left(equals).trimmed(), unescapeValue(line.mid(equals + 1).trimmed()));
    }
    return entry;
}

// The program of an Exec line: its first argument, with the quoting of the Exec key undone.
QString execProgram(const QString &exec)
{
    QString program;
    if (exec.startsWith(QLatin1Char('"'))) {
        for (qsizetype i = 1; i < exec.size(); ++i) {
            const QChar c = exec.at(i);
            if (c == QLatin1Char('"'))
                break;
            if (c == QLatin1Char('\\') && i + 1 < exec.size())
                program += exec.at(++i);
            else
                program += c;
        }
    } else {
        program = exec.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    }
    return program.replace(QLatin1String("%%"), QLatin1String("%"));
}

QString quotedExec(const QString &path)
{
    QString quoted;
    for (const QChar c : path) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
            quoted += QLatin1Char('\\');
        quoted += c;
    }
    quoted.replace(QLatin1Char('%'), QLatin1String("%%"));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

// A file name of the entry for a program, not yet taken in the folder.
QString freeEntryFile(const QDir &folder, const QString &path)
{
    static const QRegularExpression unsafe(QStringLiteral("[^A-Za-z0-9._-]"));
    QString stem = QFileInfo(path).fileName().replace(unsafe, QStringLiteral("-"));
    if (stem.isEmpty() || stem.startsWith(QLatin1Char('.')))
        stem.prepend(QLatin1String("login-item"));
    QString name = stem + QLatin1String(".desktop");
    for (int n = 2; folder.exists(name); ++n)
        name = QStringLiteral("%1-%2.desktop").arg(stem).arg(n);
    return folder.filePath(name);
}

} // namespace

SystemEventsLoginItem::SystemEventsLoginItem(QString file, QString path, bool hidden)
    : file_(std::move(file)), path_(std::move(path)), hidden_(hidden)
{
}

QString SystemEventsLoginItem::ov_bundleIdentifier() const
{
    if (path_.isEmpty())
        return {};
    if (samePath(path_, OVApplication::ov_path()))
        return OVApplication::ov_bundleIdentifier();
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        const QFileInfoList entries = QDir(folder).entryInfoList({QStringLiteral("*.desktop")}, QDir::Files);
        for (const QFileInfo &entry : entries) {
            QString program = execProgram(readDesktopEntry(entry.filePath()).value(QStringLiteral("Exec")));
            if (!program.isEmpty() && !program.contains(QLatin1Char('/')))
                program = QStandardPaths::findExecutable(program);
            if (samePath(program, path_))
                return entry.completeBaseName();
        }
    }
    return {};
}

SystemEventsApplication::SystemEventsApplication(QString folder) : folder_(std::move(folder)) {}

QString SystemEventsApplication::folder() const
{
    if (!folder_.isEmpty())
        return folder_;
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return config.isEmpty() ? QString() : config + QLatin1String("/autostart");
}

QList<SystemEventsLoginItem> SystemEventsApplication::loginItems() const
{
    QList<SystemEventsLoginItem> items;
    const QString where = folder();
    if (where.isEmpty())
        return items;
    const QFileInfoList files =
        QDir(where).entryInfoList({QStringLiteral("*.desktop")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        const QHash<QString, QString> entry = readDesktopEntry(file.filePath());
        const QString path = execProgram(entry.value(QStringLiteral("Exec")));
        if (path.isEmpty() || entry.value(QStringLiteral("Hidden")) == QLatin1String("true"))
            continue;
        items << SystemEventsLoginItem(file.filePath(), path, entry.value(kHiddenKey) == QLatin1String("true"));
    }
    return items;
}

bool SystemEventsApplication::ov_addLoginItemWithPath(const QString &path, bool hidden) const
{
    const QString where = folder();
    if (path.isEmpty() || where.isEmpty() || !QDir().mkpath(where))
        return false;
    const QString entry = QStringLiteral("[Desktop Entry]\nType=Application\nName=%1\nExec=%2\n%3=%4\n")
                              .arg(escapeValue(QFileInfo(path).fileName()), escapeValue(quotedExec(path)),
                                   kHiddenKey, hidden ? QStringLiteral("true") : QStringLiteral("false"));
    return writeFileAtomically(freeEntryFile(QDir(where), path), entry.toUtf8());
}

bool SystemEventsApplication::ov_removeLoginItemWithPath(const QString &path) const
{
    for (const SystemEventsLoginItem &item : loginItems()) {
        if (samePath(item.path(), path))
            return QFile::remove(item.file());
    }
    return false;
}

bool SystemEventsApplication::ov_hasLoginItemWithPath(const QString &path) const
{
    const QList<SystemEventsLoginItem> items = loginItems();
    return std::any_of(items.begin(), items.end(),
                       [&](const SystemEventsLoginItem &item) { return samePath(item.path(), path); });
}

namespace OVApplicationLogin {

bool ov_isLaunchingAtLogin(const SystemEventsApplication &events)
{
    const QString path = OVApplication::ov_path();
    return !path.isEmpty() && events.ov_hasLoginItemWithPath(path);
}

bool ov_setLaunchingAtLogin(bool launch, const SystemEventsApplication &events)
{
    if (ov_isLaunchingAtLogin(events) == launch)
        return true;
    const QString path = OVApplication::ov_path();
    if (path.isEmpty())
        return false;
    if (launch)
        events.ov_addLoginItemWithPath(path, true);
    else
        events.ov_removeLoginItemWithPath(path);
    return true;
}

} // namespace OVApplicationLogin
