// Containers: the byte buffer as a part program, and the measures of a point cloud.
#include "bench/inputs.h"

#include <cstring>
#include <string_view>

#include "trunnion/containers/char_arr.h"

namespace {

constexpr int lineCount = 100000;

CharArr bufferOf(const std::string &text) {
    CharArr buffer;
    buffer.SetValueM(static_cast<int>(text.size()), text.data());
    return buffer;
}

bool holds(const CharArr &buffer, std::string_view text) {
    return std::string_view(buffer.GetContentConstPtrM(),
                            static_cast<std::size_t>(buffer.GetBoundM())) == text;
}

// The whole text is looked through for bytes that do not belong in it.
void programNumber(benchmark::State &state) {
    const std::string text = bench::partProgram(lineCount);
    CharArr buffer = bufferOf(text);
    buffer.AddProgNoM(1234);
    bench::require(holds(buffer, "O1234\r\n" + text), "number of a program");
    int number = 1000;
    bench::measure(state, lineCount, [&] {
        buffer.AddProgNoM(number);
        number = number < 9999 ? number + 1 : 1000;
    });
}
BENCHMARK(programNumber)->Unit(benchmark::kMillisecond);

// A line goes into the middle and out again.
void insertAndDeleteLine(benchmark::State &state) {
    const std::string line = "G0 X0 Y0 Z100\r\n";
    const int length = static_cast<int>(line.size());
    std::string text = bench::partProgram(lineCount);
    CharArr buffer = bufferOf(text);
    const int middle = static_cast<int>(text.find('\n', text.size() / 2)) + 1;
    const std::string before = text;
    text.insert(static_cast<std::size_t>(middle), line);
    buffer.InsertStringM(middle, line.data(), length);
    bench::require(holds(buffer, text), "insertion");
    buffer.DelStringM(middle, length);
    bench::require(holds(buffer, before), "deletion");
    bench::measure(state, 1, [&] {
        buffer.InsertStringM(middle, line.data(), length);
        buffer.DelStringM(middle, length);
    });
}
BENCHMARK(insertAndDeleteLine)->Unit(benchmark::kMicrosecond);

int walkLines(const CharArr &buffer) {
    char line[100];
    int count = 0;
    for (int start = 0; buffer.GetOneLineM(start, 0, line, 1) != 0; ++count) {
        start += static_cast<int>(std::strlen(line));
    }
    return count;
}

void readLines(benchmark::State &state) {
    const CharArr buffer = bufferOf(bench::partProgram(lineCount));
    bench::require(walkLines(buffer) == lineCount, "lines of a program");
    bench::measure(state, lineCount, [&] { benchmark::DoNotOptimize(walkLines(buffer)); });
}
BENCHMARK(readLines)->Unit(benchmark::kMillisecond);

// Measures of a cloud.

constexpr int cloudSize = 2000;

// Points of the plane 0.1 x + 0.2 y - z + 3 = 0.
Point3DArr planeCloud() {
    Point3DArr cloud = bench::randomCloud(cloudSize);
    for (int i = 0; i < cloudSize; ++i) {
        const float *p = cloud.GetItemPM(i);
        cloud.SetItemZValueM(i, 0.1F * p[0] + 0.2F * p[1] + 3.0F);
    }
    return cloud;
}

void planeOfLeastSquares(benchmark::State &state) {
    const Point3DArr cloud = planeCloud();
    const bench::Point up = {0, 0, 1};
    bench::Point normal{};
    float d = 0;
    bench::require(cloud.GenPlaneByLeastSquareM(up.data(), normal.data(), &d) == 1, "a plane");
    for (int i = 0; i < cloudSize; ++i) {
        const float *p = cloud.GetItemPM(i);
        bench::require(bench::isNear(bench::dot(normal, {p[0], p[1], p[2]}), -d),
                       "plane of least squares");
    }
    bench::measure(state, cloudSize, [&] {
        benchmark::DoNotOptimize(cloud.GenPlaneByLeastSquareM(up.data(), normal.data(), &d));
    });
}
BENCHMARK(planeOfLeastSquares)->Unit(benchmark::kMicrosecond);

void shapeErrorToPlane(benchmark::State &state) {
    const Point3DArr cloud = bench::randomCloud(cloudSize);
    const bench::Point up = {0, 0, 1};
    double sum = 0;
    double squares = 0;
    for (int i = 0; i < cloudSize; ++i) {
        const double deviation = std::fabs(static_cast<double>(cloud.GetItemPM(i)[2]) + 1.0);
        sum += deviation;
        squares += deviation * deviation;
    }
    const double expected = std::sqrt(squares - sum * sum / cloudSize) / cloudSize;
    bench::require(
        bench::isNear(cloud.GetShapeErrorToPlaneM(up.data(), 1.0F), expected, 1e-5 * expected),
        "shape error");
    bench::measure(state, cloudSize,
                   [&] { benchmark::DoNotOptimize(cloud.GetShapeErrorToPlaneM(up.data(), 1.0F)); });
}
BENCHMARK(shapeErrorToPlane)->Unit(benchmark::kMicrosecond);

void farthestTwoPoints(benchmark::State &state) {
    Point3DArr cloud = bench::randomCloud(cloudSize);
    const bench::Point ends[2] = {{-50, 0, 0}, {50, 0, 0}};
    cloud.SetItemM(ends[0].data(), 700);
    cloud.SetItemM(ends[1].data(), 1400);
    int lower = 0;
    int upper = 0;
    bench::require(cloud.GetFarthestTwoPointsM(0, -1, &lower, &upper) == 10000.0F && lower == 700 &&
                       upper == 1400,
                   "farthest points");
    const Point3DArr plain = bench::randomCloud(cloudSize);
    bench::measure(state, cloudSize, [&] {
        benchmark::DoNotOptimize(plain.GetFarthestTwoPointsM(0, -1, &lower, &upper));
    });
}
BENCHMARK(farthestTwoPoints)->Unit(benchmark::kMillisecond);

} // namespace
