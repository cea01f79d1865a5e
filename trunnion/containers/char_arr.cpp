#include "trunnion/containers/char_arr.h"

#include <cstring>
#include <memory>
#include <string>

#include "trunnion/platform/files.h"

namespace {

constexpr char carriageReturn = 13;
constexpr char lineFeed = 10;
constexpr char blank = ' ';
constexpr int lengthBytes = 4;
constexpr int codeWriteFailed = 108;

bool isLineEnd(char c) {
    return c == carriageReturn || c == lineFeed;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

} // namespace

CharArr::~CharArr() = default;

int CharArr::FindItemM(char c, int *idx, int from) const {
    const char *end = data() + bound;
    const char *found = std::find(data() + std::clamp(from, 0, bound), end, c);
    *idx = found != end ? static_cast<int>(found - data()) : SL_DELETED_INT;
    return found != end ? 1 : 0;
}

// Both counts of a content that is all in use; bytes that fall out of use become empty.
void CharArr::setLength(int length) {
    setCounts(length, length);
}

// Text of a file.

int CharArr::ReadFileM(const char *path, int offset) {
    const File file(trunnion::detail::openFile(path, "rb"));
    if (!file || offset < 0) {
        return 0;
    }
    const long long length = trunnion::detail::remainingBytes(file.get());
    if (length + offset > INT_MAX - Base::capacity) {
        return 0;
    }
    InitialSizeM(static_cast<int>(length) + offset);
    const std::size_t taken =
        std::fread(data() + offset, 1, static_cast<std::size_t>(length), file.get());
    setLength(offset + static_cast<int>(taken));
    return 1;
}

void CharArr::SaveFileM(const char *path) const {
    const trunnion::detail::WritableWhile writable(path);
    File file(trunnion::detail::openFile(path, "wb"));
    const std::size_t length = static_cast<std::size_t>(bound);
    if (!file || std::fwrite(data(), 1, length, file.get()) != length ||
        std::fclose(file.release()) != 0) {
        throw codeWriteFailed;
    }
}

int CharArr::GetOneLineM(int start, int len, char *out, int keepEnd) const {
    if (start < 0 || start >= bound) {
        return 0;
    }
    const char *bytes = data();
    int count;
    long long position;
    if (len > 0) {
        count = std::min(len, bound - start);
        position = static_cast<long long>(start) + len + 1;
    } else {
        const char *end = std::find_if(bytes + start, bytes + bound, isLineEnd);
        count = static_cast<int>(end - bytes) - start;
        position = start + count;
    }
    out = std::copy_n(bytes + start, count, out);
    if (keepEnd != 0 && position < bound && isLineEnd(bytes[position])) {
        *out++ = bytes[position];
        if (position + 1 < bound && bytes[position + 1] == lineFeed) {
            *out++ = lineFeed;
        }
    }
    *out = '\0';
    return 1;
}

void CharArr::AddProgNoM(int no) {
    std::string number = std::to_string(no);
    if (bound > 0 && data()[0] == 'O') {
        for (int i = 1; i < bound && isDigit(data()[i]); ++i) {
            DelItemM(i);
        }
    } else {
        InsertItemM('O', 0);
        number += {carriageReturn, lineFeed};
    }
    int slot = 1;
    for (const char c : number) {
        InsertItemM(c, slot++);
    }
    PurgeDeletedItemM();
}

int CharArr::TrimL() {
    const char *first = std::find_if(data(), data() + bound, [](char c) { return c != blank; });
    const int leading = static_cast<int>(first - data());
    if (leading > 0) {
        std::copy(data() + leading, data() + bound, data());
        setLength(bound - leading);
    }
    return 1;
}

int CharArr::TrimR() {
    int length = bound;
    while (length > 1 && data()[length - 1] == blank) {
        --length;
    }
    setLength(length);
    return 1;
}

int CharArr::delCarrageReturnM(int pos) {
    if (pos < 0 || pos >= bound || !isLineEnd(data()[pos])) {
        return 1;
    }
    const bool isPair =
        data()[pos] == carriageReturn && pos + 1 < bound && data()[pos + 1] == lineFeed;
    return DelStringM(pos, isPair ? 2 : 1);
}

// Strings.

int CharArr::SetNewStrM(const char *s) {
    SetValueM(static_cast<int>(std::strlen(s)) + 1, s);
    return 1;
}

int CharArr::GetCurStrM(char *out) const {
    *std::copy_n(data(), bound, out) = '\0';
    return 1;
}

void CharArr::SetValueM(int n, const char *bytes) {
    const std::string kept(bytes,
                           static_cast<std::size_t>(std::max(n, 0))); // may be part of the content
    DelAllVirtualM();
    InitialSizeM(n);
    std::copy(kept.begin(), kept.end(), data());
    setLength(static_cast<int>(kept.size()));
}

int CharArr::InsertStringM(int pos, const char *bytes, int n) {
    if (n < 1 || pos < 0 || pos > bound) {
        return 0;
    }
    const std::string kept(bytes, static_cast<std::size_t>(n)); // may be part of the content
    if (n > capacity - bound) {
        AddSizeM(n);
    }
    const bool beforeTerminator = pos == bound && bound >= 1 && data()[bound - 1] == '\0';
    char *at = data() + (beforeTerminator ? pos - 1 : pos);
    std::copy_backward(at, data() + bound, data() + bound + n);
    std::copy(kept.begin(), kept.end(), at);
    bound += n;
    available += n;
    return 1;
}

int CharArr::DelStringM(int pos, int n) {
    if (n < 0) {
        throw 0;
    }
    if (pos < 0 || pos > bound - n) {
        return 1;
    }
    char *first = data() + pos;
    const int live = static_cast<int>(std::count_if(first, first + n, isLive));
    std::copy(first + n, data() + bound, first);
    setCounts(bound - n, available - live);
    return 1;
}

// Messages.

int CharArr::append(const void *bytes, int n) {
    const std::string kept(static_cast<const char *>(bytes), static_cast<std::size_t>(n));
    if (n > capacity - bound) {
        AddSizeM(static_cast<int>(std::min<long long>(
            INT_MAX, std::max<long long>(capacity, static_cast<long long>(increment) + bound + n -
                                                       capacity))));
    }
    std::copy(kept.begin(), kept.end(), data() + bound);
    bound += n;
    available += n;
    return 1;
}

int CharArr::AddContentM(int value) {
    return append(&value, sizeof value);
}

int CharArr::AddContentUM(unsigned int value) {
    return append(&value, sizeof value);
}

int CharArr::AddContentM(float value) {
    return append(&value, sizeof value);
}

int CharArr::AddContentM(double value) {
    return append(&value, sizeof value);
}

int CharArr::AddContentM(struct tagPOINT value) {
    return append(&value, sizeof value);
}

int CharArr::AddContent3vfM(const float *value) {
    return append(value, 3 * sizeof *value);
}

int CharArr::AddContentM(char value) {
    return append(&value, sizeof value);
}

int CharArr::AddContentM(short value) {
    return append(&value, sizeof value);
}

int CharArr::AddContentM(const char *s) {
    return append(s, static_cast<int>(std::strlen(s)));
}

int CharArr::AddContentvcM(const char *bytes, int n, int withLength) {
    if (n < 0) {
        return 1;
    }
    const long long needed = static_cast<long long>(bound) + n + lengthBytes;
    if (needed > capacity) {
        // Room for a length is kept whether or not one is written.
        AddSizeM(
            static_cast<int>(std::min<long long>(INT_MAX, std::max<long long>(capacity, n + 4LL))));
    }
    if (withLength != 0) {
        AddContentM(n);
    }
    return append(bytes, n);
}

int CharArr::read(void *value, int size, int pos) const {
    if (pos < 0 || pos > bound - size) {
        return -1;
    }
    std::memcpy(value, data() + pos, static_cast<std::size_t>(size));
    return pos + size;
}

int CharArr::GetContentM(char *value, int pos) const {
    return read(value, sizeof *value, pos);
}

int CharArr::GetContentM(short *value, int pos) const {
    return read(value, sizeof *value, pos);
}

int CharArr::GetContentM(int *value, int pos) const {
    return read(value, sizeof *value, pos);
}

int CharArr::GetContentM(float *value, int pos) const {
    return read(value, sizeof *value, pos);
}

int CharArr::GetContentM(double *value, int pos) const {
    return read(value, sizeof *value, pos);
}

int CharArr::blockLength(int pos) const {
    int length = 0;
    const int first = GetContentM(&length, pos);
    return first >= 0 && length >= 0 && length <= bound - first ? length : -1;
}

int CharArr::GetContentM(CString &out, int pos) const {
    out.Empty();
    const int length = blockLength(pos);
    if (length < 0) {
        return -1;
    }
    out = CString(data() + pos + lengthBytes, length);
    return pos + lengthBytes + length;
}

int CharArr::GetContentvcM(char *out, int outSize, int pos) const {
    std::fill_n(out, std::max(outSize, 0), '\0');
    const int length = blockLength(pos);
    if (length < 0 || length > outSize) {
        return -1;
    }
    std::copy_n(data() + pos + lengthBytes, length, out);
    return pos + lengthBytes + length;
}

int CharArr::GetContentvcM(CharArr &out, int pos, int addZero) const {
    const int length = blockLength(pos);
    if (length < 0) {
        return -1;
    }
    const int first = pos + lengthBytes;
    if (first >= bound) {
        return first;
    }
    const std::string kept(data() + first,
                           static_cast<std::size_t>(length)); // `out` may be this array
    out.InitialSizeM(length + 1);
    char *end = std::copy(kept.begin(), kept.end(), out.data());
    if (addZero != 0) {
        *end = '\0';
    }
    out.bound = length + (addZero != 0 ? 1 : 0);
    out.available = out.bound;
    return first + length;
}

int CharArr::InsertContentM(int value, int pos) {
    const int oldBound = bound;
    if (pos < 0 || pos > oldBound) {
        return 0;
    }
    AddContentM(value); // makes the room; what it wrote is overwritten by the move
    std::copy_backward(data() + pos, data() + oldBound,
                       data() + oldBound + static_cast<int>(sizeof value));
    std::memcpy(data() + pos, &value, sizeof value);
    return 1;
}

int CharArr::DelContentM() {
    bound = 0;
    available = 0;
    return 1;
}

void CharArr::ClearWithZeroM() {
    markAll(data(), capacity);
    DelContentM();
}

int CharArr::CopyM(const CharArr &other) {
    if (this == &other) {
        return 1;
    }
    InitialSizeM(std::max(capacity, other.capacity));
    ClearWithZeroM();
    std::copy_n(other.data(), other.capacity, data());
    bound = other.bound;
    available = other.available;
    return 1;
}
