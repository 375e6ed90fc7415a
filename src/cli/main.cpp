// orvane-cli: the command-line front end. Each command lives in a file of its own; this only
// dispatches on the first argument.
#include "cli/librarycommand.h"
#include "cli/organizecommand.h"

#include <QCoreApplication>
#include <QTextStream>

#include <functional>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvane-cli"));

    const QHash<QString, std::function<int(const QStringList &)>> commands = {
        {QStringLiteral("library"), runLibraryCommand},
        {QStringLiteral("organize"), runOrganizeCommand},
    };
    const QStringList arguments = application.arguments().mid(1);
    const auto command = arguments.isEmpty() ? commands.constEnd()
                                             : commands.constFind(arguments.first());
    if (command == commands.constEnd()) {
        QTextStream(stderr) << "usage: orvane-cli COMMAND ...\ncommands: "
                            << QStringList(commands.keys()).join(QLatin1String(", ")) << "\n";
        return 2;
    }
    return (*command)(arguments.mid(1));
}
