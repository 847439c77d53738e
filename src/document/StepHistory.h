#pragma once
// A linear undo history for one document: up to 100 steps back and forth, over the
// same change-only snapshots as the undo ring, within a memory budget that drops the
// oldest steps first.

#include "document/UndoStore.h"

#include <cstddef>
#include <vector>

namespace velunta {

class Document;

class StepHistory {
public:
    static constexpr int kMaxSteps = 100;
    static constexpr std::size_t kDefaultBudget = std::size_t(512) << 20;

    explicit StepHistory(std::size_t budget = kDefaultBudget) : m_budget(budget) {}

    // Keeps the picture as the newest state, unless it is the state the history stands
    // at. States that Redo could have brought back are dropped.
    void record(Document& doc);
    // One step back: the picture as it stands is kept first when it changed, so that Redo
    // brings it back. False when there is nothing older.
    bool undo(Document& doc);
    // One step forward. False when there is nothing newer or the picture changed since.
    bool redo(Document& doc);

    int states() const { return int(m_states.size()); }
    int position() const { return m_at; }
    std::size_t heldBytes() const;

private:
    void restore(Document& doc);
    void trim();

    struct State {
        UndoSnapshotPtr snapshot;
        std::size_t ownBytes = 0; // pixels this state added to the one before it
    };
    std::vector<State> m_states;
    int m_at = -1;
    std::size_t m_budget;
};

} // namespace velunta
