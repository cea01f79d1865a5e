#include "importer.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

namespace {

namespace fs = std::filesystem;

std::string readFile(const std::string &path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        throw ImportError("no such file");
    }
    if (!fs::is_regular_file(status)) {
        throw ImportError("not a file");
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw ImportError("the file cannot be opened");
    }
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (file.bad()) {
        throw ImportError("the file cannot be read");
    }
    if (bytes.empty()) {
        throw ImportError("the file is empty");
    }
    return bytes;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

using Check = std::size_t (*)(std::string_view bytes);

Check checkFor(const std::string &path) {
    const std::string extension = lowerCase(fs::path(path).extension().string());
    if (extension == ".stl") {
        return checkStl;
    }
    if (extension == ".obj") {
        return checkObj;
    }
    if (extension == ".ply") {
        return checkPly;
    }
    throw ImportError("no mesh: the name ends neither in .stl nor in .obj nor in .ply");
}

bool hasPolygons(const aiMesh &mesh) {
    return std::any_of(mesh.mFaces, mesh.mFaces + mesh.mNumFaces,
                       [](const aiFace &face) { return face.mNumIndices > 3; });
}

// The steps of assimp trust what a file says, and so does what follows here.
void checkMesh(const aiMesh &mesh) {
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace &face = mesh.mFaces[i];
        if (std::any_of(face.mIndices, face.mIndices + face.mNumIndices,
                        [&](unsigned int index) { return index >= mesh.mNumVertices; })) {
            throw ImportError("damaged: a face names a point that is not there");
        }
    }
    if (!std::all_of(mesh.mVertices, mesh.mVertices + mesh.mNumVertices, [](const aiVector3D &p) {
            return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
        })) {
        throw ImportError("damaged: a coordinate is no finite number");
    }
}

Corner cornerAt(const aiMesh &mesh, unsigned int index) {
    const aiVector3D &point = mesh.mVertices[index];
    return {point.x, point.y, point.z};
}

void appendFacets(const aiMesh &mesh, Soup &soup) {
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace &face = mesh.mFaces[i];
        if (face.mNumIndices == 3) {
            soup.push_back({cornerAt(mesh, face.mIndices[0]), cornerAt(mesh, face.mIndices[1]),
                            cornerAt(mesh, face.mIndices[2])});
        }
    }
}

std::span<const aiMesh *const> meshesOf(const aiScene &scene) {
    return {scene.mMeshes, scene.mNumMeshes};
}

// The first line of a message, fit for a terminal.
std::string printableLine(const std::string &text) {
    std::string line = text.substr(0, text.find_first_of("\r\n"));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return line;
}

const aiScene &readScene(Assimp::Importer &importer, const std::string &path) {
    // No step that joins or drops anything: merging is what the library is shown for.
    const aiScene *scene = importer.ReadFile(path, 0);
    if (scene == nullptr) {
        throw ImportError("no mesh: " + printableLine(importer.GetErrorString()));
    }
    return *scene;
}

} // namespace

Soup importMesh(const std::string &path) {
    const Check check = checkFor(path);
    const std::size_t announced = check(readFile(path));
    if (announced == 0) {
        throw ImportError("no mesh: the file holds no faces");
    }
    Assimp::Importer importer;
    const aiScene *scene = &readScene(importer, path);
    std::size_t faces = 0;
    bool polygons = false;
    for (const aiMesh *mesh : meshesOf(*scene)) {
        checkMesh(*mesh);
        faces += mesh->mNumFaces;
        polygons = polygons || hasPolygons(*mesh);
    }
    if (faces < announced) {
        throw ImportError("damaged: the file announces " + std::to_string(announced) +
                          " faces and holds " + std::to_string(faces));
    }
    if (polygons) {
        scene = importer.ApplyPostProcessing(aiProcess_Triangulate);
    }
    Soup soup;
    for (const aiMesh *mesh : meshesOf(*scene)) {
        appendFacets(*mesh, soup);
    }
    return soup;
}
