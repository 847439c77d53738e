#pragma once
// The shell subsystem's logging category, "velunta.shell" (see core/Logging.h).

#include <QLoggingCategory>

namespace velunta {

Q_DECLARE_LOGGING_CATEGORY(lcShell)

} // namespace velunta
