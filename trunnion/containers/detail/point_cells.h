// Finds the lowest slot of a list whose point lies near a given one: a hash of cells in space
// beside the list, where a scan would visit every slot.
//
// It only proposes, the list compares. SlotFinder decides when it is used.
//
// Memory: a table of 64 bytes for 12 places, between a third and two thirds of them in use: 8 to 16
// bytes for each point, or 4 to 8 where a coordinate is not finite.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "trunnion/containers/detail/lanes.h"
#include "trunnion/containers/detail/table.h"
#include "trunnion/geometry/detail/vec.h"

namespace trunnion::detail {

inline bool isFinitePoint(const float *point) {
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

// Slots by the cell of their point, in an open table of buckets with linear probing. An entry that
// no longer holds (its slot was deleted or lies behind the bound) does no harm, as every proposal
// is compared with the list.
//
// Cells are cubes, at first 256 times as long as the reach, so that a search seldom touches more
// than one. The cells of a block, a cube of cells, share a bucket, a cache line of the table, so
// that a walk over neighbouring points finds its entries in the memory that it touched last; blocks
// grow as long as their points find room there. Where buckets are full, blocks shrink again, and
// where many points share a cell, cells do, down to 4 times the reach. If they do even there,
// points that repeat an earlier one to the bit are left out: the lower slot answers for them.
class PointCells {
public:
    PointCells() { setCellSize(firstCellSize); }

    // Slots seen so far: enter() goes on behind them.
    int seen() const { return seenSlots; }

    // Sees the slots up to `bound`. `pointAt(slot)` gives the point, or null for a slot that no
    // search may find. Throws std::bad_alloc; the table is then of no use.
    template <class PointAt>
    void enter(int bound, PointAt pointAt) {
        for (; seenSlots < bound; ++seenSlots) {
            if (const float *point = pointAt(seenSlots)) {
                enterOne(point, seenSlots, pointAt);
            }
        }
    }

    // Whether the table lists every slot of its points, not the lowest of equal ones only. It
    // otherwise is of no use after a deletion.
    bool isComplete() const { return !leavesOutEqual; }

    // The lowest slot among those near `point`, which is finite, that passes `matches(slot)`, or
    // -1.
    template <class Matches>
    int lowest(const float *point, Matches matches) const {
        const Vec3 at = inCells(point);
        const Cell cell = cellAt(at);
        // All that can match lies in this cell, whose slots the table has in ascending order.
        return isInside(at, cell) && isPlain ? firstIn(homeOf(cell), matches)
                                             : lowestAround(at, matches);
    }

private:
    static constexpr double reach = 1e-4;          // points that match are nearer along every axis
    static constexpr double firstCellSize = 256.0; // in reaches
    static constexpr double lastCellSize = 4.0;
    static constexpr std::uint8_t freeMark = 0;
    static constexpr std::size_t fewestBuckets = 16;
    static constexpr std::size_t mostInBucket = 8; // on the average
    static constexpr int firstBlockBits = 4;
    static constexpr int lastBlockBits = 40;
    // The table counts as crowded when one entry in so many, on the average, meets a full bucket,
    // or when an entry meets more than so many of its own cell.
    static constexpr std::size_t entriesToFull = 8;
    static constexpr std::size_t mostMates = 3;
    // Round coordinates, which designs are full of, stay away from the faces of the cells.
    static constexpr double offset = 0.381966;

    // Places for slots, a cache line of them: taken in order, and looked through at once for those
    // with a mark.
    struct alignas(64) Bucket {
        static constexpr int places = 12;
        static constexpr unsigned int allPlaces = (1U << places) - 1;

        // The places that hold a mark; that of the free ones is 0.
        unsigned int with(std::uint8_t mark) const {
            return equalOfSixteen(marks, mark) & allPlaces;
        }
        void clear() { std::fill_n(marks, sizeof marks, freeMark); }

        // Of the cells: they tell most others without a look at their points.
        std::uint8_t marks[16];
        int slots[places];
    };

    void setCellSize(double size) {
        cellSize = size;
        cellsPerLength = 1.0 / (size * reach);
        reachInCells = 1.001 / size; // more than any rounding of a search
    }

    // The numbers of a cell along the axes.
    struct Cell {
        std::uint64_t x, y, z;
    };
    Vec3 inCells(const float *point) const {
        return cellsPerLength * load3(point) + Vec3{offset, offset, offset};
    }
    // A number is the bits of a double: adding 1.5 * 2^52 rounds to an integer. Beyond 2^51 cells
    // it does not, but there two coordinates are equal or much further apart than the reach.
    static constexpr double toInteger = 0x1.8p52;
    static std::uint64_t cellNumber(double at) {
        return std::bit_cast<std::uint64_t>(at + toInteger);
    }
    static Cell cellAt(const Vec3 &at) {
        return {cellNumber(at.x), cellNumber(at.y), cellNumber(at.z)};
    }
    // Whether all within the reach lies in the cell too.
    bool isInside(const Vec3 &at, const Cell &cell) const {
        const auto fromMiddle = [](double along, std::uint64_t number) {
            return std::fabs(along - (std::bit_cast<double>(number) - toInteger));
        };
        const double furthest = std::max(
            {fromMiddle(at.x, cell.x), fromMiddle(at.y, cell.y), fromMiddle(at.z, cell.z)});
        return furthest < 0.5 - reachInCells;
    }
    static std::uint64_t sumOf(std::uint64_t x, std::uint64_t y, std::uint64_t z) {
        return x * 0x9E3779B97F4A7C15U + y * 0xC2B2AE3D27D4EB4FU + z * 0x165667B19E3779F9U;
    }

    // Where the entries of a cell begin, which is where those of its block do, and their mark.
    struct Home {
        std::size_t bucket;
        std::uint8_t mark;
    };
    Home homeOf(const Cell &cell) const {
        std::uint64_t block = sumOf(cell.x >> blockBits, cell.y >> blockBits, cell.z >> blockBits);
        block = (block ^ block >> 32) * 0xD6E8FEB86659FD93U;
        const auto mark = static_cast<std::uint8_t>(sumOf(cell.x, cell.y, cell.z) >> 56);
        return {static_cast<std::size_t>(block >> 32) & lastBucket,
                static_cast<std::uint8_t>(mark + (mark == freeMark ? 1 : 0))};
    }
    std::size_t next(std::size_t bucket) const { return (bucket + 1) & lastBucket; }

    // The first slot behind the cell's home that carries its mark and matches, or -1.
    template <class Matches>
    int firstIn(const Home &home, Matches matches) const {
        for (std::size_t at = home.bucket;; at = next(at)) {
            const Bucket &bucket = table[at];
            for (unsigned int left = bucket.with(home.mark); left != 0; left &= left - 1) {
                const int slot = bucket.slots[std::countr_zero(left)];
                if (matches(slot)) {
                    return slot;
                }
            }
            if (bucket.with(freeMark) != 0) {
                return -1;
            }
        }
    }

    // The lowest slot that matches among the odd ones and in the cells that the reach touches.
    template <class Matches>
    __attribute__((noinline)) int lowestAround(const Vec3 &at, Matches matches) const {
        int best = -1;
        const auto propose = [&](int slot) {
            if ((best < 0 || slot < best) && matches(slot)) {
                best = slot;
            }
        };
        std::for_each(odd.begin(), odd.end(), propose);
        if (!table.empty()) {
            visitBox(at, propose);
        }
        return best;
    }

    // Every slot behind the home with its mark.
    template <class Propose>
    void visit(const Home &home, Propose propose) const {
        firstIn(home, [&propose](int slot) {
            propose(slot);
            return false;
        });
    }
    // How far along an axis a point may match: not at all so far out that floats lie further apart
    // than the reach, and numbers of cells could round past the cell itself.
    double reachAt(double along) const { return std::fabs(along) < 0x1p50 ? reachInCells : 0.0; }
    // Those in the cells at the corners of the box that is within the reach.
    template <class Propose>
    void visitBox(const Vec3 &at, Propose propose) const {
        const Vec3 reaches{reachAt(at.x), reachAt(at.y), reachAt(at.z)};
        const Cell low = cellAt(at - reaches);
        const Cell high = cellAt(at + reaches);
        for (int corner = 0; corner < 8; ++corner) {
            const bool isHighX = (corner & 1) != 0;
            const bool isHighY = (corner & 2) != 0;
            const bool isHighZ = (corner & 4) != 0;
            const bool isNew = !(isHighX && low.x == high.x) && !(isHighY && low.y == high.y) &&
                               !(isHighZ && low.z == high.z);
            if (isNew) {
                visit(homeOf({isHighX ? high.x : low.x, isHighY ? high.y : low.y,
                              isHighZ ? high.z : low.z}),
                      propose);
            }
        }
    }

    template <class PointAt>
    void enterOne(const float *point, int slot, PointAt pointAt) {
        if (!isFinitePoint(point)) {
            odd.push_back(slot);
            isPlain = false;
            return;
        }
        if (used + 1 > mostInBucket * table.size()) {
            blockBits += !isSettled && !table.empty() && blockBits < lastBlockBits ? 1 : 0;
            resize(std::max(fewestBuckets, 2 * table.size()));
            enterAgain(slot, pointAt);
            isPlain = odd.empty();
        }
        place(point, slot, pointAt);
        if (isCrowded()) {
            enterAgain(slot + 1, pointAt);
        }
    }

    bool isOverfull() const { return entriesToFull * full > used + 64; }
    bool isCrowded() const {
        return (isOverfull() || mates > mostMates * (used + 64)) && !isFinest();
    }
    bool isFinest() const { return blockBits == 0 && cellSize <= lastCellSize && leavesOutEqual; }
    void makeFiner() {
        isSettled = true;
        if (blockBits > 0 && (isOverfull() || leavesOutEqual)) {
            --blockBits;
        } else if (cellSize > lastCellSize) {
            setCellSize(cellSize / 4.0);
        } else {
            leavesOutEqual = true;
        }
    }

    template <class PointAt>
    void place(const float *point, int slot, PointAt pointAt) {
        const Home home = homeOf(cellAt(inCells(point)));
        for (std::size_t at = home.bucket;; at = next(at)) {
            Bucket &bucket = table[at];
            for (unsigned int left = bucket.with(home.mark); left != 0; left &= left - 1) {
                const float *held = pointAt(bucket.slots[std::countr_zero(left)]);
                if (leavesOutEqual && held != nullptr && std::equal(point, point + 3, held)) {
                    return;
                }
                ++mates;
            }
            if (const unsigned int free = bucket.with(freeMark); free != 0) {
                const int first = std::countr_zero(free);
                bucket.marks[first] = home.mark;
                bucket.slots[first] = slot;
                ++used;
                return;
            }
            ++full;
        }
    }

    void resize(std::size_t buckets) { // to a power of two
        table = Table<Bucket>();       // the old one makes room first
        table.resize(buckets);
        lastBucket = buckets - 1;
    }
    // Enters the finite points of the slots up to `end` into the table anew, ever finer until they
    // do not crowd.
    template <class PointAt>
    void enterAgain(int end, PointAt pointAt) {
        do {
            if (isCrowded()) {
                makeFiner();
            }
            std::for_each(table.begin(), table.end(), [](Bucket &bucket) { bucket.clear(); });
            used = 0;
            full = 0;
            mates = 0;
            for (int slot = 0; slot < end && !isCrowded(); ++slot) {
                const float *point = pointAt(slot);
                if (point != nullptr && isFinitePoint(point)) {
                    place(point, slot, pointAt);
                }
            }
        } while (isCrowded());
    }

    Table<Bucket> table;
    std::vector<int> odd; // slots of points that are not finite
    std::size_t used = 0;
    std::size_t full = 0;       // buckets that the entries met full
    std::size_t mates = 0;      // others of their cell that the entries met
    std::size_t lastBucket = 0; // the number of buckets is a power of two
    int blockBits = firstBlockBits;
    int seenSlots = 0;
    bool isSettled = false; // blocks were too great once: they grow no more
    bool leavesOutEqual = false;
    bool isPlain = false; // there is a table, and no point that is not in it
    double cellSize = 0;  // in reaches
    double cellsPerLength = 0;
    double reachInCells = 0;
};

} // namespace trunnion::detail
