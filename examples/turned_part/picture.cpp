#include "picture.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include <GL/osmesa.h>
#include <png.h>

#include "progress.h"
#include "trunnion/containers/point3d_arr.h"
#include "trunnion/geometry/matrices.h"

namespace {

constexpr double tilt = 22.0 * std::numbers::pi / 180.0; // of the eye above the horizon
constexpr double border = 0.06;                          // of the picture, on each side
constexpr int samples = 3;                               // in a row of a pixel

// The mesh as the eye sees it: x to the right, y upwards, the eye at the origin looking along -z.
struct View {
    Mesh mesh;
    float nearest = 0.0F, farthest = 0.0F; // along the line of sight
    // What the mesh takes of the plane at distance 1.
    float left = 0.0F, right = 0.0F, bottom = 0.0F, top = 0.0F;
};

float narrow(double value) {
    return static_cast<float>(value);
}

// Half the diagonal of the box about all nodes; `middle` receives its centre.
float radiusOf(const NodeArr &nodes, float *middle) {
    float extents[3][2];
    float axes[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    nodes.GetMaxMinM(axes[0], axes[1], axes[2], extents[0], extents[1], extents[2]);
    double squared = 0.0;
    for (int i = 0; i < 3; ++i) {
        middle[i] = 0.5F * (extents[i][0] + extents[i][1]);
        squared += std::pow(0.5 * (extents[i][1] - extents[i][0]), 2);
    }
    return narrow(std::sqrt(squared));
}

void turn(Mesh &mesh, const float *matrix) {
    mesh.nodes.TransByMatrixM(matrix);
    mesh.triangles.TransByMatrixM(matrix);
}

void frame(View &view) {
    view.nearest = view.left = view.bottom = 1e30F;
    view.farthest = view.right = view.top = -1e30F;
    for (int i = 0; i < view.mesh.nodes.GetBoundM(); ++i) {
        const float *p = view.mesh.nodes.GetItemPM(i)->GetPntPM();
        const float away = -p[2];
        view.nearest = std::min(view.nearest, away);
        view.farthest = std::max(view.farthest, away);
        view.left = std::min(view.left, p[0] / away);
        view.right = std::max(view.right, p[0] / away);
        view.bottom = std::min(view.bottom, p[1] / away);
        view.top = std::max(view.top, p[1] / away);
    }
    const float wider = narrow(border) * std::max(view.right - view.left, view.top - view.bottom);
    view.left -= wider;
    view.right += wider;
    view.bottom -= wider;
    view.top += wider;
}

View look(const Mesh &mesh) {
    View view{mesh};
    float middle[3];
    const float radius = radiusOf(mesh.nodes, middle);
    const float xAxis[3] = {1.0F, 0.0F, 0.0F};
    float matrix[16];
    // The axis of the part upright, the top towards the eye by the tilt.
    slGetRotateMatrix(middle, xAxis, narrow(tilt - 0.5 * std::numbers::pi), matrix);
    turn(view.mesh, matrix);
    const float away[3] = {-middle[0], -middle[1], -middle[2] - 6.0F * radius};
    slGenerateMoveMatrix(away, 1.0F, matrix);
    view.mesh.nodes.TransByMatrixM(matrix);
    frame(view);
    return view;
}

struct Image {
    int width, height;
    std::vector<unsigned char> pixels;
};

// A context of OpenGL that draws into memory.
class Canvas {
public:
    Canvas(int width, int height)
        : image{width, height,
                std::vector<unsigned char>(4 * static_cast<std::size_t>(width) *
                                           static_cast<std::size_t>(height))},
          context(OSMesaCreateContextExt(OSMESA_RGBA, 24, 0, 0, nullptr), &OSMesaDestroyContext) {
        if (!context || OSMesaMakeCurrent(context.get(), image.pixels.data(), GL_UNSIGNED_BYTE,
                                          width, height) != GL_TRUE) {
            throw PictureError("OpenGL gives no canvas in memory");
        }
        OSMesaPixelStore(OSMESA_Y_UP, 0);
    }

    const Image &finish() {
        glFinish();
        if (glGetError() != GL_NO_ERROR) {
            throw PictureError("OpenGL could not draw the part");
        }
        return image;
    }

private:
    Image image;
    std::unique_ptr<osmesa_context, void (*)(OSMesaContext)> context;
};

void setLight(GLenum light, const float *direction, float diffuse, float shine) {
    const float diffuseColour[4] = {diffuse, diffuse, 0.97F * diffuse, 1.0F};
    const float shineColour[4] = {shine, shine, shine, 1.0F};
    glLightfv(light, GL_POSITION, direction);
    glLightfv(light, GL_DIFFUSE, diffuseColour);
    glLightfv(light, GL_SPECULAR, shineColour);
    glEnable(light);
}

void setLights() {
    const float ambient[4] = {0.24F, 0.24F, 0.27F, 1.0F};
    const float fromAboveLeft[4] = {-0.55F, 0.65F, 0.75F, 0.0F};
    const float fromRight[4] = {0.9F, 0.1F, 0.35F, 0.0F};
    const float brass[4] = {0.86F, 0.66F, 0.33F, 1.0F};
    const float shine[4] = {0.55F, 0.5F, 0.4F, 1.0F};
    glEnable(GL_LIGHTING);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    setLight(GL_LIGHT0, fromAboveLeft, 0.8F, 0.9F);
    setLight(GL_LIGHT1, fromRight, 0.28F, 0.3F);
    glMaterialfv(GL_FRONT, GL_AMBIENT_AND_DIFFUSE, brass);
    glMaterialfv(GL_FRONT, GL_SPECULAR, shine);
    glMaterialf(GL_FRONT, GL_SHININESS, 28.0F);
}

void setCamera(const View &view) {
    const double zNear = 0.9 * view.nearest;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustum(view.left * zNear, view.right * zNear, view.bottom * zNear, view.top * zNear, zNear,
              1.1 * view.farthest);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void drawTriangles(const Mesh &mesh) {
    Point3DArr points;
    mesh.nodes.GetPntLstM(&points);
    const int count = mesh.triangles.GetBoundM();
    Progress progress("drawing", static_cast<std::size_t>(count));
    for (int slot = 0; slot < count; ++slot) {
        progress.show(static_cast<std::size_t>(slot));
        mesh.triangles.GetItemPM(slot)->ShowM(points);
    }
}

// Several samples become one pixel, without the alpha.
Image reduced(const Image &fine) {
    Image image{fine.width / samples, fine.height / samples, {}};
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                int sum = 0;
                for (int k = 0; k < samples * samples; ++k) {
                    const int row = y * samples + k / samples;
                    const int column = x * samples + k % samples;
                    sum += fine.pixels[4 * (static_cast<std::size_t>(row) *
                                                static_cast<std::size_t>(fine.width) +
                                            static_cast<std::size_t>(column)) +
                                       static_cast<std::size_t>(channel)];
                }
                image.pixels.push_back(static_cast<unsigned char>(sum / (samples * samples)));
            }
        }
    }
    return image;
}

void writePng(const Image &image, const std::string &path) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&png, path.c_str(), 0, image.pixels.data(), 0, nullptr) == 0) {
        throw PictureError(path + ": " + png.message);
    }
}

} // namespace

void drawPicture(const Mesh &mesh, int size, const std::string &path) {
    const View view = look(mesh);
    const float width = view.right - view.left;
    const float height = view.top - view.bottom;
    const float scale = static_cast<float>(size) / std::max(width, height);
    const auto pixels = [scale](float extent) {
        return samples * std::max(16, static_cast<int>(scale * extent));
    };
    Canvas canvas(pixels(width), pixels(height));
    glViewport(0, 0, pixels(width), pixels(height));
    glClearColor(1.0F, 1.0F, 1.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    setCamera(view);
    setLights();
    drawTriangles(view.mesh);
    writePng(reduced(canvas.finish()), path);
}
