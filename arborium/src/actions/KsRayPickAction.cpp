#include <arborium/actions/KsRayPickAction.h>

#include <arborium/actions/KsState.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>
#include <cmath>
#include <limits>

// ---- one hit ----

KsPickedPoint::KsPickedPoint(const KsFullPath& path, const KbVec3f& worldPoint,
                             const KbVec3f& worldNormal, float distance,
                             const KbMatrix& objectToWorld)
    : m_point(worldPoint), m_normal(worldNormal), m_distance(distance),
      m_objectToWorld(objectToWorld), m_path(new KsFullPath(path))
{}

KsPickedPoint::KsPickedPoint(const KsPickedPoint& other)
    : m_point(other.m_point), m_normal(other.m_normal), m_distance(other.m_distance),
      m_objectToWorld(other.m_objectToWorld),
      m_path(new KsFullPath(static_cast<const KsFullPath&>(*other.m_path)))
{
    for (const auto& detail : other.m_details)
        m_details.emplace_back(detail.first, std::unique_ptr<KsDetail>(detail.second->copy()));
}

KsPickedPoint::~KsPickedPoint() = default;

KbVec3f KsPickedPoint::getObjectPoint() const
{
    KbVec3f result;
    m_objectToWorld.inverse().multVecMatrix(m_point, result);
    return result;
}

const KsDetail* KsPickedPoint::getDetail(const KsNode* node) const
{
    for (const auto& detail : m_details)
        if (detail.first == node) return detail.second.get();
    return nullptr;
}

void KsPickedPoint::setDetail(KsDetail* detail, const KsNode* node)
{
    std::unique_ptr<KsDetail> owned(detail);
    const auto found = std::find_if(m_details.begin(), m_details.end(),
                                    [node](const auto& each) { return each.first == node; });
    if (found != m_details.end()) {
        if (found->second.get() == detail)
            static_cast<void>(owned.release()); // it is held already
        else if (detail)
            found->second = std::move(owned);
        else
            m_details.erase(found);
    } else if (detail) {
        m_details.emplace_back(node, std::move(owned));
    }
}

// ---- the action ----

struct KsRayPickAction::Impl {
    // What is asked for.
    enum { Nothing, Point, Ray } given = Nothing;
    KbVec2f point;
    bool normalized = false;
    KbVec3f start;
    KbVec3f direction; // of length 1
    float nearDistance = 0;
    float farDistance = -1; // below 0: no end

    // The ray of the present traversal, in world space, and its reach to the side: so much at the
    // start, and so much more per unit of distance.
    KbLine worldRay;
    float from = 0;
    float to = -1;
    float reach = 0;
    float reachGrowth = 0;

    // The ray in the space of one model matrix.
    bool objectValid = false;
    bool invertible = false;
    KbMatrix objectToWorld;
    KbMatrix worldToObject;
    KbLine objectRay;

    std::vector<std::unique_ptr<KsPickedPoint>> points; // as found
    std::vector<KsPickedPoint*> sorted;                 // empty while not sorted

    void useRay(const KbVec3f& position, const KbVec3f& along)
    {
        worldRay.setPosDir(position, along);
        objectValid = false;
    }
    void updateObjectRay(const KbMatrix& matrix)
    {
        if (objectValid && matrix == objectToWorld) return;
        objectToWorld = matrix;
        objectValid = true;
        invertible = matrix.isFinite() && matrix.isInvertible();
        objectRay.setPosDir(KbVec3f(), KbVec3f());
        if (!invertible) return;
        worldToObject = matrix.inverse();
        KbVec3f position, along;
        worldToObject.multVecMatrix(worldRay.getPosition(), position);
        if (worldToObject.isAffine()) {
            worldToObject.multDirMatrix(worldRay.getDirection(), along);
        } else {
            worldToObject.multVecMatrix(worldRay.getPosition() + worldRay.getDirection(), along);
            along -= position;
        }
        objectRay.setPosDir(position, along);
    }
    float reachAt(float distance) const
    {
        return std::max(0.0f, reach + reachGrowth * std::max(distance, 0.0f));
    }
    float distanceOf(const KbVec3f& place) const
    {
        return (place - worldRay.getPosition()).dot(worldRay.getDirection());
    }
    /// Whether the ray comes as near as `margin` to a box in world space.
    bool meets(const KbBox3f& box, float margin, KbVec3f& enter) const
    {
        const KbVec3f wider(margin, margin, margin);
        KbVec3f exit;
        return worldRay.intersect(KbBox3f(box.getMin() - wider, box.getMax() + wider), enter, exit,
                                  from >= 0);
    }
    void sort()
    {
        if (sorted.size() == points.size()) return;
        sorted.clear();
        for (const auto& each : points) sorted.push_back(each.get());
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const KsPickedPoint* a, const KsPickedPoint* b) {
                             return a->getDistance() < b->getDistance();
                         });
    }
};

namespace {

/// Distances closer than this count as equal.
float tolerance(float distance) { return 1e-6f * std::fabs(distance); }

/// The normal of the face that the point lies on, or nearest to.
KbVec3f faceNormal(const KbBox3f& box, const KbVec3f& point)
{
    KbVec3f normal(0, 0, 1);
    float nearest = std::numeric_limits<float>::max();
    for (int axis = 0; axis < 3; ++axis) {
        for (const float sign : {-1.0f, 1.0f}) {
            const float side = (sign < 0 ? box.getMin() : box.getMax())[axis];
            const float away = std::fabs(point[axis] - side);
            if (away >= nearest) continue;
            nearest = away;
            normal.setValue(0, 0, 0);
            normal[axis] = sign;
        }
    }
    return normal;
}

} // namespace

KsRayPickAction::KsRayPickAction(const KbViewportRegion& viewport)
    : m_impl(std::make_unique<Impl>()), m_viewport(viewport)
{}

KsRayPickAction::~KsRayPickAction() = default;

KsType KsRayPickAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "RayPickAction");
    return type;
}

void KsRayPickAction::setPoint(const KbVec2f& pixel)
{
    m_impl->given = pixel.isFinite() ? Impl::Point : Impl::Nothing;
    m_impl->point = pixel;
    m_impl->normalized = false;
}

void KsRayPickAction::setNormalizedPoint(const KbVec2f& point)
{
    m_impl->given = point.isFinite() ? Impl::Point : Impl::Nothing;
    m_impl->point = point;
    m_impl->normalized = true;
}

void KsRayPickAction::setRay(const KbVec3f& start, const KbVec3f& direction, float nearDistance,
                             float farDistance)
{
    m_impl->start = start;
    m_impl->direction = direction;
    m_impl->nearDistance = nearDistance;
    m_impl->farDistance = farDistance;
    const bool usable = start.isFinite() && m_impl->direction.normalize() > 0;
    m_impl->given = usable ? Impl::Ray : Impl::Nothing;
}

KsPickedPoint* KsRayPickAction::getPickedPoint(int index) const
{
    if (index < 0 || index >= getPickedPointsListLength()) return nullptr;
    m_impl->sort();
    return m_impl->sorted[static_cast<std::size_t>(index)];
}

int KsRayPickAction::getPickedPointsListLength() const
{
    return static_cast<int>(m_impl->points.size());
}

KsPickedPoint* KsRayPickAction::getUnsortedPickedPoint(int index) const
{
    if (index < 0 || index >= getPickedPointsListLength()) return nullptr;
    return m_impl->points[static_cast<std::size_t>(index)].get();
}

void KsRayPickAction::beginTraversal(KsNode* root)
{
    Impl& impl = *m_impl;
    impl.sorted.clear();
    impl.points.clear();
    impl.objectValid = false;
    m_hasRay = impl.given == Impl::Ray;
    if (m_hasRay) {
        impl.useRay(impl.start, impl.direction);
        impl.from = impl.nearDistance;
        impl.to = impl.farDistance;
        impl.reach = 0;
        const auto height = static_cast<float>(m_viewport.getViewportSizePixels()[1]);
        impl.reachGrowth = 2 * std::tan(0.785398f / 2) * m_radius / height;
    }
    m_state->edit(m_state->viewport) = m_viewport;
    KsAction::beginTraversal(root);
}

void KsRayPickAction::visit(KsNode* node) { node->rayPick(this); }

void KsRayPickAction::computeRay()
{
    Impl& impl = *m_impl;
    if (impl.given != Impl::Point || !KsViewVolumeElement::isSet(m_state)) return;
    const KbViewVolume& volume = KsViewVolumeElement::get(m_state);
    const KbVec2i32 size = m_viewport.getViewportSizePixels();
    const auto height = static_cast<float>(size[1]);
    KbVec2f point = impl.point;
    if (!impl.normalized) point.setValue(point[0] / static_cast<float>(size[0]), point[1] / height);

    KbVec3f nearPoint, farPoint, nearBeside, farBeside;
    volume.projectPointToLine(point, nearPoint, farPoint);
    volume.projectPointToLine({point[0], point[1] + m_radius / height}, nearBeside, farBeside);
    const KbVec3f along = farPoint - nearPoint;
    const float depth = along.length();
    m_hasRay = nearPoint.isFinite() && std::isfinite(depth) && depth > 0;
    if (!m_hasRay) return;
    impl.useRay(nearPoint, along);
    impl.from = 0;
    impl.to = depth;
    impl.reach = (nearBeside - nearPoint).length();
    impl.reachGrowth = ((farBeside - farPoint).length() - impl.reach) / depth;
}

const KbLine& KsRayPickAction::getObjectLine()
{
    static const KbLine none{KbVec3f(), KbVec3f()};
    if (!m_hasRay) return none;
    m_impl->updateObjectRay(m_state->modelMatrix.get());
    return m_impl->objectRay;
}

bool KsRayPickAction::intersectBox(const KbBox3f& box)
{
    if (!m_hasRay || box.isEmpty()) return false;
    const Impl& impl = *m_impl;
    KbBox3f world(box);
    world.transform(m_state->modelMatrix.get());
    if (!world.getMin().isFinite() || !world.getMax().isFinite()) return false;

    // Lines and points are hit from beside too: as far as the ray reaches behind the box.
    const float behind = impl.distanceOf(world.getCenter()) + (world.getSize() * 0.5f).length();
    KbVec3f enter;
    if (!impl.meets(world, impl.reachAt(behind), enter)) return false;
    return m_pickAll || impl.points.empty() ||
           impl.distanceOf(enter) <= impl.points[0]->getDistance();
}

bool KsRayPickAction::passBy(const KbBox3f& box)
{
    // Of what is passed by, `intersectBox` of each must be FALSE, to the last bit.
    if (!m_hasRay) return false;
    if (box.isEmpty()) return true;
    const Impl& impl = *m_impl;
    const KbMatrix& matrix = m_state->modelMatrix.get();
    KbBox3f world(box);
    world.transform(matrix);
    const KbVec3f center = world.getCenter();
    // Farther than what the ray has to reach for any box within this one.
    const float behind = impl.distanceOf(center) + world.getSize().length() +
                         1e-5f * (center.length() + impl.worldRay.getPosition().length());
    if (!matrix.isAffine() || !std::isfinite(behind)) return false;
    KbVec3f enter;
    return !impl.meets(world, std::max(impl.reachAt(behind), impl.reachAt(0)), enter);
}

KsPickedPoint* KsRayPickAction::addIntersection(const KbVec3f& objectPoint,
                                                const KbVec3f& objectNormal)
{
    Impl& impl = *m_impl;
    if (!m_hasRay || getPathCode() == OFF_PATH || m_state->pickMode.get() == KsPickMode::Unpickable)
        return nullptr;
    impl.updateObjectRay(m_state->modelMatrix.get());
    if (!impl.invertible) return nullptr;
    KbVec3f point;
    impl.objectToWorld.multVecMatrix(objectPoint, point);
    if (!point.isFinite()) return nullptr;

    const KbVec3f fromStart = point - impl.worldRay.getPosition();
    const float distance = fromStart.dot(impl.worldRay.getDirection());
    if (!std::isfinite(distance)) return nullptr;
    // What lies on the ray was calculated in another space; it may be a little beside it.
    const float error = 1e-4f * (point.length() + impl.worldRay.getPosition().length());
    const float aside = (fromStart - impl.worldRay.getDirection() * distance).length();
    if (aside > impl.reachAt(distance) * 1.001f + error) return nullptr;
    const float slack = tolerance(distance) * 10;
    if (distance < impl.from - slack || (impl.to >= 0 && distance > impl.to + slack))
        return nullptr;
    for (const KbPlane& plane : m_state->clipPlanes.get())
        if (plane.getDistance(point) < -error * 0.1f) return nullptr;
    if (!m_pickAll && !impl.points.empty()) {
        const float best = impl.points[0]->getDistance();
        if (!(distance < best - tolerance(best))) return nullptr;
    }

    KbVec3f normal;
    impl.worldToObject.transpose().multDirMatrix(objectNormal, normal);
    // A surface that is too large, or too small, to have one looks at who points at it.
    if (!(normal.normalize() > 0)) normal = -impl.worldRay.getDirection();
    auto hit =
        std::make_unique<KsPickedPoint>(*getCurPath(), point, normal, distance, impl.objectToWorld);
    impl.sorted.clear();
    if (!m_pickAll) impl.points.clear();
    impl.points.push_back(std::move(hit));
    return impl.points.back().get();
}

KsPickedPoint* KsRayPickAction::addBoxIntersection(const KbBox3f& objectBox)
{
    KbVec3f enter, exit;
    if (!m_hasRay || objectBox.isEmpty() || !getObjectLine().intersect(objectBox, enter, exit))
        return nullptr;
    KsPickedPoint* hit = addIntersection(enter, faceNormal(objectBox, enter));
    return hit ? hit : addIntersection(exit, faceNormal(objectBox, exit));
}
