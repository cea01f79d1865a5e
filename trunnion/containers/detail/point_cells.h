// Finds the lowest slot of a list whose point lies near a given one: a hash of cells in space
// beside the list, where a scan would visit every slot.
//
// It only proposes, the list compares. SlotFinder decides when it is used.
//
// Memory: 64 bytes for every 12 points of a block and 24 to 48 for the block itself: 10 to 24 bytes
// for each point where neighbours follow each other, as in a mesh; at most 80 where most blocks
// hold but two; 4 to 8 where a coordinate is not finite.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "trunnion/containers/detail/slot_buckets.h"
#include "trunnion/geometry/detail/vec.h"

namespace trunnion::detail {

inline bool isFinitePoint(const float *point) {
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

// Slots by the cell of their point. An entry that no longer holds (its slot was deleted or lies
// behind the bound) does no harm, as every proposal is compared with the list.
//
// Cells are cubes, at first 256 times as long as the reach, so that a search seldom touches more
// than one. The cells of a block, a cube of cells, share a bucket, so that a walk over neighbouring
// points finds its entries in the memory that it touched last. Blocks begin with a few times the
// distance of the first points in the list, grow where most hold few points, and shrink where many
// need more than a bucket. Where many points share a cell, cells shrink, too, down to 4 times the
// reach. If many do even there, points that repeat an earlier one to the bit are left out: the
// lower slot answers for them.
class PointCells {
public:
    PointCells() {
        setCellSize(firstCellSize);
        setEdge(16.0);
    }

    // Slots seen so far: enter() goes on behind them.
    int seen() const { return seenSlots; }

    // Sees the slots up to `bound`. `pointAt(slot)` gives the point, or null for a slot that no
    // search may find. Throws std::bad_alloc; this is then of no use.
    template <class PointAt>
    void enter(int bound, PointAt pointAt) {
        if (seenSlots == 0) {
            chooseFirstEdge(bound, pointAt);
        }
        for (; seenSlots < bound; ++seenSlots) {
            if (const float *point = pointAt(seenSlots)) {
                enterOne(point, seenSlots, pointAt);
            }
        }
    }

    // Whether every slot was entered, not the lowest of equal points only. Otherwise this is of no
    // use after a deletion.
    bool isComplete() const { return !leavesOutEqual; }

    // The lowest slot among those near `point`, which is finite, that passes `matches(slot)`, or
    // -1.
    template <class Matches>
    int lowest(const float *point, Matches matches) const {
        const Vec3 at = inCells(point);
        const Cell cell = cellAt(at);
        // All that can match lies in this cell, whose slots were entered in ascending order.
        return isInside(at, cell) && isPlain ? buckets.first(keyOf(cell), matches)
                                             : lowestAround(at, matches);
    }

private:
    static constexpr double reach = 1e-4;          // points that match are nearer along every axis
    static constexpr double firstCellSize = 256.0; // in reaches
    static constexpr double lastCellSize = 4.0;
    // The edge of a block in distances of neighbouring points. On a surface it gives 4 to 9 points
    // for the 12 places of a bucket.
    static constexpr double firstEdge = 3.0;
    static constexpr int sampleSize = 64; // slots that tell the distance
    static constexpr std::uint64_t longestEdge = std::uint64_t{1} << 31;
    // Where blocks hold fewer points on the average, they grow to hold about as many as wanted.
    static constexpr std::size_t fewestInBlock = 3;
    static constexpr double wantedInBlock = 4.5;
    static constexpr std::size_t fewBlocks = 512; // whose size matters little
    // Slots count as crowded when one in so many meets a full bucket, or when they meet more than
    // so many of their cell, on the average.
    static constexpr std::size_t slotsToFull = 6;
    static constexpr std::size_t mostMates = 3;
    static constexpr double gentleShrinking = 0.75; // of the edge of crowded blocks
    // Round coordinates, which designs are full of, stay away from the faces of the cells.
    static constexpr double offset = 0.381966;

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
    // A number is the bits of a double: adding 1.5 * 2^52 rounds to an integer. Beyond 2^50 cells
    // it may not, but there two coordinates are equal or much further apart than the reach. The
    // lower half of the bits grows along an axis, for the blocks; 2^31 more keeps the places where
    // it starts again away from the origin.
    static constexpr double toInteger = 0x1.8p52 + 0x1p31;
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

    // The powers of the golden ratio's sibling for three dimensions (M. Roberts: The unreasonable
    // effectiveness of quasirandom sequences): neighbours differ much in the highest bits.
    static std::uint64_t spread(std::uint64_t x, std::uint64_t y, std::uint64_t z) {
        return x * 0xD1B54A32D192ED03U + y * 0xABC98388FB8FAC03U + z * 0x8CB92BA72F3D8DD7U;
    }
    // Any function of the cell's number serves: two blocks so far apart that the lower halves of
    // the bits repeat may be one.
    std::uint64_t blockNumber(std::uint64_t cell) const {
        return (cell & 0xFFFFFFFFU) * blocksPerCell >> 32;
    }
    SlotBuckets::Key keyOf(const Cell &cell) const {
        const std::uint64_t block =
            spread(blockNumber(cell.x), blockNumber(cell.y), blockNumber(cell.z));
        return {static_cast<std::uint32_t>(block >> 32), markOf(cell)};
    }
    static std::uint8_t markOf(const Cell &cell) {
        const auto mark = static_cast<std::uint8_t>(spread(cell.x, cell.y, cell.z) >> 56);
        return static_cast<std::uint8_t>(mark + (mark == 0 ? 1 : 0));
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
        if (buckets.slots() != 0) {
            visitBox(at, propose);
        }
        return best;
    }

    template <class Propose>
    void visit(const SlotBuckets::Key &key, Propose propose) const {
        buckets.first(key, [&propose](int slot) {
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
                visit(keyOf({isHighX ? high.x : low.x, isHighY ? high.y : low.y,
                             isHighZ ? high.z : low.z}),
                      propose);
            }
        }
    }

    void setEdge(double cells) {
        edge = static_cast<std::uint64_t>(std::clamp(cells, 1.0, static_cast<double>(longestEdge)));
        blocksPerCell = (std::uint64_t{1} << 32) / edge;
    }
    // Takes the distances between the first points of the list for those of neighbours.
    template <class PointAt>
    void chooseFirstEdge(int bound, PointAt pointAt) {
        std::array<double, sampleSize> distances{};
        std::size_t count = 0;
        const float *last = nullptr;
        for (int slot = 0; slot < std::min(bound, sampleSize); ++slot) {
            const float *point = pointAt(slot);
            if (point == nullptr || !isFinitePoint(point)) {
                continue;
            }
            const Vec3 step = load3(point) - load3(last == nullptr ? point : last);
            const double distance =
                std::max({std::fabs(step.x), std::fabs(step.y), std::fabs(step.z)});
            if (distance > reach) {
                distances[count++] = distance;
            }
            last = point;
        }
        if (count > 0) {
            double *const middle = distances.data() + count / 2;
            std::nth_element(distances.data(), middle, distances.data() + count);
            setEdge(firstEdge * cellsPerLength * *middle);
        }
    }

    template <class PointAt>
    void enterOne(const float *point, int slot, PointAt pointAt) {
        if (!isFinitePoint(point)) {
            odd.push_back(slot);
            isPlain = false;
            return;
        }
        place(point, slot, pointAt);
        isPlain = odd.empty();
        if (isCrowded()) {
            enterAgain(slot + 1, pointAt);
        } else if (buckets.blocks() >= nextLook) {
            makeCoarser(slot + 1, pointAt);
        }
    }
    template <class PointAt>
    void place(const float *point, int slot, PointAt pointAt) {
        const SlotBuckets::Key key = keyOf(cellAt(inCells(point)));
        const auto isEqual = [point, pointAt](int other) {
            const float *held = pointAt(other);
            return held != nullptr && std::equal(point, point + 3, held);
        };
        const bool isLeftOut =
            leavesOutEqual && buckets.slots() != 0 && buckets.first(key, isEqual) >= 0;
        if (!isLeftOut) {
            mates += buckets.enter(key, slot, [this, pointAt](int other) {
                const float *held = pointAt(other); // null: no search may find it any more
                return held == nullptr ? std::uint8_t{1} : markOf(cellAt(inCells(held)));
            });
        }
    }

    bool canRelieveCells() const { return cellSize > lastCellSize || !leavesOutEqual; }
    bool areCellsCrowded() const {
        return mates > mostMates * (buckets.slots() + 64) && canRelieveCells();
    }
    bool areBlocksCrowded() const {
        return slotsToFull * buckets.passed() > buckets.slots() + 64 &&
               (edge > 1 || canRelieveCells());
    }
    bool isCrowded() const { return areBlocksCrowded() || areCellsCrowded(); }
    // Makes what crowds smaller: ever faster if the last time, at about as many slots, was of
    // little use, as when a dense part follows a sparse one.
    void makeFiner() {
        const std::size_t slots = std::max(buckets.slots(), refinedAt);
        shrinking = slots > refinedAt + refinedAt / 4 ? gentleShrinking : shrinking * shrinking;
        refinedAt = slots;
        if (edge > 1 && !areCellsCrowded()) {
            setEdge(shrinking * static_cast<double>(edge));
        } else if (cellSize > lastCellSize) {
            setCellSize(cellSize / 4.0);
            setEdge(4.0 * static_cast<double>(edge));
        } else {
            leavesOutEqual = true;
        }
    }
    // Makes blocks longer if most hold few points, unless that was too long not long ago.
    template <class PointAt>
    void makeCoarser(int end, PointAt pointAt) {
        if (buckets.slots() < fewestInBlock * buckets.blocks() &&
            buckets.slots() >= 2 * refinedAt) {
            const double inBlock =
                static_cast<double>(buckets.slots()) / static_cast<double>(buckets.blocks());
            setEdge(std::sqrt(wantedInBlock / inBlock) * static_cast<double>(edge) + 1.0);
            enterAgain(end, pointAt);
        }
        nextLook = std::max(4 * buckets.blocks(), fewBlocks);
    }

    // Enters the finite points of the slots up to `end` anew, ever finer until they do not crowd.
    template <class PointAt>
    void enterAgain(int end, PointAt pointAt) {
        do {
            if (isCrowded()) {
                makeFiner();
            }
            buckets.clear();
            mates = 0;
            for (int slot = 0; slot < end && !isCrowded(); ++slot) {
                const float *point = pointAt(slot);
                if (point != nullptr && isFinitePoint(point)) {
                    place(point, slot, pointAt);
                }
            }
        } while (isCrowded());
    }

    SlotBuckets buckets;
    std::vector<int> odd;               // slots of points that are not finite
    std::size_t mates = 0;              // others of their cell that the slots met
    std::uint64_t edge = 0;             // of a block, in cells
    std::uint64_t blocksPerCell = 0;    // times 2^32
    std::size_t nextLook = fewBlocks;   // blocks at which to see whether they hold too few
    std::size_t refinedAt = 0;          // slots that were crowded the last time
    double shrinking = gentleShrinking; // of the edge then
    int seenSlots = 0;
    bool leavesOutEqual = false;
    bool isPlain = false; // no point is kept aside, and some are in buckets
    double cellSize = 0;  // in reaches
    double cellsPerLength = 0;
    double reachInCells = 0;
};

} // namespace trunnion::detail
