// All points of a list moved by a matrix. Every contender computes in doubles and stores floats.
#include <functional>

#include <Eigen/Core>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include "bench/peers/contest.h"
#include "trunnion/containers/detail/transform_points.h"
#include "trunnion/geometry/matrices.h"

namespace {

using bench::Point;
using trunnion::detail::transformPoints;

using EigenPoints = Eigen::Matrix<float, 3, Eigen::Dynamic>;

void moveByEigen(EigenPoints &points, const Eigen::Matrix3d &turn, const Eigen::Vector3d &shift) {
    for (Eigen::Index i = 0; i < points.cols(); ++i) {
        points.col(i) = (turn * points.col(i).cast<double>() + shift).cast<float>();
    }
}

void moveByGlm(std::vector<glm::vec3> &points, const glm::dmat4 &matrix) {
    for (glm::vec3 &p : points) {
        p = glm::vec3(matrix * glm::dvec4(p, 1.0));
    }
}

// A turn about Z and a shift back and forth: points stay where they can be moved again.
void moveBy(bench::Contest &contest, double ratioToReach,
            const std::function<void(Point3DArr &, const float *)> &move) {
    const int count = contest.size();
    float M[16];
    slRotateByZ(0.5F, M);
    M[12] = 0.25F;
    Eigen::Matrix3d turn;
    glm::dmat4 matrix(1.0);
    for (int k = 0; k < 16; ++k) {
        matrix[k / 4][k % 4] = M[k];
        if (k % 4 < 3 && k / 4 < 3) {
            turn(k % 4, k / 4) = M[k];
        }
    }
    const Eigen::Vector3d shift(M[12], M[13], M[14]);
    Point3DArr ours = bench::randomCloud(count);
    EigenPoints byEigen(3, count);
    std::vector<glm::vec3> byGlm;
    for (int i = 0; i < count; ++i) {
        const float *p = ours.GetItemPM(i);
        byEigen.col(i) << p[0], p[1], p[2];
        byGlm.emplace_back(p[0], p[1], p[2]);
    }
    contest.items(count, "points", 2 * sizeof(Point));
    contest.ours([&] { move(ours, M); });
    contest.peer("Eigen", ratioToReach, [&] { moveByEigen(byEigen, turn, shift); });
    contest.peer("GLM", ratioToReach, [&] { moveByGlm(byGlm, matrix); });
    contest.measure([&] {
        for (int i = 0; i < count; ++i) {
            const float *p = ours.GetItemPM(i);
            for (int axis = 0; axis < 3; ++axis) {
                bench::require(
                    bench::isNear(byEigen(axis, i), p[axis], 1e-5) &&
                        bench::isNear(byGlm[static_cast<std::size_t>(i)][axis], p[axis], 1e-5),
                    "matrix times points");
            }
        }
    });
}

void byWidestVectors(bench::Contest &contest) {
    contest.note("Compared after one move, within 0.00001: the peers add in another order");
    moveBy(contest, 1.8, [](Point3DArr &points, const float *M) { points.TransByMatrixM(M, 0); });
}

// What every processor can do that the library is built for.
void byPlainVectors(bench::Contest &contest) {
    moveBy(contest, 0.95, [](Point3DArr &points, const float *M) {
        transformPoints(M, true, points.getCurrentItemPrtM(), points.GetBoundM(),
                        trunnion::detail::VectorWidth::plain);
    });
}

const bench::Row rows[] = {
    {"Point3DArr::TransByMatrixM", "points", 10000000, byWidestVectors},
    {"Point3DArr::TransByMatrixM", "points, vectors of two doubles", 10000000, byPlainVectors},
};

} // namespace
