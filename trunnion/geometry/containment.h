// Yes-or-no and which-case questions: whether a point lies in a polygon, whether points lie in one
// plane, how a ray passes a picked point or line, whether a ball touches a prism or two cylinders
// touch.
//
// MIND: the polygon tests answer 0 for inside and 1 for outside, the reverse of all others here.
//
// Points and vectors are float[3], plane points float[2] or the start of a float[3]. Lengths are in
// the caller's units, angles in radians. A length that is compared is the kernel's own and thus 0
// below 0.0001; a bound is taken strictly unless a comment says "at most". What a result leaves
// unmentioned is not written. Outputs must not overlap inputs. Nothing keeps state, and nothing
// allocates but slJudgePntInPolygon.
#pragma once

#include "trunnion/export.h"
#include "trunnion/geometry/intersections.h"

// Polygons and figures in the plane. Only x and y of a point count, and only y where a comment says
// so.

// How the ray from (x, y) toward +X meets the edge from a to b.
//   SL_EDGE_CROSSED      to the right of the point
//   SL_EDGE_HOLDS_POINT  the point lies on the edge: nearer than SL_ZERO in x to its crossing with
//                        the ray's line; strictly between the ends of a horizontal edge
//   SL_EDGE_ALONG_RAY    horizontal, on the ray's line and wholly to the right
//   SL_EDGE_NOT_MET      none of these
// An edge is horizontal, and lies on the ray's line, where the heights are nearer than SL_ZERO. Any
// other edge meets the ray only if its ends lie on either side of y: a vertex exactly at y belongs
// to neither of its edges. pnt is the crossing (x and y) and *t its parameter, 0 at a; both are
// written only for an edge that is not horizontal and has its ends on either side.
inline constexpr int SL_EDGE_CROSSED = 1;
inline constexpr int SL_EDGE_HOLDS_POINT = 2;
inline constexpr int SL_EDGE_ALONG_RAY = 3;
inline constexpr int SL_EDGE_NOT_MET = 4;
TRUNNION_API int slRightInter(float x, float y, const float *a, const float *b, float *pnt,
                              float *t);

// Answers of the polygon tests.
inline constexpr int SL_POLYGON_INSIDE = 0; // inside or on the boundary
inline constexpr int SL_POLYGON_OUTSIDE = 1;

// Whether p lies in the polygon of n points, a closed list (the last row repeats the first within
// SL_ZERO in x and y) or an open one. The edges that the ray from p toward +X meets by slRightInter
// are counted, those along the ray too, but not a crossing whose parameter is at most SL_ZERO. An
// odd number means inside; a point on an edge is inside. Edges may cross each other. An empty list
// has no inside. Cost: one pass.
//
// At the height of a vertex the count can be wrong. Exactly there both edges of the vertex are
// skipped, whether the boundary passes the ray's line or only touches it; just past the start of an
// edge its crossing is not counted.
TRUNNION_API int slPointInterFaceM(const float (*pts)[2], int n, const float *p);

// The same in space, for a polygon with the unit normal norm and a point of its plane. The points
// are turned about pnt until norm is +Z (slGenVectToZMatrix), into a list of 2 n floats that the
// call allocates; if there is no memory for it the answer is SL_POLYGON_INSIDE.
TRUNNION_API int slJudgePntInPolygon(int n, const float (*pts)[3], const float *norm,
                                     const float *pnt);

// 1 if p lies inside the triangle, else 0; there is no tolerance. Each side asks whether p lies
// strictly to its left, and inside means three equal answers: a point exactly on an edge is inside
// for a clockwise triangle and outside for a counter-clockwise one.
TRUNNION_API int slIsPntInsideOfTriangle(const float *p, const float *a, const float *b,
                                         const float *c);

// 1 if p lies inside the four-sided figure a, b, c, d, else 0: in either of the two triangles into
// which a diagonal cuts it. That is a to c if b and d lie on different sides of it, otherwise b to
// d, so that a corner of the figure may point inward.
TRUNNION_API int slIsPntInsideOfTrapezium(const float *p, const float *a, const float *b,
                                          const float *c, const float *d);

// How a closed list of n points (the last row repeats the first) passes the horizontal through its
// vertex i, whose coordinates are p. Only heights count.
//   SL_VERTEX_CROSSES  the neighbours lie on different sides, or one of them at the height of p
//   SL_VERTEX_TOUCHES  they lie on the same side: the product of their heights over p is above the
//                      product of their slFabs times SL_ZERO
// The neighbours are the rows i - 1 and i + step; n - 2 where there is none before, 1 where there
// is none behind. A neighbour outside the list gives SL_VERTEX_CROSSES.
inline constexpr int SL_VERTEX_CROSSES = 1;
inline constexpr int SL_VERTEX_TOUCHES = 2;
TRUNNION_API int slGetIntersectType(const float *p, int i, int n, const float (*pts)[2], int step);

// The centre of the plane polygon of n points in space: the centroid of its area, on whichever side
// of the boundary it falls. The list may be open or closed, convex or not. Where the area vanishes
// (twice its size is at most SL_ZERO times the square of the greatest distance from the first
// point) it is the mean of the points, without a last row that repeats the first. n below 1 leaves
// out alone. Cost: two passes.
TRUNNION_API void slPolygenCenterM(float (*pts)[3], int n, float *out);

// Points in space.

// 1 if the three points are pairwise distinct, else 0: two are equal where the slFabs of their
// coordinate differences sum up to less than SL_ZERO. Distinct points ON ONE LINE give 1.
TRUNNION_API int slJudgeIsTriangle(const float *a, const float *b, const float *c);

// Whether n points lie in one plane.
//   SL_POINTS_IN_PLANE   they do; normal is its unit normal
//   SL_POINTS_SCATTERED  they do not: the length of the cross product of two normals is above
//                        SL_ZERO; normal is that of the first three points in general position
//   SL_POINTS_EQUAL      all coincide with the first, or n is below 2; normal is not written
//   SL_POINTS_ON_LINE    all lie on one line; normal is what slGetNormNZero left
// All is measured from the first point, by the two functions below: a point is off the line where
// the sine of its direction there is not below SL_ZERO.
inline constexpr int SL_POINTS_IN_PLANE = 2;
inline constexpr int SL_POINTS_SCATTERED = 3;
inline constexpr int SL_POINTS_EQUAL = 4;
inline constexpr int SL_POINTS_ON_LINE = 5;
TRUNNION_API int slJudgePntCoPlane(int n, const float (*pts)[3], float *normal);

// Scans pts from row *idx (not below 0) for a point whose slLength from base is not below SL_ZERO.
//   1  out is the unit vector from base toward it
//   0  there is none; out is the last difference, or (0, 0, 0) where no row was looked at
// *idx becomes the row behind the last one looked at, so that the next call goes on from there.
TRUNNION_API int slGetVectBtPntsNZero(const float *base, int n, const float (*pts)[3], int *idx,
                                      float *out);

// Scans in the same way for a point off the line through base along dir: with the unit vector w
// from slGetVectBtPntsNZero, the slLength of dir cross w (a sine for a unit dir) is not below
// SL_ZERO.
//   1  out is that product, normalised: the normal of the plane of the line and the point
//   0  there is none; out is the last product, or (0, 0, 0)
TRUNNION_API int slGetNormNZero(const float *base, const float *dir, int n, const float (*pts)[3],
                                int *idx, float *out);

// Rays.

// A ray from a along dir against the plane polygon of n points.
//    1     it hits the inside or the boundary (slJudgePntInPolygon); out is the point
//    0     it hits the plane outside the polygon; out is the point
//   -1     it would hit behind a (SL_LINE_HITS_BEHIND); out is the point
//    2     parallel to the plane and off it (SL_LINE_OFF_PLANE)
//    3     in the plane (SL_LINE_IN_PLANE), or the points do not lie in one (SL_POINTS_SCATTERED):
//          slJudgePntCoPlane tells the two apart
//    4, 5  the points span no plane (SL_POINTS_EQUAL, SL_POINTS_ON_LINE)
TRUNNION_API int slRadialIntersectFaceM(const float *a, const float *dir, const float (*pts)[3],
                                        int n, float *out);

// Picking. The motion M places a local frame whose XY plane holds a picked object, given by local
// plane points. The ray from org along dir, in the coordinates outside, is brought to local ones by
// slGetInverseMotionMatrix and must hit the local plane z = 0 with SL_LINE_HITS.

// 1 if it hits at a plane distance from pnt below tol, else 0.
TRUNNION_API int slJudgeRadialThroughPntM(const float *org, const float *dir, float *pnt, float tol,
                                          const float (&M)[16]);

// 1 if it hits at a plane distance from the segment p1 to p2 below tol, else 0. Beyond an end the
// distance is that from the end; a segment of no length counts as a point.
TRUNNION_API int slJudgeRadialThroughLineM(const float *org, const float *dir, float *p1, float *p2,
                                           float tol, const float (&M)[16]);

// Collision.

// A ball, and a prism with two sloping side faces. With w the vector from prismOrigin, the prism
// reaches from `low` to `high` in w dot axis. Its first side face holds the points with
// w dot firstDirection = tan(firstAngle) (w dot axis), the prism lying below it; the second
// likewise. The vectors are of unit length and the directions at right angles to the axis.
struct BallAndPrismD {
    float ballCentre[3];
    float ballRadius;
    float prismOrigin[3];
    float firstAngle;  // radians
    float secondAngle; // radians
    float axis[3];
    float low;
    float high;
    float secondDirection[3];
    float firstDirection[3];
};

// *result = 1 if the ball reaches into the prism, else 0. It does not if its centre lies more than
// the radius beyond `low` or `high`, or more than the radius above a side face. Touching counts as
// reaching. A face whose angle has a cosine nearer to 0 than SL_ZERO, or a tangent of 1e7 or -1e7,
// does not limit the ball short of 1e7.
TRUNNION_API void slJudgeBallAndPrism(const BallAndPrismD &r, int *result);

// 1 if two cylinders touch, else 0. Each has a base centre p, a unit axis v and a pair s of radius
// and length. They touch if the distance of their axes by slGetLinesCoPerpenticular is below the
// sum of the radii, or nearer to it than SL_ZERO. The caps are not looked at, and that distance has
// its own limits: SL_BIG for axes in one plane whose nearest points are two ends (such cylinders DO
// NOT touch), and for skew axes whose nearest points are an end and a foot only the part at right
// angles to both.
TRUNNION_API int slJudgeTwoCylinder(const float *p1, const float *p2, const float *v1,
                                    const float *v2, const float *s1, const float *s2);

// Directions.

// Two parallel lines, each a point and a direction: out is the vector at right angles from the line
// through a to the line through b. 1, or 0 with out not written if slVectParallel(da, db) is not 1
// or the lines coincide (slIsEqualPoint3D of a and its foot on the other).
TRUNNION_API int slCalculateVectTwoParallel(const float (&a)[3], const float (&da)[3],
                                            const float (&b)[3], const float (&db)[3], float *out);

// Unit vector along the bisector at o of the rays to p1 and p2. Opposite rays, where the slFabs of
// the components of the mean of their unit vectors sum up to less than SL_ZERO, give slOthVect of
// the first. A point that coincides with o gives (0, 0, 0).
TRUNNION_API void slGetPntsMidVect(const float *o, const float *p1, const float *p2, float *out);
