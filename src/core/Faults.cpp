#include "core/Faults.h"

namespace velunta {

Q_LOGGING_CATEGORY(lcFaults, "velunta.faults")

void ReportFault(const char* step, const std::exception& e)
{
    qCWarning(lcFaults, "%s ended by a fault: %s", step, e.what());
}

} // namespace velunta
