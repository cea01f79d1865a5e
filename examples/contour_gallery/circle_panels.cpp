#include "panels.h"

#include <cmath>
#include <numbers>

#include "trunnion/geometry/arc_directions.h"
#include "trunnion/geometry/intersections.h"
#include "trunnion/geometry/rectangles.h"

namespace {

constexpr double TURN = 2.0 * std::numbers::pi;
constexpr float UPWARDS[3] = {0.0F, 0.0F, 1.0F};

Pnt pntOf(const float *p) {
    return {p[0], p[1]};
}

std::vector<Pnt> cornersOf(const RectangleD &rect) {
    return {pntOf(rect.c0), pntOf(rect.c1), pntOf(rect.c2), pntOf(rect.c3), pntOf(rect.c0)};
}

RectangleD rectangleOf(float x, float y, float width, float height) {
    return {{x, y, 0}, {x + width, y, 0}, {x + width, y + height, 0}, {x, y + height, 0}};
}

RectangleD moved(RectangleD rect, const float *step) {
    for (float *corner : {rect.c0, rect.c1, rect.c2, rect.c3}) {
        corner[0] += step[0];
        corner[1] += step[1];
    }
    return rect;
}

} // namespace

void drawFillets(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "Fillets of a corner",
            "slGetTangentCircle: the arc from the first ray to the second");
    const View view{&svg, {box.u + 50, box.v + 300}, 36.0};
    const float corner[3] = {0, 0, 0};
    const float first[3] = {9, 0, 0};
    const float second[3] = {3.6F, 6.2F, 0};
    view.path({pntOf(second), pntOf(corner), pntOf(first)}, Style::line);
    for (const float r : {0.7F, 1.6F, 2.5F, 3.4F}) {
        float centre[3];
        float t1[3];
        float t2[3];
        const int direction = slGetTangentCircle(corner, first, second, UPWARDS, r, centre, t1, t2);
        // The arc from the first ray to the second, in the direction that the function tells.
        double from = std::atan2(t1[1] - centre[1], t1[0] - centre[0]);
        double to = std::atan2(t2[1] - centre[1], t2[0] - centre[0]);
        if (direction == CUR_DIR_CW) {
            from += from < to ? TURN : 0.0;
        } else {
            to += to < from ? TURN : 0.0;
        }
        drawArc(view, pntOf(centre), r, from, to, direction == CUR_DIR_CW ? Style::cw : Style::ccw);
        view.path({pntOf(t1), pntOf(centre), pntOf(t2)}, Style::guide);
        view.cross(pntOf(centre));
        view.dot(pntOf(t1), Style::start);
        view.dot(pntOf(t2), Style::end);
        view.text(pntOf(t1), 0, 18, format("r = %g", r));
    }
}

void drawTangency(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "Two circles", "slIntersectCircle: its result and the points it writes");
    const struct {
        const char *what;
        float distance, r1, r2;
    } cases[] = {{"apart", 2.9F, 1.3F, 1.1F},
                 {"touching from outside", 2.4F, 1.3F, 1.1F},
                 {"crossing", 1.6F, 1.3F, 1.1F},
                 {"touching from inside", 0.6F, 1.7F, 1.1F}};
    for (int i = 0; i < 4; ++i) {
        const auto &c = cases[i];
        View view = quarterOf(svg, box, i, 30.0);
        view.centre.u = (c.distance + c.r2 - c.r1) / 2.0;
        const float c1[3] = {0, 0, 0};
        const float c2[3] = {c.distance, 0, 0};
        float points[2][3];
        const int result = slIntersectCircle(c1, c.r1, c2, c.r2, UPWARDS, points);
        view.path(arcPoints(pntOf(c1), c.r1, 0, TURN), Style::ccw);
        view.path(arcPoints(pntOf(c2), c.r2, 0, TURN), Style::cw);
        view.cross(pntOf(c1));
        view.cross(pntOf(c2));
        for (int k = 0; k < result; ++k) {
            view.dot(pntOf(points[k]), Style::other);
        }
        labelQuarter(svg, box, i, c.what, format("result %d", result));
    }
}

void drawPan(Svg &svg, Pnt box) {
    drawBox(svg, box, 1, "A pan that the frame stops",
            "slGetStdRectMinPanDisplace: the first corner at the frame decides");
    const View view{&svg, {box.u + 30, box.v + 300}, 30.0};
    const RectangleD frame = rectangleOf(0, 0, 9, 6.5F);
    const RectangleD shape = rectangleOf(0.8F, 0.8F, 3, 1.6F);
    const float asked[3] = {6.6F, 4.4F, 0};
    float allowed[3];
    const int result = slGetStdRectMinPanDisplace(frame, shape, asked, allowed);
    const RectangleD wanted = moved(shape, asked);
    const RectangleD stopped = moved(shape, allowed);
    view.path(cornersOf(frame), Style::line);
    view.path(cornersOf(wanted), Style::guide);
    view.path(cornersOf(shape), Style::ccw);
    view.path(cornersOf(stopped), Style::other);
    for (const auto &pair : {std::pair{shape.c2, wanted.c2}, std::pair{shape.c0, stopped.c0}}) {
        view.path({pntOf(pair.first), pntOf(pair.second)}, Style::guide);
    }
    view.arrow(pntOf(shape.c0), pntOf(stopped.c0), Style::other);
    view.text(pntOf(shape.c1), -50, 14, "at first");
    view.text(pntOf(stopped.c1), -50, 14, format("result %d", result));
    svg.text({box.u + 30, box.v + 322},
             format("asked (%.2f, %.2f), allowed (%.2f, %.2f)", asked[0], asked[1], allowed[0],
                    allowed[1]),
             Style::label, false);
}
