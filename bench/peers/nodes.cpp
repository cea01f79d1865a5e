// The corners of loose triangles merged within the library's tolerance, beside VTK.
#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkStaticCleanPolyData.h>

#include "bench/peers/loose.h"
#include "trunnion/geometry/scalars.h"

namespace {

using bench::Soup;

vtkNew<vtkPolyData> dataOf(const Soup &soup) {
    vtkNew<vtkPoints> points;
    points->SetDataTypeToFloat();
    vtkNew<vtkCellArray> triangles;
    for (std::size_t i = 0; i < soup.size(); ++i) {
        const auto id = points->InsertNextPoint(soup[i].data());
        if (i % 3 == 2) {
            const vtkIdType corners[] = {id - 2, id - 1, id};
            triangles->InsertNextCell(3, corners);
        }
    }
    vtkNew<vtkPolyData> data;
    data->SetPoints(points);
    data->SetPolys(triangles);
    return data;
}

void mergeNodes(bench::Contest &contest, const Soup &soup, double ratioToReach, bool tolerant) {
    const vtkNew<vtkPolyData> data = dataOf(soup);
    NodeArr nodes;
    std::vector<int> slots(soup.size());
    vtkNew<vtkStaticCleanPolyData> cleaned;
    cleaned->SetInputData(data);
    cleaned->ToleranceIsAbsoluteOn();
    cleaned->SetAbsoluteTolerance(SL_ZERO_D);
    contest.items(static_cast<double>(soup.size()), "corners", sizeof(bench::Point) + sizeof(int));
    contest.ours([&] { bench::mergeCorners(soup, nodes, slots); }, [&] { nodes = NodeArr(); });
    contest.peer(
        "vtkStaticCleanPolyData", ratioToReach, [&] { cleaned->Update(); },
        [&] {
            cleaned->GetOutput()->Initialize();
            cleaned->Modified();
        });
    contest.note("The peer may keep another of the points that it merges: the number of points is "
                 "compared, on real meshes within a thousandth");
    contest.measure([&] {
        bench::require(
            bench::isSameCount(static_cast<std::size_t>(nodes.GetBoundM()),
                               static_cast<std::size_t>(cleaned->GetOutput()->GetNumberOfPoints()),
                               tolerant),
            "number of merged nodes");
    });
}

void mergeExact(bench::Contest &contest) {
    contest.growthLimit(10.0);
    mergeNodes(contest, bench::gridSoup(contest.size()), 1.2, false);
}

// Corners up to 0.000035 from where they belong.
void mergeJittered(bench::Contest &contest) {
    contest.growthLimit(10.0);
    mergeNodes(contest, bench::gridSoup(contest.size(), 2e-5F), 2.0, false);
}

const bench::Row rows[] = {
    {"node merge", "grid with exact corners", 125000, mergeExact},
    {"node merge", "grid with exact corners", 1000000, mergeExact},
    {"node merge", "grid with jittered corners", 125000, mergeJittered},
    {"node merge", "grid with jittered corners", 1000000, mergeJittered},
};
const bench::MeshRows meshRows("node merge", [](bench::Contest &contest, const Soup &soup) {
    mergeNodes(contest, soup, 1.2, true);
});

} // namespace
