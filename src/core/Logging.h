#pragma once
// What the program reports goes through Qt's logging, one category per subsystem,
// named "velunta.<subsystem>" and declared in that subsystem's own Logging.h. The core's
// category carries the faults the command guard catches and a settings store that
// can't be written.

#include <QLoggingCategory>

namespace velunta {

Q_DECLARE_LOGGING_CATEGORY(lcCore)

} // namespace velunta
