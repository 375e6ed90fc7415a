#include "application/exceptionlog.h"

#include "additions/filewriting.h"
#include "additions/ovapplication.h"
#include "application/applicationui.h"
#include "application/apppreferences.h"

#include <QDateTime>
#include <QFile>

ExceptionLog::ExceptionLog(AppPreferences &preferences, ApplicationUi &ui) : preferences_(preferences), ui_(ui)
{
}

void ExceptionLog::logException(const OVException &exception)
{
    try {
        const QString text = QStringLiteral("*** %1 ***\n\n%2\n%3\n%4\n\n")
                                 .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss t")),
                                      exception.name(), exception.reason(), exception.userInfoDescription());
        if (preferences_.prefDevErrorWriteLogFile()) {
            const QString path = OVApplication::ov_applicationInfoURLForFileLog();
            if (!path.isEmpty()) {
                QFile file(path);
                if (file.exists()) {
                    if (file.open(QIODevice::Append))
                        file.write(text.toUtf8());
                } else {
                    writeFileAtomically(path, text.toUtf8());
                }
            }
        }
        if (preferences_.prefDevErrorShowDialog() && ui_.showExceptionDialog(text))
            preferences_.setPrefDevErrorShowDialog(false);
    } catch (...) {
        // A failure while logging has nowhere left to go.
    }
}

void ExceptionLog::eventDidFail(const QString &className, const QString &operation, const BridgeError &withError)
{
    logException(OVException(withError.domain, QStringLiteral("%1 | %2").arg(className, operation),
                             {{QStringLiteral("code"), withError.code},
                              {QStringLiteral("message"), withError.message}}));
}
