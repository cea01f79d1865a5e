// Generators that fill node lists: a straight run, a surface of revolution, two profiles with
// common stations.
#include "trunnion/meshes/node_arr.h"

#include <algorithm>
#include <climits>

#include "trunnion/geometry/detail/vec.h"
#include "trunnion/geometry/distances.h"
#include "trunnion/geometry/scalars.h"

using trunnion::detail::load3;
using trunnion::detail::store;
using trunnion::detail::toFloat;

namespace {

// A sweep from here on, SL_TWO_PI less 0.0001, is a full turn.
constexpr float fullTurn = 6.283085F;
// Steps of a sweep for each step of a full turn and each radian: 1 / (2 pi).
constexpr float turnsPerRadian = 0.15915495F;

} // namespace

void NodeArr::AddPntAndNormM(NodeCL &scratch, float *const limits, float x, float y, float z,
                             float /*unused*/, float /*unused*/, float /*unused*/) {
    const bool isInside = x > -SL_TINY && x < limits[0] && y > -SL_TINY && y < limits[1];
    if (!isInside) {
        return;
    }
    if (bound < capacity) {
        const float point[3] = {x, y, z};
        changedItems()[bound].setPoint(point);
        ++bound;
        ++available;
        return;
    }
    const float point[3] = {x, y, z > 0.0F ? z : SL_ZERO};
    scratch.setPoint(point);
    AddItemM(scratch);
}

int NodeArr::GenIsometryNodesBtTowPntsM(int n, const float *const p, const float *const q) {
    if (n < 2) {
        return 0;
    }
    float step[3];
    float point[3];
    float last[3];
    store(load3(q) - load3(p), step);
    slSetPnt3DValueByDiv(static_cast<float>(n - 1), step);
    std::copy_n(p, 3, point);
    std::copy_n(q, 3, last); // either may stand in the list

    AddSizeM(n - capacity);
    NodeCL *nodes = changedItems();
    for (int i = 0; i < n; ++i) {
        nodes[i].SetDeleteTagM(TAG_AVAILABLE);
        nodes[i].setPoint(i < n - 1 ? point : last);
        store(load3(point) + load3(step), point);
    }
    for (int i = n; i < bound; ++i) {
        nodes[i].DelItemM();
    }
    bound = n;
    available = n;
    return 1;
}

void NodeArr::appendLive(const NodeArr &row) {
    for (int i = 0; i < row.bound; ++i) {
        if (isLive(row.items()[i])) {
            AddItemM(row.items()[i]);
        }
    }
}

int NodeArr::ExtendByRotateToCircleM(int n, const float *const p, const float *const axis, float a0,
                                     float a1) {
    if (n < 1) {
        return 0;
    }
    const double span = static_cast<double>(a1) - a0;
    const bool isFull = span >= fullTurn;
    // In this order std::max gives 0 for a span that is no number.
    const double steps = isFull ? n : std::max(0.0, span * n * turnsPerRadian + 0.5);
    const int count = static_cast<int>(std::min<double>(steps, INT_MAX - 2));
    const float step = toFloat(static_cast<double>(SL_TWO_PI) / n);
    if (!isFull) {
        RotateM(p, axis, a0);
    }
    NodeArr turning = *this;
    const NodeArr closing = isFull ? *this : NodeArr();
    const long long wanted = (count + 2LL) * bound;
    AddSizeM(static_cast<int>(std::clamp<long long>(wanted - capacity, 0, INT_MAX)));
    for (int i = 0; i < count; ++i) {
        turning.RotateM(p, axis, step);
        appendLive(turning);
    }
    appendLive(closing);
    return count + 1;
}

namespace {

// True if the height of `node` falls on the way from `upper` down to `lower`, ends within the
// tolerance excluded.
bool fallsOn(const NodeCL &node, const NodeCL &upper, const NodeCL &lower) {
    const double z = node.GetPntPM()[2];
    return z < static_cast<double>(upper.GetPntPM()[2]) + SL_ZERO &&
           z > static_cast<double>(lower.GetPntPM()[2]) - SL_ZERO;
}

// A live node with a zero normal on the way from `upper` to `lower`, at the height of `node`.
NodeCL interpolate(const NodeCL &upper, const NodeCL &lower, const NodeCL &node) {
    float point[3];
    slProjToLineAlongXOnXZ(upper.GetPntPM(), lower.GetPntPM(), node.GetPntPM(), point);
    NodeCL between(TAG_AVAILABLE);
    between.setPoint(point);
    return between;
}

// Shortens a list to `length` slots.
void trim(NodeArr &list, int length) {
    while (list.GetBoundM() > length) {
        list.DelItemM(list.GetBoundM() - 1);
    }
}

// The stations of two profiles, one pair after another.
struct Stations {
    NodeArr *first;
    NodeArr *second;
    int count = 0;

    void add(const NodeCL &a, const NodeCL &b) {
        first->SetItemM(a, count);
        second->SetItemM(b, count);
        ++count;
    }
};

NodeCL atHeight(const NodeCL &node, float z) {
    NodeCL moved = node;
    const float point[3] = {node.GetPntPM()[0], node.GetPntPM()[1], z};
    moved.setPoint(point);
    return moved;
}

// Gives the first nodes of both profiles the greater of their heights.
void alignStart(NodeArr &l, NodeArr &m) {
    const NodeCL a = *l.GetItemPM(0);
    const NodeCL b = *m.GetItemPM(0);
    const float z = std::max(a.GetPntPM()[2], b.GetPntPM()[2]);
    l.SetItemM(atHeight(a, z), 0);
    m.SetItemM(atHeight(b, z), 0);
}

} // namespace

int UnitNodeLstM(const NodeArr &a, const NodeArr &b, NodeArr *oa, NodeArr *ob) {
    NodeArr l = a;
    NodeArr m = b;
    l.PurgeMultiSamePntsToOneM(1);
    m.PurgeMultiSamePntsToOneM(1);
    const int la = l.GetBoundM();
    const int lb = m.GetBoundM();
    Stations stations{oa, ob};
    if (la > 0 && lb > 0) {
        const int room =
            static_cast<int>(std::min<long long>(static_cast<long long>(la) + lb, INT_MAX));
        oa->AddSizeM(room - oa->GetLengthM());
        ob->AddSizeM(room - ob->GetLengthM());
        alignStart(l, m);
        stations.add(*l.GetItemPM(0), *m.GetItemPM(0));
    }
    int i = 1;
    int j = 1;
    while (i < la && j < lb) {
        const NodeCL &nodeA = *l.GetItemPM(i);
        const NodeCL &nodeB = *m.GetItemPM(j);
        const NodeCL &beforeA = *l.GetItemPM(i - 1);
        const NodeCL &beforeB = *m.GetItemPM(j - 1);
        if (fallsOn(nodeA, beforeB, nodeB)) {
            stations.add(nodeA, interpolate(beforeB, nodeB, nodeA));
            ++i;
        } else if (fallsOn(nodeB, beforeA, nodeA)) {
            stations.add(interpolate(beforeA, nodeA, nodeB), nodeB);
            ++j;
        } else {
            stations.add(nodeA, nodeB);
            ++i;
            ++j;
        }
    }
    trim(*oa, stations.count);
    trim(*ob, stations.count);
    return 1;
}
