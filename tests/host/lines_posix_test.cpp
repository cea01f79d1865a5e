// The material of lines, as it reaches OpenGL. A program can stand in front of a function of
// another library on a system only that binds names when it loads.
#include "trunnion/host/dialog_view.h"

#include <vector>

#include <GL/gl.h>
#include <gtest/gtest.h>

namespace {

struct Material {
    GLenum face, part;
    std::vector<float> colour;
};
std::vector<Material> materials;

} // namespace

// Stands in front of the one of OpenGL, which needs a window.
extern "C" void glMaterialfv(GLenum face, GLenum part, const float *values) {
    materials.push_back({face, part, {values, values + 4}});
}

namespace {

TEST(ViewPosix, LinesAreGrey) {
    slSetCorlorForLines();
    ASSERT_EQ(materials.size(), 3U);
    const GLenum parts[] = {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(materials[i].face, static_cast<GLenum>(GL_FRONT));
        EXPECT_EQ(materials[i].part, parts[i]);
        EXPECT_EQ(materials[i].colour, (std::vector<float>{0.5F, 0.5F, 0.5F, 1.0F}));
    }
}

} // namespace
