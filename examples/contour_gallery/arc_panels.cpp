#include "panels.h"

#include <cmath>
#include <numbers>

#include "trunnion/curves/arcs.h"

namespace {

constexpr double TURN = 2.0 * std::numbers::pi;

double degrees(double radians) {
    return radians * 360.0 / TURN;
}
float radians(double degrees) {
    return static_cast<float>(degrees * TURN / 360.0);
}

const char *nameOf(int direction) {
    return direction == CUR_DIR_CCW ? "counter-clockwise" : "clockwise";
}
Style styleOf(int direction) {
    return direction == CUR_DIR_CCW ? Style::ccw : Style::cw;
}

double angleOf(Pnt centre, Pnt p) {
    return std::atan2(p.v - centre.v, p.u - centre.u);
}

// Goes from `start` about the centre in a direction until it is at the angle of `end`. The radius
// is that of the start: a wrong centre shows at the end.
void drawTravel(const View &view, Pnt centre, Pnt start, Pnt end, int direction) {
    const double from = angleOf(centre, start);
    const double sense = direction == CUR_DIR_CCW ? 1.0 : -1.0;
    double sweep = std::fmod(sense * (angleOf(centre, end) - from) + 2.0 * TURN, TURN);
    if (sweep < 1e-3) {
        sweep = TURN;
    }
    const double radius = std::hypot(start.u - centre.u, start.v - centre.v);
    drawArc(view, centre, radius, from, from + sense * sweep, styleOf(direction));
    view.dot(start, Style::start);
    view.dot(end, Style::end);
}

// Two ends on a circle, counter-clockwise, at angles in degrees.
struct Kind {
    const char *what;
    double from, to;
    float radius;
    int zoom;
};

TouchCurD buildArc(const Kind &kind) {
    const auto pointAt = [&kind](double angle, float *point) {
        point[0] = kind.radius * std::cos(radians(angle));
        point[1] = kind.radius * std::sin(radians(angle));
        point[2] = 0.0F;
    };
    float start[3];
    float end[3];
    float centre[3] = {0.0F, 0.0F, 0.0F};
    pointAt(kind.from, start);
    pointAt(kind.to, end);
    TouchCurD curve;
    curve.type = CUR_ARC_XY;
    curve.direction = CUR_DIR_CCW;
    slSetArcPara(&curve, start, end, centre, kind.radius);
    return curve;
}

std::string describe(const TouchCurD &curve) {
    if (curve.type == CUR_LINE) {
        return format("type %d, a line", curve.type);
    }
    return format("type %d, %.0f\u00b0 to %.0f\u00b0", curve.type, degrees(curve.firstAngle),
                  degrees(curve.secondAngle));
}

// The middle of one of the quarters of a panel.
Pnt middleOf(Pnt box, int index) {
    const int column = index % 2;
    const int row = index / 2;
    return {box.u + 102 + 196 * column, box.v + 100 + 147 * row};
}

} // namespace

void drawBox(Svg &svg, Pnt box, int panelsWide, const char *title, const char *note) {
    const double right = box.u + PANEL_WIDTH * panelsWide + 10.0 * (panelsWide - 1);
    const double bottom = box.v + PANEL_HEIGHT;
    svg.polyline({box, {right, box.v}, {right, bottom}, {box.u, bottom}, box}, Style::frame);
    svg.text({box.u + 12, box.v + 22}, title, Style::title, false);
    svg.text({box.u + 12, box.v + 39}, note, Style::note, false);
}

View quarterOf(Svg &svg, Pnt box, int index, double scale) {
    return {&svg, middleOf(box, index), scale};
}

void labelQuarter(Svg &svg, Pnt box, int index, const std::string &first,
                  const std::string &second) {
    const Pnt middle = middleOf(box, index);
    svg.text({middle.u, middle.v + 70}, first, Style::label);
    svg.text({middle.u, middle.v + 84}, second, Style::label);
}

std::vector<Pnt> arcPoints(Pnt centre, double radius, double from, double to) {
    constexpr int steps = 64;
    std::vector<Pnt> points;
    for (int i = 0; i <= steps; ++i) {
        const double t = from + (to - from) * i / steps;
        points.push_back({centre.u + radius * std::cos(t), centre.v + radius * std::sin(t)});
    }
    return points;
}

void drawArc(const View &view, Pnt centre, double radius, double from, double to, Style style) {
    const std::vector<Pnt> points = arcPoints(centre, radius, from, to);
    view.path(points, style);
    constexpr double shortest = 25.0; // pixels that an arrow needs
    if (std::fabs(to - from) * radius * view.scale < shortest) {
        return;
    }
    view.arrow(points[points.size() / 2], points[points.size() / 2 + 1], style);
}

void drawEndsAndRadius(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "Ends and radius", "slCalArcCent from (-1, 0), filled, to (1, 0), hollow");
    for (int i = 0; i < 4; ++i) {
        const int direction = i % 2 == 0 ? CUR_DIR_CCW : CUR_DIR_CW;
        const float r = i < 2 ? 1.25F : -1.25F;
        float cu = 0.0F;
        float cv = 0.0F;
        if (slCalArcCent(direction, -1.0F, 0.0F, 1.0F, 0.0F, r, &cu, &cv) != 1) {
            continue;
        }
        View view = quarterOf(svg, box, i, 40.0);
        view.centre.v = i < 2 ? 0.0 : cv; // a long arc fills the quarter
        view.path({{-1, 0}, {1, 0}}, Style::guide);
        view.cross({cu, cv});
        drawTravel(view, {cu, cv}, {-1, 0}, {1, 0}, direction);
        labelQuarter(svg, box, i, format("%s, r = %g", nameOf(direction), r),
                     format("centre (%.2f, %.2f)", cu, cv));
    }
}

void drawEndsAndSweep(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "Ends and sweep",
            "slCalArcCentRadius from (-1, 0) to (1, 0): sweep and radius");
    const View view{&svg, {box.u + 200, box.v + 102}, 88.0};
    const struct {
        int direction;
        double sweep;
    } cases[] = {{CUR_DIR_CW, 60},   {CUR_DIR_CCW, 60},  {CUR_DIR_CCW, 120},
                 {CUR_DIR_CCW, 180}, {CUR_DIR_CCW, 240}, {CUR_DIR_CCW, 270}};
    view.path({{-1, 0}, {1, 0}}, Style::guide);
    for (const auto &c : cases) {
        float r = 0.0F;
        float cu = 0.0F;
        float cv = 0.0F;
        if (slCalArcCentRadius(c.direction, -1.0F, 0.0F, 1.0F, 0.0F, radians(c.sweep), &r, &cu,
                               &cv) != 1) {
            continue;
        }
        drawTravel(view, {cu, cv}, {-1, 0}, {1, 0}, c.direction);
        const double peak = c.direction == CUR_DIR_CCW ? cv - r : cv + r;
        view.text({0, peak}, 0, c.direction == CUR_DIR_CCW ? 16 : -8,
                  format("%g\u00b0, %.2f", c.sweep, r));
    }
}

void drawCentreAndSweep(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "Start, centre and sweep",
            "slCalArcRadiusPnt from the filled point about the cross");
    const struct {
        int direction;
        double sweep;
    } cases[] = {{CUR_DIR_CCW, 120}, {CUR_DIR_CW, 120}, {CUR_DIR_CCW, 270}, {CUR_DIR_CCW, 360}};
    for (int i = 0; i < 4; ++i) {
        const auto &c = cases[i];
        const View view = quarterOf(svg, box, i, 24.0);
        float r = 0.0F;
        float ub = 0.0F;
        float vb = 0.0F;
        if (slCalArcRadiusPnt(c.direction, 1.6F, 1.2F, 0.0F, 0.0F, radians(c.sweep), &r, &ub,
                              &vb) != 1) {
            continue;
        }
        view.path(arcPoints({0, 0}, r, 0, TURN), Style::guide);
        view.path({{1.6, 1.2}, {0, 0}, {ub, vb}}, Style::guide);
        view.cross({0, 0});
        drawTravel(view, {0, 0}, {1.6, 1.2}, {ub, vb}, c.direction);
        labelQuarter(svg, box, i, format("%s, %g\u00b0", nameOf(c.direction), c.sweep),
                     format("end (%.2f, %.2f)", ub, vb));
    }
}

void drawKindsOfArcs(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "Short arc, full circle, flat arc",
            "slSetArcPara: the angles of the ends alone do not tell them apart");
    const Kind kinds[] = {{"ends 5\u00b0 apart, enlarged", 40, 45, 1.8F, 7},
                          {"the same ends, exchanged", 45, 40, 1.8F, 1},
                          {"ends that meet", 45, 45, 1.8F, 1},
                          {"radius 100000", 89.99925, 90.00075, 100000.0F, 1}};
    for (int i = 0; i < 4; ++i) {
        const TouchCurD curve = buildArc(kinds[i]);
        View view = quarterOf(svg, box, i, 27.0 * kinds[i].zoom);
        const Pnt first = {curve.firstPoint.X(), curve.firstPoint.Y()};
        const Pnt second = {curve.secondPoint.X(), curve.secondPoint.Y()};
        if (kinds[i].zoom > 1 || curve.type == CUR_LINE) {
            view.centre = {(first.u + second.u) / 2, (first.v + second.v) / 2};
        }
        labelQuarter(svg, box, i, kinds[i].what, describe(curve));
        if (curve.type == CUR_LINE) {
            view.path({first, second}, Style::line);
        } else {
            const double middle = (curve.firstAngle + curve.secondAngle) / 2;
            const double half = kinds[i].zoom > 1 ? TURN / 40 : TURN / 2;
            view.path(arcPoints({0, 0}, curve.radius, middle - half, middle + half), Style::guide);
            drawArc(view, {0, 0}, curve.radius, curve.firstAngle, curve.secondAngle, Style::ccw);
        }
        view.dot(first, Style::start);
        view.dot(second, Style::end);
    }
}
