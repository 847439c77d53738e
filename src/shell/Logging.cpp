#include "shell/Logging.h"

namespace velunta {

Q_LOGGING_CATEGORY(lcShell, "velunta.shell")

} // namespace velunta
