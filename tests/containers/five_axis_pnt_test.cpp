// The five-axis point: construction, arithmetic, measures and its record.
#include "trunnion/containers/five_axis_pnt.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "tests/geometry/support.h"
#include "tests/support/temp_dir.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/persistence/stream.h"

namespace {

using test::above;
using test::below;

void expectValues(const Tq5AxisPntCL &p, const Tq5AxisPntCL &expected) {
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(p[i], expected[i]) << "index " << i;
    }
}

TEST(FiveAxisPnt, TakesAsManyValuesAsItIsGivenAndZeroForTheRest) {
    const float values[] = {1, 2, 3, 4, 5, 6, 7};
    expectValues(Tq5AxisPntCL(values), {1, 2, 3, 0, 0});
    expectValues(Tq5AxisPntCL(values, values + 5), {1, 2, 3, 6, 7});
    for (const int n : {-1, 0, 1, 2, 3, 4, 5, 7}) {
        const Tq5AxisPntCL p(values, n);
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(p[i], i < n ? values[i] : 0.0F) << n << " values, index " << i;
        }
    }
}

TEST(FiveAxisPnt, IsAnAddressableRunOfFiveFloats) {
    Tq5AxisPntCL p;
    p.X() = 1;
    p.Y() = 2;
    p.Z() = 3;
    p.IV() = 4;
    p[4] = 5;
    const Tq5AxisPntCL copy = p;
    const float *address = copy;
    const float named[] = {copy.X(), copy.Y(), copy.Z(), copy.IV(), copy.V()};
    EXPECT_TRUE(std::equal(address, address + 5, named));
    EXPECT_EQ(slLength(p), std::sqrt(14.0F)) << "a geometry function sees a point in space";
    p.SetAsZeroM();
    expectValues(p, {0, 0, 0, 0, 0});
}

TEST(FiveAxisPnt, ArithmeticCoversAllFiveValuesAndAddMThree) {
    const Tq5AxisPntCL a(1, 2, 3, 4, 5);
    const Tq5AxisPntCL b(10, 20, 30, 40, 50);
    expectValues(a + b, {11, 22, 33, 44, 55});
    expectValues(a - b, {-9, -18, -27, -36, -45});
    expectValues(a * -2.0F, {-2, -4, -6, -8, -10});
    Tq5AxisPntCL p = a;
    expectValues(((p += b) -= a) *= 0.5F, {5, 10, 15, 20, 25});
    const float direction[] = {1, 0, -1};
    p = a;
    p.AddM(direction, 2);
    expectValues(p, {3, 2, 1, 4, 5});
    p = Tq5AxisPntCL(FLT_MAX, -FLT_MAX, 1, 0, 0); // beyond the range of float it stays finite
    expectValues(p * 2.0F, {FLT_MAX, -FLT_MAX, 2, 0, 0});
    EXPECT_EQ(p.LengthM(), FLT_MAX);
}

TEST(FiveAxisPnt, DivisionByATinyNumberChangesNothing) {
    for (const float divisor : {0.0F, 0.00005F, SL_ZERO, -SL_ZERO}) {
        Tq5AxisPntCL p(1, 2, 3, 4, 5);
        expectValues(p /= divisor, {1, 2, 3, 4, 5});
    }
    for (const float divisor : {above(SL_ZERO), below(-SL_ZERO), 0.5F}) {
        Tq5AxisPntCL p(0, 2, 0, 0, 3);
        expectValues(p /= divisor, {0, 2 / divisor, 0, 0, 3 / divisor});
    }
}

TEST(FiveAxisPnt, MeasuresWeighAllFiveValues) {
    EXPECT_EQ(Tq5AxisPntCL(1, -2, 2, -4, 0).LengthM(), 5.0F);
    EXPECT_EQ(Tq5AxisPntCL(1, -2, 2, -4, 0).Length1M(), 9.0F);
    EXPECT_EQ(Tq5AxisPntCL(1, 0, 0, 0, 1).DistanceToM({0, 0, 0, 0, 2}), std::sqrt(2.0F));
    const struct {
        Tq5AxisPntCL point;
        int isZero;
        bool isSnapped;
    } cases[] = {{{0, 0, 0, 0, 0}, 1, true},
                 {{0, 0, 0, 0, below(SL_ZERO)}, 1, true},
                 {{0, 0, 0, -SL_ZERO, 0}, 0, true},
                 {{above(SL_ZERO), 0, 0, 0, 0}, 0, false},
                 // Each value, and the length, are below the limit; the sum is not.
                 {{0.00003F, 0.00003F, 0.00003F, 0.00003F, 0}, 0, true}};
    for (const auto &c : cases) {
        EXPECT_EQ(c.point.IsZeroLengthM(), c.isZero) << c.point.Length1M();
        EXPECT_EQ(c.point.LengthM() == 0.0F, c.isSnapped) << c.point.Length1M();
    }
}

TEST(FiveAxisPnt, RecordIsTwentyBytesAndBinaryOnly) {
    const test::TempDir directory;
    const std::string path = directory.path("point");
    const Tq5AxisPntCL written(1.5F, -2, 3e-8F, 4, 5);
    TqIOCL stream;
    stream.OpenM(path.c_str(), "wb");
    written.SaveM(&stream);
    stream.CloseM();
    const float *values = written;
    EXPECT_EQ(test::readBytes(path), std::string(reinterpret_cast<const char *>(values), 20));
    Tq5AxisPntCL p(9, 9, 9, 9, 9);
    stream.OpenM(path.c_str(), "rb");
    p.ReadM(&stream);
    expectValues(p, written);
    EXPECT_THROW(p.ReadM(&stream), int);

    stream.OpenM(path.c_str(), "r+");
    for (const bool reads : {true, false}) {
        try {
            reads ? p.ReadM(&stream) : p.SaveM(&stream);
            ADD_FAILURE() << "a text stream took a five-axis point";
        } catch (int code) {
            EXPECT_EQ(code, 108);
        }
    }
}

} // namespace
