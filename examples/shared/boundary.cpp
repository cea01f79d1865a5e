// The library answers questions about one place of a mesh. To know where to begin without asking at
// every edge, the example counts the edges once in a table of its own.
#include "boundary.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "progress.h"

namespace {

struct Edge {
    int from;
    int to;
};

// The same number for both directions of an edge.
std::uint64_t edgeKey(int a, int b) {
    const auto [low, high] = std::minmax(a, b);
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(low)) << 32U |
           static_cast<std::uint32_t>(high);
}

std::vector<Edge> edgesOf(const TriangleArr &triangles) {
    std::vector<Edge> edges;
    for (int slot = 0; slot < triangles.GetBoundM(); ++slot) {
        const int *idx = triangles.GetItemPM(slot)->GetNodeIdxPM();
        edges.insert(edges.end(), {{idx[0], idx[1]}, {idx[1], idx[2]}, {idx[2], idx[0]}});
    }
    return edges;
}

// The edges of one triangle only, in the order of the triangles.
std::vector<Edge> boundaryEdges(const TriangleArr &triangles) {
    std::vector<Edge> edges = edgesOf(triangles);
    std::unordered_map<std::uint64_t, int> users;
    users.reserve(edges.size());
    for (const Edge &edge : edges) {
        ++users[edgeKey(edge.from, edge.to)];
    }
    std::erase_if(edges, [&](const Edge &edge) { return users[edgeKey(edge.from, edge.to)] != 1; });
    return edges;
}

// Passes over `start` and goes on along the boundary until it comes to an edge that was passed
// before.
void walkFrom(const Edge &start, const TriangleArr &triangles,
              std::unordered_set<std::uint64_t> &passed) {
    int slot = SL_DELETED_INT;
    if (triangles.JudgeBoundM(start.from, start.to, &slot) != 1) {
        return;
    }
    int previous = start.from;
    int step[2] = {start.to, SL_DELETED_INT};
    passed.insert(edgeKey(start.from, start.to));
    while (triangles.GetOneBoundWithStIdxM(previous, step, &slot) == 1 &&
           passed.insert(edgeKey(step[0], step[1])).second) {
        previous = step[0];
        step[0] = step[1];
    }
}

} // namespace

BoundaryCount walkBoundaries(const TriangleArr &triangles) {
    const std::vector<Edge> edges = boundaryEdges(triangles);
    std::unordered_set<std::uint64_t> passed;
    Progress progress("walking boundaries", edges.size());
    for (const Edge &edge : edges) {
        progress.show(passed.size());
        if (!passed.contains(edgeKey(edge.from, edge.to))) {
            walkFrom(edge, triangles, passed);
        }
    }
    return {static_cast<int>(passed.size()), static_cast<int>(edges.size())};
}
