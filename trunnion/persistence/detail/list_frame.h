// What the lists of slots and of items share when they go through a text stream.
#pragma once

#include <string>

class TqIOCL;

namespace trunnion::detail {

// Writes the tag lines of a list. `headFormat` takes a number and a text, in this order: the
// stream's own, or the one of the item lists.
class ListFrameWriter {
public:
    ListFrameWriter(TqIOCL &target, std::string headFormat, const char *listName)
        : stream(target), format(std::move(headFormat)), name(listName) {}

    void begin(int bound) const;
    void index(int slot) const;
    void end() const;

private:
    void headLine(int number, const std::string &tag) const;

    TqIOCL &stream;
    std::string format;
    std::string name;
};

// The head line format of the slot arrays, which follows the stream's separator.
std::string streamHeadFormat(TqIOCL &stream);

// Switches the automatic line end on and returns what was set before, for the caller to put back. A
// failure in between leaves it on: whoever catches the failure decides what becomes of the stream.
int forceAutoNewLine(TqIOCL &stream);

// Throws 107 for a slot number that is not from 0 to limit - 1.
void requireSlot(int slot, int limit);

} // namespace trunnion::detail
