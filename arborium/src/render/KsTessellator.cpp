#include "render/KsTessellator.h"

#include <GL/glu.h>

#include <array>

namespace {
struct Work {
    KsTessellation* result;
    std::uint32_t numCorners;
    bool failed;
};

// The tessellator carries one pointer per point: it holds the point's number, plus 1.
void* dataOf(std::uint32_t number)
{
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(number) + 1);
}
std::uint32_t numberOf(void* data)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(data) - 1);
}

void onVertex(void* data, void* user)
{
    static_cast<Work*>(user)->result->triangles.push_back(numberOf(data));
}

// With a listener for edges the tessellator yields nothing but single triangles.
void onEdgeFlag(GLboolean, void*) {}

void onCombine(GLdouble coords[3], void* sources[4], GLfloat weights[4], void** out, void* user)
{
    auto* work = static_cast<Work*>(user);
    KsTessellation::Added added;
    added.position.setValue(static_cast<float>(coords[0]), static_cast<float>(coords[1]),
                            static_cast<float>(coords[2]));
    for (int i = 0; i < 4; ++i) {
        added.source[i] = sources[i] ? numberOf(sources[i]) : 0;
        added.weight[i] = sources[i] ? weights[i] : 0;
    }
    *out = dataOf(work->numCorners + static_cast<std::uint32_t>(work->result->added.size()));
    work->result->added.push_back(added);
}

void onError(GLenum, void* user) { static_cast<Work*>(user)->failed = true; }

using Callback = void (*)();
} // namespace

bool ksTessellate(const std::vector<std::vector<KbVec3f>>& contours, const KbVec3f& normal,
                  KsWinding winding, KsTessellation& result)
{
    result.triangles.clear();
    result.added.clear();
    std::uint32_t numCorners = 0;
    for (const auto& contour : contours) numCorners += static_cast<std::uint32_t>(contour.size());
    GLUtesselator* tess = gluNewTess();
    if (!tess) return false;

    Work work{&result, numCorners, false};
    gluTessCallback(tess, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(&onVertex));
    gluTessCallback(tess, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(&onEdgeFlag));
    gluTessCallback(tess, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(&onCombine));
    gluTessCallback(tess, GLU_TESS_ERROR_DATA, reinterpret_cast<Callback>(&onError));
    gluTessProperty(tess, GLU_TESS_WINDING_RULE,
                    winding == KsWinding::Odd ? GLU_TESS_WINDING_ODD : GLU_TESS_WINDING_NONZERO);
    gluTessNormal(tess, static_cast<double>(normal[0]), static_cast<double>(normal[1]),
                  static_cast<double>(normal[2]));

    gluTessBeginPolygon(tess, &work);
    std::uint32_t number = 0;
    for (const auto& contour : contours) {
        gluTessBeginContour(tess);
        for (const KbVec3f& p : contour) {
            std::array<GLdouble, 3> coords{static_cast<double>(p[0]), static_cast<double>(p[1]),
                                           static_cast<double>(p[2])};
            gluTessVertex(tess, coords.data(), dataOf(number++));
        }
        gluTessEndContour(tess);
    }
    gluTessEndPolygon(tess);
    gluDeleteTess(tess);
    if (result.triangles.size() % 3) work.failed = true;
    return !work.failed;
}
