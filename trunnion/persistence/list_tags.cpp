#include "trunnion/persistence/list_tags.h"

#include <cstdio>
#include <cstring>

#include "trunnion/persistence/detail/list_frame.h"
#include "trunnion/persistence/detail/stream_access.h"
#include "trunnion/persistence/stream.h"

namespace {

std::string beginTag(const std::string &name) {
    return name + "_LIST_BEGIN";
}

std::string indexTag(const std::string &name) {
    return "INDEX_OF_" + name + "_LIST";
}

std::string endTag(const std::string &name) {
    return name + "_LIST_END";
}

int copyOut(char *out, const std::string &tag) {
    std::memcpy(out, tag.c_str(), tag.size() + 1);
    return 1;
}

} // namespace

int slGetArrBeginStr(char *out, const char *name) {
    return copyOut(out, beginTag(name));
}

int slGetArrIndexStr(char *out, const char *name) {
    return copyOut(out, indexTag(name));
}

int slGetArrEndStr(char *out, const char *name) {
    return copyOut(out, endTag(name));
}

namespace trunnion::detail {

void ListFrameWriter::begin(int bound) const {
    headLine(bound, beginTag(name));
}

void ListFrameWriter::index(int slot) const {
    headLine(slot, indexTag(name));
}

void ListFrameWriter::end() const {
    stream.OutputSM(endTag(name).c_str(), -1, 1);
}

void ListFrameWriter::headLine(int number, const std::string &tag) const {
    const int length = std::snprintf(nullptr, 0, format.c_str(), number, tag.c_str());
    std::string line(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(line.data(), line.size(), format.c_str(), number, tag.c_str());
    stream.OutputSM(line.c_str(), -1, 1);
}

std::string streamHeadFormat(TqIOCL &stream) {
    char format[128]; // a print format, a separator, each below 50, and "%s"
    stream.GetFmtStrM(format);
    return format;
}

int forceAutoNewLine(TqIOCL &stream) {
    const int noted = stream.GetAutoNewLineM();
    stream.SetAutoNewLineM(1);
    return noted;
}

void requireSlot(int slot, int limit) {
    if (slot < 0 || slot >= limit) {
        throw readFailed;
    }
}

} // namespace trunnion::detail
