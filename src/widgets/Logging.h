#pragma once
// The widgets subsystem's logging category, "velunta.widgets" (see core/Logging.h).

#include <QLoggingCategory>

namespace velunta {

Q_DECLARE_LOGGING_CATEGORY(lcWidgets)

} // namespace velunta
