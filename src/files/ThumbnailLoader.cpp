#include "files/ThumbnailLoader.h"

#include <QCache>
#include <QDateTime>
#include <QFileInfo>
#include <QMutex>

namespace velunta {

namespace {

std::atomic<int> g_decodes{0};

// Up to about 96 MB of thumbnails; the cost is in kilobytes.
constexpr int kCacheKilobytes = 96 * 1024;

struct Cache {
    QMutex mutex;
    QCache<QString, Thumbnail> entries{kCacheKilobytes};
};

Cache& cache()
{
    static Cache c;
    return c;
}

QString cacheKey(const QString& path, int side)
{
    const QFileInfo info(path);
    return QStringLiteral("%1|%2|%3|%4")
        .arg(info.absoluteFilePath())
        .arg(info.size())
        .arg(info.lastModified().toMSecsSinceEpoch())
        .arg(side);
}

bool cached(const QString& key, Thumbnail& out)
{
    QMutexLocker lock(&cache().mutex);
    if (const Thumbnail* t = cache().entries.object(key)) {
        out = *t;
        return true;
    }
    return false;
}

void remember(const QString& key, const Thumbnail& thumb)
{
    QMutexLocker lock(&cache().mutex);
    const int cost = std::max<qsizetype>(1, thumb.image.sizeInBytes() / 1024);
    cache().entries.insert(key, new Thumbnail(thumb), cost);
}

} // namespace

ThumbnailLoader::ThumbnailLoader(int side, QObject* parent)
    : QObject(parent), m_side(side), m_cancelled(std::make_shared<std::atomic<bool>>(false))
{
    // Every core decodes. The dialog's thread waits for events nearly all the time, and a
    // decode is a few tens of milliseconds of one core, so the scheduler still gives the
    // dialog its turn at once while a folder loads.
    m_pool.setMaxThreadCount(std::max(1, QThread::idealThreadCount()));
}

ThumbnailLoader::~ThumbnailLoader()
{
    cancel();
    m_pool.waitForDone();
}

int ThumbnailLoader::decodes()
{
    return g_decodes.load();
}

void ThumbnailLoader::clearCache()
{
    QMutexLocker lock(&cache().mutex);
    cache().entries.clear();
}

void ThumbnailLoader::cancel()
{
    m_cancelled->store(true);
    m_pool.clear();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    m_pending = 0;
}

void ThumbnailLoader::load(const QStringList& paths)
{
    cancel();
    m_pending = int(paths.size());
    const auto cancelled = m_cancelled;
    const int side = m_side;
    for (const QString& path : paths) {
        m_pool.start([this, path, side, cancelled] {
            if (cancelled->load())
                return;
            const QString key = cacheKey(path, side);
            Thumbnail thumb;
            if (!cached(key, thumb)) {
                ++g_decodes;
                thumb = ReadThumbnail(path, side);
                remember(key, thumb);
            }
            if (cancelled->load())
                return;
            QMetaObject::invokeMethod(
                this,
                [this, path, thumb, cancelled] {
                    if (!cancelled->load())
                        deliver(path, thumb);
                },
                Qt::QueuedConnection);
        });
    }
    if (paths.isEmpty())
        Q_EMIT finished();
}

void ThumbnailLoader::deliver(const QString& path, const Thumbnail& thumbnail)
{
    --m_pending;
    Q_EMIT ready(path, thumbnail);
    if (m_pending == 0)
        Q_EMIT finished();
}

} // namespace velunta
