#include "toolpath.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>

#include "trunnion/curves/arcs.h"
#include "trunnion/geometry/scalars.h"

namespace {

// How far an arc's end may lie off its circle, in millimetres: programs give two or three decimals.
constexpr double arcSlack = 0.02;
// No lathe reaches further.
constexpr double farthest = 1e5;

// G codes that neither move nor change where a move leads, in tenths: plane, stroke limits, tool
// radius and length, work offsets, path control, feed and speed.
constexpr int passedOver[] = {90,  220, 230, 250, 260, 400, 410, 420, 430, 431, 432,
                              490, 540, 550, 560, 570, 580, 590, 591, 592, 593, 610,
                              611, 640, 911, 930, 940, 950, 960, 970, 980, 990};

double distance(const PlanePoint &a, const PlanePoint &b) {
    return std::hypot(a.z - b.z, a.x - b.x);
}

bool samePlace(const PlanePoint &a, const PlanePoint &b) {
    return distance(a, b) < SL_ZERO;
}

std::string millimetres(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.3f mm", value);
    return text;
}

// The centre that R states: on the side that makes the arc at most half a turn, or the other one
// for a negative R.
PlanePoint centreByRadius(const Move &arc, double radius) {
    if (samePlace(arc.from, arc.to)) {
        throw BlockError("R fixes no circle where an arc ends at its start");
    }
    const int direction = arc.motion == Motion::clockwise ? CUR_DIR_CW : CUR_DIR_CCW;
    const auto narrow = [](double value) { return static_cast<float>(value); };
    float z = 0.0F;
    float x = 0.0F;
    if (slCalArcCent(direction, narrow(arc.from.z), narrow(arc.from.x), narrow(arc.to.z),
                     narrow(arc.to.x), narrow(radius), &z, &x) == 0) {
        throw BlockError("the end of the arc is out of reach of R");
    }
    return {z, x};
}

void checkRadius(const Move &arc) {
    const double radius = distance(arc.centre, arc.from);
    if (radius < SL_ZERO) {
        throw BlockError("the arc has no radius");
    }
    const double off = std::fabs(distance(arc.centre, arc.to) - radius);
    if (off > arcSlack) {
        throw BlockError("the end of the arc is " + millimetres(off) + " off its circle");
    }
}

} // namespace

double Toolpath::length(double word) const {
    if (std::fabs(word) > farthest) {
        throw BlockError("a length beyond " + millimetres(farthest));
    }
    return word * unit;
}

void Toolpath::endRun() {
    if (!current.empty()) {
        finished = std::exchange(current, {});
    }
}

// G codes that last. True if `tenths` is one of them.
bool Toolpath::applyMode(int tenths) {
    switch (tenths) {
    case 0:
    case 10:
    case 20:
    case 30: {
        constexpr Motion motions[] = {Motion::rapid, Motion::line, Motion::clockwise,
                                      Motion::counterClockwise};
        motion = motions[tenths / 10];
        return true;
    }
    case 70:
    case 80:
        diameter = tenths == 70;
        return true;
    case 170:
    case 180:
    case 190:
        otherPlane = tenths != 180;
        return true;
    case 200:
    case 210:
        unit = tenths == 200 ? 25.4 : 1.0;
        return true;
    case 800:
        motion = Motion::none;
        return true;
    case 900:
    case 910:
        incremental = tenths == 910;
        return true;
    default:
        return false;
    }
}

Toolpath::AxisWords Toolpath::applyG(int tenths) {
    if (applyMode(tenths)) {
        return AxisWords::move;
    }
    switch (tenths) {
    case 40:  // dwell: X may be seconds
    case 100: // data of the control
        return AxisWords::ignore;
    case 280: // to a reference point
    case 300:
    case 530: // in the coordinates of the machine
        return AxisWords::leave;
    case 500:
    case 920:
        return AxisWords::rename;
    default:
        break;
    }
    if (std::find(std::begin(passedOver), std::end(passedOver), tenths) == std::end(passedOver)) {
        throw BlockError("unknown motion or setting " + nameOfG(tenths));
    }
    return AxisWords::move;
}

void Toolpath::applyM(int code) {
    if (code == 98) {
        throw BlockError("M98 calls another program, which is not read");
    }
    ended = ended || code == 2 || code == 30;
}

void Toolpath::apply(const Block &block) {
    AxisWords use = AxisWords::move;
    for (const int tenths : block.gCodes) {
        const AxisWords wanted = applyG(tenths);
        use = wanted == AxisWords::move ? use : wanted;
    }
    switch (use) {
    case AxisWords::move:
        move(block);
        break;
    case AxisWords::rename:
        rename(block);
        break;
    case AxisWords::leave:
        endRun();
        xIsKnown = zIsKnown = false;
        break;
    case AxisWords::ignore:
        break;
    }
    for (const int code : block.mCodes) {
        applyM(code);
    }
}

// The coordinates change and the tool stays, so that what follows does not join on to the run.
void Toolpath::rename(const Block &block) {
    if (block.firstOf("XZ") == '\0') {
        return; // a limit of the speed
    }
    endRun();
    position.x = block.has('X') ? radial(*block['X']) : position.x;
    position.z = block.has('Z') ? length(*block['Z']) : position.z;
    xIsKnown = xIsKnown || block.has('X');
    zIsKnown = zIsKnown || block.has('Z');
}

PlanePoint Toolpath::targetOf(const Block &block) {
    PlanePoint target = position;
    if (block.has('X')) {
        const double x = radial(*block['X']);
        target.x = incremental ? position.x + x : x;
        xIsKnown = xIsKnown || !incremental;
    }
    if (block.has('Z')) {
        const double z = length(*block['Z']);
        target.z = incremental ? position.z + z : z;
        zIsKnown = zIsKnown || !incremental;
    }
    target.x += radial(block.valueOr0('U'));
    target.z += length(block.valueOr0('W'));
    return target;
}

void Toolpath::move(const Block &block) {
    const char axis = block.firstOf("XZUW");
    if (axis == '\0' && !(isArc(motion) && block.firstOf("IKR") != '\0')) {
        return;
    }
    if (motion == Motion::none) {
        throw BlockError(std::string(1, axis) + " stands before any of G0, G1, G2 and G3");
    }
    if (motion == Motion::rapid) {
        endRun();
        position = targetOf(block);
        return;
    }
    if (!xIsKnown || !zIsKnown) {
        throw BlockError("a cut from a position that the program does not tell");
    }
    cut(block, targetOf(block));
}

void Toolpath::cut(const Block &block, const PlanePoint &target) {
    for (const char letter : {'A', 'B', 'C', 'J', 'V', 'Y'}) {
        if (block.valueOr0(letter) != 0.0) {
            throw BlockError(std::string(1, letter) + " leads out of the plane of Z and X");
        }
    }
    if (isArc(motion)) {
        current.push_back(arcOf(block, target));
    } else if (!samePlace(position, target)) {
        current.push_back({motion, position, target, {}, line});
    }
    position = target;
}

Move Toolpath::arcOf(const Block &block, const PlanePoint &target) const {
    if (otherPlane) {
        throw BlockError("an arc outside the plane G18");
    }
    const bool hasCentre = block.firstOf("IK") != '\0';
    if (hasCentre == block.has('R')) {
        throw BlockError("an arc needs either I and K or R");
    }
    Move arc{motion, position, target, {}, line};
    arc.centre = hasCentre ? PlanePoint{position.z + length(block.valueOr0('K')),
                                        position.x + length(block.valueOr0('I'))}
                           : centreByRadius(arc, length(*block['R']));
    checkRadius(arc);
    return arc;
}

void Toolpath::follow(const Block &block, int lineNumber) {
    line = lineNumber;
    apply(block);
}
