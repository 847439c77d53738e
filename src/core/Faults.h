#pragma once
// Every command and event handler runs inside one guard: a fault ends that step or
// command, leaves the document as it is and the program running. The guard writes
// the fault to stderr; where the program shows a message, the caller does it.

#include <QString>

#include <exception>
#include <functional>
#include <new>

namespace velunta {

// Reports a caught fault of the named step on stderr.
void ReportFault(const char* step, const std::exception& e);

// Runs fn; a thrown fault is reported and swallowed. Returns false when a fault ended it.
template <class Fn> bool Guarded(const char* step, Fn&& fn)
{
    try {
        std::forward<Fn>(fn)();
        return true;
    } catch (const std::bad_alloc& e) {
        ReportFault(step, e);
    } catch (const std::exception& e) {
        ReportFault(step, e);
    }
    return false;
}

} // namespace velunta
