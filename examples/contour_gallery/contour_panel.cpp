#include "panels.h"

#include <cmath>

#include "trunnion/curves/arcs.h"
#include "trunnion/geometry/intersections.h"

namespace {

using Contour = std::vector<TouchCurD>;

// The profile of a turned part: z to the right, x upwards, as slSetArcPara measures the angles of a
// CUR_ARC_ZX. A corner with a radius is rounded.
struct Corner {
    float z, x, radius;
};
const std::vector<Corner> PROFILE = {{0, 0, 0},   {0, 26, 7},  {34, 26, 10}, {52, 10, 12},
                                     {92, 10, 6}, {92, 22, 4}, {112, 22, 6}, {112, 0, 0}};

Pnt pntOf(const float *point) {
    return {point[2], point[0]};
}

TouchCurD lineOf(Pnt from, Pnt to) {
    float first[3] = {static_cast<float>(from.v), 0, static_cast<float>(from.u)};
    float second[3] = {static_cast<float>(to.v), 0, static_cast<float>(to.u)};
    TouchCurD line;
    slSetLine(&line, CUR_LINE, first, second);
    return line;
}

// An arc of the type CUR_ARC, whose points and angles run as it is travelled. slSetArcPara builds
// it counter-clockwise; a clockwise one is that arc reversed.
TouchCurD arcOf(int direction, Pnt from, Pnt to, Pnt centre, float radius) {
    const bool isForward = direction == CUR_DIR_CCW;
    const TouchCurD ends = isForward ? lineOf(from, to) : lineOf(to, from);
    float start[3];
    float end[3];
    ends.GetCurveStartPntM(start);
    ends.GetCurveEndPntM(end);
    float middle[3] = {static_cast<float>(centre.v), 0, static_cast<float>(centre.u)};
    TouchCurD arc;
    arc.type = CUR_ARC_ZX;
    arc.direction = CUR_DIR_CCW;
    slSetArcPara(&arc, start, end, middle, radius);
    arc.type = CUR_ARC;
    if (!isForward) {
        arc.SwapDirM();
    }
    return arc;
}

// Rounds the corners of the profile by the fillet of slGetTangentCircle.
Contour buildContour() {
    Contour contour;
    Pnt at = {PROFILE[0].z, PROFILE[0].x};
    for (std::size_t i = 1; i < PROFILE.size(); ++i) {
        const Corner &corner = PROFILE[i];
        if (corner.radius == 0.0F) {
            contour.push_back(lineOf(at, {corner.z, corner.x}));
            at = {corner.z, corner.x};
            continue;
        }
        const float o[3] = {corner.z, corner.x, 0};
        const float before[3] = {PROFILE[i - 1].z, PROFILE[i - 1].x, 0};
        const float behind[3] = {PROFILE[i + 1].z, PROFILE[i + 1].x, 0};
        const float norm[3] = {0, 0, 1};
        float centre[3];
        float t1[3];
        float t2[3];
        const int direction =
            slGetTangentCircle(o, before, behind, norm, corner.radius, centre, t1, t2);
        contour.push_back(lineOf(at, {t1[0], t1[1]}));
        contour.push_back(arcOf(direction, {t1[0], t1[1]}, {t2[0], t2[1]}, {centre[0], centre[1]},
                                corner.radius));
        at = {t2[0], t2[1]};
    }
    return contour;
}

// A vector to the left of the travel at the first point: out of the part.
void outwardsOf(const TouchCurD &curve, float *side) {
    if (curve.type == CUR_LINE) {
        const Pnt from = pntOf(curve.firstPoint);
        const Pnt to = pntOf(curve.secondPoint);
        side[0] = static_cast<float>(to.u - from.u);
        side[2] = static_cast<float>(from.v - to.v);
    } else {
        const float sign = curve.direction == CUR_DIR_CCW ? 1.0F : -1.0F;
        side[0] = sign * (curve.centre.X() - curve.firstPoint.X());
        side[2] = sign * (curve.centre.Z() - curve.firstPoint.Z());
    }
    side[1] = 0.0F;
}

// Each record is drawn by what it says itself: a line by its points, an arc by its angles, with its
// points as dots.
void draw(const View &view, const Contour &contour, bool hasDots, Style forAll) {
    for (const TouchCurD &curve : contour) {
        const Pnt first = pntOf(curve.firstPoint);
        const Pnt second = pntOf(curve.secondPoint);
        if (curve.type == CUR_LINE) {
            view.path({first, second}, hasDots ? Style::line : forAll);
        } else {
            const Style turn = curve.direction == CUR_DIR_CCW ? Style::ccw : Style::cw;
            const std::vector<Pnt> points =
                arcPoints(pntOf(curve.centre), curve.radius, curve.firstAngle, curve.secondAngle);
            view.path(points, hasDots ? turn : forAll);
        }
        if (hasDots) {
            view.dot(first, Style::start);
            view.dot(second, Style::start);
        }
    }
}

} // namespace

void drawContour(Svg &svg, Pnt box) {
    drawBox(svg, box, 2, "A contour, its mirror image and its offset",
            "lines and arcs (blue: counter-clockwise, orange: clockwise); MirrorM about the axis; "
            "OffsetM by 4 to the outside");
    const View view{&svg, {box.u + 150, box.v + 195}, 4.5};
    const Contour contour = buildContour();
    Contour mirrored = contour;
    Contour offset = contour;
    for (TouchCurD &curve : mirrored) {
        curve.MirrorM(nullptr, 1);
    }
    for (TouchCurD &curve : offset) {
        float side[3];
        outwardsOf(curve, side);
        curve.OffsetM(4.0F, side);
    }
    view.path({{-12, 0}, {124, 0}}, Style::guide);
    draw(view, offset, false, Style::other);
    draw(view, contour, true, Style::line);
    draw(view, mirrored, true, Style::line);
    view.text({128, 0}, 0, 4, "z");
    view.text({72, 14}, 0, -8, "offset");
    view.text({16, 13}, 0, 0, "contour");
    view.text({16, -13}, 0, 8, "mirror image");
}
