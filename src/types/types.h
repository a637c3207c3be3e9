// The geometry types that carry every size, point and rectangle of the system.
#pragma once

#include "types/point_size.h"
#include "types/rect.h"
#include "types/tags.h"
