#include "part.h"

#include <array>
#include <cmath>
#include <numbers>

#include "program.h"
#include "progress.h"
#include "trunnion/geometry/planes.h"
#include "trunnion/geometry/scalars.h"
#include "trunnion/meshes/quad_arr.h"

namespace {

constexpr long long mostTriangles = 4'000'000;

// The swept profile, row by row, and the node of the mesh that stands for each of its points.
class Grid {
public:
    Grid(const Profile &profile, int turnSteps, NodeArr &merged)
        : swept(profile.row()), columns(swept.GetBoundM()), steps(turnSteps), nodes(merged) {
        const float origin[3] = {0.0F, 0.0F, 0.0F};
        const float axis[3] = {0.0F, 0.0F, 1.0F};
        swept.ExtendByRotateToCircleM(steps, origin, axis, 0.0F, SL_TWO_PI);
        merge();
    }

    int rows() const { return steps; } // of one turn
    int lastColumn() const { return columns - 1; }
    int node(int row, int column) const { return indexes[slotOf(row, column)]; }

private:
    // The sweep meets its start again twice: turned all the way, with what rounding adds, and as
    // an exact copy, which stands behind it and is the one that closes the surface.
    std::size_t slotOf(int row, int column) const {
        const int exact = row == steps ? steps + 1 : row;
        return static_cast<std::size_t>(exact) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(column);
    }

    // One node for all points at one place: the poles, and the first row and the closing one.
    void merge() {
        indexes.assign(static_cast<std::size_t>(swept.GetBoundM()), SL_DELETED_INT);
        Progress progress("merging nodes", static_cast<std::size_t>(steps));
        for (int row = 0; row <= steps; ++row) {
            progress.show(static_cast<std::size_t>(row));
            for (int column = 0; column < columns; ++column) {
                const std::size_t slot = slotOf(row, column);
                nodes.MergeNodeLstM(*swept.GetItemPM(static_cast<int>(slot)), &indexes[slot]);
            }
        }
    }

    NodeArr swept;
    int columns;
    int steps;
    NodeArr &nodes;
    std::vector<int> indexes;
};

// The strip between two rows, from pole to pole. Seen from outside, with the profile running
// upwards, row `row` is on the right.
class Gore {
public:
    Gore(const Grid &points, const Profile &section, int row)
        : grid(points), profile(section), right(row) {
        const double half = std::numbers::pi / points.rows();
        const double angle = (2 * row + 1) * half;
        cosine = std::cos(angle);
        sine = std::sin(angle);
        narrowing = std::cos(half);
    }

    // Corner 0 of each triangle is chosen so that unfolding, which tries the edges in the order
    // (0, 2), (1, 0), (2, 1), follows the strip to its end before it crosses to the next one: the
    // strips then lie side by side, joined at the poles in turn, and do not overlap.
    void addTo(Part &part) const {
        const int last = grid.lastColumn();
        const int left = right + 1;
        add({grid.node(left, 1), grid.node(right, 0), grid.node(right, 1)}, 0, part);
        for (int lower = 1; lower + 1 < last; ++lower) {
            const int upper = lower + 1;
            add({grid.node(right, lower), grid.node(left, upper), grid.node(left, lower)}, lower,
                part);
            add({grid.node(left, upper), grid.node(right, lower), grid.node(right, upper)}, lower,
                part);
        }
        add({grid.node(right, last - 1), grid.node(right, last), grid.node(left, last - 1)},
            last - 1, part);
    }

private:
    void add(const std::array<int, 3> &corners, int chord, Part &part) const {
        if (corners[0] == corners[1] || corners[1] == corners[2] || corners[2] == corners[0]) {
            return; // points so near to each other that they are one node
        }
        const std::array<float, 3> normal = normalOf(chord);
        part.mesh.triangles.AddTriangleM(corners.data(), normal.data());
        part.elements.push_back(profile.elements[static_cast<std::size_t>(chord)]);
    }

    // Worked out from the profile: the corners of a small facet are too close for it.
    std::array<float, 3> normalOf(int chord) const {
        const PlanePoint &a = profile.points[static_cast<std::size_t>(chord)];
        const PlanePoint &b = profile.points[static_cast<std::size_t>(chord) + 1];
        // The facet lies nearer to the axis than its edges do.
        const double radial = a.z - b.z;
        const double axial = (b.x - a.x) * narrowing;
        const double length = std::hypot(radial, axial);
        return {static_cast<float>(radial / length * cosine),
                static_cast<float>(radial / length * sine), static_cast<float>(axial / length)};
    }

    const Grid &grid;
    const Profile &profile;
    int right;
    double cosine, sine; // of the direction of the middle
    double narrowing;
};

void refuseTooMany(const Profile &profile, int steps) {
    const long long wanted = 2LL * steps * static_cast<long long>(profile.points.size());
    if (wanted > mostTriangles) {
        throw ProgramError("the part takes " + std::to_string(wanted) +
                           " triangles at this tolerance, and no more than " +
                           std::to_string(mostTriangles) + " are made");
    }
}

} // namespace

Part sweep(const Profile &profile, int steps) {
    refuseTooMany(profile, steps);
    Part part;
    part.gores = steps;
    const Grid grid(profile, steps, part.mesh.nodes);
    for (int row = 0; row < steps; ++row) {
        Gore(grid, profile, row).addTo(part);
    }
    part.mesh.nodes.CalculateNormByFaceviewLst(part.mesh.triangles, QuadArr());
    return part;
}

Unfolding unfold(const Mesh &mesh) {
    TriangleArr walked = mesh.triangles; // the walk uses up the tags
    XYCoordSysD noFrame{};
    noFrame.origin[0] = SL_DELETED_REAL;
    Unfolding flat;
    walked.GetTexCoordM(noFrame, &flat.corners, mesh.nodes);
    for (int slot = 0; slot < walked.GetBoundM(); ++slot) {
        flat.reached += walked.GetItemPM(slot)->IsAvailableM() == TAG_AVAILABLE ? 0 : 1;
    }
    return flat;
}
