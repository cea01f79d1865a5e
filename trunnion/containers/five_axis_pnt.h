// Tq5AxisPntCL: a position of a five-axis machine, as a plain value with vector arithmetic.
#pragma once

#include "trunnion/export.h"

class TqIOCL;

// Five floats one after another: X, Y, Z in the caller's lengths, and the two further coordinates
// IV and V in whatever unit the machine gives them. The object converts to the address of X, so
// that every geometry function takes it as a float[3] point. (For the same reason `a == b` compares
// addresses: two positions are the same when (a - b).IsZeroLengthM().)
//
// Arithmetic goes over all five values, component by component, in double with one rounding; a
// result beyond the range of float becomes the greatest float. No index is checked.
class TRUNNION_API Tq5AxisPntCL {
public:
    // All five values 0.
    Tq5AxisPntCL() = default;
    Tq5AxisPntCL(float x, float y, float z, float iv, float v) : values{x, y, z, iv, v} {}
    // The first `n` of `source`, and 0 for the rest; an n below 1 reads none, one above 5 reads
    // five.
    Tq5AxisPntCL(const float *source, int n);
    // X, Y, Z from a point; IV and V are 0.
    Tq5AxisPntCL(const float *const p) : Tq5AxisPntCL(p, 3) {}
    // X, Y, Z from a point, IV and V from the two floats of `a`.
    Tq5AxisPntCL(const float *const p, const float *const a)
        : values{p[0], p[1], p[2], a[0], a[1]} {}
    Tq5AxisPntCL(const Tq5AxisPntCL &) = default;
    Tq5AxisPntCL &operator=(const Tq5AxisPntCL &) = default;
    virtual ~Tq5AxisPntCL();

    // The values by name.
    float &X() { return values[0]; }
    float &Y() { return values[1]; }
    float &Z() { return values[2]; }
    float &IV() { return values[3]; }
    float &V() { return values[4]; }
    float X() const { return values[0]; }
    float Y() const { return values[1]; }
    float Z() const { return values[2]; }
    float IV() const { return values[3]; }
    float V() const { return values[4]; }
    // Index 0 to 4 for X to V.
    float &operator[](int i) { return values[i]; }
    float operator[](int i) const { return values[i]; }
    operator float *() { return values; }
    operator const float *() const { return values; }

    // All five values become 0.
    void SetAsZeroM();

    // In place; returns *this.
    Tq5AxisPntCL &operator+=(const Tq5AxisPntCL &other);
    Tq5AxisPntCL &operator-=(const Tq5AxisPntCL &other);
    Tq5AxisPntCL &operator*=(float s);
    // Changes nothing where the absolute value of s is at most SL_ZERO.
    Tq5AxisPntCL &operator/=(float s);

    // Root of the sum of the five squares, by slSqrt: 0 below 0.0001. All five values weigh the
    // same.
    float LengthM() const;
    // Sum of the five absolute values: not a Euclidean length, and not snapped.
    float Length1M() const;
    // 1 where Length1M is below SL_ZERO, else 0. SL_ZERO itself is not zero.
    int IsZeroLengthM() const;
    // LengthM of the difference.
    float DistanceToM(const Tq5AxisPntCL &other) const;
    // A step along a direction in space: X, Y, Z grow by s times `dir`; IV and V stay.
    void AddM(const float *const dir, float s);

    // Record of five raw floats, 20 bytes. A text stream has no form of it: both throw 108 there,
    // and the stream's 107 or 108 otherwise.
    void SaveM(TqIOCL *stream) const;
    void ReadM(TqIOCL *stream);

private:
    static constexpr int valueCount = 5;

    float values[valueCount] = {};
};

// The same to a new value; a scalar stands on the right only.
TRUNNION_API Tq5AxisPntCL operator+(const Tq5AxisPntCL &a, const Tq5AxisPntCL &b);
TRUNNION_API Tq5AxisPntCL operator-(const Tq5AxisPntCL &a, const Tq5AxisPntCL &b);
TRUNNION_API Tq5AxisPntCL operator*(const Tq5AxisPntCL &a, float s);
