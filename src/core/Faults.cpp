#include "core/Faults.h"

#include "core/Logging.h"

namespace velunta {

void ReportFault(const char* step, const std::exception& e)
{
    qCWarning(lcCore, "%s ended by a fault: %s", step, e.what());
}

} // namespace velunta
