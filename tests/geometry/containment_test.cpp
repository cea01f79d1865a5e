// Points against polygons, points in one plane, picking rays, bodies that touch.
#include "trunnion/geometry/containment.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <numbers>
#include <tuple>

#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/matrices.h"

#include "tests/geometry/cases.h"
#include "tests/geometry/point.h"

using namespace test;

namespace {

using Pair = std::array<float, 2>;
using Outline = std::vector<Pair>;

const Point O = {0, 0, 0}, UP = {0, 0, 1};

const float (*pairs(const void *list))[2] {
    return static_cast<const float(*)[2]>(list);
}
const float (*triples(const void *list))[3] {
    return static_cast<const float(*)[3]>(list);
}

int locate(const Outline &outline, const Pair &p) {
    return slPointInterFaceM(pairs(outline.data()), static_cast<int>(outline.size()), p.data());
}

// Polygon around the origin whose corners follow each other counter-clockwise.
Outline randomStar(test::Random &random, int corners) {
    Outline star;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * (i + random.real(0.1F, 0.9F)) / corners;
        const float radius = random.oneIn(3) ? 1.0F : random.real(5, 10);
        star.push_back({radius * static_cast<float>(std::cos(angle)),
                        radius * static_cast<float>(std::sin(angle))});
    }
    return star;
}

// The plain model: whether the boundary runs around p, by its angles. A clear point lies away from
// the heights of the corners and from the boundary, where tolerances decide.
struct Winding {
    bool isClear = true;
    long double turn = 0.0L;

    Winding(const Outline &outline, const Pair &p) {
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const Pair &a = outline[i];
            const Pair &b = outline[(i + 1) % outline.size()];
            const long double ax = a[0] - 1.0L * p[0], ay = a[1] - 1.0L * p[1];
            const long double bx = b[0] - 1.0L * p[0], by = b[1] - 1.0L * p[1];
            const long double cross = ax * by - ay * bx;
            const bool isBeside = std::fabs(cross) > 0.01L * std::hypot(bx - ax, by - ay);
            isClear = isClear && isBeside && std::fabs(ay) > 0.01L;
            turn += std::atan2(cross, ax * bx + ay * by);
        }
    }
    bool isInside() const { return std::fabs(turn) > 3.0L; }
};

Point moved(const Matrix &M, Point p) {
    slMatrix16MultiPoint3(M.data(), p);
    return p;
}

TEST(Ray, MeetsAnEdgeInOneOfFourWays) {
    const float eps = SL_ZERO;
    // The point and both ends of the edge; the crossing and its parameter.
    check({{"horizontal, to the right", SL_EDGE_ALONG_RAY, {0, 0, 1, 0, 2, 0}, {}},
           {"horizontal, around", SL_EDGE_HOLDS_POINT, {0, 0, 2, 0, -1, 0}, {}},
           {"horizontal, to the left", SL_EDGE_NOT_MET, {0, 0, -1, 0, -2, 0}, {}},
           {"horizontal, ending at x", SL_EDGE_NOT_MET, {2, 0, 1, 0, 2, 0}, {}},
           {"horizontal, back to x", SL_EDGE_NOT_MET, {1, 0, 2, 0, 1, 0}, {}},
           {"horizontal, to the left from x", SL_EDGE_NOT_MET, {2, 0, 2, 0, 1, 0}, {}},
           {"horizontal, just on the line", SL_EDGE_ALONG_RAY, {0, below(eps), 1, 0, 2, 0}, {}},
           {"horizontal, just beside it", SL_EDGE_NOT_MET, {0, -eps, 1, 0, 2, 0}, {}},
           {"just horizontal", SL_EDGE_ALONG_RAY, {0, 0, 1, 0, 2, below(eps)}, {}},
           {"just not horizontal", SL_EDGE_NOT_MET, {0, 0, 1, 0, 2, eps}, {}},
           {"end at the height", SL_EDGE_NOT_MET, {0, 0, 1, -1, 1, 0}, {}},
           {"downward to the height", SL_EDGE_NOT_MET, {0, 0, 1, 1, 1, 0}, {}},
           {"upward", SL_EDGE_CROSSED, {0, 0, 1, -1, 5, 3}, {2, 0, 0.25F}},
           {"downward", SL_EDGE_CROSSED, {0, 1, 5, 4, 1, 0}, {2, 1, 0.75F}},
           {"behind the point", SL_EDGE_NOT_MET, {9, 0, 5, 3, 1, -1}, {2, 0, 0.75F}},
           {"just on it", SL_EDGE_HOLDS_POINT, {-below(eps), 0, 0, -1, 0, 1}, {0, 0, 0.5F}},
           {"just right of it", SL_EDGE_CROSSED, {-eps, 0, 0, -1, 0, 1}, {0, 0, 0.5F}},
           {"just left of it", SL_EDGE_NOT_MET, {eps, 0, 0, -1, 0, 1}, {0, 0, 0.5F}}},
          [](const float *in, float *out) {
              return slRightInter(in[0], in[1], in + 2, in + 4, out, out + 2);
          });
}

TEST(Polygon, TellsInsideFromOutside) {
    const Outline square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    const Outline clockwise = {{-1, 2}, {1, 0}, {1, -1}, {-1, -1}};
    const std::tuple<const char *, Outline, Pair, int> cases[] = {
        {"on the right edge", square, {1, 0.5F}, SL_POLYGON_INSIDE},
        {"on the closing edge", square, {-0.00005F, 0.5F}, SL_POLYGON_INSIDE},
        {"crossing at an edge's start", clockwise, {0, -SL_ZERO}, SL_POLYGON_OUTSIDE},
        {"past an edge's start", clockwise, {0, -above(SL_ZERO)}, SL_POLYGON_INSIDE},
        {"level with a corner", {{-1, 0}, {0, -1}, {1, 0}, {0, 1}}, {0, 0}, SL_POLYGON_OUTSIDE},
        {"past the closing edge", {{1, -1}, {1, 1}, {-1, 1}}, {-0.9F, -0.5F}, SL_POLYGON_OUTSIDE},
        {"one row", {{0, 0}}, {0, 0}, SL_POLYGON_OUTSIDE},
    };
    for (const auto &[name, outline, p, result] : cases) {
        Outline closed = outline;
        closed.push_back({outline[0][0] + 0.00009F, outline[0][1] - 0.00009F});
        EXPECT_EQ(locate(outline, p), result) << name;
        EXPECT_EQ(locate(closed, p), result) << name << ", closed";
    }
    EXPECT_EQ(locate({}, {0, 0}), SL_POLYGON_OUTSIDE);
    EXPECT_EQ(slJudgePntInPolygon(0, nullptr, UP, O), SL_POLYGON_OUTSIDE);
}

// A figure gives the same answer from every corner on, both ways round, in the plane and in space.
TEST(Polygon, AgreesWithItsWindingInEveryPosition) {
    test::Random random(61);
    int inside = 0;
    for (int round = 0; round < 2000; ++round) {
        Outline star = randomStar(random, random.integer(3, 9));
        std::rotate(star.begin(), star.begin() + random.integer(0, 2), star.end());
        if (random.oneIn(2)) {
            std::reverse(star.begin(), star.end());
        }
        const Pair p = {random.real(-9, 9), random.real(-9, 9)};
        const Winding model(star, p);
        if (!model.isClear) {
            continue;
        }
        const int expected = model.isInside() ? SL_POLYGON_INSIDE : SL_POLYGON_OUTSIDE;
        inside += model.isInside() ? 1 : 0;
        ASSERT_EQ(locate(star, p), expected);
        const float *a = star[0].data(), *b = star[1].data(), *c = star[2].data();
        if (star.size() == 3) {
            ASSERT_EQ(slIsPntInsideOfTriangle(p.data(), a, b, c), 1 - expected);
        } else if (star.size() == 4) {
            ASSERT_EQ(slIsPntInsideOfTrapezium(p.data(), a, b, c, star[3].data()), 1 - expected);
        }

        // In space the plane is turned about the point: only where this leaves it clear.
        const Matrix M = randomMotion(random);
        const Point normal = {M[8], M[9], M[10]}, at = moved(M, {p[0], p[1], 0});
        std::vector<Point> placed;
        Outline turned;
        Matrix level{};
        slGenVectToZMatrix(at, normal, level.data());
        for (const Pair &corner : star) {
            placed.push_back(moved(M, {corner[0], corner[1], 0}));
            turned.push_back({moved(level, placed.back())[0], moved(level, placed.back())[1]});
        }
        if (Winding(turned, {at[0], at[1]}).isClear) {
            const int n = static_cast<int>(placed.size());
            ASSERT_EQ(slJudgePntInPolygon(n, triples(placed.data()), normal, at), expected);
        }
    }
    EXPECT_GT(inside, 300);
}

// The count as it is described: every edge by slRightInter.
int countEdges(const Outline &outline, const Pair &p) {
    const std::size_t n = outline.size();
    const auto isNear = [](float a, float b) {
        return !(slFabs(static_cast<double>(a) - b) > SL_ZERO);
    };
    const bool isClosed = n > 0 && isNear(outline[0][0], outline[n - 1][0]) &&
                          isNear(outline[0][1], outline[n - 1][1]);
    bool isInside = false;
    for (std::size_t i = 0; i + (isClosed ? 1 : 0) < n && n > 1; ++i) {
        Pair crossing;
        float t = 0;
        const int meeting = slRightInter(p[0], p[1], outline[i].data(), outline[(i + 1) % n].data(),
                                         crossing.data(), &t);
        if (meeting == SL_EDGE_HOLDS_POINT) {
            return SL_POLYGON_INSIDE;
        }
        const bool counts =
            meeting == SL_EDGE_ALONG_RAY || (meeting == SL_EDGE_CROSSED && t > SL_ZERO);
        isInside = isInside != counts;
    }
    return isInside ? SL_POLYGON_INSIDE : SL_POLYGON_OUTSIDE;
}

// Outlines of every length around that which is looked at together, on a grid whose lines are
// blurred by about the tolerance, at heights where floats lie closer than that and farther apart.
TEST(Polygon, IsJudgedAsEveryEdgeTells) {
    test::Random random(62);
    const float infinity = std::numeric_limits<float>::infinity();
    for (int round = 0; round < 20000; ++round) {
        const float height = std::array{0.0F, 0.0F, -1500.0F, 3000.0F, 3e38F}[random.integer(0, 4)];
        const auto place = [&](float middle) {
            const float blur = 4e-5F * static_cast<float>(random.integer(-4, 4));
            return middle + (static_cast<float>(random.integer(-2, 2)) + blur);
        };
        Outline outline(static_cast<std::size_t>(random.integer(0, random.oneIn(4) ? 140 : 9)));
        for (Pair &corner : outline) {
            corner = {place(0), place(height)};
            if (random.oneIn(200)) {
                corner[random.integer(0, 1)] = random.oneIn(2) ? std::nanf("") : infinity;
            }
        }
        if (!outline.empty() && random.oneIn(2)) {
            outline.back() = outline.front();
        }
        const Pair p = {place(0), random.oneIn(50) ? -infinity : place(height)};
        ASSERT_EQ(locate(outline, p), countEdges(outline, p)) << round;
    }
}

TEST(Polygon, OfAPointListNeedsFourSlots) {
    const Pair corners[] = {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {-9, 2}};
    const Pair inside = {1, 1}, beyond = {5, 1}, inTip = {-4, 2.1F};
    Point2DArr list;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(list.JudgePntInBoundM(inside.data()), i < 4 ? 0 : 1) << i;
        EXPECT_EQ(list.JudgePntInBoundM(beyond.data()), 0) << i;
        list.AddItemM(corners[i].data());
    }
    EXPECT_EQ(list.JudgePntInBoundM(inTip.data()), 1);
}

TEST(Figures, DecideAtTheirBoundaryByTheSignAlone) {
    const Pair a = {0, 0}, b = {4, 0}, c = {0, 4}, onEdge = {1, 0}, barelyIn = {1, 1e-30F};
    EXPECT_EQ(slIsPntInsideOfTriangle(onEdge.data(), a.data(), b.data(), c.data()), 0);
    EXPECT_EQ(slIsPntInsideOfTriangle(onEdge.data(), a.data(), c.data(), b.data()), 1);
    EXPECT_EQ(slIsPntInsideOfTriangle(barelyIn.data(), a.data(), b.data(), c.data()), 1);
}

TEST(Figures, PassTheHorizontalThroughAVertex) {
    const float list[6][2] = {{0, 0}, {1, 2}, {2, 1}, {3, 1}, {4, 3}, {0, 0}};
    constexpr auto least = static_cast<float>(std::numeric_limits<int>::min());
    // The height of the vertex, its row, the number of rows and the step.
    check({{"peak", SL_VERTEX_TOUCHES, {2, 1, 6, 1}, {}},
           {"level behind", SL_VERTEX_CROSSES, {1, 2, 6, 1}, {}},
           {"level within 1e-8", SL_VERTEX_CROSSES, {1 - 5e-9F, 2, 6, 1}, {}},
           {"level skipped", SL_VERTEX_TOUCHES, {1, 2, 6, 2}, {}},
           {"first row, before it row n - 2", SL_VERTEX_TOUCHES, {0, 0, 6, 1}, {}},
           {"last row, behind it row 1", SL_VERTEX_TOUCHES, {0, 5, 6, 1}, {}},
           {"step past the end: row 1", SL_VERTEX_TOUCHES, {0.5F, 4, 6, 2}, {}},
           {"one row", SL_VERTEX_CROSSES, {9, 0, 1, 1}, {}},
           {"no row", SL_VERTEX_CROSSES, {9, 0, 0, 1}, {}},
           {"vertex outside", SL_VERTEX_CROSSES, {9, 7, 6, 1}, {}},
           {"neighbour outside", SL_VERTEX_CROSSES, {9, 1, 6, least}, {}}},
          [&](const float *in, float *) {
              const float p[2] = {0, in[0]};
              const int i = static_cast<int>(in[1]), n = static_cast<int>(in[2]);
              return slGetIntersectType(p, i, n, list, static_cast<int>(in[3]));
          });
}

TEST(Centre, IsThatOfTheAreaInEveryPosition) {
    // An L of three unit squares, whose area centroid is not the mean of its corners.
    const Point ell[] = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}};
    test::Random random(63);
    for (int round = 0; round < 60; ++round) {
        const Matrix M = randomMotion(random);
        float placed[7][3];
        for (int i = 0; i < 7; ++i) {
            const int corner = (round % 2 == 0 ? i : 6 - i) + round;
            std::copy_n(moved(M, ell[corner % 6]).v, 3, placed[i]);
        }
        Point centre;
        slPolygenCenterM(placed, 6 + round % 3 / 2, centre);
        ASSERT_LT(test::norm(centre - moved(M, {5.0F / 6, 5.0F / 6, 0})), 3e-5);
    }
}

TEST(Centre, IsTheMeanWhereThereIsNoArea) {
    check({{"no points", 0, {}, {}},
           {"one point", 1, {1, 2, 3}, {1, 2, 3}},
           {"on a line", 3, {0, 0, 0, 1, 1, 1, 5, 5, 5}, {2, 2, 2}},
           {"there and back", 4, {0, 0, 0, 4, 0, 0, 2, 0, 0, 0, 0, 0}, {2, 0, 0}},
           {"all equal", 3, {1, 1, 1, 1, 1, 1, 1, 1, 1}, {1, 1, 1}},
           {"tiny", 3, {0, 0, 0, 3e-6F, 0, 0, 0, 3e-6F, 0}, {1e-6F, 1e-6F, 0}},
           {"huge", 3, {0, 0, 0, 3e38F, 0, 0, 0, 3e38F, 0}, {1e38F, 1e38F, 0}},
           {"thin", 4, {0, 0, 0, 1, 0, 0, 2, 0, 0, 2, 8e-5F, 0}, {1.25F, 2e-5F, 0}}},
          [n = 0](const float *in, float *out) mutable {
              constexpr int counts[] = {0, 1, 3, 4, 3, 3, 3, 4};
              float points[4][3];
              std::copy_n(in, 12, points[0]);
              slPolygenCenterM(points, counts[n], out);
              return counts[n++];
          });
}

TEST(Points, AreDistinctBySumOfDifferences) {
    check({{"on a line", 1, {1, 0, 0, 2, 0, 0}, {}},
           {"last two equal", 0, {1, 0, 0, 1, 0, 0}, {}},
           {"first two equal", 0, {0, 0, 0, 1, 0, 0}, {}},
           {"at the tolerance", 1, {0, -SL_ZERO, 0, 1, 0, 0}, {}},
           {"just below it", 0, {0, -below(SL_ZERO), 0, 1, 0, 0}, {}}},
          [](const float *in, float *) { return slJudgeIsTriangle(O, in, in + 3); });
}

TEST(Points, LieInAPlaneOrOnALineOrInOnePlace) {
    // The number of points, and all but the first as seen from that.
    check({{"one", SL_POINTS_EQUAL, {1}, {}},
           {"none", SL_POINTS_EQUAL, {0}, {}},
           {"repeated", SL_POINTS_EQUAL, {3, 0, 0, 0, 0.00009F, 0, 0}, {}},
           {"two", SL_POINTS_ON_LINE, {2, 1, 0, 0}, {0, 0, 0}},
           {"on a line", SL_POINTS_ON_LINE, {3, 1, 0, 0, -3, 0, 0}, {0, 0, 0}},
           {"sine below", SL_POINTS_ON_LINE, {3, 1, 0, 0, 1, 0.00009F, 0}, {0, 0, 0.00009F}},
           {"sine above", SL_POINTS_IN_PLANE, {3, 1, 0, 0, 1, 0.00011F, 0}, {0, 0, 1}},
           {"opposite normals", SL_POINTS_IN_PLANE, {4, 1, 0, 0, 0, 1, 0, 1, -1, 0}, {0, 0, 1}},
           {"line first", SL_POINTS_IN_PLANE, {4, 0, 0, 0, 1, 0, 0, 3, -3, 0}, {0, 0, -1}},
           {"tetrahedron", SL_POINTS_SCATTERED, {4, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0, 1}},
           {"slope below", SL_POINTS_IN_PLANE, {4, 1, 0, 0, 0, 1, 0, 0, 1, 0.00009F}, {0, 0, 1}},
           {"slope above", SL_POINTS_SCATTERED, {4, 1, 0, 0, 0, 1, 0, 0, 1, 0.00011F}, {0, 0, 1}}},
          [](const float *in, float *out) {
              float points[4][3] = {{8, 0, -4}};
              for (int i = 1; i < 4; ++i) {
                  const float *at = in + std::ptrdiff_t{3} * i;
                  std::copy_n(Point{at[-2] + 8, at[-1], at[0] - 4}.v, 3, points[i]);
              }
              return slJudgePntCoPlane(static_cast<int>(in[0]), points, out);
          });
}

TEST(Points, AreScannedFromWhereTheCallerStands) {
    const float points[][3] = {{0, 0, 0}, {9e-5F, 0, 0}, {0, 3, 0},
                               {0, 0, 0}, {0, -7, 0},    {2, 2, 0}};
    const float nearly[][3] = {{1e-5F, 1, 0}, {-5e-5F, 1, 0}};
    const Point dir = {0, 1, 0};
    int idx = 1;
    Point out;
    EXPECT_EQ(slGetVectBtPntsNZero(O, 6, points, &idx, out), 1);
    EXPECT_EQ(out, dir);
    EXPECT_EQ(idx, 3);
    EXPECT_EQ(slGetVectBtPntsNZero(O, 4, points, &idx, out), 0);
    EXPECT_EQ(out, O);
    EXPECT_EQ(idx, 4);
    EXPECT_EQ(slGetNormNZero(O, dir, 6, points, &idx, out), 1);
    EXPECT_EQ(out, (Point{0, 0, -1}));
    EXPECT_EQ(idx, 6);
    idx = 0;
    EXPECT_EQ(slGetNormNZero(O, dir, 2, nearly, &idx, out), 0);
    EXPECT_EQ(out, (Point{0, 0, 5e-5F}));
}

TEST(Ray, AgainstAFaceTellsWhyItMisses) {
    // The ray, and the corners behind the origin.
    check({{"inside", 1, {1, 1, -2, 0, 0, 1, 4, 0, 0, 4, 4, 0, 0, 4, 0}, {1, 1, 0}},
           {"outside", 0, {3, 1, -2, 1, 0, 1, 4, 0, 0, 4, 4, 0, 0, 4, 0}, {5, 1, 0}},
           {"starts in it", 1, {1, 3, 0, 1, 0, 1, 4, 0, 0, 4, 4, 0, 0, 4, 0}, {1, 3, 0}},
           {"behind", SL_LINE_HITS_BEHIND, {1, 1, 2, 0, 0, 1, 4, 0, 0, 0, 4, 0}, {1, 1, 0}},
           {"beside", SL_LINE_OFF_PLANE, {1, 1, 2, 1, 0, 0, 4, 0, 0, 0, 4, 0}, {}},
           {"in its plane", SL_LINE_IN_PLANE, {1, 1, 0, 1, 0, 0, 4, 0, 0, 0, 4, 0}, {}},
           {"scattered", SL_POINTS_SCATTERED, {1, 1, 9, 0, 0, -1, 4, 0, 0, 0, 4, 0, 0, 0, 4}, {}},
           {"line", SL_POINTS_ON_LINE, {1, 1, 9, 0, 0, -1, 4, 0, 0, 2, 0, 0}, {}},
           {"one place", SL_POINTS_EQUAL, {1, 1, 9, 0, 0, -1}, {}}},
          [](const float *in, float *out) {
              float points[4][3] = {};
              std::copy_n(in + 6, 9, points[1]);
              return slRadialIntersectFaceM(in, in + 3, points, 4, out);
          });
}

TEST(Ray, PicksWhatItPassesWithinTol) {
    // The frame lies turned over X and moved: its plane is y = 5, its y axis the outer z, and
    // the outer origin lies over the picked point.
    Matrix M{};
    slRotateByXExt(0, 1, M.data());
    M[12] = -3;
    M[13] = 5;
    M[14] = -2;
    // The ray; 2 for the point and the segment that begins there, 1 for the segment only.
    check({{"on the point", 2, {0, 0, 0, 0, 1, 0}, {}},
           {"at tol from both", 0, {0, 0, 0.5F, 0, 1, 0}, {}},
           {"nearer than tol", 2, {0, 0, 0.4999F, 0, 1, 0}, {}},
           {"beside the middle", 1, {5, 0, -0.4F, 0, 1, 0}, {}},
           {"beyond the first end", 2, {-0.4F, 9, 0, 0, -1, 0}, {}},
           {"past its corner", 0, {10.4F, 0, 0.4F, 0, 1, 0}, {}},
           {"slanted", 2, {-5, 0, 0, 3, 3, 0}, {}},
           {"away from the plane", 0, {0, 0, 0, 0, -1, 0}, {}},
           {"in the plane", 0, {0, 5, 0, 1, 0, 0}, {}}},
          [&](const float *in, float *) {
              const float(&frame)[16] = *reinterpret_cast<const float(*)[16]>(M.data());
              float p1[2] = {3, 2}, p2[2] = {13, 2};
              const int point = slJudgeRadialThroughPntM(in, in + 3, p1, 0.5F, frame);
              const int line = slJudgeRadialThroughLineM(in, in + 3, p1, p2, 0.5F, frame);
              EXPECT_EQ(slJudgeRadialThroughLineM(in, in + 3, p2, p1, 0.5F, frame), line);
              EXPECT_EQ(slJudgeRadialThroughLineM(in, in + 3, p1, p1, 0.5F, frame), point);
              return point + line;
          });
}

TEST(Collision, OfABallAndAPrism) {
    const float slope = SL_HALF_PI / 2; // 45 degrees
    // The ball's centre from the prism's origin, both angles.
    check({{"inside", 1, {0, 0, 5}, {}},
           {"touches the low end", 1, {0, 0, -1}, {}},
           {"beyond the low end", 0, {0, 0, below(-1.0F)}, {}},
           {"touches the high end", 1, {0, 0, 11}, {}},
           {"beyond the high end", 0, {0, 0, above(11.0F)}, {}},
           {"touches the first face", 1, {1, 0, 5}, {}},
           {"beyond the first face", 0, {above(1.0F), 0, 5}, {}},
           {"touches the second face", 1, {0, 1, 5}, {}},
           {"beyond the second face", 0, {0, above(1.0F), 5}, {}},
           {"a slope widens", 1, {6.4F, 0, 5, slope}, {}},
           {"beyond the slope", 0, {6.5F, 0, 5, slope}, {}},
           {"the other face slopes", 1, {0, 6.4F, 5, 0, slope}, {}},
           {"a slope narrows", 0, {-3.5F, 0, 5, -slope}, {}},
           {"right angle: up to 1e7", 1, {1e7F, 0, 5, SL_HALF_PI}, {}},
           {"right angle: past 1e7", 0, {above(1e7F), 0, 5, SL_HALF_PI}, {}},
           {"negative right angle", 1, {9e6F, 0, 5, -SL_HALF_PI}, {}}},
          [](const float *in, float *) {
              const float fields[] = {in[0], in[1], in[2] + 2, 1,  0, 0, 2, in[3], in[4], 0,
                                      0,     1,     0,         10, 0, 1, 0, 1,     0,     0};
              const auto r = std::bit_cast<BallAndPrismD>(fields);
              int result = -7;
              slJudgeBallAndPrism(r, &result);
              return result;
          });
}

TEST(Collision, OfTwoCylinders) {
    // The second cylinder, against the one of radius 1 and length 5 on the Z axis.
    check({{"overlapping", 1, {2, 0, 0, 0, 0, 1, 1.5F, 5}, {}},
           {"touching", 1, {3, 0, 0, 0, 0, 1, 2, 5}, {}},
           {"within the tolerance", 1, {3.00009F, 0, 0, 0, 0, 1, 2, 5}, {}},
           {"beyond the tolerance", 0, {3.00011F, 0, 0, 0, 0, 1, 2, 5}, {}},
           {"crossing axes", 1, {-2, 0, 3, 1, 0, 0, 0.1F, 9}, {}},
           {"skew, near", 1, {-2, 1.5F, 3, 1, 0, 0, 1, 9}, {}},
           {"skew, apart", 0, {-2, 2.5F, 3, 1, 0, 0, 1, 9}, {}},
           {"nearest at two ends", 0, {0.1F, 0, 5.1F, 0, 0, 1, 1, 5}, {}}},
          [](const float *in, float *) {
              const float size[2] = {1, 5};
              const int result = slJudgeTwoCylinder(O, in, UP, in + 3, size, in + 6);
              EXPECT_EQ(slJudgeTwoCylinder(in, O, in + 3, UP, in + 6, size), result);
              return result;
          });
    // An overlap of exactly the tolerance is neither more nor nearer to 0.
    const float thin[2] = {SL_ZERO, 5}, none[2] = {0, 9};
    EXPECT_EQ(slJudgeTwoCylinder(O, Point{-2, 0, 3}, UP, Point{1, 0, 0}, thin, none), 0);
    EXPECT_EQ(slJudgeTwoCylinder(O, Point{-2, 0, 3}, UP, Point{1, 0, 0}, none, none), 1);
}

TEST(Directions, FromOneParallelLineToTheOther) {
    // The first line's direction, the second line's point as seen from the first's, its
    // direction.
    check({{"beside", 1, {2, 0, 0, 7, 3, 0, 5, 0, 0}, {0, 3, 0}},
           {"opposite directions", 1, {2, 0, 0, 7, 0, -4, -1, 0, 0}, {0, 0, -4}},
           {"the same line", 0, {2, 0, 0, 7, 0, 0, 1, 0, 0}, {}},
           {"just apart", 1, {1, 0, 0, 7, 0.0001F, 0, 1, 0, 0}, {0, 0.0001F, 0}},
           {"just the same", 0, {1, 0, 0, 7, 0.00009F, 0, 1, 0, 0}, {}},
           {"skew", 0, {1, 0, 0, 0, 0, 3, 0, 1, 0}, {}},
           {"no direction", 0, {0, 0, 0, 0, 0, 3, 0, 1, 0}, {}}},
          [](const float *in, float *out) {
              float args[4][3] = {{4, 0, 3}};
              std::copy_n(in, 9, args[1]);
              args[2][0] += 4;
              args[2][2] += 3;
              return slCalculateVectTwoParallel(args[0], args[1], args[2], args[3], out);
          });
}

TEST(Directions, HalveTheAngleBetweenTwoRays) {
    const float half = std::sqrt(0.5F);
    check(
        {{"right angle", 0, {5, 0, 0, 0, 0.1F, 0}, {half, half, 0}},
         {"opposite", 0, {0, 0, 3, 0, 0, -7}, {1, 0, 0}},
         {"nearly opposite", 0, {1, 1, 0, -1, -0.9999F, 0}, {0, 0, 1}},
         {"less nearly", 0, {1, 0, 0, -1, 0.001F, 0}, {0.0005F, 1, 0}},
         {"first coincides", 0, {0, 0, 0, 0, 1, 0}, {0, 0, 0}},
         {"second coincides", 0, {0, 1, 0, 0.00009F, 0, 0}, {0, 0, 0}}},
        [](const float *in, float *out) {
            slGetPntsMidVect(O, in, in + 3, out);
            return 0;
        },
        5e-5);
}

} // namespace
