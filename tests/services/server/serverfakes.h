#pragma once

#include "services/server/servermessagesui.h"

#include <QMutex>
#include <QMutexLocker>

// Records alerts and opened addresses; answers every alert with the chosen button.
struct RecordingServerUi : ServerMessagesUi
{
    int answer = 0;
    QStringList alerts; // "title|message|button keys"

    void activateApplication() override {}
    int showServerAlert(const QString &title, const QString &message, const QStringList &buttonKeys) override
    {
        alerts << title + '|' + message + '|' + buttonKeys.join(',');
        return answer;
    }
    void openURL(const QUrl &url, bool) override
    {
        QMutexLocker lock(&mutex);
        opened << url;
    }
    QList<QUrl> openedURLs()
    {
        QMutexLocker lock(&mutex);
        return opened;
    }

private:
    QMutex mutex;
    QList<QUrl> opened;
};
