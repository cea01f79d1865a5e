// Mesh lists under scripts of operations. Facets name nodes that are not there, are degenerate,
// share edges by threes; nodes stand at the tolerance from each other, far away, or at no point at
// all.
//
// After every operation the counts agree with the items, and what a search answers is what a plain
// scan finds.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "fuzz/support/lists.h"
#include "fuzz/support/script.h"

namespace {

using namespace fuzz;

// A node number: mostly one of a few, now and then any.
int nodeNumber(Script &script) {
    return script.oneIn(12) ? script.take<int>() : script.integer(-1, 9);
}

void takePoint(Script &script, float (&point)[3]) {
    for (float &value : point) {
        const int kind = script.take();
        value = kind >= 250 ? script.take<float>()
                            : static_cast<float>(kind % 5) * (kind < 100 ? 0.00005F : 1.0F);
    }
}

NodeCL takeNode(Script &script) {
    float point[3];
    float normal[3];
    takePoint(script, point);
    takePoint(script, normal);
    NodeCL node(script.oneIn(12) ? TAG_UNUSED : TAG_AVAILABLE);
    node.SetPntM(point);
    node.setNormal(normal);
    return node;
}

template <class Facet>
Facet takeFacet(Script &script) {
    int nodes[Facet::cornerCount];
    for (int &node : nodes) {
        node = nodeNumber(script);
    }
    Facet facet(TAG_AVAILABLE);
    if constexpr (Facet::cornerCount == 3) {
        facet.SetTriangleM(nodes);
    } else {
        facet.SetQuadM(nodes);
    }
    return facet;
}

IntArr takeMap(Script &script) {
    IntArr map;
    for (int i = script.integer(0, 9); i > 0; --i) {
        map.AddItemM(script.oneIn(3) ? nodeNumber(script) : map.GetBoundM());
    }
    return map;
}

// Plain scans.

template <class List>
int scanForEdge(const List &list, int a, int b, int *slot) {
    int found = 0;
    for (int i = 0; i < list.GetBoundM(); ++i) {
        const auto &facet = *list.GetItemPM(i);
        const int at = facet.positionOf(a);
        const int *nodes = facet.GetNodeIdxPM();
        const int corners = facet.cornerCount;
        if (at >= 0 &&
            (nodes[(at + 1) % corners] == b || nodes[(at + corners - 1) % corners] == b)) {
            ++found;
            *slot = i;
        }
    }
    return found;
}

template <class List>
int scanForNodeBehind(const List &list, int node) {
    for (int i = 0; i < list.GetBoundM(); ++i) {
        const auto &facet = *list.GetItemPM(i);
        const int at = facet.positionOf(node);
        if (at >= 0) {
            return facet.GetNodeIdxPM()[(at + 1) % facet.cornerCount];
        }
    }
    return SL_DELETED_INT;
}

int scanForPoint(const NodeArr &nodes, const NodeCL &node) {
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        const NodeCL &held = *nodes.GetItemPM(i);
        if (held.IsAvailableM() == TAG_AVAILABLE && held.CompareM(node) == 1) {
            return i;
        }
    }
    return nodes.GetBoundM();
}

int scanForNearest(const NodeArr &nodes, const float *point) {
    int nearest = SL_DELETED_INT;
    float least = SL_BIG;
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        const NodeCL &node = *nodes.GetItemPM(i);
        const float distance = slDistance3(node.GetPntPM(), point);
        if (node.IsAvailableM() == TAG_AVAILABLE && distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

// The slots whose nodes are all among the three given.
std::vector<int> scanForTriangle(const TriangleArr &list, const int *nodes) {
    std::vector<int> found;
    for (int i = 0; i < list.GetBoundM(); ++i) {
        const int *own = list.GetItemPM(i)->GetNodeIdxPM();
        if (std::all_of(own, own + 3,
                        [&](int node) { return std::find(nodes, nodes + 3, node) != nodes + 3; })) {
            found.push_back(i);
        }
    }
    return found;
}

class Meshes {
public:
    explicit Meshes(Script &source) : script(source) {}

    void step() {
        switch (script.integer(0, 3)) {
        case 0:
            changeNodes();
            break;
        case 1:
            changeTriangles();
            break;
        case 2:
            changeQuads();
            break;
        default:
            changeAll();
        }
        if (countsHold) {
            requireCounts(triangles);
            requireCounts(quads);
            requireCounts(nodes);
        }
        search();
    }

    // What uses the whole mesh up or costs much comes last, on copies.
    void finish() {
        Point2DArr coordinates;
        XYCoordSysD frame{};
        frame.origin[0] = SL_DELETED_REAL;
        const bool isPlaced = script.oneIn(2);
        if (isPlaced) {
            frame = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        }
        TriangleArr walked(triangles);
        const int all = walked.GetTexCoordM(frame, &coordinates, nodes);
        require(all == 0 || all == 1, "reached or not");
        NodeArr(nodes).CalculateNormByFaceviewLst(triangles, quads);
        NodeArr(nodes).PurgeMultiSamePntsToOneM(script.integer(0, 1));
        NodeArr first;
        NodeArr second;
        UnitNodeLstM(nodes, NodeArr(nodes), &first, &second);
        require(first.GetBoundM() == second.GetBoundM(), "as many stations");
        for (const Form form : {Form::text, Form::binary, Form::compressed}) {
            TriangleArr same;
            require(readInto(same, form, written(form, triangles)) == 0, "a written list is read");
            require(triangles.GetBoundM() == 0 || written(form, same) == written(form, triangles),
                    "and is the same");
        }
    }

    // Reads nodes and triangles back from text, where live ones may come to stand behind the bound;
    // from then on the counts do not tell what is below it.
    void reread() {
        const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        const File file = openAs(scratch().path("mesh"), "w+b");
        triangles.ExportTriangleLstDBFileM(file.get(), identity);
        slFprintfD(file.get(), "%d, NODES\n", nodes.GetBoundM());
        for (int i = 0; i < nodes.GetBoundM(); ++i) {
            slFprintfD(file.get(), "%d, NODE\n", i);
            NodeCL(*nodes.GetItemPM(i)).FmWriteOzkFileM(file.get());
        }
        std::rewind(file.get());
        triangles = TriangleArr();
        triangles.FmReadTriangleLstM(file.get());
        nodes = NodeArr();
        nodes.FmReadNodeLstM(file.get());
        writer = nullptr;
        countsHold = false;
    }

private:
    void changeNodes() {
        const NodeCL node = takeNode(script);
        const int idx = script.slot(nodes.GetBoundM());
        switch (script.integer(0, 9)) {
        case 0:
            nodes.SetItemM(node, std::min(idx, nodes.GetBoundM() + 20));
            recount(nodes);
            break;
        case 1:
            nodes.InsertItemM(node, std::min(idx, nodes.GetBoundM() + 20));
            break;
        case 2:
            nodes.DelItemM(idx);
            break;
        case 3:
            nodes.SetNodeNormM(idx, const_cast<float *>(node.GetNormalPM()));
            break;
        case 4:
            if (nodes.GetBoundM() > 0) {
                writer = nodes.getCurrentItemPrtM();
                room = nodes.GetLengthM();
                const int at = script.integer(0, 250) % nodes.GetBoundM();
                writer[at].SetPntM(const_cast<float *>(node.GetPntPM()));
            }
            return;
        case 5:
            nodes.InverseNodeLstM();
            break;
        case 6:
            nodes.InverseMeshNodeLstM(nodeNumber(script), nodeNumber(script));
            recount(nodes); // a grid may reach behind the bound
            break;
        case 7:
            nodes.ReGenNormalVectM(nodeNumber(script), nodeNumber(script), nodeNumber(script),
                                   nodeNumber(script));
            break;
        default:
            merge(node);
        }
        writer = nullptr;
    }

    void merge(const NodeCL &node) {
        const int expected = scanForPoint(nodes, node);
        int slot = SL_DELETED_INT;
        nodes.MergeNodeLstM(node, &slot);
        require(slot == expected, "the first live node at a point");
        // A pointer that was handed out earlier is good until the list grows.
        if (writer != nullptr && room == nodes.GetLengthM() && nodes.GetBoundM() > 0) {
            float point[3];
            takePoint(script, point);
            writer[script.integer(0, 250) % nodes.GetBoundM()].SetPntM(point);
        }
    }

    void changeTriangles() {
        TriangleCL triangle = takeFacet<TriangleCL>(script);
        const float normal[3] = {0, 0, 1};
        const int idx = script.slot(triangles.GetBoundM());
        switch (script.integer(0, 9)) {
        case 0:
            triangles.AddTriangleM(triangle.GetNodeIdxPM(), normal);
            break;
        case 1:
            triangles.DelItemM(idx);
            break;
        case 2:
            triangles.DelTriangleByVertexM(nodeNumber(script));
            break;
        case 3:
            triangles.ChangeNodeIdxM(nodeNumber(script), nodeNumber(script));
            break;
        case 4:
            triangles.ResetNodeIdxM(takeMap(script));
            break;
        case 5:
            triangles.PurgeDeletedTrianglesM();
            break;
        case 6:
            if (triangles.GetBoundM() > 0) {
                const int at = script.integer(0, 250) % triangles.GetBoundM();
                int changed[3] = {nodeNumber(script), nodeNumber(script), nodeNumber(script)};
                triangles.getCurrentItemPrtM()[at].SetTriangleM(changed);
            }
            break;
        default: {
            const bool isNew = !triangle.isDegenerate() &&
                               scanForTriangle(triangles, triangle.GetNodeIdxPM()).empty();
            require(triangles.MergeTriangleLstM(triangle) == (isNew ? 1 : 0), "merged if new");
        }
        }
    }

    void changeQuads() {
        const int idx = script.slot(quads.GetBoundM());
        switch (script.integer(0, 5)) {
        case 0:
            quads.DelItemM(idx);
            break;
        case 1:
            quads.ChangeNodeIdxM(nodeNumber(script), nodeNumber(script));
            break;
        case 2:
            quads.ResetNodeIdxM(takeMap(script));
            break;
        default:
            quads.MergeQuadLstM(takeFacet<QuadCL>(script));
        }
    }

    void changeAll() {
        IntArr indexes = takeMap(script);
        switch (script.integer(0, 4)) {
        case 0:
            nodes.MergeNodesM(&indexes, nodeNumber(script), nodeNumber(script), &triangles);
            break;
        case 1:
            nodes.PurgeDeletedNodes(&indexes, &triangles);
            break;
        case 2:
            nodes = NodeArr(nodes);
            triangles = TriangleArr(triangles);
            break;
        case 3:
            nodes.CalculateNormByFaceviewLst(triangles, quads);
            break;
        default:
            nodes.ReGenNormalVectM(takeFacet<TriangleCL>(script));
        }
        writer = nullptr;
    }

    void search() {
        const int a = nodeNumber(script);
        const int b = nodeNumber(script);
        int slot = -5;
        int expected = -5;
        require(triangles.JudgeBoundM(a, b, &slot) == scanForEdge(triangles, a, b, &expected) &&
                    slot == expected,
                "triangles at an edge");
        slot = expected = -5;
        require(quads.JudgeBoundM(a, b, &slot) == scanForEdge(quads, a, b, &expected) &&
                    slot == expected,
                "quads at an edge");
        require(triangles.GetOneNeighbourPntM(a) == scanForNodeBehind(triangles, a) &&
                    quads.GetOneNeighbourPntM(a) == scanForNodeBehind(quads, a),
                "the neighbour of a node");
        const int three[3] = {a, b, nodeNumber(script)};
        const std::vector<int> within = scanForTriangle(triangles, three);
        require(triangles.FindTriangleM(three) == (within.empty() ? -1 : within.back()),
                "the highest triangle");
        int pair[2] = {a, b};
        triangles.GetOneBoundWithStIdxM(b, pair, &slot);
        const float point[3] = {0.00003F, 1, 2};
        NodeCL node;
        require(nodes.GetNearestNodeM(node, point) == scanForNearest(nodes, point),
                "the nearest node");
    }

    // A dead node over a live one leaves the number of live items too high: a host stores live
    // ones.
    static void recount(NodeArr &list) {
        if (list.GetAvailableNumM() != liveItems(list)) {
            list = NodeArr();
        }
    }

    Script &script;
    NodeArr nodes;
    TriangleArr triangles;
    QuadArr quads;
    NodeCL *writer = nullptr;
    int room = 0;
    bool countsHold = true;
};

} // namespace

void fuzz::run(const std::string &input) {
    Script script(input);
    Meshes meshes(script);
    for (int steps = 0; steps < 60 && !script.isAtEnd(); ++steps) {
        meshes.step();
    }
    meshes.finish();
    meshes.reread();
    for (int steps = 0; steps < 40 && !script.isAtEnd(); ++steps) {
        meshes.step();
    }
    meshes.finish();
}

std::vector<std::string> fuzz::seeds() {
    std::vector<std::string> all;
    for (int number = 1; number < 6; ++number) {
        std::string script;
        for (int i = 0; i < 900; ++i) {
            script += static_cast<char>((i * i * number / 7 + i) % 250);
        }
        all.push_back(script);
    }
    return all;
}
