#pragma once
// The files subsystem's logging category, "velunta.files" (see core/Logging.h).

#include <QLoggingCategory>

namespace velunta {

Q_DECLARE_LOGGING_CATEGORY(lcFiles)

} // namespace velunta
