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
        return std::memcmp(&values[i], &before[i], sizeof values[i]) == 0;
    }

    std::array<Value, argumentSize> values{};
    std::array<Value, argumentSize> before;
};

template <class Result, class... Parameters>
KernelCall call(const char *name, Result (*function)(Parameters...)) {
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
    return {name, false, run};
}

template <class Result, class... Parameters>
KernelCall callWithMaths(const char *name, Result (*function)(Parameters...)) {
    KernelCall made = call(name, function);
    made.usesMaths = true;
    return made;
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

void KernelInput::fill(std::span<float> values) {
    fillReals(values);
}

void KernelInput::fill(std::span<double> values) {
    fillReals(values);
}

void KernelInput::fill(std::span<int> values) {
    std::ranges::generate(values, [this] { return pick(7); });
}

void KernelInput::fill(std::span<short> values) {
    std::ranges::generate(values, [this] { return pick(2) == 0 ? SL_RECT_ARC_CCW : short{0}; });
}

const std::vector<KernelCall> &kernelCalls() {
    static const std::vector<KernelCall> calls = {
        // scalars.h
        call<float, float>("slFabs", slFabs),
        call<double, double>("slFabs", slFabs),
        call("slSqrt", slSqrt),
        callWithMaths("slTan", slTan),
        callWithMaths("slAcos", slAcos),
        callWithMaths("slAsin", slAsin),
        callWithMaths("slLog", slLog),
        callWithMaths("slAtan", slAtan),
        callWithMaths("slCos", slCos),
        callWithMaths("slSin", slSin),
        call("slSign", slSign),
        call("slRound", slRound),
        call("slKeepTwoDecimal", slKeepTwoDecimal),
        call("slMod", slMod),
        call("slMinF2", slMinF2),
        call("slMaxF2", slMaxF2),
        call("slMinI2", slMinI2),
        call("slMaxI2", slMaxI2),
        call("slFitI", slFitI),
        call("slCheck", slCheck),
        call("slAngleToRadian", slAngleToRadian),
        call("slRadianToAngle", slRadianToAngle),
        call("slGetRatio", slGetRatio),
        // vectors.h
        call<float, const float *>("slLength", slLength),
        call<double, const double *>("slLength", slLength),
        call("slLengthD", slLengthD),
        call("slNorm2", slNorm2),
        call<float, const float *>("slLength2", slLength2),
        call<double, const double *>("slLength2", slLength2),
        call<double, const float *>("slSquareLength2", slSquareLength2),
        call<double, const double *>("slSquareLength2", slSquareLength2),
        call("slDistance", slDistance),
        call("slDistance3", slDistance3),
        call("slSquareDistance3", slSquareDistance3),
        call("slDistance2", slDistance2),
        call("slDistanceD2", slDistanceD2),
        call("slDistSquare2", slDistSquare2),
        call("slPlaneDistSqr", slPlaneDistSqr),
        call("slDot2D", slDot2D),
        call<int, float *>("slNormalize", slNormalize),
        call<int, double *>("slNormalize", slNormalize),
        call<int, double *>("slNormalize2D", slNormalize2D),
        call<int, float *>("slNormalize2D", slNormalize2D),
        call("slLenAndDir", slLenAndDir),
        call<int, const float *, const float *, float *>("slGetNormalVectBtPnts",
                                                         slGetNormalVectBtPnts),
        call<int, const float *, const float *, double *>("slGetNormalVectBtPnts",
                                                          slGetNormalVectBtPnts),
        call("slVect", slVect),
        call("slOthVect", slOthVect),
        call("slOthPlane", slOthPlane),
        call("slSetPnt3DValueByDiv", slSetPnt3DValueByDiv),
        call("slVectParallel", slVectParallel),
        call("slGetVectMaxDir", slGetVectMaxDir),
        call("slComparWithCoordAxis", slComparWithCoordAxis),
        call("slIsEqualPoint3D", slIsEqualPoint3D),
        callWithMaths("slGetVectAngle", slGetVectAngle),
        callWithMaths<float, const float *, const float *, const float *>("slCalAngleTwoVects",
                                                                          slCalAngleTwoVects),
        callWithMaths<double, const double *, const double *, const double *>("slCalAngleTwoVects",
                                                                              slCalAngleTwoVects),
        callWithMaths("slGetVectorAngle", slGetVectorAngle),
        callWithMaths("slComputeAngle", slComputeAngle),
        callWithMaths("slGetDirectAngleToZ", slGetDirectAngleToZ),
        call("slMirrorAngleAboutVerticalAxis", slMirrorAngleAboutVerticalAxis),
        // equations.h
        call("slSolveEquationQuad", slSolveEquationQuad),
        call("slSolveEquationGroup3", slSolveEquationGroup3),
        call("slNewTrainM", slNewTrainM),
        call("slValueOfTrainM", slValueOfTrainM),
        // distances.h
        call("slGetPntLineDist", slGetPntLineDist),
        call("slGetPntLineSquareDist", slGetPntLineSquareDist),
        call("slGetPntLineDist2D", slGetPntLineDist2D),
        call("slGetPntLineDistByVect", slGetPntLineDistByVect),
        call("slGetLineFoot", slGetLineFoot),
        call("slProjectPntToLine", slProjectPntToLine),
        call("slGetPntPlaneDist", slGetPntPlaneDist),
        call("slProjectPntToPlane", slProjectPntToPlane),
        call("slGetNearestPair", slGetNearestPair),
        call("slProjToLineAlongXOnXZ", slProjToLineAlongXOnXZ),
        call("slProjToLineAlongZOnXZ", slProjToLineAlongZOnXZ),
        // line_pairs.h
        call("slIntersectLines3D", slIntersectLines3D),
        call("slJudgeLineCoPlane", slJudgeLineCoPlane),
        call("slIntersectInfLines", slIntersectInfLines),
        call("slGetLineDist", slGetLineDist),
        call("slGetCoPlaneInfLineDist", slGetCoPlaneInfLineDist),
        call("slGetDifPlaneInfLineDist", slGetDifPlaneInfLineDist),
        call("slGetInfLinesCoPerpenticular", slGetInfLinesCoPerpenticular),
        call("slGetCoPlaneLineDist", slGetCoPlaneLineDist),
        call("slGetDifPlaneLineDist", slGetDifPlaneLineDist),
        call("slGetLinesCoPerpenticular", slGetLinesCoPerpenticular),
        // matrices.h
        call("slSetIdentity", slSetIdentity),
        call("slGenerateMoveMatrix", slGenerateMoveMatrix),
        callWithMaths("slGenerateRotateMatrix", slGenerateRotateMatrix),
        callWithMaths("slGetRotateMatrix", slGetRotateMatrix),
        callWithMaths("slRotateByX", slRotateByX),
        callWithMaths<void, float, float *>("slRotateByY", slRotateByY),
        callWithMaths("slRotateByZ", slRotateByZ),
        call("slRotateByXExt", slRotateByXExt),
        call<void, float, float, float *>("slRotateByY", slRotateByY),
        call("slRotateByZExt", slRotateByZExt),
        call("slGenScaleMatrix", slGenScaleMatrix),
        call("slGenVectToZMatrix", slGenVectToZMatrix),
        call("slGenVectToXMatrix", slGenVectToXMatrix),
        call("slMultiMatrix", slMultiMatrix),
        call("slSetMatrixByMulti", slSetMatrixByMulti),
        call("slSetMatrixByRightMulti", slSetMatrixByRightMulti),
        call("slMatrix16MultiVector4", slMatrix16MultiVector4),
        call<int, const float *, float *>("slMatrix16MultiVector3", slMatrix16MultiVector3),
        call<int, const float *, const float *, float *>("slMatrix16MultiVector3",
                                                         slMatrix16MultiVector3),
        call<int, const float *, float *>("slMatrix16MultiPoint3", slMatrix16MultiPoint3),
        call<int, const float *, const float *, float *>("slMatrix16MultiPoint3",
                                                         slMatrix16MultiPoint3),
        call("slMatrix16MultiPoint2", slMatrix16MultiPoint2),
        call("slMatrixTrans16MultiVector4", slMatrixTrans16MultiVector4),
        call("slMatrixTrans16MultiVector3", slMatrixTrans16MultiVector3),
        call("slGetRotMatrixFromMotion", slGetRotMatrixFromMotion),
        call("slGetRotTransMatrixFromMotion", slGetRotTransMatrixFromMotion),
        call("slGetMoveMatrixFromMotion", slGetMoveMatrixFromMotion),
        call("slGetInvMvMatrixFromMotion", slGetInvMvMatrixFromMotion),
        call("slGetInverseMotionMatrix", slGetInverseMotionMatrix),
        call("slSetMatrixByMvToOri", slSetMatrixByMvToOri),
        call("slGetTwoMatrixSign", slGetTwoMatrixSign),
        call("slInverseMatrixM", slInverseMatrixM),
        call("slChangeFourPntMatrixM", slChangeFourPntMatrixM),
        call("slCheckMatrixError", slCheckMatrixError),
        call("slCheckIndentity", slCheckIndentity),
        call("slNormalizeMatrix", slNormalizeMatrix),
        call("slGetAnglesRotToZ", slGetAnglesRotToZ),
        callWithMaths("slGetAxes", slGetAxes),
        // planes.h
        call("slPlaneNormal", slPlaneNormal),
        call<int, const float *, const float *, const float *, float *, float *>(
            "slGetPlaneEquation", slGetPlaneEquation),
        call<float, const float *, const float *>("slGetPlaneEquation", slGetPlaneEquation),
        call("slGetPlaneFourPnt", slGetPlaneFourPnt),
        call("slGetAveragePlane", slGetAveragePlane),
        call("slGenXYCoordSys", slGenXYCoordSys),
        call("slGenMatrixToWorld", slGenMatrixToWorld),
        call<void, const XYCoordSysD &, float *>("slGenMatrixToLocal", slGenMatrixToLocal),
        call<void, const float *, const float *, const float *, const float *, float *>(
            "slGenMatrixToLocal", slGenMatrixToLocal),
        call("slTransToWorld", slTransToWorld),
        call("slTransPntToPlane", slTransPntToPlane),
        call("slTransVectToPlane", slTransVectToPlane),
        call("slGenMatrixToSpRadials", slGenMatrixToSpRadials),
        call("slGenMatrixToSpLines", slGenMatrixToSpLines),
        call("slGetMinXYZ", slGetMinXYZ),
        call("slGetMaxXYZ", slGetMaxXYZ),
        // intersections.h
        call("slLineEquation2", slLineEquation2),
        call("slIntersectLines2D", slIntersectLines2D),
        call("slIntersecLines", slIntersecLines),
        call("slLineIntersectPlane", slLineIntersectPlane),
        call("slRadialIntersectPlane", slRadialIntersectPlane),
        call("slGetPlaneIntersectM", slGetPlaneIntersectM),
        call("slGetPointOnIntersectLine", slGetPointOnIntersectLine),
        call("slCircumcenter", slCircumcenter),
        call("slGetCircleRadius", slGetCircleRadius),
        callWithMaths("slGetCircleAng", slGetCircleAng),
        callWithMaths("slGetCentralAngle", slGetCentralAngle),
        callWithMaths("slLineIntCircle", slLineIntCircle),
        call("slIntersectLineCircle", slIntersectLineCircle),
        call("slIntersectLineSphere", slIntersectLineSphere),
        call("slIntersectCircle", slIntersectCircle),
        callWithMaths("slGetTangentCircle", slGetTangentCircle),
        call("slGenCircle", slGenCircle),
        call("slCircumCenter3D", slCircumCenter3D),
        call("slGenSphere", slGenSphere),
        call("slGetShereIntersect", slGetShereIntersect),
        call("slIntersectPlaneSphereM", slIntersectPlaneSphereM),
        callWithMaths("slIntersectPlaneCone", slIntersectPlaneCone),
        // containment.h
        call("slRightInter", slRightInter),
        call("slPointInterFaceM", slPointInterFaceM),
        call("slJudgePntInPolygon", slJudgePntInPolygon),
        call("slIsPntInsideOfTriangle", slIsPntInsideOfTriangle),
        call("slIsPntInsideOfTrapezium", slIsPntInsideOfTrapezium),
        call("slGetIntersectType", slGetIntersectType),
        call("slPolygenCenterM", slPolygenCenterM),
        call("slJudgeIsTriangle", slJudgeIsTriangle),
        call("slJudgePntCoPlane", slJudgePntCoPlane),
        call("slGetVectBtPntsNZero", slGetVectBtPntsNZero),
        call("slGetNormNZero", slGetNormNZero),
        call("slRadialIntersectFaceM", slRadialIntersectFaceM),
        call("slJudgeRadialThroughPntM", slJudgeRadialThroughPntM),
        call("slJudgeRadialThroughLineM", slJudgeRadialThroughLineM),
        callWithMaths("slJudgeBallAndPrism", slJudgeBallAndPrism),
        call("slJudgeTwoCylinder", slJudgeTwoCylinder),
        call("slCalculateVectTwoParallel", slCalculateVectTwoParallel),
        call("slGetPntsMidVect", slGetPntsMidVect),
        // rectangles.h
        call("slTransToStdRect", slTransToStdRect),
        call("slTransRectangleByMatrix", slTransRectangleByMatrix),
        call("slCorrectRectContainError", slCorrectRectContainError),
        call<int, const RectangleD &, const float *>("slJudgePntInRectM", slJudgePntInRectM),
        call<int, const float *, const float *, const float *>("slJudgePntInRectM",
                                                               slJudgePntInRectM),
        call("slGetCircleRectangle", slGetCircleRectangle),
        callWithMaths("slGetArcRectangle", slGetArcRectangle),
        call("slGetCCWArcRectangle", slGetCCWArcRectangle),
        call("slGetCWArcRectangle", slGetCWArcRectangle),
        call("slGetSphereProjRect", slGetSphereProjRect),
        call("slGetCylinderProjRect", slGetCylinderProjRect),
        call("slMergeRectWithSameDir", slMergeRectWithSameDir),
        call("slGetStdRectMinPanDisplace", slGetStdRectMinPanDisplace),
        call("slGetRectMinPanDisplace", slGetRectMinPanDisplace),
        call("slGetStdRectMinPanDisp", slGetStdRectMinPanDisp),
        call("slCheckLineInRect", slCheckLineInRect),
        callWithMaths("slCheckArcInRect", slCheckArcInRect),
        call("slGetLineSegIntersectRect", slGetLineSegIntersectRect),
    };
    return calls;
}

} // namespace test
