#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM and SIGINT (what a desktop session sends at logout, or Ctrl+C) into the
// requested() signal on the main thread, through a self-pipe: the handler only writes a byte.
// One per process.
class QuitSignals : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);
    ~QuitSignals() override;

signals:
    void requested();

private:
    void drain();

    QSocketNotifier *notifier_ = nullptr;
};
