#include "bench/peers/soups.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr const char *folderVariable = "TRUNNION_MESHES";

std::vector<fs::path> meshFiles() {
    std::vector<fs::path> files;
    if (const char *folder = std::getenv(folderVariable)) {
        std::copy_if(fs::directory_iterator(folder), {}, std::back_inserter(files),
                     [](const fs::path &file) { return file.extension() == ".stl"; });
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

Soup gridSoup(int triangles, float jitter) {
    Random random;
    const int fields = static_cast<int>(std::sqrt(triangles / 2.0));
    const float step = 100.0F / static_cast<float>(fields);
    Soup soup;
    soup.reserve(static_cast<std::size_t>(fields) * static_cast<std::size_t>(fields) * 6);
    const auto addCorner = [&](int column, int row) {
        const float x = step * static_cast<float>(column) - 50.0F;
        const float y = step * static_cast<float>(row) - 50.0F;
        const Point moved = random.point(jitter);
        soup.push_back(
            {x + moved[0], y + moved[1], std::sqrt(40000.0F - x * x - y * y) + moved[2]});
    };
    for (int row = 0; row < fields; ++row) {
        for (int column = 0; column < fields; ++column) {
            addCorner(column, row);
            addCorner(column + 1, row);
            addCorner(column, row + 1);
            addCorner(column + 1, row);
            addCorner(column + 1, row + 1);
            addCorner(column, row + 1);
        }
    }
    return soup;
}

Soup readSoup(const std::string &path) {
    constexpr std::size_t headSize = 84; // 80 bytes of text and the number of triangles
    constexpr std::size_t recordSize = 50;
    constexpr std::size_t normalSize = 12;
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    std::uint32_t count = 0;
    if (bytes.size() >= headSize) {
        std::memcpy(&count, &bytes[headSize - sizeof count], sizeof count);
    }
    require(count > 0 && bytes.size() == headSize + recordSize * count, path.c_str());
    Soup soup(3 * static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(&soup[3 * i], &bytes[headSize + recordSize * i + normalSize],
                    3 * sizeof(Point));
    }
    return soup;
}

Patch meshOf(const Soup &soup) {
    Patch mesh;
    for (std::size_t i = 0; i < soup.size(); i += 3) {
        int corners[3];
        for (std::size_t k = 0; k < 3; ++k) {
            mesh.nodes.MergeNodeLstM(nodeAt(soup[i + k]), &corners[k]);
        }
        Point normal{};
        slPlaneNormal(soup[i].data(), soup[i + 1].data(), soup[i + 2].data(), normal.data());
        TriangleCL triangle(TAG_AVAILABLE);
        triangle.SetValueM(corners[0], corners[1], corners[2], normal.data());
        mesh.triangles.MergeTriangleLstM(triangle);
    }
    return mesh;
}

MeshRows::MeshRows(const std::string &work,
                   const std::function<void(Contest &, const Soup &)> &declare) {
    const std::vector<fs::path> files = meshFiles();
    for (const fs::path &file : files) {
        Row(work, file.stem().string(), 0,
            [file, declare](Contest &contest) { declare(contest, readSoup(file.string())); });
    }
    if (files.empty()) {
        Row(work, "real meshes", 0, [](Contest &contest) {
            contest.skip(std::string("no STL files, give their folder as ") + folderVariable);
        });
    }
}

} // namespace bench
