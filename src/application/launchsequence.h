#pragma once

#include <QObject>
#include <QString>

#include <atomic>

class AppController;
class QThread;

// "distribution release" as QSysInfo names them, "debian 12".
QString operatingSystemNameAndRelease();

// The program's start after the settings are read: the launch thread (server document, launch
// and update checks, system check) and the start in default or organize mode. Main thread,
// except doLaunchJobs(), which runs on the launch thread and calls back here waiting for the
// main thread. Owned by the application controller, whose operations it drives.
class LaunchSequence : public QObject
{
    Q_OBJECT

public:
    explicit LaunchSequence(AppController &controller);
    ~LaunchSequence() override;

    // Starts doLaunchJobs() on the launch thread.
    void startLaunchThread();
    // Ends the launch thread; a call it waits for on the main thread is dropped.
    void stopLaunchThread();

    void doLaunchJobs();
    void doLaunchErrorMessage();
    void doLaunchCheck();
    void doSystemCheck();
    void launchInDefaultMode();
    void launchInOrganizeMode();
    bool transformProcessWorkaroundA();

private:
    // Runs a call of the launch thread on the main thread and waits for it.
    template <class Call>
    void onMainThreadWaiting(Call call);

    AppController &controller_;
    QThread *launchThread_ = nullptr;
    std::atomic<bool> stopping_{false};
};
