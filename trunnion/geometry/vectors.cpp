#include "trunnion/geometry/vectors.h"
