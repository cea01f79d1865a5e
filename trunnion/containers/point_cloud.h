// The measures of a cloud of points are operations of the list that holds it: extreme points and
// pairs, shape errors, the plane of least squares, centre, averages and extents, projection and
// local frames. They are declared with Point3DArr.
#pragma once

#include "trunnion/containers/point3d_arr.h"
