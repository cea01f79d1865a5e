#include "files.h"

#include <cstdio>
#include <memory>
#include <utility>

#include "trunnion/geometry/matrices.h"
#include "trunnion/persistence/list_tags.h"

namespace {

constexpr int writeFailed = 108;
constexpr int openFailed = 109;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

File open(const std::string &path, const char *mode) {
    File file(std::fopen(path.c_str(), mode), &std::fclose);
    if (!file) {
        throw openFailed;
    }
    return file;
}

void close(File file) {
    const bool failed = std::ferror(file.get()) != 0;
    if (std::fclose(file.release()) != 0 || failed) {
        throw writeFailed;
    }
}

// A node list has no writer of its own: the host names it and frames its records.
void writeNodes(const NodeArr &nodes, std::FILE *file) {
    char tag[100];
    slGetArrBeginStr(tag, "NODE");
    std::fprintf(file, "%10d,  %s\n", nodes.GetBoundM(), tag);
    slGetArrIndexStr(tag, "NODE");
    for (int i = 0; i < nodes.GetBoundM(); ++i) {
        std::fprintf(file, "%10d,  %s\n", i, tag);
        NodeCL node = *nodes.GetItemPM(i);
        node.FmWriteOzkFileM(file);
    }
    slGetArrEndStr(tag, "NODE");
    std::fprintf(file, "%s\n", tag);
}

} // namespace

void saveText(const Mesh &mesh, const std::string &path) {
    File file = open(path, "w");
    writeNodes(mesh.nodes, file.get());
    TriangleArr triangles = mesh.triangles;
    triangles.FmWriteTriangleLstToFileM(file.get());
    close(std::move(file));
}

void loadText(Mesh &mesh, const std::string &path) {
    const File file = open(path, "r");
    mesh.nodes.FmReadNodeLstM(file.get());
    mesh.triangles.FmReadTriangleLstM(file.get());
}

void exportDatabase(const Mesh &mesh, const std::string &path) {
    File file = open(path, "w");
    float asItStands[16];
    slSetIdentity(asItStands);
    mesh.triangles.ExportTriangleLstDBFileM(file.get(), asItStands);
    close(std::move(file));
}
