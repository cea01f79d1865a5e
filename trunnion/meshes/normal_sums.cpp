// Sums of facet normals at nodes, and the nodes' normals from them, in as many ways as the
// processor may have vectors. Each body is written once: the sums with the vector as a parameter,
// the normals over blocks of nodes that the compiler turns into vectors of the width at hand.
#include "trunnion/meshes/detail/normal_sums.h"

#include <cmath>

#include "trunnion/geometry/detail/guards.h"

namespace trunnion::detail {

namespace {

constexpr int blockSize = 16;

// `Sum` is a NormalSum or a vector of the processor in its place.
template <class Sum>
inline __attribute__((always_inline)) void addNormals(const TriangleCL *triangles,
                                                      int triangleCount, int nodeCount, Sum *sums) {
    const auto isNode = [nodeCount](int number) {
        return static_cast<unsigned int>(number) < static_cast<unsigned int>(nodeCount);
    };
    for (const TriangleCL *end = triangles + triangleCount; triangles != end; ++triangles) {
        const float *normal = triangles->GetNormPM();
        const Sum added = {normal[0], normal[1], normal[2], 1.0};
        const int a = triangles->GetNodeIdxPM()[0];
        const int b = triangles->GetNodeIdxPM()[1];
        const int c = triangles->GetNodeIdxPM()[2];
        if (isNode(a)) {
            sums[a] += added;
        }
        if (isNode(b) && b != a) {
            sums[b] += added;
        }
        if (isNode(c) && c != a && c != b) {
            sums[c] += added;
        }
    }
}

// What setNormalisedSum does, for a block of nodes and without a branch for each. Squares of floats
// do not overflow; a sum that is no number has no direction.
inline __attribute__((always_inline)) void setBlock(const NormalSum *sums, NodeCL *nodes) {
    float normals[3][blockSize];
    for (int i = 0; i < blockSize; ++i) {
        normals[0][i] = roundToFloat(sums[i].x);
        normals[1][i] = roundToFloat(sums[i].y);
        normals[2][i] = roundToFloat(sums[i].z);
    }
    for (int i = 0; i < blockSize; ++i) {
        const double x = normals[0][i];
        const double y = normals[1][i];
        const double z = normals[2][i];
        const double square = x * x + y * y + z * z;
        const double length = std::sqrt(square);
        const bool hasDirection = (square >= SL_TINY) & (length > SL_ZERO_D);
        const auto alongX = static_cast<float>(x / length);
        const auto alongY = static_cast<float>(y / length);
        const auto alongZ = static_cast<float>(z / length);
        normals[0][i] = hasDirection ? alongX : 1.0F;
        normals[1][i] = hasDirection ? alongY : 0.0F;
        normals[2][i] = hasDirection ? alongZ : 0.0F;
    }
    for (int i = 0; i < blockSize; ++i) {
        if (sums[i].facets > 0.0) {
            const float normal[3] = {normals[0][i], normals[1][i], normals[2][i]};
            nodes[i].setNormal(normal);
        }
    }
}

inline __attribute__((always_inline)) void setNormals(const NormalSum *sums, NodeCL *nodes,
                                                      int count) {
    int done = 0;
    for (; count - done >= blockSize; done += blockSize) {
        setBlock(sums + done, nodes + done);
    }
    for (; done < count; ++done) {
        if (sums[done].facets > 0.0) {
            setNormalisedSum({sums[done].x, sums[done].y, sums[done].z}, nodes[done]);
        }
    }
}

void setPlain(const TriangleCL *triangles, int triangleCount, NodeCL *nodes, int nodeCount,
              NormalSum *sums) {
    addNormals(triangles, triangleCount, nodeCount, sums);
    setNormals(sums, nodes, nodeCount);
}

#ifdef TRUNNION_WIDE_VECTORS
using FourDoubles = double __attribute__((vector_size(32), may_alias));

__attribute__((target("avx2"))) void set256(const TriangleCL *triangles, int triangleCount,
                                            NodeCL *nodes, int nodeCount, NormalSum *sums) {
    static_assert(sizeof(FourDoubles) == sizeof(NormalSum));
    addNormals(triangles, triangleCount, nodeCount, reinterpret_cast<FourDoubles *>(sums));
    setNormals(sums, nodes, nodeCount);
}
#endif

} // namespace

void setNormalisedSum(const Vec3 &sum, NodeCL &node) {
    float normal[3];
    store(sum, normal);
    Vec3 direction = load3(normal); // of the sum as a normal holds it
    normalize(direction);
    store(direction, normal);
    node.setNormal(normal);
}

void setNormalsBySums(const TriangleCL *triangles, int triangleCount, NodeCL *nodes, int nodeCount,
                      NormalSum *sums, [[maybe_unused]] VectorWidth width) {
#ifdef TRUNNION_WIDE_VECTORS
    if (width != VectorWidth::plain) { // 512 bits are no faster than 256 here
        set256(triangles, triangleCount, nodes, nodeCount, sums);
        return;
    }
#endif
    setPlain(triangles, triangleCount, nodes, nodeCount, sums);
}

} // namespace trunnion::detail
