#include "drawings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "trunnion/geometry/scalars.h"

namespace {

// What is drawn in one colour.
enum Kind { lineKind, clockwiseKind, counterClockwiseKind, capKind, kindCount };

struct Look {
    const char *colour;
    const char *name;
};

constexpr Look looks[kindCount] = {{"#33475b", "line (G1)"},
                                   {"#c8553d", "arc, clockwise (G2)"},
                                   {"#2a7f8e", "arc, counter-clockwise (G3)"},
                                   {"#b9bec4", "closed to the axis"}};

Kind kindOf(const TouchCurD &curve) {
    if (curve.type == CUR_LINE) {
        return lineKind;
    }
    return curve.direction == CUR_DIR_CW ? clockwiseKind : counterClockwiseKind;
}

Kind kindOf(int element, const std::vector<Element> &contour) {
    return element == Profile::cap ? capKind
                                   : kindOf(contour[static_cast<std::size_t>(element)].curve);
}

constexpr double paperWidth = 1000.0;
constexpr double margin = 50.0;
constexpr double headHeight = 90.0; // title and legend
constexpr int textRoom = 400;

[[gnu::format(printf, 1, 2)]] std::string format(const char *pattern, ...) {
    char text[textRoom];
    va_list values;
    va_start(values, pattern);
    std::vsnprintf(text, sizeof text, pattern, values);
    va_end(values);
    return text;
}

std::string escaped(const std::string &text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        default:
            result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return result;
}

// A range of coordinates on paper: u to the right, v upwards.
struct Range {
    double lowU = 1e30, highU = -1e30, lowV = 1e30, highV = -1e30;

    void take(double u, double v) {
        lowU = std::min(lowU, u);
        highU = std::max(highU, u);
        lowV = std::min(lowV, v);
        highV = std::max(highV, v);
    }
    double width() const { return highU - lowU; }
    double height() const { return highV - lowV; }
};

// Fits a range to the paper, whose v axis points downwards.
class Paper {
public:
    explicit Paper(const Range &content)
        : range(content),
          zoom((paperWidth - 2 * margin) /
               std::max({content.width(), 0.4 * content.height(), 1e-6})) {}

    double u(double value) const { return left() + (value - range.lowU) * zoom; }
    double v(double value) const { return headHeight + margin + (range.highV - value) * zoom; }
    double length(double value) const { return value * zoom; }
    double height() const { return v(range.lowV) + margin; }

    std::string point(const char *command, double pu, double pv) const {
        return format("%s%.2f %.2f", command, u(pu), v(pv));
    }

private:
    double left() const { return 0.5 * (paperWidth - range.width() * zoom); }

    Range range;
    double zoom;
};

std::string headOf(const Paper &paper, const std::string &title) {
    std::string svg = format("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %.0f %.0f\" "
                             "font-family=\"sans-serif\">\n"
                             "<rect width=\"100%%\" height=\"100%%\" fill=\"white\"/>\n"
                             "<text x=\"%.0f\" y=\"48\" font-size=\"24\">",
                             paperWidth, paper.height(), margin);
    svg += escaped(title) + "</text>\n";
    double x = margin;
    for (const Look &look : looks) {
        svg += format("<rect x=\"%.0f\" y=\"72\" width=\"26\" height=\"8\" fill=\"%s\"/>"
                      "<text x=\"%.0f\" y=\"82\" font-size=\"16\">%s</text>\n",
                      x, look.colour, x + 34.0, look.name);
        x += 60.0 + 8.5 * static_cast<double>(std::string(look.name).size());
    }
    return svg;
}

std::string pathOf(const std::string &data, const std::string &attributes) {
    return "<path d=\"" + data + "\" " + attributes + "/>\n";
}

// The points of the profile from pole to pole, above the axis for a `sign` of 1, below for -1.
std::string outlineOf(const Profile &profile, const Paper &paper, double sign) {
    std::string data;
    for (const PlanePoint &p : profile.points) {
        data += paper.point(data.empty() ? "M" : "L", p.z, sign * p.x);
    }
    return data + "Z";
}

// The chords that close the profile to the axis.
std::string capsOf(const Profile &profile, const Paper &paper) {
    std::string data;
    for (std::size_t i = 0; i < profile.elements.size(); ++i) {
        if (profile.elements[i] == Profile::cap) {
            data += paper.point("M", profile.points[i].z, profile.points[i].x);
            data += paper.point("L", profile.points[i + 1].z, profile.points[i + 1].x);
        }
    }
    return data;
}

// A curve by its record alone, as the arc of a circle and not by points along it. What is
// counter-clockwise with the axes of the part is so on paper.
std::string curveOf(const TouchCurD &curve, const Paper &paper) {
    const PlanePoint from = startOf(curve);
    const PlanePoint to = endOf(curve);
    const std::string start = paper.point("M", from.z, from.x);
    if (curve.type == CUR_LINE) {
        return start + paper.point("L", to.z, to.x);
    }
    const double radius = paper.length(curve.radius);
    const int isLarge = curve.secondAngle - curve.firstAngle > SL_PI ? 1 : 0;
    const int isClockwise = curve.direction == CUR_DIR_CW ? 1 : 0;
    return start + format("A%.3f %.3f 0 %d %d ", radius, radius, isLarge, isClockwise) +
           paper.point("", to.z, to.x);
}

std::string dotsOf(const std::vector<Element> &contour, const Paper &paper) {
    std::string svg;
    for (const Element &element : contour) {
        const PlanePoint start = startOf(element.curve);
        svg += format("<circle cx=\"%.2f\" cy=\"%.2f\" r=\"4\"/>\n", paper.u(start.z),
                      paper.v(start.x));
    }
    return "<g fill=\"white\" stroke=\"#33475b\" stroke-width=\"1.5\">\n" + svg + "</g>\n";
}

} // namespace

std::string drawContour(const std::vector<Element> &contour, const Profile &profile,
                        const std::string &title) {
    Range range;
    for (const PlanePoint &p : profile.points) {
        range.take(p.z, p.x);
        range.take(p.z, -p.x);
    }
    for (const Element &element : contour) {
        for (const PlanePoint &p : {startOf(element.curve), endOf(element.curve)}) {
            range.take(p.z, p.x);
        }
    }
    const Paper paper(range);
    std::string svg = headOf(paper, title);
    svg += pathOf(outlineOf(profile, paper, 1.0), "fill=\"#eef1f4\"");
    svg += pathOf(outlineOf(profile, paper, -1.0), "fill=\"#dde2e7\" stroke=\"#aab3bc\"");
    const double reach = 0.03 * range.width();
    svg += pathOf(paper.point("M", range.lowU - reach, 0.0) +
                      paper.point("L", range.highU + reach, 0.0),
                  "stroke=\"#666\" stroke-dasharray=\"24 5 4 5\"");
    svg += pathOf(capsOf(profile, paper),
                  format("stroke=\"%s\" stroke-width=\"4\"", looks[capKind].colour));
    for (const Element &element : contour) {
        svg += pathOf(curveOf(element.curve, paper),
                      format("fill=\"none\" stroke=\"%s\" stroke-width=\"4\" "
                             "stroke-linecap=\"round\"",
                             looks[kindOf(element.curve)].colour));
    }
    return svg + dotsOf(contour, paper) + "</svg>\n";
}

namespace {

using Corner = std::array<double, 2>;

Corner cornerAt(const Unfolding &flat, int slot, int position) {
    float corner[2] = {0.0F, 0.0F};
    flat.corners.GetItemM(corner, 3 * slot + position);
    return {corner[0], corner[1]};
}

// Turns the sheet so that the strips stand upright on the whole, whatever way the first one was
// laid: the walk leads up the first strip and down the last one beside it.
class Upright {
public:
    Upright(const Part &part, const Unfolding &flat) {
        const int inStrip = std::max(part.mesh.triangles.GetBoundM() / part.gores, 1);
        const Corner first = directionOf(0, inStrip, flat);
        const Corner last = directionOf((part.gores - 1) * inStrip, inStrip, flat);
        const double length = std::hypot(first[0] + last[0], first[1] + last[1]);
        if (length > 0.0) {
            sine = (first[0] + last[0]) / length;
            cosine = (first[1] + last[1]) / length;
        }
    }

    Corner operator()(const Corner &p) const {
        return {cosine * p[0] - sine * p[1], sine * p[0] + cosine * p[1]};
    }

private:
    // From the pole where a strip begins to the one where it ends.
    static Corner directionOf(int slot, int inStrip, const Unfolding &flat) {
        const Corner from = cornerAt(flat, slot, 1);
        const Corner to = cornerAt(flat, slot + inStrip - 1, 1);
        return {to[0] - from[0], to[1] - from[1]};
    }

    double sine = 0.0;
    double cosine = 1.0;
};

} // namespace

std::string drawUnfolded(const Part &part, const Unfolding &flat,
                         const std::vector<Element> &contour, const std::string &title) {
    const Upright upright(part, flat);
    const int count = part.mesh.triangles.GetBoundM();
    Range range;
    for (int slot = 0; slot < count; ++slot) {
        for (int position = 0; position < 3; ++position) {
            const Corner p = upright(cornerAt(flat, slot, position));
            range.take(p[0], p[1]);
        }
    }
    const Paper paper(range);
    std::array<std::string, kindCount> paths;
    for (int slot = 0; slot < count; ++slot) {
        const int element = part.elements[static_cast<std::size_t>(slot)];
        std::string &data = paths[kindOf(element, contour)];
        for (int position = 0; position < 3; ++position) {
            const Corner p = upright(cornerAt(flat, slot, position));
            data += paper.point(position == 0 ? "M" : "L", p[0], p[1]);
        }
        data += "Z\n";
    }
    std::string svg = headOf(paper, title);
    for (std::size_t kind = 0; kind < kindCount; ++kind) {
        svg += pathOf(paths[kind], format("fill=\"%s\" stroke=\"%s\" stroke-width=\"0.3\"",
                                          looks[kind].colour, looks[kind].colour));
    }
    return svg + "</svg>\n";
}
