#include <arborium/nodes/KsVertexShape.h>

#include "render/KsMeshBuilder.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsTypedObject.h>
#include <arborium/nodes/KsCoordinate3.h>
#include <arborium/nodes/KsNormal.h>
#include <arborium/nodes/KsVertexProperty.h>

#include <string>

KS_ABSTRACT_NODE_SOURCE(KsVertexShape, KsShape)

/// Where the values come from: the shape's own property first, then the state.
class KsVertexShape::Sources {
public:
    Sources(const KsVertexShape& shape, const KsState* state) : m_key()
    {
        m_key.own = shape.m_stamp.get();
        if (const auto* own = ksCast<KsVertexProperty>(shape.vertexProperty.getValue())) {
            m_key.property = own->getStamp();
            if (own->vertex.getNum()) m_source.points = &own->vertex.values();
            if (own->normal.getNum()) m_source.normals = &own->normal.values();
            if (own->texCoord.getNum()) m_source.texCoords = &own->texCoord.values();
        }
        if (!m_source.points) {
            const KsNode* node = state->coordinates.get();
            if (const auto* coordinates = ksCast<KsCoordinate3>(node)) {
                m_source.points = &coordinates->point.values();
                m_key.points = coordinates->getStamp();
            } else if (const auto* property = ksCast<KsVertexProperty>(node)) {
                m_source.points = &property->vertex.values();
                m_key.points = property->getStamp();
            }
        }
        if (!shape.hasFaces()) return; // lines have no use for the rest
        if (!m_source.normals) {
            const KsNode* node = state->normals.get();
            if (const auto* normals = ksCast<KsNormal>(node)) {
                m_source.normals = &normals->vector.values();
                m_key.normals = normals->getStamp();
            } else if (const auto* property = ksCast<KsVertexProperty>(node)) {
                m_source.normals = &property->normal.values();
                m_key.normals = property->getStamp();
            }
        }
        if (!m_source.texCoords) {
            if (const auto* property = ksCast<KsVertexProperty>(state->vertexProperty.get())) {
                m_source.texCoords = &property->texCoord.values();
                m_key.texCoords = property->getStamp();
            }
        }
        const KsShapeHintsState& hints = state->shapeHints.get();
        m_source.creaseAngle = m_key.creaseAngle = hints.creaseAngle;
        m_source.counterClockwise = m_key.counterClockwise = hints.counterClockwise;
        m_source.makeTexCoords = m_key.textured = state->texture.get() != nullptr;
    }
    const Key& key() const { return m_key; }
    const KsFaceSource& source() const { return m_source; }

private:
    Key m_key;
    KsFaceSource m_source;
};

bool KsVertexShape::Key::operator==(const Key& other) const
{
    return own == other.own && property == other.property && points == other.points &&
           normals == other.normals && texCoords == other.texCoords &&
           creaseAngle == other.creaseAngle && counterClockwise == other.counterClockwise &&
           textured == other.textured;
}

KsVertexShape::KsVertexShape()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("vertexProperty", vertexProperty, nullptr);
}

KsVertexShape::~KsVertexShape() = default;

KsShape::Form KsVertexShape::getForm(const KsState* state)
{
    const Sources sources(*this, state);
    if (sources.key() == m_key) return {m_mesh};
    m_key = sources.key();
    m_mesh = nullptr;

    KsFaceList list;
    static const std::vector<KbVec3f> noPoints;
    const auto& points = sources.source().points ? *sources.source().points : noPoints;
    const bool sense = listCorners(points.size(), list);
    KsBuildReport report;
    if (!hasFaces())
        m_mesh = ksLineMesh(list, points, report);
    else if (!points.empty())
        m_mesh = ksFaceMesh(list, sources.source(), report);
    else
        report.badFaces = list.ends.size();

    if (!sense || report.badFaces || report.complexFaces) {
        std::string message = getTypeId().getName().getString();
        if (!getName().isEmpty()) message += std::string(" ") + getName().getString();
        message += ":";
        const std::string all =
            std::to_string(list.ends.size()) + (hasFaces() ? " faces" : " lines");
        const auto tell = [&](std::size_t count, const char* why) {
            if (count) message += " " + std::to_string(count) + " of " + all + " left out: " + why;
        };
        tell(report.badFaces, "a point does not exist or is not finite.");
        tell(report.complexFaces, "edges cross too often.");
        if (!sense) message += " The fields ask for points that do not exist.";
        KsDebugError::post("KsVertexShape::getForm", "%s", message.c_str());
    }
    return {m_mesh};
}

void KsVertexShape::getBoundingBox(KsGetBoundingBoxAction* action)
{
    // It is visited by nobody else, and must tell of its next change.
    if (auto* property = ksCast<KsVertexProperty>(vertexProperty.getValue()))
        property->clearStale(StaleBox);
    KsShape::getBoundingBox(action);
}

void KsVertexShape::GLRender(KsRenderAction* action)
{
    if (auto* property = ksCast<KsVertexProperty>(vertexProperty.getValue()))
        property->clearStale(StaleDraw);
    KsShape::GLRender(action);
}

void KsVertexShape::markChanged()
{
    m_stamp.renew();
    KsShape::markChanged();
}

void KsVertexShape::reportUse(KsGetBoundingBoxAction* action)
{
    const auto* own = ksCast<KsVertexProperty>(vertexProperty.getValue());
    if (!own || !own->vertex.getNum()) action->usesStateOf(action->getState()->coordinates.setAt());
}
