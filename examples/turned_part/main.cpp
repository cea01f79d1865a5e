// A turned part from its part program: the finished contour becomes curves, the curves a profile,
// the profile a closed mesh, the mesh files and pictures.
//
//   turned_part [PROGRAM [FOLDER [TOLERANCE]]]
//
// PROGRAM is ISO code for a lathe; without it a program of this project is turned. The files go to
// FOLDER, "out" without one, which is made if it is not there. TOLERANCE tells how far the mesh may
// lie off the contour, in millimetres; 0.01 without one.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <limits>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>

#include "boundary.h"
#include "drawings.h"
#include "files.h"
#include "picture.h"
#include "program.h"
#include "trunnion/persistence/file_versions.h"
#include "trunnion/platform/framework.h"

namespace {

namespace fs = std::filesystem;

constexpr int programNumber = 1;
constexpr double usualTolerance = 0.01;
constexpr double finestTolerance = 0.0005;
constexpr double coarsestTolerance = 10.0;
constexpr double degree = std::numbers::pi / 180.0;
constexpr double coarsestTurn = 15.0 * degree;
constexpr double anyLength = std::numeric_limits<double>::max();
constexpr int pictureSize = 900;
constexpr int mostPictureTriangles = 1'500'000;
// So many strips of the surface can be told apart on a drawing.
constexpr int mostGoresDrawn = 48;

struct Options {
    std::string program = TURNED_PART_SAMPLE;
    std::string folder = "out";
    double tolerance = usualTolerance;
};

int fail(const std::string &message) {
    std::fprintf(stderr, "turned_part: %s\n", message.c_str());
    return 1;
}

std::optional<double> toleranceIn(std::string_view text) {
    double value = 0.0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= finestTolerance) ||
        value > coarsestTolerance) {
        return std::nullopt;
    }
    return value;
}

// What the example writes, all in one folder.
class OutputFolder {
public:
    // Throws where the folder cannot be made, or where the program is one of the files.
    explicit OutputFolder(const Options &options) : folder(options.folder) {
        std::error_code ignored;
        fs::create_directories(folder, ignored);
        if (!fs::is_directory(folder, ignored)) {
            throw ProgramError("the folder " + options.folder + " cannot be made");
        }
        for (const char *name : {compressed, text, database, picture, contour, unfolded}) {
            if (fs::equivalent(folder / name, options.program, ignored)) {
                throw ProgramError("the output would overwrite the program");
            }
        }
    }

    std::string path(const char *name) const { return (folder / name).string(); }

    static constexpr const char *compressed = "part.tqz";
    static constexpr const char *text = "part.txt";
    static constexpr const char *database = "part.db";
    static constexpr const char *picture = "part.png";
    static constexpr const char *contour = "contour.svg";
    static constexpr const char *unfolded = "unfolded.svg";

private:
    fs::path folder;
};

// Stores the mesh in its three forms and compares what comes back from two of them.
std::string storeAndCompare(const Mesh &mesh, const OutputFolder &output) {
    save(mesh, output.path(OutputFolder::compressed));
    saveText(mesh, output.path(OutputFolder::text));
    exportDatabase(mesh, output.path(OutputFolder::database));
    Mesh fromCompressed;
    load(fromCompressed, output.path(OutputFolder::compressed));
    Mesh fromText;
    fromText.version = mesh.version; // the text form has none
    loadText(fromText, output.path(OutputFolder::text));
    const std::string inCompressed = difference(mesh, fromCompressed);
    return inCompressed.empty() ? difference(mesh, fromText) : inCompressed;
}

void writeFile(const std::string &content, const std::string &path) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file) {
        throw PictureError(path + ": cannot be written");
    }
}

void printContour(const Program &program, const std::vector<Element> &contour,
                  const Profile &profile) {
    std::printf("program: O%d, %d lines\n", program.number, program.lines);
    std::printf("contour: %d lines, %d arcs\n", countOf(CUR_LINE, contour),
                countOf(CUR_ARC_ZX, contour));
    std::printf("profile: %zu nodes\n", profile.points.size());
    std::printf("size: diameter %.3f, length %.3f\n", 2.0 * profile.largestRadius(),
                profile.length());
}

void printMesh(const Mesh &mesh, const BoundaryCount &boundary) {
    std::printf("nodes: %d\n", mesh.nodes.GetAvailableNumM());
    std::printf("triangles: %d\n", mesh.triangles.GetAvailableNumM());
    std::printf("boundary edges: %d\n", boundary.counted);
}

// Facets are lit one by one: on a picture they must be small to look smooth. A chord of a great arc
// need not be shorter than some pixels.
Fineness finenessOfPicture(const Profile &profile) {
    const double extent = std::max(profile.length(), 2.0 * profile.largestRadius());
    return {0.01 * extent, 1.2 * degree, 7.0 * extent / pictureSize};
}

void draw(const Part &part, const Profile &profile, const std::vector<Element> &contour,
          const std::string &title, const OutputFolder &output) {
    writeFile(drawContour(contour, profile, "Contour of " + title),
              output.path(OutputFolder::contour));

    std::printf("unfolded: %d of %d triangles\n", unfold(part.mesh).reached,
                part.mesh.triangles.GetBoundM());
    const Part inFewStrips = sweep(profile, std::min(part.gores, mostGoresDrawn));
    writeFile(drawUnfolded(inFewStrips, unfold(inFewStrips.mesh), contour,
                           "Surface of " + title + ", laid flat"),
              output.path(OutputFolder::unfolded));

    const Fineness fineness = finenessOfPicture(profile);
    const Profile fine = profileOf(contour, fineness);
    const int most = mostPictureTriangles / (2 * static_cast<int>(fine.points.size()));
    drawPicture(sweep(fine, std::clamp(fine.steps(fineness), 3, std::max(most, 3))).mesh,
                pictureSize, output.path(OutputFolder::picture));
    std::printf("pictures: %s, %s, %s\n", output.path(OutputFolder::picture).c_str(),
                output.path(OutputFolder::contour).c_str(),
                output.path(OutputFolder::unfolded).c_str());
}

int turn(const Options &options) {
    const Program program = readProgram(options.program, programNumber);
    const std::vector<Element> contour = contourOf(program.finish, options.tolerance);
    const Fineness fineness{options.tolerance, coarsestTurn, anyLength};
    const Profile profile = profileOf(contour, fineness);
    const OutputFolder output(options);
    Part part = sweep(profile, profile.steps(fineness));
    part.mesh.version = slGetFileVersion("ozk5.002");
    printContour(program, contour, profile);
    printMesh(part.mesh, walkBoundaries(part.mesh.triangles));

    const std::string different = storeAndCompare(part.mesh, output);
    if (!different.empty()) {
        return fail("read back differently: " + different);
    }
    std::puts("read back: identical");
    draw(part, profile, contour, fs::path(options.program).filename().string(), output);
    return 0;
}

int run(const Options &options) {
    try {
        return turn(options);
    } catch (const std::exception &error) {
        return fail(options.program + ": " + error.what());
    } catch (int code) {
        return fail(options.folder + ": a mesh file cannot be stored and read back (code " +
                    std::to_string(code) + ")");
    } catch (CMemoryException *error) {
        error->Delete();
        return fail(options.program + ": out of memory");
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 4) {
        return fail("usage: turned_part [PROGRAM [FOLDER [TOLERANCE]]]");
    }
    Options options;
    options.program = argc > 1 ? argv[1] : options.program;
    options.folder = argc > 2 ? argv[2] : options.folder;
    if (argc > 3) {
        const std::optional<double> tolerance = toleranceIn(argv[3]);
        if (!tolerance) {
            return fail("the tolerance is a number of millimetres from 0.0005 to 10");
        }
        options.tolerance = *tolerance;
    }
    return run(options);
}
