// The points that intersections find lie on both objects; and whatever finite numbers go in, finite
// numbers come out.
#include "trunnion/geometry/intersections.h"

#include "tests/geometry/line_model.h"
#include "tests/geometry/point.h"

using namespace test;

namespace {

constexpr int ROUNDS = 2000;

TEST(FoundPoints, LieOnLinesAndPlanes) {
    test::Random random(341);
    for (int round = 0; round < ROUNDS; ++round) {
        const Point p1 = randomPoint(random, 10), p2 = randomPoint(random, 10);
        const Point n1 = unit(randomPoint(random, 1)), n2 = unit(randomPoint(random, 1));
        const Point common = cross(n1, n2);
        if (norm(common) < 0.3 || std::fabs(dot(n1, n2)) < 0.1 || norm(cross(p2 - p1, n1)) < 1) {
            continue;
        }
        Point pnt, dir, zero, hit, out;
        ASSERT_EQ(slGetPlaneIntersectM(p1, n1, p2, n2, pnt, dir), SL_PLANES_CROSS);
        ASSERT_NEAR(norm(dir - unit(common)), 0, 1e-5);
        ASSERT_NEAR(dot(pnt - p1, dir), 0, 1e-4); // square to the cut, seen from p1
        const PlaneD P = {{p1[0], p1[1], p1[2]}, {3 * n1[0], 3 * n1[1], 3 * n1[2]}};
        const PlaneD Q = {{p2[0], p2[1], p2[2]}, {n2[0], n2[1], n2[2]}};
        ASSERT_EQ(slGetPointOnIntersectLine(P, Q, zero), 1);
        for (const Point &found : {pnt, zero}) {
            ASSERT_NEAR(dot(found - p1, n1), 0, 1e-5 * (1 + norm(found)));
            ASSERT_NEAR(dot(found - p2, n2), 0, 1e-5 * (1 + norm(found)));
        }
        const bool ahead = dot(p2 - p1, n2) * dot(n1, n2) > 0;
        ASSERT_EQ(slRadialIntersectPlane(p1, n1, n2, slGetPlaneEquation(p2, n2), hit),
                  ahead ? SL_LINE_HITS : SL_LINE_HITS_BEHIND);
        ASSERT_NEAR(dot(hit - p2, n2), 0, 1e-4);
        ASSERT_NEAR(norm(cross(hit - p1, n1)), 0, 1e-3);

        const float s = random.real(0, 1);
        const Point on = (1 - s) * p1 + s * p2;
        ASSERT_EQ(slIntersecLines(on + random.real(-5, 5) * n1, n1, p1, p2, out, 9), 1);
        ASSERT_NEAR(norm(out - on), 0, 1e-3);
    }
}

// Segments on the line of a chord, of which the ends have the parameters 0 and 1 on that line.
TEST(FoundPoints, LieOnSegmentsAndCirclesInThePlane) {
    test::Random random(342);
    for (int round = 0; round < ROUNDS; ++round) {
        const Point center = randomPoint(random, 2);
        const float r = random.real(0.5F, 3);
        const float angles[] = {random.real(0.02F, 6.26F), random.real(0.02F, 6.26F)};
        const auto onCircle = [&](float angle) {
            return center + r * Point{std::cos(angle), std::sin(angle), 0};
        };
        const Point start = onCircle(angles[0]), chord = onCircle(angles[1]) - start;
        const float ends[] = {random.real(-1, 2), random.real(-1, 2)};
        const auto isUnsure = [](float x) {
            return std::fabs(x) < 0.05F || std::fabs(x - 1) < 0.05F;
        };
        if (norm(chord) < 0.3 || isUnsure(ends[0]) || isUnsure(ends[1]) ||
            std::fabs(ends[1] - ends[0]) < 0.1F) {
            continue;
        }
        Point pt[2];
        float t[2], ang[2];
        int count = -7, expected = 0;
        ASSERT_EQ(slLineIntCircle(start + ends[0] * chord, start + ends[1] * chord, center, r,
                                  pt[0], &t[0], &ang[0], pt[1], &t[1], &ang[1], &count),
                  1);
        const int last = ends[0] < ends[1] ? 1 : 0; // the crossing nearer to p1, which comes first
        for (const int end : {last, 1 - last}) {
            const float at = (static_cast<float>(end) - ends[0]) / (ends[1] - ends[0]);
            if (at < 0 || at > 1) {
                continue;
            }
            // slAcos snaps angles nearer than 0.0142 to the X axis.
            const double slack = std::fabs(std::sin(angles[end])) < 0.015 ? 0.0155 : 1e-3;
            const Point p = onCircle(angles[end]);
            ASSERT_LT(expected, count);
            ASSERT_NEAR(t[expected], at, 1e-3);
            ASSERT_NEAR(pt[expected][0], p[0], 1e-3);
            ASSERT_NEAR(pt[expected][1], p[1], 1e-3);
            ASSERT_NEAR(slGetCentralAngle(p - center), angles[end], slack);
            ASSERT_NEAR(ang[expected++], angles[end], slack);
        }
        ASSERT_EQ(count, expected);
    }
}

TEST(FoundPoints, LieOnRoundObjects) {
    test::Random random(343);
    for (int round = 0; round < ROUNDS; ++round) {
        const Point c1 = randomPoint(random, 10), u = unit(randomPoint(random, 1));
        const float r1 = random.real(0.5F, 8), r2 = random.real(0.5F, 8);
        const Point c2 = c1 + random.real(std::fabs(r1 - r2) + 0.1F, r1 + r2 - 0.1F) * u;
        const Point z = unit(cross(u, randomPoint(random, 1)));
        const auto isOnFirst = [&](const Point &p) { return std::fabs(norm(p - c1) - r1) < 1e-3; };
        const auto isOnBoth = [&](const Point &p) {
            return isOnFirst(p) && std::fabs(norm(p - c2) - r2) < 1e-3;
        };
        Point out[2], center, normal, foot;
        float radius = 0, section = 0;
        ASSERT_EQ(slIntersectCircle(c1, r1, c2, r2, z, &out->v), SL_CIRCLES_CROSS);
        ASSERT_TRUE(isOnBoth(out[0]) && isOnBoth(out[1]));
        ASSERT_NEAR(dot(out[0] - c1, z), 0, 1e-4);
        ASSERT_GT(dot(cross(u, out[0] - out[1]), z), 0);
        for (const float d : {r1 + r2, r1 - r2}) {
            if (std::fabs(d) > 0.1F) {
                ASSERT_EQ(slIntersectCircle(c1, r1, c1 + d * u, r2, z, &out->v), SL_CIRCLES_TOUCH);
                ASSERT_NEAR(norm(out[0] - (c1 + r1 * u)), 0, 1e-4);
            }
        }
        ASSERT_EQ(slGetShereIntersect(c1, r1, c2, r2, center, normal, &radius), SL_SECTION_CIRCLE);
        ASSERT_NEAR(norm(normal - u), 0, 1e-4);
        ASSERT_TRUE(isOnBoth(center + radius * z));
        // The plane of that circle cuts the first sphere in it.
        ASSERT_EQ(slIntersectPlaneSphereM(center, u, c1, r1, foot, &section), SL_SECTION_CIRCLE);
        ASSERT_NEAR(norm(foot - center) + std::fabs(section - radius), 0, 2e-3);
        // The cone over it, from a tip to which it is open.
        ASSERT_EQ(slIntersectPlaneCone(center + z, u, center + 2.0F * u, u, std::atan(radius / 2),
                                       foot, &section),
                  SL_SECTION_CIRCLE);
        ASSERT_NEAR(norm(foot - center) + std::fabs(section - radius), 0, 1e-3);
        const Point p = center + 0.5F * radius * z, along = unit(cross(z, u));
        ASSERT_EQ(slIntersectLineCircle(c1, r1, p, p + 2.0F * along, &out->v), SL_LINE_TWO_POINTS);
        ASSERT_TRUE(isOnFirst(out[0]) && isOnFirst(out[1]));
        ASSERT_NEAR(norm(cross(out[0] - p, along)), 0, 1e-3);
        ASSERT_GT(dot(out[0] - out[1], along), 0);
    }
}

TEST(FoundPoints, AreAsFarFromCircleAndSphereAsTheirRadius) {
    test::Random random(344);
    for (int round = 0; round < ROUNDS; ++round) {
        const Point p[] = {randomPoint(random, 10), randomPoint(random, 10),
                           randomPoint(random, 10), randomPoint(random, 10)};
        const Point u = p[1] - p[0], v = p[2] - p[0], product = cross(u, v);
        if (norm(product) < 5 || std::fabs(dot(product, p[3] - p[0])) < 30 ||
            norm(cross(u, p[3] - p[0])) < 5) {
            continue;
        }
        Point center, again, normal, middle, t1, t2;
        float radius = 0, second = 0, whole = 0;
        ASSERT_EQ(slGenCircle(p[0], p[1], p[2], center, normal, &radius), 1);
        ASSERT_EQ(slCircumCenter3D(p[0], p[1], p[2], again, &second), 1);
        ASSERT_NEAR(norm(center - again) + std::fabs(radius - second), 0, 1e-4 * radius);
        ASSERT_NEAR(norm(normal - unit(product)), 0, 1e-4);
        ASSERT_EQ(slGenSphere(p[0], p[1], p[2], p[3], middle, &whole), 1);
        for (const Point &point : p) {
            ASSERT_NEAR(norm(point - middle), whole, 1e-3 * whole);
            ASSERT_NEAR(&point == p + 3 ? radius : norm(point - center), radius, 1e-4 * radius);
        }
        // Four points in one plane, or three on a line or too near to each other, have none.
        const Point before = middle, near = p[0] + 1e-3F * unit(u), too = p[0] + 1e-3F * unit(v);
        const Point on = p[0] + 2.0F * u, level = on + v;
        ASSERT_EQ(slGenSphere(p[0], p[1], p[2], level, middle, &whole), 0);
        ASSERT_EQ(slGenSphere(p[0], p[1], p[2], on, middle, &whole), 0);
        ASSERT_EQ(slGenSphere(p[0], p[1], on, p[2], middle, &whole), 0);
        ASSERT_EQ(slGenCircle(p[0], near, too, middle, middle, &whole), 0);
        ASSERT_EQ(slCircumCenter3D(p[0], near, too, middle, &whole), 0);
        ASSERT_EQ(middle, before);
        // The fillet of the corner at p[0].
        ASSERT_EQ(slGetTangentCircle(p[0], p[1], p[2], normal, 2, center, t1, t2), CUR_DIR_CW);
        ASSERT_NEAR(norm(center - t1), 2, 1e-4);
        ASSERT_NEAR(norm(t1 - p[0]), dot(t1 - p[0], unit(u)), 1e-4);
        ASSERT_NEAR(dot(center - t2, unit(v)), 0, 1e-4);
    }
}

TEST(Finite, NumbersComeOutOfFiniteNumbers) {
    test::Random random(345);
    const auto any = [&] { return test::toPoint(test::nastyTriple(random)); };
    for (int round = 0; round < 5 * ROUNDS; ++round) {
        Point in[] = {any(), any(), any(), any()}, sizes = any(), out[36];
        const float r1 = sizes[0];
        float r2 = sizes[1], A[2][2] = {{sizes[0], sizes[1]}, {sizes[2], 1}};
        auto &[a, b, c, d] = in;
        const PlaneD P = {{a[0], a[1], a[2]}, {b[0], b[1], b[2]}};
        const PlaneD Q = {{c[0], c[1], c[2]}, {d[0], d[1], d[2]}};
        int count = 0;
        slLineEquation2(A, a, out[0]);
        slIntersectLines2D(a, b, c, d, out[1], out[2]);
        slIntersecLines(a, b, c, d, out[3], r1);
        slLineIntersectPlane(a, b, c, r1, out[4]);
        slRadialIntersectPlane(a, b, c, r1, out[5]);
        slGetPlaneIntersectM(a, b, c, d, out[6], out[7]);
        slGetPointOnIntersectLine(P, Q, out[8]);
        slLineIntCircle(a, b, c, r1, out[9], out[10], out[11], out[12], out[13], out[14], &count);
        slIntersectLineCircle(c, r1, a, b, &out[15].v);
        slIntersectCircle(a, r1, b, r2, c, &out[17].v);
        slGetTangentCircle(a, b, c, d, r1, out[19], out[20], out[21]);
        slGetShereIntersect(a, r1, b, r2, out[22], out[23], out[24]);
        slIntersectPlaneSphereM(a, b, c, r1, out[25], out[26]);
        slIntersectPlaneCone(a, b, c, d, r1, out[27], out[28]);
        slGenCircle(a, b, c, out[29], out[30], out[31]);
        slGenSphere(a, b, c, d, out[32], &r2);
        ASSERT_TRUE(std::isfinite(slGetCircleAng(a, b, r1) + slGetCentralAngle(a) + r2));
        slCircumcenter(a, b, c, out[33]);
        slCircumCenter3D(a, b, c, out[34], out[33].v + 2);
        ASSERT_TRUE(test::areFinite({out[0].v, 3 * std::size(out)}))
            << ::testing::PrintToString(in) << ::testing::PrintToString(sizes);
    }
}

} // namespace
