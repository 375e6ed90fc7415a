#include "pool/organizerun.h"

#include "pool/functionpoolcontroller.h"
#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"
#include "pool/poolfunction.h"
#include "pool/poolfunctionregistry.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaProperty>
#include <QScopeGuard>

#include <memory>

namespace {

QString jsonString(const QString &text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

QString typeName(const QMetaProperty &property)
{
    switch (property.metaType().id()) {
    case QMetaType::Bool: return QStringLiteral("boolean");
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong: return QStringLiteral("integer");
    case QMetaType::Double: return QStringLiteral("real");
    case QMetaType::QString: return QStringLiteral("text");
    default: return QString::fromLatin1(property.typeName());
    }
}

QString valueText(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    if (value.typeId() == QMetaType::QString)
        return jsonString(value.toString());
    return value.toString();
}

// The settings of a function: its own properties, not those of its bases.
QList<QMetaProperty> functionSettings(const QObject &function)
{
    QList<QMetaProperty> settings;
    const QMetaObject *meta = function.metaObject();
    for (int i = PoolFunction::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i)
        if (meta->property(i).isWritable())
            settings.append(meta->property(i));
    return settings;
}

} // namespace

OrganizeRun::OrganizeRun(const PoolFunctionRegistry &functions, QTextStream &out, QTextStream &err,
                         SelectTracks selectTracks)
    : functions_(functions), out_(out), err_(err), selectTracks_(std::move(selectTracks))
{
}

int OrganizeRun::listFunctions(const PoolFunctionRegistry &functions, QTextStream &out)
{
    for (const PoolFunctionRegistry::Entry &entry : functions.entries())
        out << entry.number << '\t' << PoolFunctionRegistry::className(entry.number) << '\t'
            << entry.title << '\n';
    out.flush();
    return 0;
}

int OrganizeRun::describeFunction(const PoolFunctionRegistry &functions, qint64 number, QTextStream &out,
                                  QTextStream &err)
{
    const QList<PoolFunctionRegistry::Entry> entries = functions.entries();
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [number](const auto &e) { return e.number == number; });
    if (entry == entries.end()) {
        PoolAlert alert = FunctionPoolController::alertForCode(PoolAlertCode::Failure);
        if (number >= PoolFunctionRegistry::kFirstFunction && number <= PoolFunctionRegistry::kLastFunction)
            alert.informativeKey = QStringLiteral("0003.0026");
        err << alert.informativeKey << ": " << alert.informativeTextShown() << '\n';
        err.flush();
        return 2;
    }
    const std::unique_ptr<PoolFunction> function(entry->factory(nullptr));
    for (const QMetaProperty &property : functionSettings(*function))
        out << property.name() << '\t' << typeName(property) << '\t'
            << valueText(property.read(function.get())) << '\n';
    out.flush();
    return 0;
}

bool OrganizeRun::applySetting(QObject *object, const QString &name, const QString &value, QString &problem)
{
    const QMetaObject *meta = object->metaObject();
    const int index = meta->indexOfProperty(name.toLatin1().constData());
    if (index < PoolFunction::staticMetaObject.propertyCount() || !meta->property(index).isWritable()) {
        problem = QStringLiteral("%1 has no setting %2").arg(QString::fromLatin1(meta->className()), name);
        return false;
    }
    const QMetaProperty property = meta->property(index);
    QVariant converted;
    bool ok = true;
    switch (property.metaType().id()) {
    case QMetaType::Bool:
        if (value == QLatin1String("true") || value == QLatin1String("1"))
            converted = true;
        else if (value == QLatin1String("false") || value == QLatin1String("0"))
            converted = false;
        else
            ok = false;
        break;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong: converted = value.toLongLong(&ok); break;
    case QMetaType::Double: converted = value.toDouble(&ok); break;
    case QMetaType::QString: converted = value; break;
    default: ok = false; break;
    }
    if (ok && converted.convert(property.metaType()) && property.write(object, converted))
        return true;
    problem = QStringLiteral("%1 (%2) cannot take \"%3\"").arg(name, typeName(property), value);
    return false;
}

QList<ITunesTrack> OrganizeRun::tracksForPaths(const QList<ITunesTrack> &libraryTracks, const QStringList &paths)
{
    QList<QPair<QString, ITunesTrack>> located;
    for (const ITunesTrack &track : libraryTracks)
        if (const QString location = track.as<ITunesFileTrack>().location(); !location.isEmpty())
            located.append({QDir::cleanPath(location), track});
    std::sort(located.begin(), located.end(), [](const auto &a, const auto &b) { return a.first < b.first; });

    QList<ITunesTrack> selection;
    QSet<QString> taken;
    for (const QString &given : paths) {
        const QFileInfo info(given);
        const QString path = QDir::cleanPath(info.absoluteFilePath());
        const QString folderPrefix = path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
        for (const auto &[location, track] : std::as_const(located)) {
            const bool covered = info.isDir() ? location.startsWith(folderPrefix) : location == path;
            if (covered && !taken.contains(location)) {
                taken.insert(location);
                selection.append(track);
            }
        }
    }
    return selection;
}

int OrganizeRun::failRequest(const QString &problem)
{
    err_ << "orvane-cli: " << problem << '\n';
    err_.flush();
    return 2;
}

bool OrganizeRun::prepareTrackSet(FunctionPoolController &pool, const OrganizeRequest &request)
{
    const PoolTrackSet wanted = request.all ? PoolTrackSet::Library : PoolTrackSet::Selection;
    altKeyHeld_ = wanted != FunctionPoolController::defaultFunctionTyp(request.number);
    if (request.all)
        return true;
    const ITunesLibraryPlaylist library = pool.subLibraryPlaylist(pool.subLibrarySource());
    const QList<ITunesFileTrack> files = library.fileTracks();
    const QList<ITunesTrack> selection =
        tracksForPaths(QList<ITunesTrack>(files.begin(), files.end()), request.paths);
    if (selectTracks_)
        selectTracks_(selection);
    return true;
}

int OrganizeRun::run(const OrganizeRequest &request)
{
    if (request.all == !request.paths.isEmpty())
        return failRequest(QStringLiteral("give either --all or the paths of files and folders"));
    folder_ = request.folder;
    alerted_ = completed_ = false;

    FunctionPoolController pool(this, functions_);
    const auto closePool = qScopeGuard([&pool] { pool.close(); });
    if (PoolFunction *function = pool.myFunction(request.number)) {
        for (const auto &[name, value] : request.settings) {
            QString problem;
            if (!applySetting(function, name, value, problem))
                return failRequest(problem);
        }
    }
    prepareTrackSet(pool, request);

    QObject::connect(pool.myFunctionPoolLog(), &FunctionPoolLog::logEntryAdded,
                     [this](TrackLogState state, const QString &info) {
                         out_ << "{\"state\": " << qint64(state) << ", \"info\": " << jsonString(info) << "}\n";
                         out_.flush();
                     });
    QObject::connect(pool.myFunctionPoolErrorLog(), &FunctionPoolErrorLog::errorLogEntryAdded,
                     [this](const QString &error) {
                         out_ << "{\"error\": " << jsonString(error) << "}\n";
                         out_.flush();
                     });
    QEventLoop loop;
    QObject::connect(&pool, &FunctionPoolController::runStateChanged, &loop,
                     [&loop](FunctionPoolController::RunState state) {
                         if (state == FunctionPoolController::RunState::Idle)
                             loop.quit();
                     });
    pool.clickFunctionRun(request.number);
    if (pool.runState() != FunctionPoolController::RunState::Idle)
        loop.exec();
    pool.myPreferences()->closeFunctionPool();
    if (alerted_)
        return 2;
    if (!completed_)
        return 1;
    if (const qint64 failed = pool.yourFailedTrackCount(); failed > 0) {
        err_ << "orvane-cli: " << failed << (failed == 1 ? " track" : " tracks")
             << " failed; the \"error\" lines on standard output say why\n";
        err_.flush();
        return 1;
    }
    return 0;
}

void OrganizeRun::presentAlert(const PoolAlert &alert, AlertCompletion completion)
{
    if (completion) {
        completion(kAlertFirstButtonReturn, false);
        return;
    }
    alerted_ = true;
    const QString key = alert.informativeKey.isEmpty() ? alert.messageKey : alert.informativeKey;
    err_ << key << ": " << alert.informativeTextShown() << '\n';
    err_.flush();
}

void OrganizeRun::chooseFolder(const QString &messageKey, FolderAnswer answer)
{
    if (folder_.isEmpty()) {
        alerted_ = true;
        err_ << messageKey << ": the function asks for a folder: give --folder PATH\n";
        err_.flush();
    }
    answer(folder_);
}
