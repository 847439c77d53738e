#pragma once
// Where the undo steps of a document keep their pixels.
//
// A step is a snapshot of the picture. Snapshots don't copy the picture: they hold a
// base picture, shared with the document (Qt's implicit sharing), plus copies of only
// the 64 x 64 tiles that differ from that base. The picture reports every write
// through Surface::touch(), so a new snapshot copies just the tiles written since the
// previous one and shares the rest with it. A command that changes most of the picture
// makes the picture itself the new base.
//
// Sharing the base means the picture's first write after a new base would copy all of
// it. prepare(), called while the pointer moves over the picture, takes that copy on a
// worker thread beforehand, so the press that follows costs what it draws.

#include "core/Surface.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <vector>

namespace velunta {

struct UndoTile {
    int index = 0; // in the tile grid, row by row
    QImage pixels;
};

struct UndoSnapshot {
    QImage base;     // the picture the tiles lie over; its size is the snapshot's
    int columns = 0; // tile grid over base
    int rows = 0;
    std::vector<UndoTile> tiles; // where the snapshot differs from base, by index

    int width() const { return base.width(); }
    int height() const { return base.height(); }
    bool empty() const { return base.width() <= 0 || base.height() <= 0; }
    // Its own copy of tile `index`, or null where it shows the base.
    const QImage* tile(int index) const;
    // The snapshot as one picture.
    QImage toImage() const;
};

using UndoSnapshotPtr = std::shared_ptr<const UndoSnapshot>;

class UndoStore {
public:
    static constexpr int kTile = 64;

    UndoStore() = default;
    UndoStore(UndoStore&&) = default;
    UndoStore& operator=(UndoStore&&) = default;
    ~UndoStore();

    // Starts following `picture`'s writes (the document's Buffer).
    void attach(Surface& picture);

    // The picture as it stands, as a snapshot.
    UndoSnapshotPtr record(Surface& picture);
    // True when the picture has changed since the last record() or restore().
    bool changedSinceLast(Surface& picture);
    // Copies `snapshot` into the picture at 0, 0 at the picture's own size: a snapshot
    // of another size shows clipped, or leaves the old pixels at the rim. Only the tiles
    // that differ are written when the snapshot shares the current base.
    void restore(Surface& picture, const UndoSnapshotPtr& snapshot);
    // The user is about to draw: starts the copy that the picture's next write would
    // otherwise make at the press. Costs nothing when there is none to make.
    void prepare(Surface& picture);
    // Waits for a copy prepare() started, and gives it to the picture. Every write
    // that can follow one comes after this: the press, record() and restore().
    void settle(Surface& picture);

    // Bytes the snapshots in `held` keep beyond the picture itself: their tiles, and
    // each base that no longer shares the picture's or its persistent layer's pixels.
    static std::size_t heldBytes(const std::vector<UndoSnapshotPtr>& held, const Surface& picture);

    int rebases() const { return m_rebases; }

private:
    void absorb(Surface& picture);
    bool rebaseDue(const QImage& image) const;
    void rebase(const QImage& image);

    QImage m_base;
    std::vector<std::uint8_t> m_sinceBase; // tiles that may differ from m_base
    std::vector<std::uint8_t> m_sinceLast; // tiles that may differ from m_last
    std::vector<int> m_sinceLastList;      // the same tiles, by index
    std::size_t m_sinceBaseCount = 0;
    std::future<QImage> m_ahead; // the copy prepare() started
    qint64 m_aheadKey = 0;       // the picture's cache key when it started
    bool m_lost = true;          // the picture changed in a way the tiles can't follow
    UndoSnapshotPtr m_last;
    int m_rebases = 0;
};

} // namespace velunta
