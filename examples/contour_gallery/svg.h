// A drawing in pixels, and a view that puts coordinates with v upwards onto a place of it.
#pragma once

#include <string>
#include <vector>

struct Pnt {
    double u, v;
};

// Styles of strokes and texts; each is a class of the drawing's style sheet.
enum class Style { frame, title, label, note, guide, ccw, cw, line, other, start, end, mark };

class Svg {
public:
    void polyline(const std::vector<Pnt> &points, Style style);
    void dot(Pnt at, double radius, Style style);
    // Text that is centred at `at`, or begins there.
    void text(Pnt at, const std::string &text, Style style, bool isCentred = true);
    // Writes the file; false if that fails.
    bool save(const std::string &path, int width, int height) const;

private:
    std::string body;
};

// `centre` of the coordinates lies at the pixel `place`, `scale` pixels are one unit.
struct View {
    Svg *svg;
    Pnt place;
    double scale;
    Pnt centre = {0.0, 0.0};

    Pnt toPixels(Pnt p) const;
    void path(const std::vector<Pnt> &points, Style style) const;
    void arrow(Pnt from, Pnt to, Style style) const; // the head alone, halfway
    void dot(Pnt at, Style style) const;
    void cross(Pnt at) const;
    // Text that is centred at a point, moved by pixels.
    void text(Pnt at, double right, double down, const std::string &text) const;
};

// Text by a format of printf.
std::string format(const char *pattern, ...) __attribute__((format(printf, 1, 2)));
