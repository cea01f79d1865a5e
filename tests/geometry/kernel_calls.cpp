#include "tests/geometry/kernel_calls.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <tuple>
#include <type_traits>

#include "trunnion/geometry/containment.h"
#include "trunnion/geometry/distances.h"
#include "trunnion/geometry/intersections.h"
#include "trunnion/geometry/line_pairs.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/rectangles.h"
#include "trunnion/geometry/scalars.h"

namespace test {

namespace {

// As many elements as the greatest argument has: a train of 6 by 6, a list of 12 points.
constexpr std::size_t argumentSize = 36;

constexpr bool MATHS = true;

template <class Number>
std::string hexadecimal(Number value) {
    using Bits = std::conditional_t<sizeof(Number) == 8, std::uint64_t, std::uint32_t>;
    char text[16];
    const auto end = std::to_chars(text, text + sizeof text, std::bit_cast<Bits>(value), 16).ptr;
    return ' ' + std::string(text, end);
}

// One argument of a call: a number, or elements behind a pointer or reference. Lists, matrices and
// the kernel's structs are all plain runs of floats.
template <class Parameter>
class Argument {
    using Target = std::remove_pointer_t<std::remove_reference_t<Parameter>>;
    using Element = std::remove_cv_t<std::remove_all_extents_t<Target>>;
    using Value = std::conditional_t<std::is_class_v<Element>, float, Element>;

public:
    explicit Argument(KernelInput &input) {
        constexpr bool isNumber = std::is_arithmetic_v<Parameter>;
        input.fill(std::span<Value>(values).first(isNumber ? 1 : argumentSize));
        if (isNumber && values[0] == 0) {
            values[0] = 1; // not every divisor is guarded
        }
        before = values;
    }

    Parameter get() {
        if constexpr (std::is_pointer_v<Parameter>) {
            return reinterpret_cast<Parameter>(values.data());
        } else if constexpr (std::is_reference_v<Parameter>) {
            return reinterpret_cast<Parameter>(values[0]);
        } else {
            return values[0];
        }
    }

    // Adds what a call wrote: the elements up to the last that it has changed, and a dash for each
    // that it has not.
    void addChanges(std::string &text) const {
        if constexpr (std::is_pointer_v<Parameter> && !std::is_const_v<Target>) {
            std::size_t end = values.size();
            while (end > 0 && isSame(end - 1)) {
                --end;
            }
            text += end > 0 ? " |" : "";
            for (std::size_t i = 0; i < end; ++i) {
                text += isSame(i) ? " -" : hexadecimal(values[i]);
            }
        }
    }

private:
    bool isSame(std::size_t i) const {
        // To the bit: a 0 that became -0 counts.
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
        return std::memcmp(&values[i], &before[i], sizeof values[i]) == 0;
    }

    std::array<Value, argumentSize> values{};
    std::array<Value, argumentSize> before;
};

template <class Result, class... Parameters>
KernelCall call(const char *name, Result (*function)(Parameters...), bool usesMaths = false) {
    const auto run = [function](KernelInput &input) {
        std::tuple<Argument<Parameters>...> arguments{Argument<Parameters>(input)...};
        std::string text;
        std::apply(
            [&](auto &...argument) {
                if constexpr (std::is_void_v<Result>) {
                    function(argument.get()...);
                } else {
                    text = hexadecimal(function(argument.get()...));
                }
                (argument.addChanges(text), ...);
            },
            arguments);
        return text;
    };
    return {name, usesMaths, run};
}

} // namespace

KernelInput::KernelInput(const std::string &name, std::uint32_t round) {
    std::vector<std::uint32_t> seed(name.begin(), name.end());
    seed.push_back(round);
    std::seed_seq sequence(seed.begin(), seed.end());
    engine.seed(sequence);
}

int KernelInput::pick(int n) {
    return static_cast<int>(engine() % static_cast<std::uint_fast32_t>(n));
}

template <class Real>
void KernelInput::fillReals(std::span<Real> values) {
    const int kind = pick(4);
    for (Real &value : values) {
        value = static_cast<Real>(kind == 0 ? engine() / 2147483648.0 * 10.0 - 5.0
                                            : pick(9) / 2.0 - 2.0);
    }
    for (std::size_t i = 0; kind == 1 && i + 3 <= values.size(); i += 3) {
        double squared = 0.0;
        for (std::size_t k = i; k < i + 3; ++k) {
            squared += static_cast<double>(values[k]) * static_cast<double>(values[k]);
        }
        for (std::size_t k = i; squared > 0.0 && k < i + 3; ++k) {
            values[k] = static_cast<Real>(static_cast<double>(values[k]) / std::sqrt(squared));
        }
    }
}

template <class Number>
void KernelInput::fill(std::span<Number> values) {
    if constexpr (std::is_same_v<Number, int>) {
        std::ranges::generate(values, [this] { return pick(7); });
    } else if constexpr (std::is_same_v<Number, short>) {
        std::ranges::generate(values, [this] { return pick(2) == 0 ? SL_RECT_ARC_CCW : short{0}; });
    } else {
        fillReals(values);
    }
}

const std::vector<KernelCall> &kernelCalls() {
    static const std::vector<KernelCall> calls = {
        call("slTan", slTan, MATHS),
        call("slAcos", slAcos, MATHS),
        call("slRound", slRound),
        call("slKeepTwoDecimal", slKeepTwoDecimal),
        call("slMod", slMod),
        call("slGetRatio", slGetRatio),
        call("slLenAndDir", slLenAndDir),
        call("slOthVect", slOthVect),
        call("slOthPlane", slOthPlane),
        call("slVectParallel", slVectParallel),
        call("slGetVectAngle", slGetVectAngle, MATHS),
        call("slComputeAngle", slComputeAngle, MATHS),
        call("slSolveEquationQuad", slSolveEquationQuad),
        call("slSolveEquationGroup3", slSolveEquationGroup3),
        call("slValueOfTrainM", slValueOfTrainM),
        call("slGetPntLineDist", slGetPntLineDist),
        call("slGetLineFoot", slGetLineFoot),
        call("slProjectPntToPlane", slProjectPntToPlane),
        call("slGetNearestPair", slGetNearestPair),
        call("slProjToLineAlongZOnXZ", slProjToLineAlongZOnXZ),
        call("slIntersectLines3D", slIntersectLines3D),
        call("slIntersectInfLines", slIntersectInfLines),
        call("slGetLineDist", slGetLineDist),
        call("slGetLinesCoPerpenticular", slGetLinesCoPerpenticular),
        call("slGetRotateMatrix", slGetRotateMatrix, MATHS),
        call("slRotateByX", slRotateByX, MATHS),
        call("slGenVectToZMatrix", slGenVectToZMatrix),
        call("slGenVectToXMatrix", slGenVectToXMatrix),
        call("slMultiMatrix", slMultiMatrix),
        call("slMatrix16MultiVector4", slMatrix16MultiVector4),
        call("slGetInverseMotionMatrix", slGetInverseMotionMatrix),
        call("slInverseMatrixM", slInverseMatrixM),
        call("slChangeFourPntMatrixM", slChangeFourPntMatrixM),
        call("slNormalizeMatrix", slNormalizeMatrix),
        call("slGetAnglesRotToZ", slGetAnglesRotToZ),
        call("slGetAxes", slGetAxes, MATHS),
        call("slPlaneNormal", slPlaneNormal),
        call("slGetPlaneFourPnt", slGetPlaneFourPnt),
        call("slGetAveragePlane", slGetAveragePlane),
        call("slGenXYCoordSys", slGenXYCoordSys),
        call("slTransPntToPlane", slTransPntToPlane),
        call("slGenMatrixToSpLines", slGenMatrixToSpLines),
        call("slGetMinXYZ", slGetMinXYZ),
        call("slIntersectLines2D", slIntersectLines2D),
        call("slIntersecLines", slIntersecLines),
        call("slRadialIntersectPlane", slRadialIntersectPlane),
        call("slGetPlaneIntersectM", slGetPlaneIntersectM),
        call("slLineIntCircle", slLineIntCircle, MATHS),
        call("slIntersectLineSphere", slIntersectLineSphere),
        call("slIntersectCircle", slIntersectCircle),
        call("slGetTangentCircle", slGetTangentCircle, MATHS),
        call("slGenSphere", slGenSphere),
        call("slGetShereIntersect", slGetShereIntersect),
        call("slIntersectPlaneCone", slIntersectPlaneCone, MATHS),
        call("slPointInterFaceM", slPointInterFaceM),
        call("slJudgePntInPolygon", slJudgePntInPolygon),
        call("slPolygenCenterM", slPolygenCenterM),
        call("slRadialIntersectFaceM", slRadialIntersectFaceM),
        call("slJudgeBallAndPrism", slJudgeBallAndPrism, MATHS),
        call("slJudgeTwoCylinder", slJudgeTwoCylinder),
        call("slGetPntsMidVect", slGetPntsMidVect),
        call("slTransToStdRect", slTransToStdRect),
        call("slCorrectRectContainError", slCorrectRectContainError),
        call("slGetArcRectangle", slGetArcRectangle, MATHS),
        call("slGetCylinderProjRect", slGetCylinderProjRect),
        call("slMergeRectWithSameDir", slMergeRectWithSameDir),
        call("slGetRectMinPanDisplace", slGetRectMinPanDisplace),
        call("slCheckArcInRect", slCheckArcInRect, MATHS),
        call("slGetLineSegIntersectRect", slGetLineSegIntersectRect),
    };
    return calls;
}

} // namespace test
