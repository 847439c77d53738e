#include "effects/Logging.h"

namespace velunta {

Q_LOGGING_CATEGORY(lcEffects, "velunta.effects")

} // namespace velunta
