#include "document/UndoStore.h"

#include <QRgb>

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

namespace velunta {

namespace {

QRect tileRect(int index, int columns, const QSize& size)
{
    const int k = UndoStore::kTile;
    return QRect((index % columns) * k, (index / columns) * k, k, k).intersected(QRect(QPoint(0, 0), size));
}

// Copies `from` of src to `at` in dst, row by row; both are 32-bit pictures and the
// caller has clipped the rectangle to both.
void copyPixels(QImage& dst, const QPoint& at, const QImage& src, const QRect& from)
{
    const std::size_t bytes = std::size_t(from.width()) * sizeof(QRgb);
    for (int row = 0; row < from.height(); ++row)
        std::memcpy(reinterpret_cast<QRgb*>(dst.scanLine(at.y() + row)) + at.x(),
                    reinterpret_cast<const QRgb*>(src.constScanLine(from.top() + row)) + from.left(), bytes);
}

// Writes tile `index` of the snapshot (its own copy, else the base's pixels) into dst,
// clipped to dst.
void writeTile(QImage& dst, const UndoSnapshot& snap, int index)
{
    const QRect r = tileRect(index, snap.columns, snap.base.size()).intersected(dst.rect());
    if (r.isEmpty())
        return;
    const bool own = !snap.tiles.empty() && !snap.tiles[std::size_t(index)].isNull();
    if (own)
        copyPixels(dst, r.topLeft(), snap.tiles[std::size_t(index)], QRect(QPoint(0, 0), r.size()));
    else
        copyPixels(dst, r.topLeft(), snap.base, r);
}

} // namespace

QImage UndoSnapshot::toImage() const
{
    if (empty())
        return QImage();
    QImage out = base.copy();
    for (std::size_t i = 0; i < tiles.size(); ++i)
        if (!tiles[i].isNull())
            writeTile(out, *this, int(i));
    return out;
}

void UndoStore::attach(Surface& picture)
{
    picture.trackChanges(kTile);
    m_lost = true;
}

void UndoStore::absorb(Surface& picture)
{
    Surface::Changes changes = picture.takeChanges();
    if (m_lost)
        return;
    if (changes.all || changes.columns * changes.rows != int(m_sinceBase.size())) {
        m_lost = true;
        return;
    }
    for (std::size_t i = 0; i < changes.tiles.size(); ++i)
        if (changes.tiles[i]) {
            if (!m_sinceBase[i]) {
                m_sinceBase[i] = 1;
                ++m_sinceBaseCount;
            }
            m_sinceLast[i] = 1;
        }
}

void UndoStore::rebase(const QImage& image)
{
    auto snap = std::make_shared<UndoSnapshot>();
    snap->base = image; // shares the picture's pixels; the picture's next write detaches it
    snap->columns = (image.width() + kTile - 1) / kTile;
    snap->rows = (image.height() + kTile - 1) / kTile;
    m_base = image;
    m_sinceBase.assign(std::size_t(snap->columns) * snap->rows, 0);
    m_sinceLast = m_sinceBase;
    m_sinceBaseCount = 0;
    m_lost = false;
    m_last = std::move(snap);
    ++m_rebases;
}

UndoSnapshotPtr UndoStore::record(Surface& picture)
{
    absorb(picture);
    const QImage& image = std::as_const(picture).Image();
    // Past half the tiles a copy of each would cost more than a fresh base.
    if (m_lost || !m_last || m_base.size() != image.size() || 2 * m_sinceBaseCount > m_sinceBase.size()) {
        rebase(image);
        return m_last;
    }
    if (std::find(m_sinceLast.begin(), m_sinceLast.end(), 1) == m_sinceLast.end())
        return m_last;                                   // nothing written since: the same snapshot serves
    auto snap = std::make_shared<UndoSnapshot>(*m_last); // shares every tile kept so far
    if (snap->tiles.empty())
        snap->tiles.resize(m_sinceBase.size());
    for (std::size_t i = 0; i < m_sinceLast.size(); ++i)
        if (m_sinceLast[i]) {
            snap->tiles[i] = image.copy(tileRect(int(i), snap->columns, image.size()));
            m_sinceLast[i] = 0;
        }
    m_last = std::move(snap);
    return m_last;
}

bool UndoStore::changedSinceLast(Surface& picture)
{
    absorb(picture);
    return m_lost || !m_last || std::find(m_sinceLast.begin(), m_sinceLast.end(), 1) != m_sinceLast.end();
}

void UndoStore::restore(Surface& picture, const UndoSnapshotPtr& snapshot)
{
    if (!snapshot || snapshot->empty())
        return;
    absorb(picture);
    const UndoSnapshot& snap = *snapshot;
    const QSize size = std::as_const(picture).Image().size();
    const bool sameSize = snap.base.size() == size;
    const bool overBase = !m_lost && m_last && sameSize && snap.base.constBits() == m_base.constBits();
    QRect written;
    if (overBase) {
        // Only the tiles where the picture or the snapshot may differ from the base.
        QImage* image = nullptr;
        for (std::size_t i = 0; i < m_sinceBase.size(); ++i) {
            const bool own = !snap.tiles.empty() && !snap.tiles[i].isNull();
            if (!own && !m_sinceBase[i])
                continue;
            if (!image)
                image = &picture.Image();
            writeTile(*image, snap, int(i));
            written |= tileRect(int(i), snap.columns, size);
        }
    } else {
        QImage& image = picture.Image();
        const QRect common = image.rect() & snap.base.rect();
        copyPixels(image, QPoint(0, 0), snap.base, common);
        for (std::size_t i = 0; i < snap.tiles.size(); ++i)
            if (!snap.tiles[i].isNull())
                writeTile(image, snap, int(i));
        written = common;
    }
    if (!written.isEmpty())
        picture.touch(written);
    picture.takeChanges(); // the writes above are the snapshot, not a change to it
    if (!sameSize) {
        m_lost = true;
        return;
    }
    m_base = snap.base;
    m_sinceBase.assign(std::size_t(snap.columns) * snap.rows, 0);
    m_sinceBaseCount = 0;
    for (std::size_t i = 0; i < snap.tiles.size(); ++i)
        if (!snap.tiles[i].isNull()) {
            m_sinceBase[i] = 1;
            ++m_sinceBaseCount;
        }
    m_sinceLast.assign(m_sinceBase.size(), 0);
    m_lost = false;
    m_last = snapshot;
}

std::size_t UndoStore::heldBytes(const std::vector<UndoSnapshotPtr>& held, const Surface& picture)
{
    std::set<const uchar*> seen{picture.Image().constBits(), picture.Picture().constBits()};
    std::size_t bytes = 0;
    auto count = [&](const QImage& image) {
        if (!image.isNull() && seen.insert(image.constBits()).second)
            bytes += std::size_t(image.sizeInBytes());
    };
    for (const UndoSnapshotPtr& snap : held) {
        if (!snap)
            continue;
        count(snap->base);
        for (const QImage& tile : snap->tiles)
            count(tile);
    }
    return bytes;
}

} // namespace velunta
