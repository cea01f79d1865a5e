// Arc construction: the centre, radius or end point of an arc from other statements of it, and
// slSetArcPara, which settles what such an arc is in a TouchCurD.
//
// All but slSetArcPara work on the two coordinates u and v of the arc's plane: x and y, y and z or
// z and x. A direction is CUR_DIR_CCW or CUR_DIR_CW, seen with u to the right and v upwards.
// Lengths are the caller's, angles radians. What is rounded to float on the way is said; all else
// is formed in double and rounded where it is stored. Inputs may be given as outputs too.
#pragma once

#include "trunnion/curves/touch_cur.h"
#include "trunnion/export.h"

// Centre of the arc from a to b with radius r. Of the two circles it is the one whose arc in
// `direction` makes at most half a turn; a negative r asks for the other. A direction other than
// CUR_DIR_CW counts as CUR_DIR_CCW. With h = half the chord, rounded to float:
//
//   0    |r| + SL_ZERO, rounded to float, is below h: the chord is too long; nothing written
//   1    h is at most SL_ZERO, the ends coincide: the centre is (ua + r, va)
//   1    otherwise; an r that falls short of h inside the tolerance gives the chord's middle
TRUNNION_API int slCalArcCent(int direction, float ua, float va, float ub, float vb, float r,
                              float *cu, float *cv);

// The same with a slack on the radius: one too short by at most `tolerance` is stretched to half
// the chord.
//
//   0    |r| + tolerance, rounded to float, is below h: nothing written
//   1    h is at most SL_ZERO, the ends coincide: r becomes 0, the centre is a
//   1    |r| + SL_ZERO, rounded to float, is below h: r becomes h, without its sign, and the centre
//        the chord's middle
//   1    otherwise as slCalArcCent; r stays
TRUNNION_API int slCalArcCentNear(int direction, float ua, float va, float ub, float vb, float *r,
                                  float *cu, float *cv, float tolerance);

// Radius and centre of the arc from a to b that sweeps an angle. A negative sweep gives the same
// centre with a negative radius. With h = half the chord:
//
//   0    h is at most SL_ZERO, or sin(sweep / 2) lies within h times SL_ZERO of 0 (a sweep of 0 or
//        of a turn fixes no circle); nothing written
//   1    done; r has the sign of sin(sweep / 2)
TRUNNION_API int slCalArcCentRadius(int direction, float ua, float va, float ub, float vb,
                                    float sweep, float *r, float *cu, float *cv);

// Radius and end point b of the arc from a about c that sweeps an angle; only the magnitude of the
// sweep counts. Directions other than CUR_DIR_CCW turn clockwise. With R = the distance of a from
// c, rounded to float:
//
//   0    R is below SL_ZERO; nothing written
//   1    |sin(sweep / 2)| is at most SL_ZERO, the arc closes: b is a
//   1    otherwise b is a turned about c
TRUNNION_API int slCalArcRadiusPnt(int direction, float ua, float va, float cu, float cv,
                                   float sweep, float *r, float *ub, float *vb);

// Moves a plane point along its radius onto the circle of radius r.
//
//   0    the point is nearer to the centre than SL_ZERO: it becomes (centre u + r, centre v)
//   1    done
TRUNNION_API int slCalCirPnt(float *centre, float r, float *point);

// Angle of a point on a circle, 0 to SL_TWO_PI, from the first axis of the plane towards the
// second. By the snap of slAcos, a point within about 0.0141 radian of the axis reads as SL_PI on
// the negative side; on the positive side it reads as 0, or as SL_TWO_PI where it lies below the
// axis. A negative radius gives the angle of the point across the circle, a radius of 0 gives 0.
TRUNNION_API float slGetArcAng2(float cu, float cv, float pu, float pv, float r);

// Fills a curve of type 154, 155 or 156 from the start and end of the travel in the curve's
// direction, the centre and the radius, and settles what the arc is: a short arc, a full circle, a
// flat arc that is a line, or a helix. `start`, `end` and `centre` are points in space; IV and V of
// the record stay.
//
//   0    another type: the points and the radius are written all the same
//   1    done
//
// Points: start and end go to first and second point for CUR_DIR_CCW, exchanged for any other
// direction. Angles: those of slGetArcAng2. They are coarse near the first axis, and ends that
// nearly meet may belong to a short arc or to nearly a full circle. So the difference of the angles
// decides; to rise means that the second angle grows by SL_TWO_PI:
//
//   6 degrees or more    rises if the second is below the first. Then a flat arc if the angles
//                        agree to less than SL_ZERO, while the ends without their y lie further
//                        apart than SL_ZERO and the radius is above SL_ZERO
//   less                 a full circle, which rises, if the ends lie within SL_ZERO in the plane or
//                        the radius is at most SL_ZERO. Otherwise a flat arc if the angles agree to
//                        less than SL_ZERO. Otherwise nearly a full circle, which rises, if the
//                        sine from the radius of the first point to the chord is below SL_ZERO,
//                        else a short arc
//
// On CUR_ARC_ZX the second angle then rises where the first, plus SL_ZERO, is above it. None of
// this holds of an arc of radius 0: both its angles are 0.
//
// A flat arc becomes a CUR_LINE: on CUR_DIR_CW its points are exchanged, all five coordinates, so
// that the first is the start again. An arc whose ends lie further apart than SL_ZERO across its
// plane becomes a helix, the type that is greater by 3; its pitch is the rise from first to second
// point in one turn, negated for CUR_DIR_CW, and 0 where its angles are equal.
TRUNNION_API int slSetArcPara(TouchCurD *curve, float *const start, float *const end,
                              float *const centre, float r);
