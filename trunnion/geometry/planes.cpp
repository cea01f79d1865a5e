#include "trunnion/geometry/planes.h"
