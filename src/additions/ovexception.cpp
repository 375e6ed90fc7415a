#include "additions/ovexception.h"

#include <QStringList>

OVException::OVException(QString name, QString reason, QVariantMap userInfo)
    : name_(std::move(name)), reason_(std::move(reason)), userInfo_(std::move(userInfo)),
      what_((name_ + QStringLiteral(": ") + reason_).toUtf8())
{
}

QString OVException::userInfoDescription() const
{
    QStringList lines;
    for (auto it = userInfo_.cbegin(); it != userInfo_.cend(); ++it)
        lines << it.key() + QStringLiteral(" = ") + it.value().toString();
    return lines.join(QLatin1Char('\n'));
}
