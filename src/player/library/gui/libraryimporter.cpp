#include "player/library/gui/libraryimporter.h"

#include "player/library/librarybackend.h"

namespace {

// Small enough for a lively progress bar, large enough that a step's transaction pays off.
constexpr qsizetype kFilesPerStep = 25;

} // namespace

LibraryImporter::LibraryImporter(std::shared_ptr<LibraryBackend> library, QObject *parent)
    : QObject(parent), library_(std::move(library))
{
}

LibraryImporter::~LibraryImporter()
{
    stopping_ = true;
    if (thread_)
        thread_->wait();
}

void LibraryImporter::start(const QStringList &paths)
{
    if (busy_)
        return;
    if (thread_)
        thread_->wait(); // the last import's thread is on its way out
    busy_ = true;
    stopping_ = false;
    emit progressed(0, 0);
    thread_.reset(QThread::create([this, paths] { run(paths); }));
    thread_->start();
}

void LibraryImporter::run(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths)
        files += LibraryStore::importCandidates(path);
    const int total = int(files.size());

    LibraryStore::ImportResult result;
    for (qsizetype done = 0; done < files.size() && !stopping_; done += kFilesPerStep) {
        const QStringList step = files.mid(done, kFilesPerStep);
        try {
            const LibraryStore::ImportResult part = library_->importPaths(step);
            result.added += part.added;
            result.refused += part.refused;
        } catch (const std::exception &failure) {
            for (const QString &file : step)
                result.refused.append({file, QString::fromUtf8(failure.what())});
        }
        const int reached = int(std::min(done + kFilesPerStep, files.size()));
        QMetaObject::invokeMethod(this, [this, reached, total] { emit progressed(reached, total); },
                                  Qt::QueuedConnection);
    }
    QMetaObject::invokeMethod(
        this,
        [this, result] {
            busy_ = false;
            emit finished(result);
        },
        Qt::QueuedConnection);
}
