#pragma once

#include <arborium/base/KbColor.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbPlane.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbViewVolume.h>
#include <arborium/base/KbViewportRegion.h>

#include <cstdint>
#include <vector>

class KsNode;

/// Surface colours in force; a material sets only the ones that its fields hold.
struct KsMaterialState {
    // As the fields of `KsMaterial`.
    KbColor ambient{0.2f, 0.2f, 0.2f};
    KbColor diffuse{0.8f, 0.8f, 0.8f};
    KbColor specular{0, 0, 0};
    KbColor emissive{0, 0, 0};
    float shininess = 0.2f;
    float transparency = 0;
    /// FALSE under LightModel BASE_COLOR: the diffuse colour as it is.
    bool lit = true;
};

/// The font in force.
struct KsFontState {
    KbString name{"Sans"}; ///< Of a family.
    float size = 10;       ///< Units of the scene from one base line to the next, about.
};

/// One light.
struct KsLightState {
    /// What `vector` is.
    enum Kind { Directional, Point } kind = Directional;
    KbColor color{1, 1, 1};   ///< Multiplied by the intensity.
    KbVec3f vector{0, 0, -1}; ///< World direction in which the light goes, or world position.
};

/// What is known of faces.
struct KsShapeHintsState {
    bool counterClockwise = true; ///< How corners run for someone in front of a face.
    bool solid = false;           ///< The backs of faces are never seen.
    bool ordered = false;         ///< Vertex order is known.
    bool convex = true;
    float creaseAngle = 0; ///< Edges of smaller angles, in radians, look smooth.
};

/// How picks see shapes: see `KsPickStyle`.
enum class KsPickMode : std::uint8_t { Shape, BoundingBox, Unpickable };

/// What nodes of a traversal set for the nodes behind them. `push` and `pop` enclose a separator;
/// only what was touched between them is copied.
class ARBORIUM_API KsState {
public:
    KsState();
    ~KsState();
    KsState(const KsState&) = delete;
    KsState& operator=(const KsState&) = delete;

    /// What is set from now on is set back by the matching `pop`.
    void push();
    /// Brings back what was in force at the matching `push`; without one it does nothing.
    void pop();
    /// 1 outside of all separators.
    int getDepth() const { return m_depth; }
    /// Back to depth 1 and the initial values; keeps its memory.
    void reset();

    /// One value with its history.
    template <class T> class Element {
    public:
        const T& get() const { return m_value; }
        /// Depth at which the value was set last; 0 if never.
        int setAt() const { return m_setAt; }

    private:
        friend class KsState;
        struct Saved {
            T value;
            int setAt;
        };
        T m_value{};
        int m_setAt = 0;
        std::vector<Saved> m_saved;
    };

    // Reading: `state->material.get()`. Writing: `state->edit(state->material)` yields a
    // reference that may be changed until the next push or pop.
    /// From the present space to the world or, while boxes are gathered, to the separator.
    Element<KbMatrix> modelMatrix;
    Element<KsMaterialState> material;
    Element<KsFontState> font;
    Element<KsPickMode> pickMode;
    Element<KsShapeHintsState> shapeHints;
    /// In the order of the scene; none: the head light.
    Element<std::vector<KsLightState>> lights;
    Element<std::vector<KbPlane>> clipPlanes; ///< In world space; what is in front is kept.
    Element<const KsNode*> coordinates;       ///< The Coordinate3 node in force, or null.
    Element<const KsNode*> normals;           ///< The node with normals, or null.
    Element<const KsNode*> vertexProperty;    ///< The one with texture coordinates, or null.
    Element<const KsNode*> texture;           ///< The Texture2 node in force, or null.
    Element<int> switchValue;         ///< What the last switch chose; for inheriting switches.
    Element<KbViewVolume> viewVolume; ///< In world space.
    Element<KbViewportRegion> viewport;

    /// The value, to be changed: it counts as set at the present depth.
    template <class T> T& edit(Element<T>& element)
    {
        if (element.m_setAt != m_depth) save(element);
        return element.m_value;
    }
    /// Multiplies a local matrix in front of the model matrix: what follows is placed by it.
    void multModelMatrix(const KbMatrix& local) { edit(modelMatrix).multLeft(local); }

private:
    using Restore = void (*)(void* element);
    template <class T> void save(Element<T>& element)
    {
        element.m_saved.push_back({element.m_value, element.m_setAt});
        element.m_setAt = m_depth;
        m_log.push_back({&element, [](void* raw) {
                             auto& e = *static_cast<Element<T>*>(raw);
                             e.m_value = std::move(e.m_saved.back().value);
                             e.m_setAt = e.m_saved.back().setAt;
                             e.m_saved.pop_back();
                         }});
    }
    struct Log {
        void* element;
        Restore restore;
    };
    void unwind(std::size_t mark);

    std::vector<Log> m_log;
    std::vector<std::size_t> m_marks;
    int m_depth = 1;
};

/// Tells whether a view volume is in force: nothing that needs one works without.
struct ARBORIUM_API KsViewVolumeElement {
    /// FALSE for null.
    static bool isSet(const KsState* state);
    /// One that is not set if there is none, and for null.
    static const KbViewVolume& get(const KsState* state);
};
