#include "trunnion/containers/string_arr.h"

#include <cstring>

#include "trunnion/containers/detail/item_array_impl.h"

template class ItemArr<TqStringCL>;

namespace {

// Where a stands against b, as CompareStrM tells it.
int compare(const TqStringCL &a, const TqStringCL &b) {
    return b.CompareStrM(a.GetLengthM(), static_cast<const char *>(a));
}

int lengthWithTerminator(const char *s) {
    return static_cast<int>(std::strlen(s)) + 1;
}

} // namespace

TqStringCL::~TqStringCL() = default;

void TqStringCL::SetValueM(int len, const char *bytes) {
    content.SetValueM(len, bytes);
}

void TqStringCL::GetValueM(int *len, char *out) const {
    *len = GetLengthM();
    std::copy_n(content.GetContentConstPtrM(), *len, out);
}

int TqStringCL::AddStringM(const char *s) {
    SetValueM(lengthWithTerminator(s), s);
    return 1;
}

int TqStringCL::GetStringM(char *out) const {
    if (GetLengthM() == 0) {
        return 0;
    }
    const char *first = content.GetContentConstPtrM();
    *std::copy(first, std::find(first, first + GetLengthM(), '\0'), out) = '\0';
    return 1;
}

TqStringCL::operator const char *() const {
    return GetLengthM() > 0 ? content.GetContentConstPtrM() : nullptr;
}

int TqStringCL::CompareStrM(int len, const char *s) const {
    const int own = GetLengthM();
    const int common = std::clamp(len, 0, own);
    const int order =
        common > 0 ? std::memcmp(s, content.GetContentConstPtrM(), static_cast<std::size_t>(common))
                   : 0;
    const int decisive = order != 0 ? order : len - own;
    return (decisive > 0 ? 1 : 0) - (decisive < 0 ? 1 : 0);
}

int operator<(const TqStringCL &a, const TqStringCL &b) {
    return compare(a, b) < 0 ? 1 : 0;
}

int operator<=(const TqStringCL &a, const TqStringCL &b) {
    return compare(a, b) < 1 ? 1 : 0;
}

int operator==(const TqStringCL &a, const TqStringCL &b) {
    return compare(a, b) == 0 ? 1 : 0;
}

int operator>(const TqStringCL &a, const TqStringCL &b) {
    return compare(a, b) > 0 ? 1 : 0;
}

int operator>=(const TqStringCL &a, const TqStringCL &b) {
    return compare(a, b) >= 0 ? 1 : 0;
}

TqStringArr::~TqStringArr() = default;

int TqStringArr::AddStringM(int len, const char *bytes) {
    TqStringCL item(TAG_AVAILABLE);
    item.SetValueM(len, bytes);
    return AddItemM(item);
}

int TqStringArr::AddByCompM(const char *s) {
    const int found = FindStrM(s);
    return found >= 0 ? found : AddStringM(lengthWithTerminator(s), s);
}

void TqStringArr::SetValueM(int idx, int len, const char *bytes) {
    if (!holdsSlot(idx)) {
        TqStringCL item(TAG_AVAILABLE);
        item.SetValueM(len, bytes);
        SetItemM(item, idx);
        return;
    }
    TqStringCL &item = changedItems()[idx];
    available += isLive(item) ? 0 : 1;
    item.SetDeleteTagM(TAG_AVAILABLE);
    item.SetValueM(len, bytes);
}

void TqStringArr::GetValueM(int idx, int *len, char *out) const {
    if (holdsSlot(idx) && isLive(items()[idx])) {
        items()[idx].GetValueM(len, out);
        return;
    }
    *len = 0;
    *out = '\0';
}

int TqStringArr::FindStrM(const char *s) {
    const int length = lengthWithTerminator(s);
    for (int i = 0; i < std::min(available, bound); ++i) {
        if (items()[i].CompareStrM(length, s) == 0) {
            return i;
        }
    }
    return -1;
}

int TqStringArr::GetLengthM(int idx) const {
    return hasSlot(idx) ? items()[idx].GetLengthM() : 0;
}

int TqStringArr::StrCmpM(int idx, int len, const char *s) const {
    return holdsSlot(idx) && items()[idx].CompareStrM(len, s) == 0 ? 1 : 0;
}
