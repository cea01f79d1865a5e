// Mesh lists in text files: the lines that frame a list, and the records between them.
//
//              2,  TRIANGLE_LIST_BEGIN            head: number of records
//              0,  INDEX_OF_TRIANGLE_LIST         for each record: its slot,
//        31                                       then the record's own lines
//     ...
//     TRIANGLE_LIST_END                           end
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <span>

#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/quad_arr.h"
#include "trunnion/meshes/triangle_arr.h"
#include "trunnion/persistence/detail/text_io.h"
#include "trunnion/persistence/line_io.h"
#include "trunnion/persistence/list_tags.h"
#include "trunnion/platform/files.h"

namespace {

template <class Item>
bool isLive(const Item &item) {
    return item.IsAvailableM() == TAG_AVAILABLE;
}

// Writing

using BuildTag = int (*)(char *out, const char *name);

void writeTag(std::FILE *file, BuildTag buildTag, const char *name) {
    char tag[100];
    buildTag(tag, name);
    slFprintfS(file, "%s\n", tag);
}

void writeNumberedTag(std::FILE *file, int number, BuildTag buildTag, const char *name) {
    slFprintfD(file, "%10d,  ", number);
    writeTag(file, buildTag, name);
}

// Writes the facets that `isWritten` names, `number` of them, each by writeRecord(facet), where the
// facet is a copy: the writer of a record is not const.
template <class Item, class IsWritten, class WriteRecord>
void writeFacets(std::FILE *file, const char *name, const ItemArr<Item> &facets, int number,
                 IsWritten isWritten, WriteRecord writeRecord) {
    writeNumberedTag(file, number, slGetArrBeginStr, name);
    for (int i = 0; i < facets.GetBoundM(); ++i) {
        Item facet(*facets.GetItemPM(i));
        if (isWritten(facet)) {
            writeNumberedTag(file, i, slGetArrIndexStr, name);
            writeRecord(facet);
        }
    }
    writeTag(file, slGetArrEndStr, name);
}

template <class Item>
int writeAll(std::FILE *file, const char *name, const ItemArr<Item> &facets) {
    writeFacets(
        file, name, facets, facets.GetBoundM(), [](const Item & /*facet*/) { return true; },
        [file](Item &facet) { facet.FmWriteOzkFileM(file); });
    return 1;
}

template <class Item, class WriteRecord>
void writeLive(std::FILE *file, const char *name, const ItemArr<Item> &facets,
               WriteRecord writeRecord) {
    writeFacets(file, name, facets, facets.GetAvailableNumM(), isLive<Item>, writeRecord);
}

// Reading

// Passes over a word of any length and the white space behind it, line ends of both kinds included.
// False at the end of the file.
bool skipTag(std::FILE *file) {
    const bool isThere = trunnion::detail::scanWord(file, nullptr, 0) > 0;
    trunnion::detail::skipSpace(file);
    return isThere;
}

// A number and the tag behind it. False if either is missing.
bool readNumberedTag(std::FILE *file, int *number) {
    return slFscanfD(file, "%d, ", number) == 1 && skipTag(file);
}

// The shortest record there can be: the lines "0,T", "0", "0,0,0", "0,0,0" with their ends.
constexpr std::int64_t shortestRecord = 18;

// What `number` records can come to in the rest of the file, the last one cut short perhaps. As
// many slots as are there already cost nothing.
int limitToFile(int number, std::FILE *file, int capacity) {
    const std::int64_t held = trunnion::detail::remainingBytes(file) / shortestRecord + 1;
    return static_cast<int>(std::min<std::int64_t>(number, std::max<std::int64_t>(held, capacity)));
}

template <class Item>
void deleteLive(std::span<Item> items) {
    for (Item &item : items) {
        if (isLive(item)) {
            item.DelItemM();
        }
    }
}

// Reads one record into its slot. Returns by how much the number of live items rises, which in a
// list that was empty is nothing for a slot that the file names again.
template <class Item>
int readRecord(std::FILE *file, Item &item, bool listWasEmpty) {
    const bool isNamedAgain = listWasEmpty && isLive(item);
    item.FmReadOzkFileM(file);
    return (isLive(item) ? 1 : 0) - (isNamedAgain ? 1 : 0);
}

// Reads a list of `capacity` slots. makeRoom(n) gives all slots of the list, then at least n.
// Returns by how much the number of live items rises. A record goes to the slot that it names, also
// behind n, as those of an export with gaps do; reading ends at a number that no slot has. Live
// items in a list that was empty are left behind its bound from an earlier reading and go.
template <class Item, class MakeRoom>
int readList(std::FILE *file, int capacity, bool listWasEmpty, MakeRoom makeRoom) {
    int number = 0;
    if (!readNumberedTag(file, &number)) {
        return 0;
    }
    int gained = 0;
    if (number >= 1) {
        number = limitToFile(number, file, capacity);
        const std::span<Item> items = makeRoom(number);
        if (listWasEmpty) {
            deleteLive(items);
        }
        for (int i = 0; i < number; ++i) {
            int idx = -1;
            if (!readNumberedTag(file, &idx) || idx < 0 || idx >= std::ssize(items)) {
                return gained;
            }
            gained += readRecord(file, items[idx], listWasEmpty);
        }
    }
    skipTag(file);
    return gained;
}

} // namespace

int NodeArr::FmReadNodeLstM(std::FILE *file) {
    const int gained = readList<NodeCL>(
        file, capacity, bound == 0 && available == 0, [this](int number) -> std::span<NodeCL> {
            AddSizeM(number - capacity);
            return {changedItems(), static_cast<std::size_t>(capacity)};
        });
    available += gained;
    bound = std::min(bound + gained, capacity);
    return 1;
}

int TriangleArr::FmReadTriangleLstM(std::FILE *file) {
    available += readList<TriangleCL>(
        file, capacity, bound == 0 && available == 0, [this](int number) -> std::span<TriangleCL> {
            SetItemM(TriangleCL(), number - 1);
            return {changedItems(), static_cast<std::size_t>(capacity)};
        });
    return 1;
}

int TriangleArr::FmWriteTriangleLstToFileM(std::FILE *file) {
    return writeAll(file, "TRIANGLE", *this);
}

void TriangleArr::ExportTriangleLstDBFileM(std::FILE *file, const float *const m) const {
    writeLive(file, "Triangle", *this,
              [file, m](const TriangleCL &triangle) { triangle.ExportTriangleDBFIleM(file, m); });
}

int QuadArr::FmReadQuadLstM(std::FILE *file) {
    available += readList<QuadCL>(file, capacity, bound == 0 && available == 0,
                                  [this](int number) -> std::span<QuadCL> {
                                      SetItemM(QuadCL(), number - 1);
                                      return {changedItems(), static_cast<std::size_t>(capacity)};
                                  });
    return 1;
}

int QuadArr::FmWriteQuadLstToFileM(std::FILE *file) {
    return writeAll(file, "QUAD", *this);
}

void QuadArr::ExportQuadLstDBFileM(std::FILE *file) const {
    writeLive(file, "Quad", *this, [file](const QuadCL &quad) { quad.ExportQuadDBFileM(file); });
}
