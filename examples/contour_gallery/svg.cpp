#include "svg.h"

#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace {

const char *classOf(Style style) {
    constexpr std::array<const char *, 12> names = {"frame", "title", "label", "note",
                                                    "guide", "ccw",   "cw",    "line",
                                                    "other", "start", "end",   "mark"};
    return names[static_cast<std::size_t>(style)];
}

constexpr const char *STYLE_SHEET = "text{font-family:DejaVu Sans,Verdana,sans-serif;fill:#222}"
                                    ".title{font-size:15px;font-weight:bold}"
                                    ".label{font-size:11px}"
                                    ".note{font-size:11px;fill:#555}"
                                    "polyline{fill:none;stroke-linejoin:round;stroke-linecap:round}"
                                    ".frame{stroke:#bbb;stroke-width:1}"
                                    ".guide{stroke:#aaa;stroke-width:1;stroke-dasharray:4 3}"
                                    ".ccw{stroke:#1f5fbf;stroke-width:2.2}"
                                    ".cw{stroke:#d9730d;stroke-width:2.2}"
                                    ".line{stroke:#333;stroke-width:2.2}"
                                    ".other{stroke:#2f8f4e;stroke-width:2.2}"
                                    ".mark{stroke:#777;stroke-width:1}"
                                    "circle.start{fill:#222}"
                                    "circle.end{fill:#fff;stroke:#222;stroke-width:1.5}"
                                    "circle.other{fill:#2f8f4e}";

} // namespace

std::string format(const char *pattern, ...) {
    char text[200];
    va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(text, sizeof text, pattern, arguments);
    va_end(arguments);
    return text;
}

void Svg::polyline(const std::vector<Pnt> &points, Style style) {
    body += format("<polyline class=\"%s\" points=\"", classOf(style));
    for (const Pnt &p : points) {
        body += format("%.1f,%.1f ", p.u, p.v);
    }
    body += "\"/>\n";
}

void Svg::dot(Pnt at, double radius, Style style) {
    body += format("<circle class=\"%s\" cx=\"%.1f\" cy=\"%.1f\" r=\"%.1f\"/>\n", classOf(style),
                   at.u, at.v, radius);
}

void Svg::text(Pnt at, const std::string &text, Style style, bool isCentred) {
    body += format("<text class=\"%s\" x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\">", classOf(style),
                   at.u, at.v, isCentred ? "middle" : "start");
    body += text + "</text>\n";
}

bool Svg::save(const std::string &path, int width, int height) const {
    std::FILE *file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    std::string whole = format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" "
                               "height=\"%d\" viewBox=\"0 0 %d %d\">\n<style>",
                               width, height, width, height);
    whole += STYLE_SHEET;
    whole += "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n" + body + "</svg>\n";
    const bool isWritten = std::fwrite(whole.data(), 1, whole.size(), file) == whole.size();
    return std::fclose(file) == 0 && isWritten;
}

Pnt View::toPixels(Pnt p) const {
    return {place.u + (p.u - centre.u) * scale, place.v - (p.v - centre.v) * scale};
}

void View::path(const std::vector<Pnt> &points, Style style) const {
    std::vector<Pnt> pixels;
    pixels.reserve(points.size());
    for (const Pnt &p : points) {
        pixels.push_back(toPixels(p));
    }
    svg->polyline(pixels, style);
}

void View::arrow(Pnt from, Pnt to, Style style) const {
    const Pnt a = toPixels(from);
    const Pnt b = toPixels(to);
    const double length = std::hypot(b.u - a.u, b.v - a.v);
    const Pnt along = {6.0 * (b.u - a.u) / length, 6.0 * (b.v - a.v) / length};
    const Pnt tip = {(a.u + b.u + along.u) / 2.0, (a.v + b.v + along.v) / 2.0};
    const Pnt back = {tip.u - 1.4 * along.u, tip.v - 1.4 * along.v};
    svg->polyline({{back.u - 0.7 * along.v, back.v + 0.7 * along.u},
                   tip,
                   {back.u + 0.7 * along.v, back.v - 0.7 * along.u}},
                  style);
}

void View::dot(Pnt at, Style style) const {
    svg->dot(toPixels(at), 3.5, style);
}

void View::cross(Pnt at) const {
    const Pnt p = toPixels(at);
    svg->polyline({{p.u - 4, p.v}, {p.u + 4, p.v}}, Style::mark);
    svg->polyline({{p.u, p.v - 4}, {p.u, p.v + 4}}, Style::mark);
}

void View::text(Pnt at, double right, double down, const std::string &text) const {
    const Pnt p = toPixels(at);
    svg->text({p.u + right, p.v + down}, text, Style::label);
}
