#include "render/KsMeshBuilder.h"

#include "render/KsTessellator.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {
// A multiple of 4, so that the extents are met exactly; 32 shows no corners at a radius of 100
// pixels.
constexpr int s_slices = 32;

/// Collects a mesh corner by corner.
class Builder {
public:
    std::uint32_t add(const KbVec3f& position, const KbVec3f& normal, const KbVec2f& texCoord)
    {
        m_mesh->positions.push_back(position);
        m_mesh->normals.push_back(normal);
        m_mesh->texCoords.push_back(texCoord);
        return static_cast<std::uint32_t>(m_mesh->positions.size() - 1);
    }
    void triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        m_mesh->indices.insert(m_mesh->indices.end(), {a, b, c});
    }
    void quad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        triangle(a, b, c);
        triangle(a, c, d);
    }
    KsMeshPtr finish()
    {
        m_mesh->computeBox();
        return std::move(m_mesh);
    }

private:
    std::shared_ptr<KsMesh> m_mesh = std::make_shared<KsMesh>();
};

/// Cosine and sine on the circle; the four axes exactly.
struct Circle {
    std::array<float, s_slices + 1> cosine, sine;
    Circle()
    {
        constexpr int quarter = s_slices / 4;
        for (int i = 0; i <= s_slices; ++i) {
            const double angle = 2 * 3.14159265358979323846 * i / s_slices;
            const auto at = static_cast<std::size_t>(i);
            const bool axis = i % quarter == 0;
            cosine[at] = static_cast<float>(axis ? std::round(std::cos(angle)) : std::cos(angle));
            sine[at] = static_cast<float>(axis ? std::round(std::sin(angle)) : std::sin(angle));
        }
    }
    static const Circle& get()
    {
        static const Circle circle;
        return circle;
    }
};

/// A round face across the y axis, looking up (`up` 1) or down (-1).
void addDisk(Builder& build, float y, float up)
{
    const Circle& circle = Circle::get();
    const KbVec3f normal(0, up, 0);
    const std::uint32_t center = build.add(KbVec3f(0, y, 0), normal, KbVec2f(0.5f, 0.5f));
    std::uint32_t before = 0;
    for (std::size_t i = 0; i <= s_slices; ++i) {
        const float x = circle.sine[i];
        const float z = circle.cosine[i];
        const std::uint32_t rim =
            build.add(KbVec3f(x, y, z), normal, KbVec2f(0.5f + x / 2, 0.5f - up * z / 2));
        if (i > 0) {
            if (up > 0)
                build.triangle(center, before, rim);
            else
                build.triangle(center, rim, before);
        }
        before = rim;
    }
}

KsMeshPtr makeBox()
{
    Builder build;
    for (int axis = 0; axis < 3; ++axis) {
        for (const float side : {-1.0f, 1.0f}) {
            KbVec3f normal, u, v;
            normal[axis] = side;
            // u and v run along the face so that u x v is the normal.
            u[(axis + 1) % 3] = side;
            v[(axis + 2) % 3] = 1;
            if (axis == 0)
                std::swap(u, v), u *= -1; // upright textures
            else if (axis == 1)
                std::swap(u, v), v *= -1;
            const std::uint32_t a = build.add(normal - u - v, normal, KbVec2f(0, 0));
            const std::uint32_t b = build.add(normal + u - v, normal, KbVec2f(1, 0));
            const std::uint32_t c = build.add(normal + u + v, normal, KbVec2f(1, 1));
            const std::uint32_t d = build.add(normal - u + v, normal, KbVec2f(0, 1));
            build.quad(a, b, c, d);
        }
    }
    return build.finish();
}

KsMeshPtr makeSphere()
{
    constexpr int stacks = s_slices / 2;
    const Circle& circle = Circle::get();
    Builder build;
    for (int j = 0; j <= stacks; ++j) {
        // The half circle from the lower pole to the upper one.
        const auto at = static_cast<std::size_t>(j);
        const float y = -circle.cosine[at];
        const float radius = circle.sine[at];
        for (std::size_t i = 0; i <= s_slices; ++i) {
            const KbVec3f p(radius * circle.sine[i], y, radius * circle.cosine[i]);
            build.add(p, p,
                      KbVec2f(static_cast<float>(i) / s_slices, static_cast<float>(j) / stacks));
        }
    }
    constexpr std::uint32_t row = s_slices + 1;
    for (std::uint32_t j = 0; j < stacks; ++j) {
        for (std::uint32_t i = 0; i < s_slices; ++i) {
            const std::uint32_t a = j * row + i;
            if (j > 0) build.triangle(a, a + 1, a + row + 1);
            if (j + 1 < stacks) build.triangle(a, a + row + 1, a + row);
        }
    }
    return build.finish();
}

KsMeshPtr makeCone(bool sides, bool bottom)
{
    const Circle& circle = Circle::get();
    Builder build;
    if (sides) {
        // The apex has a corner for each slice: the normals differ.
        const auto slanted = [&](double angle) {
            const double up = 0.5, length = std::sqrt(1 + up * up);
            return KbVec3f(static_cast<float>(std::sin(angle) / length),
                           static_cast<float>(up / length),
                           static_cast<float>(std::cos(angle) / length));
        };
        const double step = 2 * 3.14159265358979323846 / s_slices;
        std::uint32_t before = 0;
        for (std::size_t i = 0; i <= s_slices; ++i) {
            const double angle = step * static_cast<double>(i);
            const float s = static_cast<float>(i) / s_slices;
            const std::uint32_t rim = build.add(KbVec3f(circle.sine[i], -1, circle.cosine[i]),
                                                slanted(angle), KbVec2f(s, 0));
            if (i > 0) {
                const std::uint32_t apex = build.add(KbVec3f(0, 1, 0), slanted(angle - step / 2),
                                                     KbVec2f(s - 0.5f / s_slices, 1));
                build.triangle(before, rim, apex);
            }
            before = rim;
        }
    }
    if (bottom) addDisk(build, -1, -1);
    return build.finish();
}

KsMeshPtr makeCylinder(bool sides, bool top, bool bottom)
{
    const Circle& circle = Circle::get();
    Builder build;
    if (sides) {
        std::uint32_t before = 0;
        for (std::size_t i = 0; i <= s_slices; ++i) {
            const KbVec3f normal(circle.sine[i], 0, circle.cosine[i]);
            const KbVec3f up(0, 1, 0);
            const float s = static_cast<float>(i) / s_slices;
            const std::uint32_t low = build.add(normal - up, normal, KbVec2f(s, 0));
            build.add(normal + up, normal, KbVec2f(s, 1));
            if (i > 0) build.quad(before, low, low + 1, before + 1);
            before = low;
        }
    }
    if (top) addDisk(build, 1, 1);
    if (bottom) addDisk(build, -1, -1);
    return build.finish();
}

struct Vec3d {
    double x = 0, y = 0, z = 0;
    Vec3d() = default;
    Vec3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    explicit Vec3d(const KbVec3f& v)
        : x(static_cast<double>(v[0])), y(static_cast<double>(v[1])), z(static_cast<double>(v[2]))
    {}
    Vec3d operator-(const Vec3d& o) const { return {x - o.x, y - o.y, z - o.z}; }
    Vec3d operator+(const Vec3d& o) const { return {x + o.x, y + o.y, z + o.z}; }
    Vec3d operator*(double f) const { return {x * f, y * f, z * f}; }
    double dot(const Vec3d& o) const { return x * o.x + y * o.y + z * o.z; }
    Vec3d cross(const Vec3d& o) const
    {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }
    double length() const { return std::sqrt(dot(*this)); }
    KbVec3f toFloat() const
    {
        return KbVec3f(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    }
};

/// The polygon seen along its normal.
struct Flat {
    double x, y;
};
double turn(const Flat& a, const Flat& b, const Flat& c)
{
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// Builds faces one by one. Each face has corners of its own unless normals were given: then faces
/// share the points.
class FaceBuilder {
public:
    FaceBuilder(const KsFaceList& faces, const KsFaceSource& source, KsBuildReport& report)
        : m_faces(faces), m_source(source), m_report(report), m_points(*source.points)
    {
        const auto has = [&](const auto* list) { return list && list->size() >= m_points.size(); };
        if (has(source.normals))
            m_normals = source.normals;
        else if (source.normals && source.normals->size() == 1)
            m_oneNormal = true;
        if (has(source.texCoords)) m_texCoords = source.texCoords;
        m_shares = m_normals || m_oneNormal;
        if (m_shares) m_places.assign(m_points.size(), s_none);
    }

    KsMeshPtr build()
    {
        measureFaces();
        if (!m_shares && m_source.creaseAngle > 0) gatherNeighbours();
        for (std::size_t face = 0; face < m_faces.ends.size(); ++face)
            if (m_faceNormals[face].dot(m_faceNormals[face]) > 0) addFace(face);
        if (m_mesh->indices.empty()) return nullptr;
        m_mesh->computeBox();
        if (m_mesh->texCoords.empty() && m_source.makeTexCoords) spreadTexCoords();
        return std::move(m_mesh);
    }

private:
    static constexpr std::uint32_t s_none = 0xffffffffu;

    std::size_t begin(std::size_t face) const { return face ? m_faces.ends[face - 1] : 0; }
    std::size_t end(std::size_t face) const { return m_faces.ends[face]; }

    /// Unit normals; zero marks a face that is left out.
    void measureFaces()
    {
        m_faceNormals.resize(m_faces.ends.size());
        for (std::size_t face = 0; face < m_faces.ends.size(); ++face) {
            const std::size_t first = begin(face), last = end(face);
            bool good = true;
            for (std::size_t i = first; i < last && good; ++i) {
                const std::uint32_t corner = m_faces.corners[i];
                good = corner < m_points.size() && m_points[corner].isFinite();
            }
            if (!good) {
                ++m_report.badFaces;
                continue;
            }
            if (last - first < 3) continue;
            // Summed over the edges, relative to the first corner so that distance from the origin
            // costs no precision.
            const Vec3d origin(m_points[m_faces.corners[first]]);
            Vec3d sum;
            double extent = 0;
            Vec3d before = Vec3d(m_points[m_faces.corners[last - 1]]) - origin;
            for (std::size_t i = first; i < last; ++i) {
                const Vec3d p = Vec3d(m_points[m_faces.corners[i]]) - origin;
                sum = sum + before.cross(p);
                extent = std::max(extent, p.dot(p));
                before = p;
            }
            const double length = sum.length();
            if (!(length > 1e-12 * extent) || !std::isfinite(length)) continue;
            m_faceNormals[face] = sum * (1 / length);
        }
    }

    /// The faces around each point, as one list cut into pieces.
    void gatherNeighbours()
    {
        m_around.assign(m_points.size() + 1, 0);
        const auto each = [&](auto&& act) {
            for (std::size_t face = 0; face < m_faces.ends.size(); ++face) {
                if (!(m_faceNormals[face].dot(m_faceNormals[face]) > 0)) continue;
                for (std::size_t i = begin(face); i < end(face); ++i)
                    act(m_faces.corners[i], static_cast<std::uint32_t>(face));
            }
        };
        each([&](std::uint32_t corner, std::uint32_t) { ++m_around[corner + 1]; });
        for (std::size_t i = 1; i < m_around.size(); ++i) m_around[i] += m_around[i - 1];
        m_neighbours.resize(m_around.back());
        std::vector<std::size_t> next(m_around.begin(), m_around.end() - 1);
        each(
            [&](std::uint32_t corner, std::uint32_t face) { m_neighbours[next[corner]++] = face; });
        m_minCosine = std::cos(std::min(static_cast<double>(m_source.creaseAngle), 3.2));
    }

    KbVec3f normalAt(std::size_t face, std::uint32_t corner) const
    {
        const Vec3d& own = m_faceNormals[face];
        const double sign = m_source.counterClockwise ? 1 : -1;
        // So many faces at one point are a fan whose apex no average describes; looking at all of
        // them from each would also cost the square of their number.
        constexpr std::size_t manyFaces = 64;
        if (m_around.empty() || m_around[corner + 1] - m_around[corner] > manyFaces)
            return (own * sign).toFloat();
        Vec3d sum;
        for (std::size_t i = m_around[corner]; i < m_around[corner + 1]; ++i) {
            const Vec3d& other = m_faceNormals[m_neighbours[i]];
            if (other.dot(own) >= m_minCosine) sum = sum + other;
        }
        const double length = sum.length();
        return (length > 1e-6 ? sum * (sign / length) : own * sign).toFloat();
    }

    std::uint32_t append(const KbVec3f& position, const KbVec3f& normal, const KbVec2f* texCoord)
    {
        m_mesh->positions.push_back(position);
        m_mesh->normals.push_back(normal);
        if (texCoord) m_mesh->texCoords.push_back(*texCoord);
        return static_cast<std::uint32_t>(m_mesh->positions.size() - 1);
    }

    std::uint32_t place(std::size_t face, std::uint32_t corner)
    {
        const KbVec2f* texCoord = m_texCoords ? &(*m_texCoords)[corner] : nullptr;
        if (!m_shares) return append(m_points[corner], normalAt(face, corner), texCoord);
        std::uint32_t& known = m_places[corner];
        if (known == s_none) {
            KbVec3f normal = m_normals ? (*m_normals)[corner] : m_source.normals->front();
            if (!(normal.normalize() > 0)) normal = normalAt(face, corner);
            known = append(m_points[corner], normal, texCoord);
        }
        return known;
    }

    void addFace(std::size_t face)
    {
        const std::size_t first = begin(face), count = end(face) - first;
        const std::uint32_t* corners = m_faces.corners.data() + first;
        if (count == 3) {
            for (std::size_t i = 0; i < 3; ++i) m_mesh->indices.push_back(place(face, corners[i]));
            return;
        }
        flatten(face);
        if (isConvex()) {
            m_numbers.clear();
            for (std::size_t i = 0; i < count; ++i) m_numbers.push_back(place(face, corners[i]));
            for (std::size_t i = 1; i + 1 < count; ++i)
                m_mesh->indices.insert(m_mesh->indices.end(),
                                       {m_numbers[0], m_numbers[i], m_numbers[i + 1]});
            return;
        }
        if (isTooComplex()) {
            ++m_report.complexFaces;
            return;
        }
        addTessellated(face, corners, count);
    }

    void addTessellated(std::size_t face, const std::uint32_t* corners, std::size_t count)
    {
        m_contours.resize(1);
        m_contours[0].clear();
        for (std::size_t i = 0; i < count; ++i) m_contours[0].push_back(m_points[corners[i]]);
        const KbVec3f normal = m_faceNormals[face].toFloat();
        if (!ksTessellate(m_contours, normal, KsWinding::Odd, m_tessellation)) {
            ++m_report.complexFaces;
            return;
        }
        m_numbers.clear();
        for (std::size_t i = 0; i < count; ++i) m_numbers.push_back(place(face, corners[i]));
        for (const KsTessellation::Added& added : m_tessellation.added) {
            Vec3d n;
            KbVec2f texCoord;
            for (int i = 0; i < 4; ++i) {
                if (added.weight[i] == 0) continue;
                const std::uint32_t source = m_numbers[added.source[i]];
                n = n + Vec3d(m_mesh->normals[source]) * static_cast<double>(added.weight[i]);
                if (m_texCoords) texCoord += m_mesh->texCoords[source] * added.weight[i];
            }
            KbVec3f mixed = n.toFloat();
            if (!(mixed.normalize() > 0)) mixed = normal;
            m_numbers.push_back(append(added.position, mixed, m_texCoords ? &texCoord : nullptr));
        }
        for (const std::uint32_t number : m_tessellation.triangles)
            m_mesh->indices.push_back(m_numbers[number]);
    }

    /// The present face in two dimensions, counter-clockwise.
    void flatten(std::size_t face)
    {
        const Vec3d n = m_faceNormals[face];
        const Vec3d helper = std::fabs(n.x) < 0.6 ? Vec3d(1, 0, 0) : Vec3d(0, 1, 0);
        Vec3d u = helper.cross(n);
        u = u * (1 / u.length());
        const Vec3d v = n.cross(u);
        const Vec3d origin(m_points[m_faces.corners[begin(face)]]);
        m_flat.clear();
        for (std::size_t i = begin(face); i < end(face); ++i) {
            const Vec3d p = Vec3d(m_points[m_faces.corners[i]]) - origin;
            m_flat.push_back({p.dot(u), p.dot(v)});
        }
    }

    /// Turns left at each corner, and goes round once: then a fan covers it.
    bool isConvex() const
    {
        const std::size_t count = m_flat.size();
        for (std::size_t i = 0; i < count; ++i) {
            const Flat& a = m_flat[i];
            const Flat& b = m_flat[(i + 1) % count];
            const Flat& c = m_flat[(i + 2) % count];
            if (turn(a, b, c) < 0) return false;
            if (i + 2 < count && turn(m_flat[0], m_flat[i + 1], m_flat[i + 2]) < 0) return false;
        }
        return true;
    }

    /// The tessellator's time and memory grow with the crossings of edges, which may be the square
    /// of their number: a face, or a mesh, with too many of them is refused beforehand.
    bool isTooComplex()
    {
        struct Edge {
            Flat a, b;
            double minX, maxX, minY, maxY;
        };
        const std::size_t count = m_flat.size();
        m_crossingsLeft += static_cast<std::int64_t>(count); // neighbours touch
        std::vector<Edge> edges(count);
        for (std::size_t i = 0; i < count; ++i) {
            const Flat& a = m_flat[i];
            const Flat& b = m_flat[(i + 1) % count];
            edges[i] = {a,
                        b,
                        std::min(a.x, b.x),
                        std::max(a.x, b.x),
                        std::min(a.y, b.y),
                        std::max(a.y, b.y)};
        }
        std::sort(edges.begin(), edges.end(),
                  [](const Edge& e, const Edge& f) { return e.minX < f.minX; });
        for (std::size_t i = 0; i < count; ++i) {
            const Edge& e = edges[i];
            for (std::size_t j = i + 1; j < count && edges[j].minX <= e.maxX; ++j) {
                if (m_testsLeft-- == 0) return m_testsLeft = 0, true;
                const Edge& f = edges[j];
                if (f.minY > e.maxY || f.maxY < e.minY) continue;
                const bool crosses = turn(e.a, e.b, f.a) * turn(e.a, e.b, f.b) <= 0 &&
                                     turn(f.a, f.b, e.a) * turn(f.a, f.b, e.b) <= 0;
                if (crosses && m_crossingsLeft-- == 0) return m_crossingsLeft = 0, true;
            }
        }
        return false;
    }

    void spreadTexCoords()
    {
        const KbVec3f size = m_mesh->box.getSize();
        int s = 0;
        for (int i = 1; i < 3; ++i)
            if (size[i] > size[s]) s = i;
        int t = s == 0 ? 1 : 0;
        for (int i = 0; i < 3; ++i)
            if (i != s && size[i] > size[t]) t = i;
        const float scale = size[s] > 0 ? 1 / size[s] : 0;
        const KbVec3f& low = m_mesh->box.getMin();
        m_mesh->texCoords.reserve(m_mesh->positions.size());
        for (const KbVec3f& p : m_mesh->positions)
            m_mesh->texCoords.emplace_back((p[s] - low[s]) * scale, (p[t] - low[t]) * scale);
    }

    const KsFaceList& m_faces;
    const KsFaceSource& m_source;
    KsBuildReport& m_report;
    const std::vector<KbVec3f>& m_points;
    const std::vector<KbVec3f>* m_normals = nullptr;
    const std::vector<KbVec2f>* m_texCoords = nullptr;
    bool m_oneNormal = false;
    bool m_shares = false;
    std::vector<std::uint32_t> m_places; // of each point in the mesh, while points are shared
    std::vector<Vec3d> m_faceNormals;
    std::vector<std::size_t> m_around;
    std::vector<std::uint32_t> m_neighbours;
    double m_minCosine = 1;
    std::int64_t m_testsLeft = 50000000;
    std::int64_t m_crossingsLeft = 500000;
    std::shared_ptr<KsMesh> m_mesh = std::make_shared<KsMesh>();
    // Kept between faces for their memory.
    std::vector<Flat> m_flat;
    std::vector<std::uint32_t> m_numbers;
    std::vector<std::vector<KbVec3f>> m_contours;
    KsTessellation m_tessellation;
};
} // namespace

void KsFaceList::endFace()
{
    const std::size_t before = ends.empty() ? 0 : ends.back();
    if (corners.size() > before) ends.push_back(corners.size());
}

// Meshes live on at exit: whoever draws last may still ask for them.

KsMeshPtr ksBoxMesh()
{
    static const KsMeshPtr& mesh = *new KsMeshPtr(makeBox());
    return mesh;
}

KsMeshPtr ksSphereMesh()
{
    static const KsMeshPtr& mesh = *new KsMeshPtr(makeSphere());
    return mesh;
}

KsMeshPtr ksConeMesh(bool sides, bool bottom)
{
    static auto& meshes = *new std::array<KsMeshPtr, 4>;
    if (!sides && !bottom) return nullptr;
    KsMeshPtr& mesh = meshes[(sides ? 1u : 0u) + (bottom ? 2u : 0u)];
    if (!mesh) mesh = makeCone(sides, bottom);
    return mesh;
}

KsMeshPtr ksCylinderMesh(bool sides, bool top, bool bottom)
{
    static auto& meshes = *new std::array<KsMeshPtr, 8>;
    if (!sides && !top && !bottom) return nullptr;
    KsMeshPtr& mesh = meshes[(sides ? 1u : 0u) + (top ? 2u : 0u) + (bottom ? 4u : 0u)];
    if (!mesh) mesh = makeCylinder(sides, top, bottom);
    return mesh;
}

KsMeshPtr ksFaceMesh(const KsFaceList& faces, const KsFaceSource& source, KsBuildReport& report)
{
    if (!source.points || source.points->size() >= 0xffffffffu) return nullptr;
    return FaceBuilder(faces, source, report).build();
}

KsMeshPtr ksLineMesh(const KsFaceList& lines, const std::vector<KbVec3f>& points,
                     KsBuildReport& report)
{
    auto mesh = std::make_shared<KsMesh>();
    mesh->primitive = KsMesh::Lines;
    std::vector<std::uint32_t> places(points.size(), 0xffffffffu);
    std::size_t first = 0;
    for (const std::size_t last : lines.ends) {
        bool good = true;
        for (std::size_t i = first; i < last && good; ++i)
            good = lines.corners[i] < points.size() && points[lines.corners[i]].isFinite();
        if (!good) {
            ++report.badFaces;
        } else if (last - first > 1) {
            std::uint32_t before = 0;
            for (std::size_t i = first; i < last; ++i) {
                std::uint32_t& place = places[lines.corners[i]];
                if (place == 0xffffffffu) {
                    place = static_cast<std::uint32_t>(mesh->positions.size());
                    mesh->positions.push_back(points[lines.corners[i]]);
                }
                if (i > first) mesh->indices.insert(mesh->indices.end(), {before, place});
                before = place;
            }
        }
        first = last;
    }
    if (mesh->indices.empty()) return nullptr;
    mesh->computeBox();
    return mesh;
}
