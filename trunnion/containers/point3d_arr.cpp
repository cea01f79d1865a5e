#include "trunnion/containers/point3d_arr.h"

#include <utility>

#include "trunnion/containers/detail/transform_points.h"
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/platform/files.h"

using trunnion::detail::belowTolerance;
using trunnion::detail::isFinitePoint;

namespace {

constexpr int pointBytes = 3 * static_cast<int>(sizeof(float));

// Within the box of the tolerance, its faces excluded. A difference that is no number counts as 0.
bool isSamePoint(const float *a, const float *b) {
    for (int axis = 0; axis < 3; ++axis) {
        if (!belowTolerance(static_cast<double>(a[axis]) - b[axis], SL_ZERO_D)) {
            return false;
        }
    }
    return true;
}

} // namespace

Point3DArr::~Point3DArr() = default;

int Point3DArr::IsPntAvailableM(int idx) const {
    const bool isMarked = idx >= 0 && idx < marked; // those behind are as good as empty
    return isMarked && *slotAt(idx) > SL_LIVE_REAL_LIMIT ? TAG_AVAILABLE : TAG_UNUSED;
}

int Point3DArr::AddPointM(float *const p) {
    const float *points = std::as_const(*this).data();
    const auto pointAt = [points](int slot) {
        return points + static_cast<std::ptrdiff_t>(slot) * width;
    };
    const auto isSame = [pointAt, p](int slot) { return isSamePoint(pointAt(slot), p); };
    const int slot = isFinitePoint(p)
                         ? finder.lowest({changes.rewrites, 0, changes.writerMayLive, bound},
                                         static_cast<const float *>(p), pointAt, isSame)
                         : finder.scan(bound, isSame);
    return slot >= 0 ? slot : AddItemM(p);
}

int Point3DArr::GetVertexM(int n, int *idx, float (*out)[3]) const {
    for (int i = 0; i < n; ++i) {
        GetItemM(out[i], idx[i]);
    }
    return 1;
}

int Point3DArr::GetLastM(float *const out, int *idx) const {
    return GetPreviousM(out, idx, bound);
}

int Point3DArr::GetPreviousM(float *const out, int *idx, int before) const {
    for (int i = std::min(before, bound) - 1; i >= 0; --i) {
        if (IsPntAvailableM(i) == TAG_AVAILABLE) {
            *idx = i;
            return GetItemM(out, i);
        }
    }
    std::fill_n(out, 3, SL_DELETED_REAL);
    *idx = SL_DELETED_INT;
    return -1;
}

int Point3DArr::CancelLastItemM() {
    DelItemM(bound - 1);
    return bound;
}

void Point3DArr::SetItemZValueM(int idx, float z) {
    if (idx >= 0 && idx < bound) {
        slotAt(idx)[2] = z;
    }
}

int Point3DArr::AppendPntsM(const Point3DArr &other) {
    const int taken = other.bound;
    const long long needed = static_cast<long long>(bound) + taken - capacity;
    AddSizeM(static_cast<int>(std::min<long long>(needed, INT_MAX)));
    markUpTo(bound + taken);
    for (int k = 0; k < taken; ++k) {
        if (isLive(*other.slotAt(k))) {
            std::copy_n(other.slotAt(k), 3, slotAt(bound + k));
        }
    }
    bound += taken;
    available = bound;
    return 1;
}

void Point3DArr::FmOutputLstM(std::FILE *f) const {
    std::fwrite(data(), pointBytes, static_cast<std::size_t>(bound), f);
}

void Point3DArr::FmInputLstM(std::FILE *f, int n) {
    const long long held = trunnion::detail::remainingBytes(f) / pointBytes;
    const int wanted = static_cast<int>(std::clamp<long long>(n, 0, held));
    InitialSizeM(wanted);
    const auto taken =
        static_cast<int>(std::fread(data(), pointBytes, static_cast<std::size_t>(wanted), f));
    claim(taken);
    setCounts(taken, taken);
}

void Point3DArr::TransByMatrixM(const float *m, int isVector) {
    trunnion::detail::transformPoints(m, isVector == 0, data(), bound);
}
