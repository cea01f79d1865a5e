#include "trunnion/persistence/list_tags.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "trunnion/persistence/detail/list_frame.h"
#include "trunnion/persistence/detail/number_text.h"
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

ListFrameWriter::ListFrameWriter(TqIOCL &target, std::string headFormat, const char *listName)
    : stream(target),
      format(std::move(headFormat)),
      name(listName),
      indexTag(::indexTag(name)),
      numberWidth(-1) {
    for (const auto &[number, width] : {std::pair("%10d", 10), std::pair("%d", 0)}) {
        const std::string_view joined = format;
        if (joined.starts_with(number) && joined.ends_with("%s") &&
            std::count(format.begin(), format.end(), '%') == 2) {
            numberWidth = width;
            behindIndex = joined.substr(std::strlen(number));
            behindIndex.replace(behindIndex.size() - 2, 2, indexTag);
        }
    }
}

void ListFrameWriter::begin(int bound) {
    headLine(bound, beginTag(name));
}

void ListFrameWriter::index(int slot) {
    if (numberWidth < 0) {
        headLine(slot, indexTag);
        return;
    }
    char number[longestNumber];
    line.assign(number, printInteger(number, slot, numberWidth)).append(behindIndex);
    stream.OutputSM(line.c_str(), -1, 1);
}

void ListFrameWriter::end() {
    stream.OutputSM(endTag(name).c_str(), -1, 1);
}

void ListFrameWriter::headLine(int number, const std::string &tag) {
    const int length = std::snprintf(nullptr, 0, format.c_str(), number, tag.c_str());
    line.resize(static_cast<std::size_t>(length) + 1);
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
