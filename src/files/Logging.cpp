#include "files/Logging.h"

namespace velunta {

Q_LOGGING_CATEGORY(lcFiles, "velunta.files")

} // namespace velunta
