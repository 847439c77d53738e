#include "document/StepHistory.h"

#include "document/Document.h"

#include <numeric>

namespace velunta {

namespace {

// The bytes `next` holds that `previous` does not share: its new tiles, and its base
// when that is a new one.
std::size_t addedBytes(const UndoSnapshot* previous, const UndoSnapshot& next)
{
    std::size_t bytes = 0;
    if (!previous || previous->base.constBits() != next.base.constBits())
        bytes += std::size_t(next.base.sizeInBytes());
    for (const UndoTile& tile : next.tiles) {
        const QImage* before = previous ? previous->tile(tile.index) : nullptr;
        if (!before || before->constBits() != tile.pixels.constBits())
            bytes += std::size_t(tile.pixels.sizeInBytes());
    }
    return bytes;
}

} // namespace

void StepHistory::record(Document& doc)
{
    UndoSnapshotPtr snap = doc.UndoKeep.record(doc.Buffer);
    if (m_at >= 0 && m_states[std::size_t(m_at)].snapshot == snap)
        return;
    m_states.resize(std::size_t(m_at + 1));
    const UndoSnapshot* previous = m_states.empty() ? nullptr : m_states.back().snapshot.get();
    m_states.push_back({snap, addedBytes(previous, *snap)});
    m_at = int(m_states.size()) - 1;
    trim();
}

void StepHistory::trim()
{
    // The oldest go first; the state the picture stands at always stays.
    while (m_at > 0 && (int(m_states.size()) > kMaxSteps + 1 || heldBytes() > m_budget)) {
        m_states.erase(m_states.begin());
        --m_at;
        if (!m_states.empty()) // the new oldest state holds all it shows by itself
            m_states.front().ownBytes = addedBytes(nullptr, *m_states.front().snapshot);
    }
}

std::size_t StepHistory::heldBytes() const
{
    return std::accumulate(m_states.begin(), m_states.end(), std::size_t(0),
                           [](std::size_t sum, const State& s) { return sum + s.ownBytes; });
}

void StepHistory::restore(Document& doc)
{
    const UndoSnapshotPtr& snap = m_states[std::size_t(m_at)].snapshot;
    // A step may go back across a change of size: the picture takes the step's size.
    if (snap->width() != doc.Buffer.ScaleWidth() || snap->height() != doc.Buffer.ScaleHeight())
        doc.Buffer.setScaleSize(snap->width(), snap->height());
    doc.UndoKeep.restore(doc.Buffer, snap);
}

bool StepHistory::undo(Document& doc)
{
    record(doc);
    if (m_at <= 0)
        return false;
    --m_at;
    restore(doc);
    return true;
}

bool StepHistory::redo(Document& doc)
{
    if (m_at < 0 || m_at + 1 >= int(m_states.size()))
        return false;
    if (doc.UndoKeep.changedSinceLast(doc.Buffer)) {
        record(doc); // a change after the undo ends the way forward
        return false;
    }
    ++m_at;
    restore(doc);
    return true;
}

} // namespace velunta
