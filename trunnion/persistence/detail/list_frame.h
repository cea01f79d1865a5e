// What the lists of slots and of items share when they go through a text stream.
#pragma once

#include <string>

class TqIOCL;

namespace trunnion::detail {

// Writes the tag lines of a list. `headFormat` takes a number and a text, in this order: the
// stream's own, or the one of the item lists.
class ListFrameWriter {
public:
    ListFrameWriter(TqIOCL &target, std::string headFormat, const char *listName);

    void begin(int bound);
    void index(int slot);
    void end();

private:
    void headLine(int number, const std::string &tag);

    TqIOCL &stream;
    std::string format;
    std::string name;
    std::string indexTag;
    // Where the format is the usual one, "%10d" or "%d" and what a tag is joined on with: the width
    // of the number and what stands behind it in an index line. Else the width is negative.
    int numberWidth;
    std::string behindIndex;
    std::string line; // its memory serves every line
};

// The head line format of the slot arrays, which follows the stream's separator.
std::string streamHeadFormat(TqIOCL &stream);

// Switches the automatic line end on and returns what was set before, for the caller to put back. A
// failure in between leaves it on: whoever catches the failure decides what becomes of the stream.
int forceAutoNewLine(TqIOCL &stream);

// Throws 107 for a slot number that is not from 0 to limit - 1.
void requireSlot(int slot, int limit);

} // namespace trunnion::detail
