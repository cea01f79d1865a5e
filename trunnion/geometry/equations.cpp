#include "trunnion/geometry/equations.h"
