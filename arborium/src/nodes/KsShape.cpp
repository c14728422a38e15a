#include <arborium/nodes/KsShape.h>

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>

#include <algorithm>
#include <cmath>

KS_ABSTRACT_NODE_SOURCE(KsShape, KsNode)

namespace {
KbVec3f scaled(const KbVec3f& p, const KbVec3f& scale)
{
    return KbVec3f(p[0] * scale[0], p[1] * scale[1], p[2] * scale[2]);
}

struct Hit {
    double distance;
    KbVec3f point;
    KbVec3f normal;
};

double dot(const double (&a)[3], const double (&b)[3])
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void cross(const double (&a)[3], const double (&b)[3], double (&result)[3])
{
    result[0] = a[1] * b[2] - a[2] * b[1];
    result[1] = a[2] * b[0] - a[0] * b[2];
    result[2] = a[0] * b[1] - a[1] * b[0];
}

/// The hits of the whole line, also behind its start: what is in reach is for the action to say.
/// Calculated in double, and with a little slack at the edges, so that no ray slips through
/// between two triangles.
void hitTriangles(const KsMesh& mesh, const KbVec3f& scale, const KbLine& line,
                  std::vector<Hit>& hits)
{
    const KbVec3f& start = line.getPosition();
    const KbVec3f& along = line.getDirection();
    const double d[3] = {static_cast<double>(along[0]), static_cast<double>(along[1]),
                         static_cast<double>(along[2])};
    for (std::size_t i = 0; i + 2 < mesh.indices.size(); i += 3) {
        const KbVec3f corner = scaled(mesh.positions[mesh.indices[i]], scale);
        const KbVec3f second = scaled(mesh.positions[mesh.indices[i + 1]], scale);
        const KbVec3f third = scaled(mesh.positions[mesh.indices[i + 2]], scale);
        double e1[3], e2[3], s[3], p[3], q[3], n[3];
        for (int k = 0; k < 3; ++k) {
            const auto origin = static_cast<double>(corner[k]);
            e1[k] = static_cast<double>(second[k]) - origin;
            e2[k] = static_cast<double>(third[k]) - origin;
            s[k] = static_cast<double>(start[k]) - origin;
        }
        cross(d, e2, p);
        const double det = dot(e1, p);
        const double size = std::sqrt(dot(e1, e1) * dot(e2, e2));
        if (!(std::fabs(det) > 1e-9 * size)) continue; // edge on, or no area
        constexpr double slack = 1e-7;
        const double u = dot(s, p) / det;
        if (!(u >= -slack && u <= 1 + slack)) continue;
        cross(s, e1, q);
        const double v = dot(d, q) / det;
        if (!(v >= -slack && u + v <= 1 + slack)) continue;
        cross(e1, e2, n);
        const double t = dot(e2, q) / det;
        KbVec3f normal(static_cast<float>(n[0]), static_cast<float>(n[1]),
                       static_cast<float>(n[2]));
        normal.normalize();
        hits.push_back({t, start + along * static_cast<float>(t), normal});
    }
}

/// The point of the segment that is nearest to the line.
KbVec3f nearestOfSegment(const KbLine& line, const KbVec3f& a, const KbVec3f& b)
{
    const KbVec3f d = b - a;
    const KbVec3f& along = line.getDirection();
    const KbVec3f s = a - line.getPosition();
    // Of both, what runs along the line does not count.
    const KbVec3f across = d - along * d.dot(along);
    const float length = across.sqrLength();
    const float t = length > 0 ? -across.dot(s - along * s.dot(along)) / length : 0;
    return a + d * std::min(std::max(std::isfinite(t) ? t : 0.0f, 0.0f), 1.0f);
}
} // namespace

KsShape::KsShape() { KsInstanceBuilder build(classRecord, this); }

KsShape::~KsShape() = default;

KbBox3f KsShape::getBox(const KsState* state)
{
    const Form form = getForm(state);
    if (!form.mesh || form.mesh->box.isEmpty()) return KbBox3f();
    return KbBox3f(scaled(form.mesh->box.getMin(), form.scale),
                   scaled(form.mesh->box.getMax(), form.scale));
}

void KsShape::getBoundingBox(KsGetBoundingBoxAction* action)
{
    reportUse(action);
    action->extendBy(getBox(action->getState()));
}

void KsShape::GLRender(KsRenderAction* action)
{
    const Form form = getForm(action->getState());
    if (!form.mesh) return;
    if (form.scale == KbVec3f(1, 1, 1)) {
        action->draw(form.mesh);
        return;
    }
    KbMatrix local;
    local.setScale(form.scale);
    action->draw(form.mesh, local);
}

void KsShape::rayPick(KsRayPickAction* action)
{
    const KsState* state = action->getState();
    const KsPickMode mode = state->pickMode.get();
    if (!action->hasRay() || mode == KsPickMode::Unpickable) return;
    const KbBox3f box = getBox(state);
    if (!action->intersectBox(box)) return;
    if (mode == KsPickMode::BoundingBox)
        action->addBoxIntersection(box);
    else
        pickShape(action);
}

void KsShape::reportUse(KsGetBoundingBoxAction*) {}

void KsShape::pickShape(KsRayPickAction* action)
{
    const Form form = getForm(action->getState());
    if (!form.mesh || !form.mesh->isSound()) return;
    const KsMesh& mesh = *form.mesh;
    const KbLine line = action->getObjectLine();
    if (line.getDirection().sqrLength() == 0) return;

    if (mesh.primitive != KsMesh::Triangles) {
        const std::size_t step = mesh.primitive == KsMesh::Lines ? 2 : 1;
        for (std::size_t i = 0; i + step <= mesh.indices.size(); i += step) {
            const KbVec3f a = scaled(mesh.positions[mesh.indices[i]], form.scale);
            const KbVec3f b = scaled(mesh.positions[mesh.indices[i + step - 1]], form.scale);
            action->addIntersection(nearestOfSegment(line, a, b), -line.getDirection());
        }
        return;
    }

    std::vector<Hit> hits;
    hitTriangles(mesh, form.scale, line, hits);
    std::sort(hits.begin(), hits.end(),
              [](const Hit& a, const Hit& b) { return a.distance < b.distance; });
    const Hit* before = nullptr;
    for (const Hit& hit : hits) {
        // Two triangles that share the edge under the ray are one hit.
        const bool again =
            before && hit.distance - before->distance <= 1e-6 * (1 + std::fabs(hit.distance)) &&
            hit.normal.dot(before->normal) > 0;
        before = &hit;
        if (again) continue;
        if (action->addIntersection(hit.point, hit.normal) && !action->isPickAll()) return;
    }
}
