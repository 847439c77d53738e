#pragma once
// Loads the thumbnails of a folder's pictures on worker threads, in the order asked,
// and hands each one to the GUI thread through ready(). A new load() or cancel()
// drops what is still queued and silences what is under way, so a folder left
// behind costs at most the files already being decoded. Thumbnails are kept for the
// session, keyed by the file's path, size and time of change.

#include "files/read/Thumbnail.h"

#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <memory>

namespace velunta {

class ThumbnailLoader : public QObject {
    Q_OBJECT
public:
    explicit ThumbnailLoader(int side, QObject* parent = nullptr);
    // Waits for the files being decoded; nothing reaches a dead loader.
    ~ThumbnailLoader() override;

    int side() const { return m_side; }
    void load(const QStringList& paths);
    void cancel();
    // Thumbnails still to come from the current load.
    int pending() const { return m_pending; }

    // Files decoded by any loader of this run (the cache spares the rest).
    static int decodes();
    static void clearCache();

Q_SIGNALS:
    void ready(const QString& path, const velunta::Thumbnail& thumbnail);
    // The current load has delivered its last thumbnail.
    void finished();

private:
    void deliver(const QString& path, const Thumbnail& thumbnail);

    int m_side;
    int m_pending = 0;
    QThreadPool m_pool;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
};

} // namespace velunta
