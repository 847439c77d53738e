#pragma once
// The effects subsystem's logging category, "velunta.effects" (see core/Logging.h).

#include <QLoggingCategory>

namespace velunta {

Q_DECLARE_LOGGING_CATEGORY(lcEffects)

} // namespace velunta
