// Texture coordinates: a triangle mesh unfolded into the plane, triangle by triangle across the
// edges that they share.
//
// Which neighbour comes next is settled by scans: the lowest unreached slot that holds an edge, the
// lowest marked slot where the walk is stuck. Both are answered here by structures that are built
// once for each call, the edges by hash and the marked slots as a heap, so that the whole walk
// costs n log n. They name the same slots as the scans, which take over where there is no memory
// for them.
#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <vector>

#include "trunnion/containers/slot_array.h"
#include "trunnion/geometry/detail/guards.h"
#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/matrices.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/detail/unfolding.h"
#include "trunnion/meshes/node_arr.h"
#include "trunnion/meshes/triangle_arr.h"

using namespace trunnion::detail;

namespace {

constexpr int corners = TriangleCL::cornerCount;
constexpr int nextPosition[corners] = {1, 2, 0};

// More slots than this have entries that an int cannot number.
constexpr int mostSlots = INT_MAX / corners;

// A corner of a triangle in a list, as the number of its entry in the result.
constexpr int entryOf(int slot, int position) {
    return slot * corners + position;
}

void setEntry(Point2DArr &coordinates, int entry, const Vec2 &value) {
    float rounded[2];
    store(value, rounded);
    coordinates.SetItemM(rounded, entry);
}

// The nodes of a list.
struct NodeSpan {
    const NodeCL *items;
    int bound;

    explicit NodeSpan(const NodeArr &list)
        : items(list.getCurrentItemPrtConstM()), bound(list.GetBoundM()) {}

    // Whether the list has all nodes that a triangle names. Only then may they be asked for.
    bool holds(const TriangleCL &triangle) const {
        const int *named = triangle.GetNodeIdxPM();
        return std::all_of(named, named + corners,
                           [this](int node) { return node >= 0 && node < bound; });
    }
    const NodeCL &at(const TriangleCL &triangle, int position) const {
        return items[triangle.GetNodeIdxPM()[position]];
    }
    const float *pointAt(const TriangleCL &triangle, int position) const {
        return at(triangle, position).GetPntPM();
    }
};

// Places the third corner of a triangle beside the one at position a and the next. Flat, since the
// calls would cost a tenth of the whole walk.
[[gnu::flatten]] void unfold(const TriangleCL &triangle, const NodeSpan &nodes, int a,
                             float (*placed)[2]) {
    const int b = nextPosition[a];
    const int c = nextPosition[b];
    place(shapeOf(nodes.pointAt(triangle, a), nodes.pointAt(triangle, b),
                  nodes.pointAt(triangle, c), triangle.GetNormPM()),
          placed[a], placed[b], placed[c]);
}

// Start of the walk: each function places one triangle and returns its slot, or -1 with nothing
// placed.

bool hasFrame(const XYCoordSysD &frame) {
    return !(std::fabs(static_cast<double>(frame.origin[0]) - SL_DELETED_REAL) <= SL_ZERO);
}

// Slot 0 in its own plane, with its first corner at (0, 0).
int placeWithoutFrame(const TriangleArr &triangles, const NodeSpan &nodes,
                      Point2DArr &coordinates) {
    const TriangleCL *start = triangles.GetItemPM(0);
    if (start == nullptr || start->IsAvailableM() != TAG_AVAILABLE || !nodes.holds(*start)) {
        return -1;
    }
    float u[3];
    float w[3];
    slOthPlane(start->GetNormPM(), u, w);
    setEntry(coordinates, 0, {0.0, 0.0});
    for (int i = 1; i < corners; ++i) {
        const Vec3 d = load3(nodes.pointAt(*start, i)) - load3(nodes.pointAt(*start, 0));
        setEntry(coordinates, i, {dot(d, load3(u)), dot(d, load3(w))});
    }
    return 0;
}

// A corner of a triangle in a list.
struct CornerPlace {
    int slot;
    int position;
};

// The corner at the node nearest to the frame's origin, in the triangle that has an edge most
// nearly along the x axis there; a slot of -1 if there is none.
CornerPlace findStart(const TriangleArr &triangles, const XYCoordSysD &frame,
                      const NodeArr &nodes) {
    int node = SL_DELETED_INT;
    nodes.GetMinPntIdxM(frame.origin, frame.yAxis, frame.xAxis, &node);
    Int2DArr found;
    triangles.FindTriangleM(node, &found);
    int chosen = -1;
    triangles.FindTriangleByVectM(frame.yAxis, nodes, found, &chosen);
    const int *entry = found.GetItemPM(chosen);
    return entry != nullptr ? CornerPlace{entry[0], entry[1]} : CornerPlace{-1, -1};
}

// The turn about `node` that brings its normal to `z`.
void makeTilt(const NodeCL &node, const Vec3 &z, float *m) {
    float axis[3];
    float toward[3];
    store(unit(cross(load3(node.GetNormalPM()), z)), axis);
    store(z, toward);
    const float angle = slCalAngleTwoVects(node.GetNormalPM(), toward, axis);
    slGetRotateMatrix(node.GetPntPM(), axis, angle, m);
}

// The start triangle, tilted about its start node until the node's normal is that of the frame, in
// the coordinates of the frame.
int placeInFrame(const TriangleArr &triangles, const XYCoordSysD &frame, const NodeArr &list,
                 Point2DArr &coordinates) {
    const auto [slot, start] = findStart(triangles, frame, list);
    if (slot < 0) {
        return -1;
    }
    const NodeSpan nodes(list);
    const TriangleCL &triangle = *triangles.GetItemPM(slot);
    if (!nodes.holds(triangle)) {
        return -1;
    }
    const Vec3 x = load3(frame.xAxis);
    const Vec3 y = load3(frame.yAxis);
    const auto inFrame = [&](const Vec3 &d) { return Vec2{dot(d, x), dot(d, y)}; };
    float tilt[16];
    makeTilt(nodes.at(triangle, start), unit(cross(x, y)), tilt);

    Vec3 first{};
    Vec2 firstInFrame{};
    for (int i = 0; i < corners; ++i) {
        const int position = (start + i) % corners;
        float tilted[3];
        slMatrix16MultiPoint3(tilt, nodes.pointAt(triangle, position), tilted);
        if (i == 0) {
            first = load3(tilted);
            firstInFrame = inFrame(first - load3(frame.origin));
            setEntry(coordinates, entryOf(slot, start), firstInFrame);
        } else {
            setEntry(coordinates, entryOf(slot, position),
                     inFrame(load3(tilted) - first) + firstInFrame);
        }
    }
    return slot;
}

// The walk.

// Tags of a triangle whose first, second and third edge has been tried.
constexpr char triedTags[corners] = {37, 38, TAG_UNUSED};

struct Edge {
    int from;
    int to;
    bool operator==(const Edge &) const = default;
};

// The edge that leaves a corner in the triangle's order.
Edge edgeAt(const TriangleCL &triangle, int position) {
    const int *nodes = triangle.GetNodeIdxPM();
    return {nodes[position], nodes[nextPosition[position]]};
}

// The edge to be tried at a step 0, 1, 2: one of the triangle's own turned round, as a neighbour of
// the same winding holds it.
Edge triedEdge(const TriangleCL &triangle, int step) {
    const int *nodes = triangle.GetNodeIdxPM();
    return {nodes[step], nodes[(step + 2) % corners]};
}

bool isUnreached(const TriangleCL &triangle) {
    return triangle.IsAvailableM() == TAG_AVAILABLE;
}

// Marked as reached but not finished. A deleted triangle counts as such, too.
bool isMarked(const TriangleCL &triangle) {
    return triangle.IsAvailableM() != TAG_UNUSED && triangle.IsAvailableM() != TAG_AVAILABLE;
}

// The triangles of a walk.
struct TriangleSpan {
    TriangleCL *items;
    int bound;
    NodeSpan nodes;

    TriangleCL &operator[](int slot) const { return items[slot]; }
    // One that names a node outside the node list cannot be placed.
    bool isPlaceable(int slot) const { return nodes.holds(items[slot]); }
};

// An edge of a triangle in a list, known by the corner that it leaves. None, if value-initialised.
class EdgePlace {
public:
    EdgePlace() = default;
    EdgePlace(int slot, int position)
        : number(static_cast<unsigned int>(slot) * 4 + static_cast<unsigned int>(position) + 1) {}
    bool exists() const { return number != 0; }
    int slot() const { return static_cast<int>(number / 4); }
    int position() const { return static_cast<int>(number % 4) - 1; }
    // Below four times the number of slots.
    std::size_t index() const { return number; }

private:
    unsigned int number;
};

// The edges of the unreached triangles, found by their nodes.
class EdgeMap {
public:
    // Throws std::bad_alloc.
    explicit EdgeMap(const TriangleSpan &list)
        : triangles(list),
          shift(64 - std::bit_width(static_cast<std::size_t>(list.bound) * corners)),
          heads(std::size_t{1} << (64 - shift)),
          next(std::make_unique_for_overwrite<EdgePlace[]>(static_cast<std::size_t>(list.bound) *
                                                           4)) {
        // From the last edge to the first, so that every chain ascends.
        for (int slot = list.bound - 1; slot >= 0; --slot) {
            if (!isUnreached(list[slot]) || !list.isPlaceable(slot)) {
                continue;
            }
            for (int position = corners - 1; position >= 0; --position) {
                EdgePlace &head = headOf(edgeAt(list[slot], position));
                const EdgePlace place(slot, position);
                next[place.index()] = head;
                head = place;
            }
        }
    }

    // The edge in the lowest unreached slot other than `current` that has it, if there is one. What
    // is reached, or is about to be as `current` is, never becomes unreached again and leaves its
    // chain.
    EdgePlace find(const Edge &edge, int current) {
        EdgePlace *link = &headOf(edge);
        EdgePlace place = *link;
        while (place.exists()) {
            const TriangleCL &triangle = triangles[place.slot()];
            if (place.slot() == current || !isUnreached(triangle)) {
                place = *link = next[place.index()];
            } else if (edgeAt(triangle, place.position()) == edge) {
                break;
            } else {
                link = &next[place.index()];
                place = *link;
            }
        }
        return place;
    }

private:
    // The difference of the nodes is scrambled (multiplicative hashing, Knuth) and the first node
    // added: edges between neighbouring numbers differ little from node to node, and so the chains
    // of neighbours stand side by side in memory.
    EdgePlace &headOf(const Edge &edge) {
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15U; // 2^64 divided by the golden ratio
        const auto from = static_cast<unsigned int>(edge.from);
        const auto to = static_cast<unsigned int>(edge.to);
        return heads[(((to - from) * golden >> shift) + from) & (heads.size() - 1)];
    }

    TriangleSpan triangles;
    int shift;                         // of a hash to the number of a chain
    std::vector<EdgePlace> heads;      // their number is a power of two
    std::unique_ptr<EdgePlace[]> next; // by index()
};

// The marked slots as a heap. A slot is entered once, when it is marked, and leaves when it is
// found finished at the top.
class MarkedSlots {
public:
    // Throws std::bad_alloc. Takes the memory for all slots, so that enter() cannot fail.
    explicit MarkedSlots(const TriangleSpan &list) : triangles(list) {
        heap.reserve(static_cast<std::size_t>(list.bound));
        for (int slot = 0; slot < list.bound; ++slot) {
            if (isMarked(list[slot])) {
                heap.push_back(slot); // ascending numbers are a heap
            }
        }
    }
    void enter(int slot) {
        heap.push_back(slot);
        std::push_heap(heap.begin(), heap.end(), std::greater<>());
    }
    // Lowest marked slot, or SL_DELETED_INT.
    int lowest() {
        while (!heap.empty() && !isMarked(triangles[heap.front()])) {
            std::pop_heap(heap.begin(), heap.end(), std::greater<>());
            heap.pop_back();
        }
        return heap.empty() ? SL_DELETED_INT : heap.front();
    }

private:
    TriangleSpan triangles;
    std::vector<int> heap;
};

struct WalkIndex {
    EdgeMap edges;
    MarkedSlots marked;
};

// Nothing where memory is short.
std::unique_ptr<WalkIndex> buildIndex(const TriangleSpan &triangles) {
    try {
        return std::make_unique<WalkIndex>(WalkIndex{EdgeMap(triangles), MarkedSlots(triangles)});
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

class Walk {
public:
    Walk(const TriangleSpan &list, int *unreachedCount, Point2DArr *result)
        : triangles(list),
          unreached(*unreachedCount),
          coordinates(*result),
          index(buildIndex(list)) {}

    // Unfolds from the triangle in slot `start`, which has been placed. True when no triangle is
    // left.
    bool run(int start) {
        int current = start;
        bool found = true;
        while (unreached >= 1) {
            if (!found) {
                current = getFirstValidIdx();
            }
            if (current < 0) {
                return false;
            }
            const Step step = tryEdges(current);
            found = step.place.exists();
            if (found) {
                setTextureCoord(current, step);
                current = step.place.slot();
            }
        }
        return true;
    }

private:
    // A way out of a triangle: the shared edge, and where the neighbour has it, if there is one.
    struct Step {
        Edge edge;
        EdgePlace place;
    };

    Step tryEdges(int current) {
        noteReached(current);
        TriangleCL &triangle = triangles[current];
        Step step{};
        for (int i = 0; i < corners && !step.place.exists(); ++i) {
            step.edge = triedEdge(triangle, i);
            step.place = getNextRelTriangle(current, step.edge);
            triangle.SetDeleteTagM(triedTags[i]);
        }
        return step;
    }

    // To be called before the tag of the triangle changes.
    void noteReached(int slot) {
        unreached -= isUnreached(triangles[slot]) ? 1 : 0;
        if (index && !isMarked(triangles[slot])) {
            index->marked.enter(slot);
        }
    }

    int getFirstValidIdx() {
        if (index) {
            return index->marked.lowest();
        }
        const TriangleCL *end = triangles.items + triangles.bound;
        const TriangleCL *first = std::find_if<const TriangleCL *>(triangles.items, end, isMarked);
        return first != end ? static_cast<int>(first - triangles.items) : SL_DELETED_INT;
    }

    // Where the lowest unreached slot other than `current` that has `edge` in its own order has it,
    // if there is one. A neighbour of the opposite winding is none.
    EdgePlace getNextRelTriangle(int current, const Edge &edge) {
        if (index) {
            return index->edges.find(edge, current);
        }
        for (int slot = 0; slot < triangles.bound; ++slot) {
            if (slot == current || !isUnreached(triangles[slot])) {
                continue;
            }
            for (int position = 0; position < corners; ++position) {
                if (edgeAt(triangles[slot], position) == edge && triangles.isPlaceable(slot)) {
                    return {slot, position};
                }
            }
        }
        return {};
    }

    // Copies the corners of the shared edge to the neighbour and places its third corner.
    void setTextureCoord(int current, const Step &step) {
        const int slot = step.place.slot();
        const int a = step.place.position();
        float placed[corners][2];
        getCorner(current, step.edge.from, placed[a]);
        getCorner(current, step.edge.to, placed[nextPosition[a]]);
        unfold(triangles[slot], triangles.nodes, a, placed);
        for (int i = 0; i < corners; ++i) {
            coordinates.SetItemM(placed[i], entryOf(slot, i));
        }
    }

    void getCorner(int slot, int node, float *point) const {
        coordinates.GetItemM(point, entryOf(slot, triangles[slot].positionOf(node)));
    }

    TriangleSpan triangles;
    int &unreached;
    Point2DArr &coordinates;
    std::unique_ptr<WalkIndex> index;
};

} // namespace

int TriangleArr::GetTexCoordM(const XYCoordSysD &frame, Point2DArr *coordinates,
                              const NodeArr &nodes) {
    if (bound > mostSlots) {
        return 0;
    }
    coordinates->AddSizeM(entryOf(bound, 0));
    const int start = hasFrame(frame) ? placeInFrame(*this, frame, nodes, *coordinates)
                                      : placeWithoutFrame(*this, NodeSpan(nodes), *coordinates);
    if (start < 0) {
        return 0;
    }
    Walk walk({changedItems(), bound, NodeSpan(nodes)}, &available, coordinates);
    return walk.run(start) ? 1 : 0;
}

void TriangleCL::SetTexCoordM(int slot, int a, int b, const float *const /*unused*/,
                              const float *const /*unused*/, const float *const /*unused*/,
                              const NodeArr &nodes, Point2DArr *coordinates) {
    if (slot < 0 || slot >= mostSlots || a < 0 || a >= corners || b != nextPosition[a]) {
        return;
    }
    const NodeSpan list(nodes);
    if (!list.holds(*this)) {
        return;
    }
    float placed[corners][2];
    coordinates->GetItemM(placed[a], entryOf(slot, a));
    coordinates->GetItemM(placed[b], entryOf(slot, b));
    unfold(*this, list, a, placed);
    const int c = nextPosition[b];
    coordinates->SetItemM(placed[c], entryOf(slot, c));
}
