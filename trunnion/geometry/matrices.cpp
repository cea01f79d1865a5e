#include "trunnion/geometry/matrices.h"
