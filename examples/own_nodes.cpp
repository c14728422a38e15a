// Classes of one's own on the scene-graph layer: a shape, a property, a kit and an action. A text that
// holds them is read, drawn without a display into own_nodes.png, picked, and written again.

#include <arborium/arborium.h>

#include <QGuiApplication>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

// ---- a shape -------------------------------------------------------------------------------

/// A wire that is wound around the y axis, its middle at the origin.
class Spring : public KsShape {
    KS_NODE_HEADER(Spring);

public:
    enum Hand { LEFT, RIGHT };
    KsSFFloat turns;  ///< Default 4.
    KsSFFloat height; ///< Default 2.
    KsSFEnum hand;    ///< Default RIGHT.

    Spring();
    Form getForm(const KsState* state) override;

protected:
    ~Spring() override = default;
    void fieldHasChanged(KsField* field) override;

private:
    KsMeshPtr m_mesh; // made when it is first asked for
};

KS_NODE_SOURCE(Spring, KsShape)

Spring::Spring()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("turns", turns, 4.0f);
    build.field("height", height, 2.0f);
    build.enums("Hand", {{"LEFT", LEFT}, {"RIGHT", RIGHT}});
    build.enumField("hand", hand, "Hand", RIGHT);
}

void Spring::fieldHasChanged(KsField* field)
{
    KsShape::fieldHasChanged(field);
    m_mesh.reset();
}

KsShape::Form Spring::getForm(const KsState*)
{
    if (!m_mesh) {
        constexpr int around = 12, perTurn = 48, most = 100000;
        constexpr float thickness = 0.1f, circle = 6.2831853f;
        const float rings = std::min(std::fabs(turns) * perTurn, static_cast<float>(most));
        const int last = std::max(1, static_cast<int>(rings)); // a file may hold any number
        const float side = hand == RIGHT ? -1 : 1;
        auto mesh = std::make_shared<KsMesh>();
        for (int i = 0; i <= last; ++i) {
            const float part = static_cast<float>(i) / static_cast<float>(last);
            const float angle = part * turns * circle;
            const KbVec3f outward(std::cos(angle), 0, side * std::sin(angle));
            for (int j = 0; j < around; ++j) {
                const float across = static_cast<float>(j) * circle / around;
                const KbVec3f normal = outward * std::cos(across) + KbVec3f(0, std::sin(across), 0);
                const KbVec3f middle = outward + KbVec3f(0, (part - 0.5f) * height, 0);
                mesh->positions.push_back(middle + normal * thickness);
                mesh->normals.push_back(normal);
                if (i == last) continue;
                const auto here = static_cast<std::uint32_t>(i * around + j);
                const auto beside = static_cast<std::uint32_t>(i * around + (j + 1) % around);
                for (const std::uint32_t corner :
                     {here, beside, here + around, beside, beside + around, here + around})
                    mesh->indices.push_back(corner);
            }
        }
        mesh->computeBox();
        m_mesh = mesh;
    }
    return {m_mesh, KbVec3f(1, 1, 1)};
}

// ---- a property ----------------------------------------------------------------------------

/// Mixes a colour into those of the shapes behind it.
class Tint : public KsNode {
    KS_NODE_HEADER(Tint);

public:
    KsSFColor color;  ///< Default white.
    KsSFFloat amount; ///< 0 to 1. Default 0.5.

    Tint();
    void doAction(KsAction* action) override;

protected:
    ~Tint() override = default;
};

KS_NODE_SOURCE(Tint, KsNode)

Tint::Tint()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("color", color, KbColor(1, 1, 1));
    build.field("amount", amount, 0.5f);
}

void Tint::doAction(KsAction* action)
{
    KsState* state = action->getState();
    KbColor& diffuse = state->edit(state->material).diffuse;
    for (int i = 0; i < 3; ++i) diffuse[i] += (color.getValue()[i] - diffuse[i]) * amount;
}

// ---- a kit ---------------------------------------------------------------------------------

/// Something to look at, with its name below.
class Exhibit : public KsBaseKit {
    KS_KIT_HEADER(Exhibit);

public:
    KsSFString title; ///< Default empty.

    Exhibit();

protected:
    ~Exhibit() override = default;
    void fieldHasChanged(KsField* field) override;
};

KS_KIT_SOURCE(Exhibit, KsBaseKit)

Exhibit::Exhibit()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("title", title, "");
    build.part("place", KsTransform::getClassTypeId(), "geomSeparator", KsPublicPart);
    // A shape of any class; a sphere as long as no other is set.
    build.part("objectSeparator", KsSeparator::getClassTypeId(), "geomSeparator", KsHiddenPart);
    build.part("look", KsMaterial::getClassTypeId(), "objectSeparator", KsPublicPart);
    build.part("tint", Tint::getClassTypeId(), "objectSeparator", KsPublicPart);
    build.part("shape", KsShape::getClassTypeId(), KsSphere::getClassTypeId(), false,
               "objectSeparator", "", false, KsType::badType(), KsType::badType(), KsPublicPart);
    build.part("plate", KsTranslation::getClassTypeId(), "geomSeparator", KsHiddenPart);
    build.part("font", KsFont::getClassTypeId(), "geomSeparator", KsPublicPart);
    build.part("text", KsText3::getClassTypeId(), "geomSeparator", KsHiddenPart);
}

void Exhibit::fieldHasChanged(KsField* field)
{
    KsBaseKit::fieldHasChanged(field);
    if (field != &title) return;
    auto* plate = static_cast<KsTranslation*>(getAnyPart("plate", true));
    auto* text = static_cast<KsText3*>(getAnyPart("text", true));
    plate->translation.setValue(0, -1.9f, 0);
    text->justification = KsText3::CENTER;
    text->string = title;
}

// ---- an action -----------------------------------------------------------------------------

/// Counts the triangles of a scene.
class CountAction : public KsAction {
public:
    static KsType getClassTypeId()
    {
        static const KsType type = KsType::createType(KsAction::getClassTypeId(), "CountAction");
        return type;
    }
    KsType getTypeId() const override { return getClassTypeId(); }
    std::size_t getTriangles() const { return m_triangles; }

protected:
    void beginTraversal(KsNode* root) override
    {
        m_triangles = 0;
        KsAction::beginTraversal(root);
    }
    void visit(KsNode* node) override
    {
        if (auto* shape = ksCast<KsShape>(node)) {
            const KsMeshPtr mesh = shape->getForm(getState()).mesh;
            if (mesh && mesh->primitive == KsMesh::Triangles)
                m_triangles += mesh->indices.size() / 3;
        }
        node->doAction(this); // its effect on the state, and what is below it
    }

private:
    std::size_t m_triangles = 0;
};

// ---- all together --------------------------------------------------------------------------

const char* const museum = R"(#Arborium V2.1 ascii
PerspectiveCamera {
    position 0 1.2 11.5  orientation 1 0 0 -0.14  heightAngle 0.42  nearDistance 1  farDistance 30 }
DirectionalLight { direction -0.4 -0.7 -1  intensity 0.9 }
DirectionalLight { direction 1 -0.2 -0.4  intensity 0.35 }
DEF Steel Material { diffuseColor 0.55 0.6 0.68  specularColor 0.7 0.7 0.7  shininess 0.7 }
DEF Lettering Font { name "DejaVu Sans"  size 0.4 }
Exhibit { title "right-handed"
    place Transform { translation -3.4 0 0 }  look USE Steel  shape Spring { }  font USE Lettering }
Exhibit { title "left-handed"
    look USE Steel  tint Tint { color 0.9 0.5 0.1 }  shape Spring { turns 6.5  hand LEFT }
    font USE Lettering }
DEF Third Exhibit { title "a ball"
    place Transform { translation 3.4 0 0 }  look USE Steel  font USE Lettering }
)";

KsSeparator* read(const std::string& text)
{
    KsInput in;
    in.setBuffer(text.data(), text.size());
    return KsDB::readAll(&in);
}

std::string write(KsNode* scene, bool binary)
{
    KsOutput out;
    out.setBinary(binary);
    KsWriteAction action(&out);
    action.apply(scene);
    return out.getBuffer();
}

/// The part of an exhibit at a pixel of the picture; empty if there is none.
std::string partAt(KsNode* scene, const KbViewportRegion& window, const KbVec2f& pixel)
{
    KsRayPickAction pick(window);
    pick.setPoint(pixel);
    pick.apply(scene);
    const KsPickedPoint* hit = pick.getPickedPoint();
    if (!hit) return {};
    const auto* kit = ksCast<Exhibit>(hit->getPath()->getTail());
    const auto* detail = ksCast<KsNodeKitDetail>(hit->getDetail(kit));
    if (!kit || !detail) return {};
    return std::string(detail->getPartName().getString()) + " of " +
           kit->title.getValue().getString();
}

bool look()
{
    const KsRef<KsSeparator> scene(read(museum));
    if (!scene) return false;
    auto* third = ksCast<Exhibit>(KsNode::getByName("Third"));
    ksCast<Tint>(third->getPart("tint", true))->color.setValue(0.1f, 0.5f, 0.3f);
    const KbViewportRegion window(900, 400);
    KsOffscreenRenderer renderer(window);
    renderer.setSupersampling(2);
    renderer.setBackgroundGradient(KbColor(0.1f, 0.12f, 0.16f), KbColor(0.3f, 0.35f, 0.42f));
    renderer.render(scene);
    CountAction count;
    count.apply(scene);
    const std::string text = write(scene, false);
    const KsRef<KsSeparator> again(read(write(scene, true)));
    std::cout << count.getTriangles() << " triangles\n"
              << "at the right: " << partAt(scene, window, KbVec2f(720, 220)) << '\n'
              << text;
    return again && write(again, false) == text && renderer.writeToFile("own_nodes.png");
}

} // namespace

int main(int argc, char** argv)
{
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv); // for the fonts
    KsDB::init();
    Spring::initClass();
    Tint::initClass();
    Exhibit::initClass();
    const bool good = look();
    Exhibit::exitClass();
    Tint::exitClass();
    Spring::exitClass();
    KsDB::finish();
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
