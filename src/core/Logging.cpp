#include "core/Logging.h"

namespace velunta {

Q_LOGGING_CATEGORY(lcCore, "velunta.core")

} // namespace velunta
