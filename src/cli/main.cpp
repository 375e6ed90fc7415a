// orvane-cli: the command-line front end. Each command lives in a file of its own; this only
// dispatches on the first argument.
#include "additions/appcontext.h"
#include "cli/lastfmcommand.h"
#include "cli/librarycommand.h"
#include "cli/organizecommand.h"
#include "cli/servercommand.h"
#include "functions/builtinfunctions.h"
#include "pool/poolfunctionregistry.h"

#include <QCoreApplication>
#include <QTextStream>

#include <functional>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvane-cli"));
    // The composition root: what every part may reach without being handed it.
    AppContext context;
    context.install();
    PoolFunctionRegistry functions;
    registerBuiltInFunctions(functions);

    QStringList arguments = application.arguments().mid(1);
    // Before any command, as the program does at launch: the server document is fetched afresh,
    // unless --offline keeps the one of the last start.
    const bool offline = arguments.removeAll(QStringLiteral("--offline")) > 0;
    std::optional<ServerDownload> download;

    const QHash<QString, std::function<int(const QStringList &)>> commands = {
        {QStringLiteral("library"), runLibraryCommand},
        {QStringLiteral("organize"),
         [&context, &functions](const QStringList &rest) { return runOrganizeCommand(rest, context, functions); }},
        {QStringLiteral("lastfm"),
         [&context](const QStringList &rest) { return runLastFMCommand(rest, context); }},
        {QStringLiteral("server"), [&download](const QStringList &rest) { return runServerCommand(rest, download); }},
    };
    const auto command = arguments.isEmpty() ? commands.constEnd()
                                             : commands.constFind(arguments.first());
    if (command == commands.constEnd()) {
        QTextStream(stderr) << "usage: orvane-cli [--offline] COMMAND ...\ncommands: "
                            << QStringList(commands.keys()).join(QLatin1String(", ")) << "\n";
        return 2;
    }
    download = refreshServerDocument(offline);
    return (*command)(arguments.mid(1));
}
