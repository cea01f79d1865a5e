// Which code an intersection answers with at, just below and just above each bound, and what it
// leaves alone then.
#include "trunnion/geometry/intersections.h"

#include "tests/geometry/cases.h"
#include "tests/geometry/point.h"

using namespace test;

namespace {

const Point O = {0, 0, 0}, X = {1, 0, 0}, Y = {0, 1, 0}, Z = {0, 0, 1};

// With a radius or distance of this length and one of about SL_ZERO all sums and the root are
// exact.
constexpr float EXACT = 0x1p-13F;

TEST(LineEquations, AreSingularBelowTheTolerance) {
    check({{"below", 0, {below(SL_ZERO)}, {}},
           {"at", 1, {SL_ZERO}, {1, 0}},
           {"negative, at", 1, {-SL_ZERO}, {1, 0}}},
          [](const float *det, float *out) {
              float A[2][2] = {{2, *det}, {1, 0}}, b[2] = {2, 1};
              return slLineEquation2(A, b, out);
          });
}

// Both ends of the segment, and where the ray along X starts.
TEST(RayAndSegment, TellCrossingOverlapAndMiss) {
    const float behind = -SL_ZERO, within = above(behind);
    check({{"crossing far ahead", SL_RAY_CROSSES, {1e6F, -1, 1e6F, 3}, {1e6F, 0.25F}},
           {"t at the bound", SL_RAY_MISSES, {behind, -1, behind, 1}, {behind, 0.5F}},
           {"t above it", SL_RAY_CROSSES, {within, -1, within, 1}, {within, 0.5F}},
           {"sine at the bound", SL_COINCIDENT, {1, 0, 2, SL_ZERO}, {1, 0}},
           {"sine above it", SL_RAY_CROSSES, {1, 0, 2, above(SL_ZERO)}, {1, 0}},
           {"beside and ahead", SL_COINCIDENT, {3, 7, 5, 7}, {3, 0}},
           {"beside, not from the origin", SL_COINCIDENT, {3, 7, 5, 7, 2, 1}, {1, 0}},
           {"behind, not from the origin", SL_RAY_MISSES, {-5, 7, 1, 7, 2, 1}, {}},
           {"c within slack", SL_COINCIDENT, {within, 7, -5, 7}, {0, 0}},
           {"c at the bound", SL_RAY_MISSES, {behind, 7, -5, 7}, {}},
           {"d within slack", SL_COINCIDENT, {-5, 7, within, 7}, {0, 1}},
           {"d at the bound", SL_RAY_MISSES, {-5, 7, behind, 7}, {}},
           {"short across", SL_RAY_CROSSES, {2, -4e-5F, 2, 4e-5F}, {2, 0.5F}},
           {"short along", SL_RAY_MISSES, {1, 0, 1.00005F, 0}, {0, 0}},
           {"no segment", SL_RAY_MISSES, {1, 1, 1, 1}, {0, 0}}},
          [](const float *in, float *out) {
              return slIntersectLines2D(in + 4, X, in, in + 2, out, out + 1);
          });
}

// A line at the height s cuts the segment from (2, 0, 0) to (2, 1, 0) at s.
TEST(SlackOnTheSegment, IsStrictAtBothEnds) {
    const Point c = {2, 0, 0}, d = {2, 1, 0};
    for (const float s : {-SL_ZERO, above(-SL_ZERO), 1.00005F, below(SL_PAST_ONE), SL_PAST_ONE}) {
        const int result = -SL_ZERO < s && s < SL_PAST_ONE ? 1 : 0;
        std::vector<float> end = {2, s, 0};
        end.resize(result == 1 ? 3 : 0);
        check({{"plane", result, {0, s}, {2, s}}}, [&](const float *a, float *out) {
            return slIntersectLines2D(a, X, c, d, out, out + 1);
        });
        check({{"ahead", result, {0, s, 0, 3, 0, 0}, end},
               {"behind", result, {9, s, 0, 3, 0, 0}, end}},
              [&](const float *a, float *out) { return slIntersecLines(a, a + 3, c, d, out, 7); });
    }
}

TEST(LineAndSegmentInSpace, FallBackWithoutACrossing) {
    // Direction, segment, s0.
    check({{"parallel", 1, {-2, 0, 0, 0, 0, 0, 4, 0, 0, 0.25F}, {1, 0, 0}},
           {"parallel, s0 at the bound", 0, {2, 0, 0, 0, 0, 0, 4, 0, 0, SL_PAST_ONE}, {}},
           {"no segment", 1, {0, 1, 0, 4, 0, 0, 4, 0, 0, 0.25F}, {4, 0, 0}},
           {"no line", 1, {0, 0, 0, 0, 0, 0, 4, 0, 0, 0.5F}, {2, 0, 0}},
           {"skew: nearest to the line", 1, {0, 1, 0, -1, 3, 0, 3, 7, 0, 9}, {1, 5, 0}}},
          [](const float *in, float *out) {
              return slIntersecLines(Point{1, -8, 5}, in, in + 3, in + 6, out, in[9]);
          });
}

TEST(LineAndPlane, DependOnSlopeAndHeight) {
    const float tilt = below(SL_ZERO);
    const auto cut = [](auto function) {
        return [function](const float *in, float *out) {
            return function(Point{3, 4, in[0]}, Point{1, 0, in[1]}, Z, 0, out);
        };
    };
    const Case parallel[] = {{"off", SL_LINE_OFF_PLANE, {SL_ZERO, tilt}, {}},
                             {"in", SL_LINE_IN_PLANE, {tilt, -tilt}, {}}};
    check({parallel[0],
           parallel[1],
           {"at the slope's bound", SL_LINE_HITS, {-1, -SL_ZERO}, {-9997, 4, 0}},
           {"starting in the plane", SL_LINE_HITS, {tilt, 1}, {3 - tilt, 4, 0}}},
          cut(slLineIntersectPlane));
    check({parallel[0],
           parallel[1],
           {"at the slope's bound", SL_LINE_HITS_BEHIND, {-1, -SL_ZERO}, {-9997, 4, 0}},
           {"ahead", SL_LINE_HITS, {-1, 0.5F}, {5, 4, 0}},
           {"starting in the plane", SL_LINE_HITS, {tilt, 1}, {3, 4, tilt}},
           {"starting above it", SL_LINE_HITS_BEHIND, {SL_ZERO, 1}, {3 - SL_ZERO, 4, 0}}},
          cut(slRadialIntersectPlane));
}

TEST(PlanePairs, AreParallelUpToTheTolerance) {
    // Slope and height of the second plane; the direction comes first.
    check({{"same", SL_PLANES_EQUAL, {SL_ZERO, below(SL_ZERO)}, {1, 0, 0}},
           {"apart", SL_PLANES_PARALLEL, {-SL_ZERO, SL_ZERO}, {1, 0, 0}},
           {"crossing", SL_PLANES_CROSS, {above(SL_ZERO), 0}, {0, 1, 0, 9, 0, 0}}},
          [](const float *in, float *out) {
              const Point p = {9, 9, in[1]}, n = {in[0], 0, 1};
              return slGetPlaneIntersectM(O, Z, p, n, out + 3, out);
          });
    check({{"apart", 0, {}, {}}}, [](const float *, float *out) {
        return slGetPointOnIntersectLine({{1, 2, 3}, {0, 0, 2}}, {{1, 2, 4}, {0, 0, -1}}, out);
    });
}

// Level segments, from x to x at a height, against the circle of radius 1 about the origin. The
// count comes first, then point, parameter and angle of each crossing.
TEST(SegmentAndCircle, CountAnEndOnTheCircleAsInsideOrOutside) {
    const float half = SL_HALF_PI;
    check({{"beyond the circle", 0, {-2, 2, above(1.0F)}, {0}},
           {"tangent", 1, {-2, 2, 1}, {2, 0, 1, 0.5F, half, 0, 1, 0.5F, half}},
           {"both inside", 1, {-0.5F, 0.5F, 0}, {0}},
           {"foot before, both inside", 1, {0.25F, 0.75F, 0}, {0}},
           {"no segment", 1, {0.5F, 0.5F, 0}, {0}},
           {"foot at the start, end on the circle", 1, {0, 1, 0}, {0}},
           {"foot between, an end on the circle", 1, {-0.5F, 1, 0}, {0}},
           {"foot before, an end on the circle", 1, {0.5F, 1, 0}, {1, 1, 0, 1, 0}},
           {"foot beyond, start on the circle", 1, {-1, -0.5F, 0}, {1, -1, 0, 0, SL_PI}}},
          [](const float *in, float *out) {
              const float p0[] = {in[0], in[2]}, p1[] = {in[1], in[2]};
              int count = -7;
              const int result = slLineIntCircle(p0, p1, O, 1, out + 1, out + 3, out + 4, out + 5,
                                                 out + 7, out + 8, &count);
              out[0] = static_cast<float>(count);
              return result;
          });
}

// Out of the float arrays of the table.
float (*pair(float *out))[3] {
    return reinterpret_cast<float(*)[3]>(out);
}

// A level line at a height, of a length, against a sphere about the origin.
TEST(LineAndSphere, GiveTheNearestPointForAMiss) {
    const float in = 0.0099994F, near = 0.00999975F; // squares 1.2e-8 and 5e-9 below that of 0.01
    check({{"no direction", SL_LINE_NO_DIRECTION, {1, SL_ZERO, 1}, {}},
           {"center, as the frame sees it", SL_LINE_TWO_POINTS, {4e-5F, 2, 1}, {1, 0, 0, -1, 0, 0}},
           {"beside it", SL_LINE_TWO_POINTS, {6e-5F, 2, 1}, {1, 6e-5F, 0, -1, 6e-5F, 0}},
           {"within", SL_LINE_TWO_POINTS, {in, 2, 0.01F}, {SOME, in, 0, SOME, in, 0}},
           {"at the bound", SL_LINE_ONE_POINT, {near, 2, 0.01F}, {0, near, 0}},
           {"missing", SL_LINE_ONE_POINT, {2, 2, 1}, {0, 2, 0}}},
          [](const float *v, float *out) {
              const Point p = {-0.5F * v[1], v[0], 0}, q = {0.5F * v[1], v[0], 0};
              return slIntersectLineSphere(O, v[2], p, q, pair(out));
          });
}

// Distance and height of the second center, both radii.
TEST(CirclePairs, TellTouchingFromCrossing) {
    const std::vector<float> one = {SOME, SOME, SOME}, two = {SOME, SOME, SOME, SOME, SOME, SOME};
    check({{"both bounds at SL_ZERO", SL_CIRCLES_APART, {EXACT, 0, SL_ZERO, EXACT}, {}},
           {"sum in reach", SL_CIRCLES_TOUCH, {EXACT, 0, below(SL_ZERO), EXACT}, one},
           {"beyond both bounds", SL_CIRCLES_CROSS, {EXACT, 0, above(SL_ZERO), EXACT}, two},
           {"first inside", SL_CIRCLES_TOUCH, {0.25009F, 0, 0.75F, 1}, {-0.75F, 0, 0}},
           {"second inside", SL_CIRCLES_TOUCH, {0.24991F, 0, 1, 0.75F}, {1, 0, 0}},
           {"well inside", SL_CIRCLES_APART, {0.24989F, 0, 1, 0.75F}, {}},
           {"nearly inside", SL_CIRCLES_CROSS, {0.25011F, 0, 1, 0.75F}, two},
           {"the same", SL_COINCIDENT, {0, 0, 1, 1.00005F}, {}},
           {"one center", SL_CIRCLES_APART, {0, 0, 1, 1.0002F}, {}},
           {"two points", SL_CIRCLES_TOUCH, {0, 0, 0, 0}, {0, 0, 0}},
           {"nearly level", SL_CIRCLES_CROSS, {1, 0.99e-4F, 1, 1}, two},
           {"tilted", SL_CIRCLES_TILTED, {1, 1.01e-4F, 1, 1}, {}}},
          [](const float *in, float *out) {
              return slIntersectCircle(O, in[2], Point{in[0], 0, in[1]}, in[3], Z, pair(out));
          });
}

TEST(Sections, TellPointsFromCircles) {
    // Distance and radii; the outputs are center, radius, normal.
    check({{"apart", SL_SECTION_NONE, {above(3.0F), 2, 1}, {}},
           {"touching", SL_SECTION_POINT, {3, 2, 1}, {2, 0, 0}},
           {"in reach", SL_SECTION_POINT, {EXACT, EXACT, below(SL_ZERO)}, {SOME, 0, 0}},
           {"at SL_ZERO", SL_SECTION_CIRCLE, {EXACT, EXACT, SL_ZERO}, {SOME, 0, 0, SOME, 1, 0, 0}},
           {"inside", SL_SECTION_CIRCLE, {1, 5, 1}, {12.5F, 0, 0, 0, 1, 0, 0}},
           {"one center", SL_SECTION_NONE, {0, 5, 5}, {}},
           {"two points", SL_SECTION_POINT, {0, 0, 0}, {0, 0, 0}}},
          [](const float *in, float *out) {
              return slGetShereIntersect(O, in[1], in[0] * X, in[2], out, out + 4, out + 3);
          });
    // Height and radius.
    check({{"apart", SL_SECTION_NONE, {above(2.0F), 2}, {}},
           {"touching", SL_SECTION_POINT, {-2, 2}, {5, 6, 0}},
           {"in reach", SL_SECTION_POINT, {above(SL_ZERO), 2 * SL_ZERO}, {5, 6, SOME}},
           {"at SL_ZERO", SL_SECTION_CIRCLE, {SL_ZERO, 2 * SL_ZERO}, {5, 6, 0, SOME}}},
          [](const float *in, float *out) {
              return slIntersectPlaneSphereM(X, Z, Point{5, 6, in[0]}, in[1], out, out + 3);
          });
    // Height of the apex, and how far it is aside of the plane's point; the slope is 2.
    check({{"apex in the plane", SL_SECTION_POINT, {SL_ZERO, 1}, {0, 0, SL_ZERO}},
           {"ahead", SL_SECTION_CIRCLE, {above(SL_ZERO), 1}, {0, 0, 0, 2 * SL_ZERO}},
           {"behind", SL_SECTION_NONE, {-above(SL_ZERO), 1}, {}},
           {"too near to tell", SL_SECTION_CIRCLE, {-SL_ZERO, 0}, {0, 0, 0, 2 * SL_ZERO}},
           {"on the apex", SL_SECTION_CIRCLE, {0, 0}, {0, 0, 0, 0}},
           {"near and behind", SL_SECTION_NONE, {-above(SL_ZERO), 0}, {}}},
          [](const float *in, float *out) {
              const float angle = std::atan(2.0F);
              return slIntersectPlaneCone(in[1] * X, Z, in[0] * Z, Z, angle, out, out + 3);
          });
}

// Ends of both rays, norm along Z; the outputs are center and both points.
TEST(Fillet, ReportsTurnAndDegenerateCorners) {
    const float far = 9950.25F;
    check({{"left", CUR_DIR_CW, {5, 0, 0, 0, 1, 0, 1}, {1, 1, 0, 1, 0, 0, 0, 1, 0}},
           {"from below", CUR_DIR_CCW, {5, 0, 0, 0, 1, 0, -1}, {1, 1, 0, 1, 0, 0, 0, 1, 0}},
           {"opposite", CUR_DIR_CW, {0, 1, 0, 0, -7, 0, 1}, {1, 0, 0, 0, 0, 0, 0, 0, 0}},
           {"no arm", SL_DELETED_INT, {0, 0, 0, 1, 0, 0, 1}, {SL_BIG}},
           {"nearly one way", SL_DELETED_INT, {1, 0, 0, 1, 1.99e-4F, 0, 1}, {SL_BIG}},
           {"apart",
            CUR_DIR_CCW,
            {1, 0, 0, 1, -2.01e-4F, 0, 1},
            {far, -1, 0, far, 0, 0, far, -2, 0}}},
          [](const float *in, float *out) {
              return slGetTangentCircle(O, in, in + 3, in[6] * Z, 1, out, out + 3, out + 6);
          });
}

} // namespace
