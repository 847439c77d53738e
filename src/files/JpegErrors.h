#pragma once
// The JPEG writer's include: the error manager lives with the readers.
#include "files/read/JpegErrors.h"
