#pragma once
// Long pixel loops report their progress and ask whether to stop through this
// callback; the shell maps it to the progress strip and CancelRequested.

#include <functional>

namespace velunta {

// fraction in 0..1; returns true when the user asked to cancel.
using ProgressFn = std::function<bool(double fraction)>;

inline bool NoProgress(double)
{
    return false;
}

} // namespace velunta
