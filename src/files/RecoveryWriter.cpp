#include "files/RecoveryWriter.h"

#include "files/Logging.h"
#include "files/RecoveryFile.h"
#include "files/RecoveryStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cstring>

namespace velunta {

namespace {

constexpr int kRound = 60 * 1000;
constexpr int kSweep = 2 * 1000;
// How many bytes of rows are copied between two looks at the clock.
constexpr qsizetype kBytesPerLook = 256 * 1024;
// A picture whose size keeps changing under the copy is left for the next round.
constexpr int kMostRestarts = 3;

} // namespace

RecoveryWriter::RecoveryWriter(RecoveryStore& store, Sources sources, QObject* parent)
    : QObject(parent), m_store(store), m_sources(std::move(sources))
{
    // One writer thread: files are written one after the other, and at most one copy
    // waits in memory for the disk.
    m_pool.setMaxThreadCount(1);
    m_roundTimer.setInterval(kRound);
    connect(&m_roundTimer, &QTimer::timeout, this, &RecoveryWriter::writeChanged);
    m_roundTimer.start();
    m_sweepTimer.setInterval(kSweep);
    connect(&m_sweepTimer, &QTimer::timeout, this, &RecoveryWriter::sweep);
    m_sweepTimer.start();
}

RecoveryWriter::~RecoveryWriter()
{
    m_pool.waitForDone();
}

void RecoveryWriter::setInterval(int ms)
{
    m_roundTimer.start(ms);
}

QHash<int, RecoverySource> RecoveryWriter::sourcesById() const
{
    QHash<int, RecoverySource> byId;
    for (const RecoverySource& source : m_sources())
        byId.insert(source.id, source);
    return byId;
}

int RecoveryWriter::serialOf(int id)
{
    Entry& entry = m_entries[id];
    if (entry.serial == 0)
        entry.serial = m_nextSerial++;
    return entry.serial;
}

void RecoveryWriter::writeChanged()
{
    if (busy() || !m_store.isOpen())
        return;
    m_pass = Pass();
    m_pass.active = true;
    for (const RecoverySource& source : m_sources())
        if (source.dirty)
            m_pass.queue << source.id;
    step();
}

bool RecoveryWriter::beginNext(const QHash<int, RecoverySource>& sources)
{
    while (!m_pass.queue.isEmpty()) {
        const int id = m_pass.queue.takeFirst();
        const auto it = sources.constFind(id);
        if (it == sources.constEnd() || !it->dirty || !it->image || it->image->isNull() ||
            it->image->format() != QImage::Format_RGB32)
            continue;
        const Entry& entry = m_entries[id];
        // Only after a change: the same cache key means the same pixels.
        if (entry.hasFile && entry.writtenKey == it->image->cacheKey())
            continue;
        m_pass.copy = QImage(it->image->size(), QImage::Format_RGB32);
        if (m_pass.copy.isNull())
            continue; // no memory for a copy now; the next round tries again
        serialOf(id);
        m_pass.id = id;
        m_pass.startKey = it->image->cacheKey();
        m_pass.row = 0;
        m_pass.restarts = 0;
        return true;
    }
    return false;
}

void RecoveryWriter::step()
{
    QElapsedTimer clock;
    clock.start();
    const qint64 budget = qint64(m_sliceBudget * 1e6);
    auto yield = [&] { m_longestSlice = std::max(m_longestSlice, clock.nsecsElapsed() / 1e6); };
    const QHash<int, RecoverySource> sources = sourcesById();
    while (m_pass.active) {
        if (m_pass.id == 0) {
            if (m_writingId != 0)
                break; // the round goes on when the file is on the disk
            if (!beginNext(sources)) {
                finishRound();
                break;
            }
        }
        const auto it = sources.constFind(m_pass.id);
        if (it == sources.constEnd() || !it->dirty || !it->image) {
            m_pass.id = 0; // closed or saved meanwhile
            m_pass.copy = QImage();
            continue;
        }
        const QImage& image = *it->image;
        if (image.size() != m_pass.copy.size() || image.format() != QImage::Format_RGB32) {
            // Resized between two slices: the copy starts over at the new size.
            m_pass.copy = QImage();
            if (++m_pass.restarts <= kMostRestarts && image.format() == QImage::Format_RGB32)
                m_pass.copy = QImage(image.size(), QImage::Format_RGB32);
            if (m_pass.copy.isNull()) {
                m_pass.id = 0;
                continue;
            }
            m_pass.row = 0;
            m_pass.startKey = image.cacheKey();
        }
        const qsizetype rowBytes = qsizetype(image.width()) * 4;
        const qsizetype stride = m_pass.copy.bytesPerLine();
        const int rowsPerLook = int(std::max<qsizetype>(1, kBytesPerLook / rowBytes));
        uchar* to = m_pass.copy.bits();
        bool outOfTime = false;
        while (m_pass.row < image.height() && !outOfTime) {
            const int end = std::min(image.height(), m_pass.row + rowsPerLook);
            for (; m_pass.row < end; ++m_pass.row)
                memcpy(to + m_pass.row * stride, image.constScanLine(m_pass.row), rowBytes);
            outOfTime = clock.nsecsElapsed() >= budget;
        }
        if (m_pass.row == image.height())
            handOver(*it);
        if (outOfTime) {
            yield();
            QTimer::singleShot(0, this, &RecoveryWriter::step);
            return;
        }
    }
    yield();
}

void RecoveryWriter::handOver(const RecoverySource& source)
{
    RecoveryHeader header;
    header.name = source.name;
    header.path = source.path;
    header.written = QDateTime::currentDateTimeUtc();
    header.size = m_pass.copy.size();
    const QString file = m_store.fileOf(m_entries[m_pass.id].serial);
    const int id = m_pass.id;
    const qint64 key = m_pass.startKey;
    QImage pixels = std::move(m_pass.copy);
    m_pass.copy = QImage();
    m_pass.id = 0;
    m_writingId = id;
    m_pool.start([this, file, header, pixels = std::move(pixels), id, key]() mutable {
        QString reason;
        const bool ok = WriteRecoveryFile(file, header, pixels, &reason);
        pixels = QImage(); // the copy is freed here, not on the event loop
        QMetaObject::invokeMethod(
            this, [this, id, key, ok, reason] { written(id, key, ok, reason); }, Qt::QueuedConnection);
    });
}

void RecoveryWriter::written(int id, qint64 key, bool ok, const QString& reason)
{
    m_writingId = 0;
    Entry& entry = m_entries[id];
    if (ok) {
        ++m_writesDone;
        entry.writtenKey = key;
        entry.hasFile = true;
        const RecoverySource source = sourcesById().value(id);
        if (!source.image || !source.dirty)
            removeFile(id); // saved or closed while it was being written
    } else if (!m_reportedFailure) {
        m_reportedFailure = true;
        qCWarning(lcFiles, "unsaved pictures can't be kept in %s: %s", qPrintable(m_store.sessionFolder()),
                  qPrintable(reason));
    }
    if (m_pass.active)
        step();
}

void RecoveryWriter::finishRound()
{
    m_pass = Pass();
    Q_EMIT roundFinished();
}

void RecoveryWriter::removeFile(int id)
{
    Entry& entry = m_entries[id];
    if (entry.hasFile)
        QFile::remove(m_store.fileOf(entry.serial));
    entry.hasFile = false;
    entry.writtenKey = 0;
}

void RecoveryWriter::sweep()
{
    const QHash<int, RecoverySource> sources = sourcesById();
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        if (it.key() == m_writingId) {
            ++it; // dealt with when its write ends
            continue;
        }
        const auto source = sources.constFind(it.key());
        const bool gone = source == sources.constEnd();
        if (it->hasFile && (gone || !source->dirty))
            removeFile(it.key());
        if (gone && !(m_pass.active && m_pass.id == it.key()))
            it = m_entries.erase(it);
        else
            ++it;
    }
}

void RecoveryWriter::writeNow(const QSet<int>& ids)
{
    // The copy under way is dropped, the write under way finished and taken in.
    m_pass = Pass();
    m_pool.waitForDone();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_pass = Pass();
    for (const RecoverySource& source : m_sources()) {
        if (!ids.contains(source.id) || !source.dirty || !source.image || source.image->isNull())
            continue;
        Entry& entry = m_entries[source.id];
        serialOf(source.id);
        const qint64 key = source.image->cacheKey();
        if (entry.hasFile && entry.writtenKey == key)
            continue;
        RecoveryHeader header{source.name, source.path, QDateTime::currentDateTimeUtc(),
                              source.image->size()};
        QString reason;
        const QImage pixels = source.image->format() == QImage::Format_RGB32
                                  ? *source.image
                                  : source.image->convertToFormat(QImage::Format_RGB32);
        if (WriteRecoveryFile(m_store.fileOf(entry.serial), header, pixels, &reason)) {
            entry.hasFile = true;
            entry.writtenKey = key;
        } else {
            qCWarning(lcFiles, "an unsaved picture can't be kept in %s: %s",
                      qPrintable(m_store.sessionFolder()), qPrintable(reason));
        }
    }
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
        if (!ids.contains(it.key()))
            removeFile(it.key());
}

void RecoveryWriter::adopted(int id, const QImage& image)
{
    Entry& entry = m_entries[id];
    serialOf(id);
    entry.hasFile = true;
    entry.writtenKey = image.cacheKey();
}

} // namespace velunta
