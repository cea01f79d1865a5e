// Arithmetic, measures and record of the five-axis point.
#include "trunnion/containers/five_axis_pnt.h"

#include <algorithm>
#include <cmath>

#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/persistence/stream.h"

using trunnion::detail::toFloat;

Tq5AxisPntCL::Tq5AxisPntCL(const float *source, int n) {
    for (int i = 0; i < std::min(n, valueCount); ++i) {
        values[i] = source[i];
    }
}

Tq5AxisPntCL::~Tq5AxisPntCL() = default;

void Tq5AxisPntCL::SetAsZeroM() {
    std::fill_n(values, valueCount, 0.0F);
}

Tq5AxisPntCL &Tq5AxisPntCL::operator+=(const Tq5AxisPntCL &other) {
    for (int i = 0; i < valueCount; ++i) {
        values[i] = toFloat(static_cast<double>(values[i]) + other.values[i]);
    }
    return *this;
}

Tq5AxisPntCL &Tq5AxisPntCL::operator-=(const Tq5AxisPntCL &other) {
    for (int i = 0; i < valueCount; ++i) {
        values[i] = toFloat(static_cast<double>(values[i]) - other.values[i]);
    }
    return *this;
}

Tq5AxisPntCL &Tq5AxisPntCL::operator*=(float s) {
    for (float &value : values) {
        value = toFloat(static_cast<double>(value) * s);
    }
    return *this;
}

Tq5AxisPntCL &Tq5AxisPntCL::operator/=(float s) {
    if (std::fabs(s) <= SL_ZERO) {
        return *this;
    }
    for (float &value : values) {
        value = toFloat(static_cast<double>(value) / s);
    }
    return *this;
}

Tq5AxisPntCL operator+(const Tq5AxisPntCL &a, const Tq5AxisPntCL &b) {
    return Tq5AxisPntCL(a) += b;
}

Tq5AxisPntCL operator-(const Tq5AxisPntCL &a, const Tq5AxisPntCL &b) {
    return Tq5AxisPntCL(a) -= b;
}

Tq5AxisPntCL operator*(const Tq5AxisPntCL &a, float s) {
    return Tq5AxisPntCL(a) *= s;
}

float Tq5AxisPntCL::LengthM() const {
    double squares = 0.0;
    for (const double value : values) {
        squares += value * value;
    }
    return toFloat(slSqrt(squares));
}

float Tq5AxisPntCL::Length1M() const {
    double sum = 0.0;
    for (const double value : values) {
        sum += std::fabs(value);
    }
    return toFloat(sum);
}

int Tq5AxisPntCL::IsZeroLengthM() const {
    return Length1M() < SL_ZERO ? 1 : 0;
}

float Tq5AxisPntCL::DistanceToM(const Tq5AxisPntCL &other) const {
    return (*this - other).LengthM();
}

void Tq5AxisPntCL::AddM(const float *const dir, float s) {
    for (int i = 0; i < 3; ++i) {
        values[i] = toFloat(values[i] + static_cast<double>(s) * dir[i]);
    }
}

void Tq5AxisPntCL::SaveM(TqIOCL *stream) const {
    stream->OutputRsM(values, valueCount);
}

void Tq5AxisPntCL::ReadM(TqIOCL *stream) {
    stream->InputRsM(values, valueCount);
}
