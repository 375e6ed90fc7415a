#pragma once

#include "pool/poolfrontend.h"
#include "player/itunes.h"

#include <QPair>
#include <QStringList>
#include <QTextStream>

class FunctionPoolController;
class PoolFunctionRegistry;

// One organizer run asked for on the command line.
struct OrganizeRequest
{
    qint64 number = 0;
    bool all = false;    // the whole library rather than the tracks of the paths
    QStringList paths;   // files and folders, in the order given
    QList<QPair<QString, QString>> settings; // property name and value
    QString folder;      // the answer to a function's folder question
};

// The front end of "orvane-cli organize": drives the engine like the organizer window does,
// answering its confirmation with yes, and prints the change log and error log as JSON lines
// on `out` and alerts as key and text on `err`. Its engines have the functions of the registry
// it is given, which must outlive it. Main thread.
class OrganizeRun : public PoolFrontEnd
{
public:
    // Makes the given tracks the selection of the player the engine works on.
    using SelectTracks = std::function<void(const QList<ITunesTrack> &tracks)>;

    OrganizeRun(const PoolFunctionRegistry &functions, QTextStream &out, QTextStream &err,
                SelectTracks selectTracks);

    // Exit status: 0 for a run that went to its end with every track handled, 1 for a run in
    // which any track failed (counted on `err`) or that the function stopped by itself, 2 for
    // an alert or a request that cannot be run.
    int run(const OrganizeRequest &request);

    // "N<TAB>Function000N<TAB>title" per function of this build.
    static int listFunctions(const PoolFunctionRegistry &functions, QTextStream &out);
    // "name<TAB>type<TAB>default" per setting of the function.
    static int describeFunction(const PoolFunctionRegistry &functions, qint64 number, QTextStream &out,
                                QTextStream &err);

    // The tracks whose files are the given files or lie below the given folders: in the order
    // of the paths, within a folder by ascending path, each track once.
    static QList<ITunesTrack> tracksForPaths(const QList<ITunesTrack> &libraryTracks,
                                             const QStringList &paths);
    // Sets a property by name from text; booleans take true/false/1/0. False with a reason.
    static bool applySetting(QObject *object, const QString &name, const QString &value, QString &problem);

    // PoolFrontEnd.
    void progressOpen() override {}
    void progressEmpty() override {}
    void progressValues(qint64) override {}
    void progressUpdate(qint64) override {}
    void progressComment(const QString &) override {}
    void progressClose() override {}
    void setCancelEnabled(bool) override {}
    void presentAlert(const PoolAlert &alert, AlertCompletion completion) override;
    void chooseFolder(const QString &messageKey, FolderAnswer answer) override;
    bool isAltKeyHeld() const override { return altKeyHeld_; }
    void openLogPanel() override {}
    void openErrorLogPanel() override {}
    void revealFile(const QString &) override {}
    void functionRunDidEnd() override { completed_ = true; }

private:
    int failRequest(const QString &problem);
    bool prepareTrackSet(FunctionPoolController &pool, const OrganizeRequest &request);

    const PoolFunctionRegistry &functions_;
    QTextStream &out_;
    QTextStream &err_;
    SelectTracks selectTracks_;
    QString folder_;
    bool altKeyHeld_ = false;
    bool alerted_ = false;
    bool completed_ = false;
};
