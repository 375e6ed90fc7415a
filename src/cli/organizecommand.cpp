#include "cli/organizecommand.h"

#include "additions/appcontext.h"

#include "player/library/librarybackend.h"
#include "pool/organizerun.h"

#include <QTextStream>

namespace {

const char kUsage[] = "usage: orvane-cli organize --list\n"
                      "       orvane-cli organize N --help\n"
                      "       orvane-cli organize N (--all | PATH...) [--set NAME=VALUE]... [--folder PATH]\n";

int usage(QTextStream &err, const QString &problem)
{
    err << "orvane-cli: " << problem << "\n" << kUsage;
    err.flush();
    return 2;
}

} // namespace

int runOrganizeCommand(const QStringList &arguments, AppContext &context, const PoolFunctionRegistry &functions)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (arguments == QStringList{QStringLiteral("--list")})
        return OrganizeRun::listFunctions(functions, out);

    bool isNumber = false;
    OrganizeRequest request;
    request.number = arguments.value(0).toLongLong(&isNumber);
    if (!isNumber)
        return usage(err, QStringLiteral("organize needs --list or a function number"));
    if (arguments.mid(1) == QStringList{QStringLiteral("--help")})
        return OrganizeRun::describeFunction(functions, request.number, out, err);

    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--all")) {
            request.all = true;
        } else if (argument == QLatin1String("--set") || argument == QLatin1String("--folder")) {
            if (i + 1 >= arguments.size())
                return usage(err, argument + QStringLiteral(" needs a value"));
            const QString value = arguments.at(++i);
            if (argument == QLatin1String("--folder")) {
                request.folder = value;
                continue;
            }
            const qsizetype equals = value.indexOf(QLatin1Char('='));
            if (equals <= 0)
                return usage(err, QStringLiteral("--set needs NAME=VALUE"));
            request.settings.append({value.left(equals), value.mid(equals + 1)});
        } else if (argument.startsWith(QLatin1String("--"))) {
            return usage(err, QStringLiteral("unknown option ") + argument);
        } else {
            request.paths.append(argument);
        }
    }
    if (request.all == !request.paths.isEmpty())
        return usage(err, QStringLiteral("give either --all or the paths of files and folders"));

    // The organizer works on the library here, as the program's own organizer does.
    auto library = std::make_shared<LibraryBackend>();
    if (!library->isRunning()) {
        err << "orvane-cli: " << library->openError() << "\n";
        return 1;
    }
    context.setPlayerBackend(library);
    OrganizeRun run(functions, out, err, [&library](const QList<ITunesTrack> &tracks) {
        QStringList persistentIDs;
        for (const ITunesTrack &track : tracks)
            persistentIDs.append(track.persistentID());
        library->setSelection(persistentIDs);
    });
    const int status = run.run(request);
    context.setPlayerBackend(nullptr);
    try {
        library->saveAll(); // and on to the disk
    } catch (const BridgeFailure &failure) {
        err << "orvane-cli: " << failure.what() << "\n";
        return 1;
    }
    return status;
}
