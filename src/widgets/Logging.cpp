#include "widgets/Logging.h"

namespace velunta {

Q_LOGGING_CATEGORY(lcWidgets, "velunta.widgets")

} // namespace velunta
