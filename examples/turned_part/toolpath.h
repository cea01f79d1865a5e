// The moves of a turning program in the plane of Z and X (G18).
#pragma once

#include <vector>

#include "block.h"

enum class Motion { none, rapid, line, clockwise, counterClockwise };

inline bool isArc(Motion motion) {
    return motion == Motion::clockwise || motion == Motion::counterClockwise;
}

// Millimetres; x is a radius.
struct PlanePoint {
    double z = 0.0;
    double x = 0.0;
};

struct Move {
    Motion motion;
    PlanePoint from, to;
    PlanePoint centre; // of an arc
    int line;          // of the program, for messages
};

// Follows a program block by block and keeps the last unbroken run of cutting moves. Every word
// that does not move is passed over. The position is X0 Z0 until the program says otherwise.
//
// What it knows: G0 to G3, modal; X as a radius or, after G7 and until G8, as a diameter; G90 and
// G91, U and W for steps; I and K from the start of the arc, or R, negative for more than half a
// turn; G20 and G21; G92 and G50, which rename the position; G28, G30 and G53, after which the
// position is unknown; M2 and M30.
class Toolpath {
public:
    // Throws BlockError for a move that it does not know or that cannot be.
    void follow(const Block &block, int lineNumber);
    // True behind M2 or M30: what follows is not part of the program.
    bool hasEnded() const { return ended; }
    // The last run, empty if nothing was cut.
    const std::vector<Move> &lastRun() const { return current.empty() ? finished : current; }

private:
    // What the axis words of a block do.
    enum class AxisWords { move, rename, leave, ignore };

    void apply(const Block &block);
    AxisWords applyG(int tenths);
    bool applyMode(int tenths);
    void applyM(int code);
    void move(const Block &block);
    void rename(const Block &block);
    void endRun();
    PlanePoint targetOf(const Block &block);
    void cut(const Block &block, const PlanePoint &target);
    Move arcOf(const Block &block, const PlanePoint &target) const;
    double radial(double word) const { return length(word) * (diameter ? 0.5 : 1.0); }
    double length(double word) const;

    Motion motion = Motion::none;
    bool diameter = false;
    bool incremental = false;
    bool otherPlane = false;
    bool ended = false;
    double unit = 1.0; // millimetres
    PlanePoint position;
    bool xIsKnown = true;
    bool zIsKnown = true;
    int line = 0;
    std::vector<Move> current;
    std::vector<Move> finished;
};
