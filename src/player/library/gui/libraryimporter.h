#pragma once

#include "player/library/librarystore.h"

#include <QObject>
#include <QThread>

#include <atomic>
#include <memory>

class LibraryBackend;

// Adds files and folders to the library on a worker thread, a few files per step, so the
// window stays responsive and can show how far it got. Each step is its own import, so what
// was added stays added if the importer is stopped. Signals arrive on the thread that made it.
class LibraryImporter : public QObject
{
    Q_OBJECT
public:
    explicit LibraryImporter(std::shared_ptr<LibraryBackend> library, QObject *parent = nullptr);
    ~LibraryImporter() override; // stops after the current step and waits for it

    bool isBusy() const { return busy_; }
    // Ignored while an import runs.
    void start(const QStringList &paths);

signals:
    // total is 0 while the folders are still being searched.
    void progressed(int done, int total);
    void finished(const LibraryStore::ImportResult &result);

private:
    void run(const QStringList &paths);

    std::shared_ptr<LibraryBackend> library_;
    std::unique_ptr<QThread> thread_;
    std::atomic_bool stopping_ = false;
    bool busy_ = false;
};
