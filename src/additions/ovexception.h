#pragma once

#include <QString>
#include <QVariantMap>

#include <exception>

// The one exception type of the program: a name (the failure's kind, such as
// "RKLICURegexException"), a reason for people, and user information for the log.
// logException() and the pool's error log print these three.
class OVException : public std::exception
{
public:
    OVException(QString name, QString reason, QVariantMap userInfo = {});

    const QString &name() const { return name_; }
    const QString &reason() const { return reason_; }
    const QVariantMap &userInfo() const { return userInfo_; }

    // The user information as text, one "key = value" line per entry, keys sorted.
    QString userInfoDescription() const;

    const char *what() const noexcept override { return what_.constData(); }

private:
    QString name_;
    QString reason_;
    QVariantMap userInfo_;
    QByteArray what_;
};
