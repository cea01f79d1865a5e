#include "trunnion/containers/slot_array.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "trunnion/containers/detail/slot_array_impl.h"
#include "trunnion/containers/detail/slot_lists_impl.h"
#include "trunnion/containers/detail/slot_sort_impl.h"
#include "trunnion/persistence/line_io.h"
#include "trunnion/platform/files.h"
#include "trunnion/platform/large_pages.h"

namespace trunnion::detail {

namespace {

[[noreturn]] void stopOnExhaustedMemory() {
    std::fputs("trunnion: out of memory in an array\n", stderr);
    std::abort();
}

} // namespace

void *resizeBlock(void *block, long long slots, std::size_t slotBytes) {
    if (slots > INT_MAX) {
        tqErrorMessage(40);
        stopOnExhaustedMemory();
    }
    const std::size_t bytes = static_cast<std::size_t>(slots) * slotBytes;
    // A block beyond 4 GiB is more than slRealloc can be asked for.
    void *resized = bytes <= UINT_MAX ? slRealloc(block, static_cast<unsigned int>(bytes))
                                      : std::realloc(block, bytes);
    if (resized == nullptr) {
        stopOnExhaustedMemory();
    }
    preferLargePages(resized, bytes);
    return resized;
}

template class SlotArray<IntSlots>;
template class SlotArray<RealSlots>;
template class SlotArray<CharSlots>;
template class SlotArray<Int2DSlots>;
template class SlotArray<Int3DSlots>;
template class SlotArray<Int4DSlots>;
template class SlotArray<Point2DSlots>;
template class SlotArray<Point3DSlots>;
template class SlotArray<PixelSlots>;
template class ListedSlots<IntSlots>;
template class ListedSlots<RealSlots>;
template class ListedSlots<CharSlots>;
template class ListedSlots<Int2DSlots>;
template class ListedSlots<Int3DSlots>;
template class ListedSlots<Int4DSlots>;
template class ListedSlots<Point2DSlots>;
template class ListedSlots<Point3DSlots>;
template class SingleSlots<IntSlots>;
template class SingleSlots<RealSlots>;
template class SingleSlots<CharSlots>;
template class KeyedSlots<Int2DSlots>;
template class KeyedSlots<Int3DSlots>;
template class KeyedSlots<Int4DSlots>;
template class SortedSlots<Int3DSlots>;
template class SortedSlots<Int4DSlots>;

} // namespace trunnion::detail

IntArr::~IntArr() = default;
RealArr::~RealArr() = default;
Int2DArr::~Int2DArr() = default;
Int3DArr::~Int3DArr() = default;
Int4DArr::~Int4DArr() = default;
Point2DArr::~Point2DArr() = default;
PixelArr::~PixelArr() = default;

// IntArr

namespace {

// Passes over a tag of any length and the white space behind it. False at the end of the file.
bool skipTag(std::FILE *file) {
    return std::fscanf(file, "%*s") != EOF && std::fscanf(file, " ") != EOF;
}

} // namespace

void IntArr::FmInputOzkLstM(std::FILE *file) {
    int count = 0;
    if (slFscanfD(file, "%d, ", &count) != 1 || !skipTag(file) || count < 0 ||
        2LL * count > trunnion::detail::remainingBytes(file)) {
        return;
    }
    InitialSizeM(count);
    for (int i = 0; i < count; ++i) {
        int slot = 0;
        int value = 0;
        if (slFscanfD(file, "%d, ", &slot) != 1 || !skipTag(file) ||
            slFscanfD(file, "%d\n", &value) != 1) {
            return;
        }
        if (value == SL_DELETED_INT) {
            continue;
        }
        if (slot < 0 || slot >= trunnion::detail::slotNumberLimit(count)) {
            return;
        }
        SetItemM(value, slot);
    }
    skipTag(file);
}

int IntArr::FindItemM(int value, int *idx) const {
    const int *end = data() + bound;
    const int *found = std::find(data(), end, value);
    *idx = found != end ? static_cast<int>(found - data()) : SL_DELETED_INT;
    return found != end ? 1 : 0;
}

void IntArr::ChangeNodeIdxM(int oldValue, int newValue) {
    int *found = std::find(data(), data() + bound, oldValue);
    if (found != data() + bound) {
        *found = newValue;
    }
}

void IntArr::SetAllSameValueM(int value, bool all) {
    if (all) {
        claim(capacity);
        std::fill_n(data(), capacity, value);
        bound = capacity;
        available = capacity;
        return;
    }
    std::replace_if(
        data(), data() + bound, [](int held) { return held != SL_DELETED_INT; }, value);
}

void IntArr::ChangeArrangeM(int start, int dir) {
    if (start < 0 || start > std::max(bound - 1, 0) || (start == 0 && dir == 1)) {
        return;
    }
    IntArr chain;
    chain.InitialSizeM(bound);
    const int *slots = data();
    if (dir == 1) {
        for (int i = start; i <= bound - 2; ++i) {
            chain.AddItemM(slots[i]);
        }
        for (int i = 0; i <= start; ++i) {
            chain.AddItemM(slots[i]);
        }
    } else {
        for (int i = start; i >= 1; --i) {
            chain.AddItemM(slots[i]);
        }
        for (int i = bound - 1; i >= start; --i) {
            chain.AddItemM(slots[i]);
        }
    }
    *this = chain;
}

int IntArr::MergeM(const IntArr &other) {
    const int first = bound;
    const int end = other.bound;
    const long long missing =
        static_cast<long long>(std::min(other.available, end)) - capacity + bound;
    AddSizeM(static_cast<int>(std::min<long long>(INT_MAX, missing)));
    for (int i = 0; i < end; ++i) {
        if (isLive(other.data()[i])) {
            SetItemM(other.data()[i], bound);
        }
    }
    return first;
}

int IntArr::AddItemByCompareM(int value) {
    if (bound == 0) {
        return InsertItemM(value, 0);
    }
    const int *slots = data();
    int high = bound - 1;
    if (value >= slots[high]) {
        return value == slots[high] ? high : InsertItemM(value, high + 1);
    }
    int low = 0;
    if (value <= slots[low]) {
        return value == slots[low] ? low : InsertItemM(value, low);
    }
    while (high - low > 1) {
        const int mid = (low + high) / 2;
        if (value == slots[mid]) {
            return mid;
        }
        (value > slots[mid] ? low : high) = mid;
    }
    return InsertItemM(value, high);
}

int IntArr::AddItemByCompare2M(int value) {
    const int *slots = std::as_const(*this).data();
    const int slot = finder.lowest(
        {changes.rewrites, 0, changes.writerMayLive, bound}, value,
        [slots](int at) { return slots[at]; },
        [slots, value](int at) { return slots[at] == value; });
    return slot >= 0 ? slot : AddItemM(value);
}

void IntArr::MergeByCompareM(const IntArr &other) {
    if (bound == 0) {
        *this = other;
        return;
    }
    const int end = other.bound;
    for (int i = 0; i < end; ++i) {
        AddItemByCompare2M(other.data()[i]);
    }
}

// RealArr

int RealArr::FindItemM(float value, int *idx) const {
    constexpr float tolerance = 0.0001F;
    const float *end = data() + bound;
    const float *found = std::find_if(data(), end, [value](float held) {
        return std::fabs(static_cast<double>(held) - value) <= static_cast<double>(tolerance);
    });
    *idx = found != end ? static_cast<int>(found - data()) : SL_DELETED_INT;
    return found != end ? 1 : 0;
}

float RealArr::FindNearItemM(float value, int *idx) const {
    if (bound < 1) {
        *idx = SL_DELETED_INT;
        return SL_DELETED_REAL;
    }
    const float *slots = data();
    float best = std::fabs(slots[0] - value);
    *idx = 0;
    for (int i = 1; i < bound; ++i) {
        const float distance = std::fabs(slots[i] - value);
        if (distance < best) {
            best = distance;
            *idx = i;
        }
    }
    return slots[*idx];
}

void RealArr::CopyFromBufferM(const char *buf, int nbytes) {
    const int count = std::max(nbytes, 0) / static_cast<int>(sizeof(float));
    InitialSizeM(count);
    if (count > 0) {
        claim(count);
        std::memcpy(data(), buf, static_cast<std::size_t>(count) * sizeof(float));
    }
    setCounts(count, count);
}

// Int2DArr

int Int2DArr::FindIdxInLstM(int key, int *idx, int *value) const {
    *idx = SL_DELETED_INT;
    *value = SL_DELETED_INT;
    if (bound == 0) {
        return 0;
    }
    const auto report = [&](int slot) {
        *idx = slot;
        *value = slotAt(slot)[0];
        return slotAt(slot)[1] == key ? 1 : 0;
    };
    int low = 0;
    int high = bound - 1;
    int mid = high / 2;
    while (high - low > 1) {
        const int held = slotAt(mid)[1];
        if (held == key) {
            return report(mid);
        }
        (held < key ? low : high) = mid;
        mid = (high + low) / 2;
    }
    const bool beforeHigh = slotAt(low)[1] >= key || slotAt(high)[1] > key;
    return report(beforeHigh ? low : high);
}

int Int2DArr::FindItemByValueM(int which, int value, int *other) const {
    if (which != 0 && which != 1) {
        return -1;
    }
    for (int i = 0; i < bound; ++i) {
        if (slotAt(i)[which] == value) {
            *other = slotAt(i)[1 - which];
            return i;
        }
    }
    return -1;
}

// Int3DArr

int Int3DArr::FindItemByValueM(const int *walk, int value, int *other) const {
    const int step = walk[1];
    const int which = walk[2];
    const int limit = step == 1 ? bound - 1 : 0;
    long long slot = walk[0];
    if (slot >= bound && step < 0) {
        // At once to the first slot of the walk that is in use.
        slot += ((slot - bound) / -static_cast<long long>(step) + 1) * step;
    }
    if (slot < 0 || which < 0 || which >= width) {
        return -1;
    }
    for (; slot >= 0 && slot < bound && step * slot <= limit; slot += step) {
        const int *held = slotAt(static_cast<int>(slot));
        if (held[which] == value) {
            *other = which == 0 ? held[1] : held[0];
            return static_cast<int>(slot);
        }
        if (step == 0) {
            break; // a walk that stays where it is has seen all that it can see
        }
    }
    return -1;
}

int Int3DArr::FindItemByKey2M(const int *key) const {
    for (int i = 0; i < bound; ++i) {
        if (slotAt(i)[0] == key[0] && slotAt(i)[1] == key[1]) {
            return i;
        }
    }
    return -1;
}

// Int4DArr

int Int4DArr::ModifyItemM(int value, int idx, int which) {
    if (idx >= 0 && idx < capacity && which >= 0 && which < width) {
        markUpTo(idx + 1);
        slotAt(idx)[which] = value;
    }
    return 1;
}

int Int4DArr::ChangeFirstValueM(int value, int idx) {
    if (idx < 0) {
        return 1;
    }
    if (idx >= capacity) {
        const int missing = idx + 1 - capacity;
        AddSizeM(missing > increment ? increment + missing : increment);
    }
    markUpTo(idx + 1);
    available += *slotAt(idx) == SL_DELETED_INT ? 1 : 0;
    *slotAt(idx) = value;
    bound = std::max(bound, idx + 1);
    return 1;
}

// Point2DArr

int Point2DArr::CheckCcwM() {
    float sum = 0.0F;
    for (int i = 1; i <= bound - 2; ++i) {
        const float *previous = slotAt(i - 1);
        const float *current = slotAt(i);
        const double cross = static_cast<double>(previous[0]) * current[1] -
                             static_cast<double>(current[0]) * previous[1];
        sum = static_cast<float>(sum + cross);
    }
    return sum > 0.0F ? 0 : 1;
}

void Point2DArr::GetScopeM(float *xRange, float *yRange) const {
    float *const ranges[2] = {xRange, yRange};
    for (float *range : ranges) {
        range[0] = -SL_DELETED_REAL;
        range[1] = SL_DELETED_REAL;
    }
    for (int i = 0; i < bound; ++i) {
        const float *point = slotAt(i);
        if (!(point[0] > trunnion::detail::pointLiveLimit) ||
            !(point[1] > trunnion::detail::pointLiveLimit)) {
            continue;
        }
        for (int axis = 0; axis < 2; ++axis) {
            ranges[axis][0] = point[axis] < ranges[axis][0] ? point[axis] : ranges[axis][0];
            ranges[axis][1] = point[axis] > ranges[axis][1] ? point[axis] : ranges[axis][1];
        }
    }
}
