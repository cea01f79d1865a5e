// The road of a mesh through the library: facets become lists of nodes and triangles, the
// boundaries are walked, both lists go to a compressed file and come back from it.
//
//   mesh_road [MESH [OUTPUT]]
//
// MESH is an STL, OBJ or PLY file; without it the program makes a part of its own. The compressed
// file is OUTPUT, or a temporary file that is removed again.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include <unistd.h>

#include "boundary.h"
#include "importer.h"
#include "mesh.h"
#include "sample_part.h"
#include "trunnion/platform/framework.h"

namespace {

namespace fs = std::filesystem;

// Where the compressed file goes; a temporary one is removed in the end.
class OutputFile {
public:
    explicit OutputFile(const char *chosen)
        : temporary(chosen == nullptr),
          name(temporary ? (fs::temp_directory_path() /
                            ("mesh_road-" + std::to_string(getpid()) + ".tmp"))
                               .string()
                         : chosen) {}
    ~OutputFile() {
        if (temporary) {
            std::error_code ignored;
            fs::remove(name, ignored);
        }
    }
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    const std::string &path() const { return name; }

private:
    bool temporary;
    std::string name;
};

int fail(const std::string &message) {
    std::fprintf(stderr, "mesh_road: %s\n", message.c_str());
    return 1;
}

void printCounts(const Mesh &mesh, const MergeCount &merged) {
    std::printf("nodes: %d\n", mesh.nodes.GetAvailableNumM());
    std::printf("triangles: %d\n", mesh.triangles.GetAvailableNumM());
    std::printf("degenerate: %d\n", merged.degenerate);
    std::printf("duplicate: %d\n", merged.duplicate);
}

int storeAndCompare(const Mesh &mesh, const std::string &path) {
    save(mesh, path);
    Mesh again;
    const int bytes = load(again, path);
    const double percent = 100.0 * bytes / static_cast<double>(rawSize(mesh));
    std::printf("file: %d bytes (%.0f%% of raw)\n", bytes, percent);
    const std::string different = difference(mesh, again);
    if (!different.empty()) {
        return fail("read back differently: " + different);
    }
    std::puts("read back: identical");
    return 0;
}

int travel(const Soup &soup, const std::string &outputPath) {
    Mesh mesh;
    const MergeCount merged = mergeFacets(soup, mesh);
    printCounts(mesh, merged);
    const BoundaryCount boundary = walkBoundaries(mesh.triangles);
    if (boundary.walked != boundary.counted) {
        return fail("the walks passed " + std::to_string(boundary.walked) + " of " +
                    std::to_string(boundary.counted) + " boundary edges");
    }
    std::printf("boundary edges: %d\n", boundary.walked);
    return storeAndCompare(mesh, outputPath);
}

// What the codes of the streams mean for the compressed file.
const char *streamFailure(int code) {
    switch (code) {
    case 107:
        return "cannot be read back";
    case 108:
        return "cannot be written";
    case 109:
        return "cannot be opened";
    default:
        return "came back damaged";
    }
}

bool sameFile(const char *a, const char *b) {
    std::error_code ignored;
    return fs::equivalent(a, b, ignored);
}

int run(const char *meshPath, const char *outputPath) {
    const std::string subject = meshPath != nullptr ? meshPath : "sample part";
    if (outputPath != nullptr && sameFile(meshPath, outputPath)) {
        return fail(subject + ": the output would overwrite the mesh");
    }
    try {
        const OutputFile output(outputPath);
        const Soup soup = meshPath != nullptr ? importMesh(meshPath) : samplePart();
        try {
            return travel(soup, output.path());
        } catch (int code) {
            return fail(output.path() + ": the compressed file " + streamFailure(code));
        }
    } catch (const std::exception &error) {
        return fail(subject + ": " + error.what());
    } catch (CMemoryException *error) {
        error->Delete();
        return fail(subject + ": out of memory");
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 3) {
        return fail("usage: mesh_road [MESH [OUTPUT]]");
    }
    return run(argc > 1 ? argv[1] : nullptr, argc > 2 ? argv[2] : nullptr);
}
