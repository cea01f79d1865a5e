// The search for the nearest node.
#include "trunnion/meshes/detail/nearest_nodes.h"

#include <algorithm>
#include <new>
#include <utility>

#include "trunnion/containers/detail/point_cells.h"
#include "trunnion/geometry/detail/guards.h"

namespace trunnion::detail {

namespace {

constexpr std::size_t leafSize = 16;

bool isLive(const NodeCL &node) {
    return node.IsAvailableM() == TAG_AVAILABLE;
}

// slDistance3 from its unrounded square. It never falls while the square rises.
float distanceOf(double square) {
    return toFloat(root(square));
}

} // namespace

// NearestNode

NearestNode::NearestNode(const NodeCL *list, const float *point)
    : nodes(list), sought(point), distance(SL_BIG), square(SL_BIG_D * SL_BIG_D) {}

void NearestNode::offer(const float *at, int slot) {
    const double candidate = squaredLength(load3(sought) - load3(at));
    if (!mayWin(candidate, slot) || !isLive(nodes[slot])) {
        return;
    }
    const float reached = distanceOf(candidate);
    if (reached < distance) {
        square = candidate;
    } else if (reached == distance && slot < best) {
        square = std::min(square, candidate);
    } else {
        return;
    }
    distance = reached;
    best = slot;
}

bool NearestNode::mayWin(double candidate, int slot) const {
    return candidate < square || (slot < best && !(distanceOf(candidate) > distance));
}

double NearestNode::squareToBox(const float *low, const float *high) const {
    double gap[3];
    for (int axis = 0; axis < 3; ++axis) {
        const double below = static_cast<double>(low[axis]) - sought[axis];
        const double above = static_cast<double>(sought[axis]) - high[axis];
        gap[axis] = std::max({below, above, 0.0});
    }
    return squaredLength({gap[0], gap[1], gap[2]});
}

// PointTree

PointTree::PointTree(std::vector<SlotPoint> content) : points(std::move(content)) {
    std::size_t leaves = 1;
    while (leaves * leafSize < points.size()) {
        leaves *= 2;
    }
    boxes.resize(2 * leaves - 1);
    build(0, 0, points.size());
}

void PointTree::build(std::size_t node, std::size_t from, std::size_t to) {
    Box &box = boxes[node];
    std::copy_n(points[from].at, 3, box.low);
    std::copy_n(points[from].at, 3, box.high);
    box.lowestSlot = points[from].slot;
    for (std::size_t i = from; i < to; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            box.low[axis] = std::min(box.low[axis], points[i].at[axis]);
            box.high[axis] = std::max(box.high[axis], points[i].at[axis]);
        }
        box.lowestSlot = std::min(box.lowestSlot, points[i].slot);
    }
    if (isLeaf(node)) {
        return;
    }
    int widest = 0;
    const auto width = [&box](int axis) {
        return static_cast<double>(box.high[axis]) - box.low[axis];
    };
    for (int axis = 1; axis < 3; ++axis) {
        widest = width(axis) > width(widest) ? axis : widest;
    }
    const std::size_t middle = from + (to - from) / 2;
    const auto at = [this](std::size_t i) {
        return points.begin() + static_cast<std::ptrdiff_t>(i);
    };
    std::nth_element(
        at(from), at(middle), at(to),
        [widest](const SlotPoint &a, const SlotPoint &b) { return a.at[widest] < b.at[widest]; });
    build(2 * node + 1, from, middle);
    build(2 * node + 2, middle, to);
}

void PointTree::search(NearestNode &nearest) const {
    search(nearest, 0, 0, points.size());
}

// Visits the part of the tree whose box has been found worth it.
void PointTree::search(NearestNode &nearest, std::size_t node, std::size_t from,
                       std::size_t to) const {
    if (isLeaf(node)) {
        for (std::size_t i = from; i < to; ++i) {
            nearest.offer(points[i].at, points[i].slot);
        }
        return;
    }
    struct Part {
        std::size_t node, from, to;
        double square;
    };
    const std::size_t middle = from + (to - from) / 2;
    Part parts[2] = {{2 * node + 1, from, middle, 0.0}, {2 * node + 2, middle, to, 0.0}};
    for (Part &part : parts) {
        part.square = nearest.squareToBox(boxes[part.node].low, boxes[part.node].high);
    }
    if (parts[1].square < parts[0].square) {
        std::swap(parts[0], parts[1]);
    }
    for (const Part &part : parts) {
        if (nearest.mayWin(part.square, boxes[part.node].lowestSlot)) {
            search(nearest, part.node, part.from, part.to);
        }
    }
}

// NearestNodes

int NearestNodes::find(const ListState &list, std::uint64_t changes, const NodeCL *nodes,
                       const float *point) const {
    if (!isFinitePoint(point)) {
        return SL_DELETED_INT; // no distance from it is below SL_BIG
    }
    NearestNode nearest(nodes, point);
    int tail = 0;
    if (prepare(list, changes, nodes)) {
        for (const PointTree &tree : trees) {
            tree.search(nearest);
        }
        tail = seenSlots;
    }
    for (int slot = tail; slot < list.bound; ++slot) {
        nearest.offer(nodes[slot].GetPntPM(), slot);
    }
    return nearest.slot();
}

// True if the trees may be read. The list stands still while searches run, so that all of them find
// the trees ready, or all find them not ready until one has made them so.
bool NearestNodes::prepare(const ListState &list, std::uint64_t changes,
                           const NodeCL *nodes) const {
    if (list.writerMayLive || list.bound < smallestList) {
        return false;
    }
    if (readyFor.load(std::memory_order_acquire) == changes) {
        return true;
    }
    if (isBusy.exchange(true, std::memory_order_acquire)) {
        return false;
    }
    bool isReady = readyFor.load(std::memory_order_acquire) == changes;
    if (!isReady && bringUpToDate(list, nodes)) {
        readyFor.store(changes, std::memory_order_release);
        isReady = true;
    }
    isBusy.store(false, std::memory_order_release);
    return isReady;
}

bool NearestNodes::bringUpToDate(const ListState &list, const NodeCL *nodes) const {
    if (rewrites != list.rewrites || seenSlots > list.bound) {
        forget();
        rewrites = list.rewrites;
    }
    if (trees.empty() && ++scans < patience) {
        return false;
    }
    try {
        // Deleted nodes in the trees cost time: no more than half of them.
        if (2 * (list.deletions - deletions) > static_cast<std::uint64_t>(seenSlots)) {
            trees.clear();
            seenSlots = 0;
        }
        if (trees.empty()) {
            deletions = list.deletions;
        }
        if (trees.empty() || list.bound - seenSlots > longestTail) {
            plant(list.bound, nodes);
        }
    } catch (const std::bad_alloc &) {
        forget();
        return false;
    }
    return true;
}

// A tree of the nodes behind those seen, with the nodes of the trees that are no greater.
void NearestNodes::plant(int bound, const NodeCL *nodes) const {
    std::vector<SlotPoint> points;
    points.reserve(static_cast<std::size_t>(bound - seenSlots));
    for (int slot = seenSlots; slot < bound; ++slot) {
        const float *at = nodes[slot].GetPntPM();
        if (isLive(nodes[slot]) && isFinitePoint(at)) {
            points.push_back({{at[0], at[1], at[2]}, slot});
        }
    }
    while (!trees.empty() && trees.back().content().size() <= points.size()) {
        const std::vector<SlotPoint> &joined = trees.back().content();
        points.insert(points.end(), joined.begin(), joined.end());
        trees.pop_back();
    }
    if (!points.empty()) {
        trees.emplace_back(std::move(points));
    }
    seenSlots = bound;
}

void NearestNodes::forget() const {
    trees.clear();
    seenSlots = 0;
    scans = 0;
}

} // namespace trunnion::detail
