#include "document/UndoStore.h"

#include <QRgb>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <exception>
#include <set>
#include <system_error>
#include <utility>

namespace velunta {

namespace {

// Below this many pixels a copy costs less than starting a thread for it.
constexpr qint64 kAheadPixels = qint64(1) << 18;

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

// Writes tile `index` of the snapshot (its own copy `own`, else the base's pixels) into
// dst, clipped to dst.
void writeTile(QImage& dst, const UndoSnapshot& snap, int index, const QImage* own)
{
    const QRect r = tileRect(index, snap.columns, snap.base.size()).intersected(dst.rect());
    if (r.isEmpty())
        return;
    if (own)
        copyPixels(dst, r.topLeft(), *own, QRect(QPoint(0, 0), r.size()));
    else
        copyPixels(dst, r.topLeft(), snap.base, r);
}

} // namespace

const QImage* UndoSnapshot::tile(int index) const
{
    const auto it = std::lower_bound(tiles.begin(), tiles.end(), index,
                                     [](const UndoTile& t, int i) { return t.index < i; });
    return it != tiles.end() && it->index == index ? &it->pixels : nullptr;
}

QImage UndoSnapshot::toImage() const
{
    if (empty())
        return QImage();
    QImage out = base.copy();
    for (const UndoTile& t : tiles)
        writeTile(out, *this, t.index, &t.pixels);
    return out;
}

UndoStore::~UndoStore()
{
    if (m_ahead.valid())
        m_ahead.wait();
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
    if (changes.all || std::size_t(changes.columns) * changes.rows != m_sinceBase.size()) {
        m_lost = true;
        return;
    }
    for (int index : changes.tiles) {
        const std::size_t i = std::size_t(index);
        if (!m_sinceBase[i]) {
            m_sinceBase[i] = 1;
            ++m_sinceBaseCount;
        }
        if (!m_sinceLast[i]) {
            m_sinceLast[i] = 1;
            m_sinceLastList.push_back(index);
        }
    }
}

bool UndoStore::rebaseDue(const QImage& image) const
{
    // Past half the tiles a copy of each would cost more than a fresh base.
    return m_lost || !m_last || m_base.size() != image.size() || 2 * m_sinceBaseCount > m_sinceBase.size();
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
    m_sinceLastList.clear();
    m_sinceBaseCount = 0;
    m_lost = false;
    m_last = std::move(snap);
    ++m_rebases;
}

UndoSnapshotPtr UndoStore::record(Surface& picture)
{
    settle(picture);
    absorb(picture);
    const QImage& image = std::as_const(picture).Image();
    if (rebaseDue(image)) {
        rebase(image);
        return m_last;
    }
    if (m_sinceLastList.empty())
        return m_last; // nothing written since: the same snapshot serves
    // The new tiles merge into the previous snapshot's list, which it shares.
    std::sort(m_sinceLastList.begin(), m_sinceLastList.end());
    auto snap = std::make_shared<UndoSnapshot>();
    snap->base = m_last->base;
    snap->columns = m_last->columns;
    snap->rows = m_last->rows;
    snap->tiles.reserve(m_last->tiles.size() + m_sinceLastList.size());
    auto old = m_last->tiles.begin();
    const auto oldEnd = m_last->tiles.end();
    for (int index : m_sinceLastList) {
        while (old != oldEnd && old->index < index)
            snap->tiles.push_back(*old++);
        if (old != oldEnd && old->index == index)
            ++old;
        snap->tiles.push_back({index, image.copy(tileRect(index, snap->columns, image.size()))});
        m_sinceLast[std::size_t(index)] = 0;
    }
    snap->tiles.insert(snap->tiles.end(), old, oldEnd);
    m_sinceLastList.clear();
    m_last = std::move(snap);
    return m_last;
}

bool UndoStore::changedSinceLast(Surface& picture)
{
    absorb(picture);
    return m_lost || !m_last || !m_sinceLastList.empty();
}

void UndoStore::restore(Surface& picture, const UndoSnapshotPtr& snapshot)
{
    if (!snapshot || snapshot->empty())
        return;
    settle(picture);
    absorb(picture);
    const UndoSnapshot& snap = *snapshot;
    const QSize size = std::as_const(picture).Image().size();
    const bool sameSize = snap.base.size() == size;
    const bool overBase = !m_lost && m_last && sameSize && snap.base.constBits() == m_base.constBits();
    QRect written;
    if (overBase) {
        // Only the tiles where the picture or the snapshot may differ from the base.
        QImage* image = nullptr;
        auto own = snap.tiles.begin();
        for (std::size_t i = 0; i < m_sinceBase.size(); ++i) {
            const bool hasOwn = own != snap.tiles.end() && own->index == int(i);
            if (!hasOwn && !m_sinceBase[i])
                continue;
            if (!image)
                image = &picture.Image();
            writeTile(*image, snap, int(i), hasOwn ? &own->pixels : nullptr);
            written |= tileRect(int(i), snap.columns, size);
            if (hasOwn)
                ++own;
        }
    } else {
        QImage& image = picture.Image();
        const QRect common = image.rect() & snap.base.rect();
        copyPixels(image, QPoint(0, 0), snap.base, common);
        for (const UndoTile& t : snap.tiles)
            writeTile(image, snap, t.index, &t.pixels);
        written = common;
    }
    if (!written.isEmpty())
        picture.touch(written);
    picture.takeChanges(); // the writes above are the snapshot, not a change to it
    m_sinceLastList.clear();
    if (!sameSize) {
        m_lost = true;
        return;
    }
    m_base = snap.base;
    m_sinceBase.assign(std::size_t(snap.columns) * snap.rows, 0);
    for (const UndoTile& t : snap.tiles)
        m_sinceBase[std::size_t(t.index)] = 1;
    m_sinceBaseCount = snap.tiles.size();
    m_sinceLast.assign(m_sinceBase.size(), 0);
    m_lost = false;
    m_last = snapshot;
}

void UndoStore::prepare(Surface& picture)
{
    if (m_ahead.valid()) {
        if (m_ahead.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            return; // still copying
        settle(picture);
    }
    absorb(picture);
    const QImage& image = std::as_const(picture).Image();
    if (image.isNull() || qint64(image.width()) * image.height() < kAheadPixels)
        return;
    // A base that the next record() would take anyway is taken now, so that its
    // sharing is undone here too.
    if (rebaseDue(image))
        rebase(image);
    if (image.isDetached())
        return;
    m_aheadKey = image.cacheKey();
    try {
        m_ahead = std::async(std::launch::async, [source = image]() mutable {
            QImage copy = source.copy();
            source = QImage(); // the picture's pixels are no longer held here
            return copy;
        });
    } catch (const std::system_error&) {
        // No thread to be had: the first write copies, as it would without this.
    }
}

void UndoStore::settle(Surface& picture)
{
    if (!m_ahead.valid())
        return;
    QImage copy;
    try {
        copy = m_ahead.get();
    } catch (const std::exception&) {
        return; // out of memory for the copy: the first write copies, as it would without it
    }
    // A write since the copy began left the picture with pixels of its own already.
    picture.adoptCopy(std::move(copy), m_aheadKey);
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
        for (const UndoTile& tile : snap->tiles)
            count(tile.pixels);
    }
    return bytes;
}

} // namespace velunta
