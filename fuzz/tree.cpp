// Trees made by calls: nodes of every class of the layer with any values, shared, connected, moved
// about. What is kept of a scene must agree with what is found anew, and what is written with what
// is read.

#include "../tests/support/RandomScene.h"
#include "scene_fuzz.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/kits/KsInteractionKit.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsShape.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QGuiApplication>

#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr int mostNodes = 60;
constexpr int mostSteps = 300;
const KbViewportRegion viewport(48, 48);

void startFonts()
{
    static int argc = 1;
    static char name[] = "fuzz_tree";
    static char* argv[] = {name, nullptr};
    static const auto& application = *new QGuiApplication(argc, argv);
    (void)application;
}

bool same(float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); }
bool same(const KbVec3f& a, const KbVec3f& b)
{
    return same(a[0], b[0]) && same(a[1], b[1]) && same(a[2], b[2]);
}
std::string shown(const KbVec3f& v)
{
    return std::to_string(v[0]) + " " + std::to_string(v[1]) + " " + std::to_string(v[2]);
}

class Scene {
public:
    explicit Scene(ByteChoices& choices) : m_choices(choices), m_render(viewport)
    {
        m_root = new KsSeparator;
        add(m_root.get());
    }

    void build()
    {
        for (int i = 0; i < mostSteps && m_choices.hasMore(); ++i) step();
    }

    void look()
    {
        lookAtFiles();
        lookAtBox();
        lookAtDraws();
        lookAtPicks();
    }

    void lookAtFrame()
    {
        KsOffscreenRenderer renderer(viewport);
        renderer.render(m_root.get());
    }

private:
    KsNode* add(KsNode* node)
    {
        m_nodes.emplace_back(node);
        if (auto* group = ksCast<KsGroup>(node)) m_groups.push_back(group);
        return node;
    }
    KsNode* node() { return m_choices.oneOf(m_nodes).get(); }
    KsGroup* group() { return m_choices.oneOf(m_groups); }
    KsField* field(KsNode* of)
    {
        KsFieldList fields;
        of->getAllFields(fields);
        return fields.empty() ? nullptr : m_choices.oneOf(fields).field;
    }

    void step()
    {
        const bool full = static_cast<int>(m_nodes.size()) >= mostNodes;
        switch (m_choices.upTo(18)) {
        case 0:
        case 1:
        case 2:
            if (!full) {
                KsGroup* into = group();
                into->addChild(add(RandomScene::anyNode(m_choices).get()));
            }
            break;
        case 3: {
            KsGroup* into = group();
            KsNode* child = node();
            into->insertChild(child, m_choices.upTo(into->getNumChildren() + 1));
            break;
        }
        case 4: {
            KsGroup* from = group();
            if (from->getNumChildren()) from->removeChild(m_choices.upTo(from->getNumChildren()));
            break;
        }
        case 5: {
            KsGroup* in = group();
            KsNode* child = node();
            if (in->getNumChildren()) in->replaceChild(m_choices.upTo(in->getNumChildren()), child);
            break;
        }
        case 6:
        case 7:
        case 8:
        case 9: {
            KsField* changed = field(node());
            if (changed) RandomScene::setValue(changed, m_choices, anyNodeOrNone(changed));
            break;
        }
        case 10: {
            KsField* from = field(node());
            KsField* to = field(node());
            // Which nodes there are is not for connections to say.
            if (!to || ksCast<KsSFNode>(to)) break;
            if (m_choices.chance(80))
                to->connectFrom(from);
            else
                to->disconnect();
            break;
        }
        case 11: {
            static const char* const names[] = {"", "a", "b", "a b", "\"", "+1"};
            node()->setName(KbName(names[m_choices.upTo(6)]));
            break;
        }
        case 12:
            if (auto* kit = ksCast<KsBaseKit>(node())) changeKit(kit);
            break;
        case 13:
            // Copies of copies grow fast.
            if (!full && KsBase::getNumInstances() < 500) {
                const KsRef<KsNode> copy(node()->copy(m_choices.chance(50)));
                if (copy) group()->addChild(add(copy.get()));
            }
            break;
        case 14: lookAtBox(); break;
        case 15: lookAtDraws(); break;
        case 16: lookAtPicks(); break;
        default: sendEvent(); break;
        }
    }

    KsNode* anyNodeOrNone(KsField* field)
    {
        return ksCast<KsSFNode>(field) && m_choices.chance(80) ? node() : nullptr;
    }

    void changeKit(KsBaseKit* kit)
    {
        static const char* const names[] = {"topSeparator", "geomSeparator", "geomSwitch", "none"};
        const KbName part(names[m_choices.upTo(4)]);
        switch (m_choices.upTo(3)) {
        case 0: kit->getAnyPart(part, true); break;
        case 1: kit->setAnyPart(part, node()); break;
        default: kit->setAnyPart(part, nullptr); break;
        }
    }

    void sendEvent()
    {
        KsHandleEventAction action(viewport);
        const KbVec2f at(static_cast<float>(m_choices.upTo(48)),
                         static_cast<float>(m_choices.upTo(48)));
        KsMouseButtonEvent press(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, at);
        action.setEvent(&press);
        action.apply(m_root.get());
        KsLocation2Event motion(KbVec2f(20, 20));
        action.setEvent(&motion);
        action.apply(m_root.get());
    }

    void lookAtFiles()
    {
        for (const bool binary : {false, true}) {
            // A field that was set after it was connected takes its master's value when it is read.
            const KsRef<KsSeparator> read = readBack(SceneFuzz::write(m_root, binary));
            if (!read) return;
            const std::string once = SceneFuzz::write(read, binary);
            const std::string again = SceneFuzz::write(readBack(once), binary);
            if (again != once) SceneFuzz::fail("writing it again changes it", once, again);
        }
    }
    /// Null for a scene that is beyond the limits of a file.
    static KsRef<KsSeparator> readBack(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        KsRef<KsSeparator> read(KsDB::parse(&in));
        if (!read && in.getErrors().at(0).message.find("the limit of") == std::string::npos)
            SceneFuzz::fail("what was written cannot be read", in.getErrors()[0].toString(), text);
        return read;
    }

    void lookAtBox()
    {
        KsGetBoundingBoxAction kept(viewport);
        kept.apply(m_root.get());
        const KbBox3f box = kept.getBoundingBox();
        for (int i = 0; i < 3; ++i)
            if (std::isnan(box.getMin()[i]) || std::isnan(box.getMax()[i]))
                SceneFuzz::fail("the box is no box");
        if (kept.isTerminated()) return; // more visits than the limit
        // As if nothing had been kept.
        for (const KsRef<KsNode>& each : m_nodes) each->touch();
        KsGetBoundingBoxAction fresh(viewport);
        fresh.apply(m_root.get());
        const KbBox3f other = fresh.getBoundingBox();
        if (!same(box.getMin(), other.getMin()) || !same(box.getMax(), other.getMax()))
            SceneFuzz::fail("the kept box is not the present one",
                            shown(box.getMin()) + ", " + shown(box.getMax()) + "\n" +
                                SceneFuzz::write(m_root, false),
                            shown(other.getMin()) + ", " + shown(other.getMax()));
        KsGetMatrixAction matrix(viewport);
        matrix.apply(m_root.get());
        KsSearchAction search;
        search.setType(KsShape::getClassTypeId());
        search.setInterest(KsSearchAction::ALL);
        search.setSearchingAll(true);
        search.apply(m_root.get());
        if (search.getPaths().getLength() > 0) matrix.apply(search.getPaths()[0]);
    }

    void lookAtDraws()
    {
        // A frame measures first; what is out of view is known by boxes.
        KsGetBoundingBoxAction(viewport).apply(m_root.get());
        m_render.apply(m_root.get());
        KsRenderAction fresh(viewport);
        fresh.apply(m_root.get());
        if (fresh.isTerminated()) return;
        const KsDrawList& a = m_render.getDrawList();
        const KsDrawList& b = fresh.getDrawList();
        // What is out of view may be left out, and need not be.
        std::size_t i = 0, j = 0;
        for (;;) {
            if (i < a.draws.size() && j < b.draws.size() && sameDraw(a, a.draws[i], b, b.draws[j]))
                ++i, ++j;
            else if (i < a.draws.size() && !isInView(a, a.draws[i]))
                ++i;
            else if (j < b.draws.size() && !isInView(b, b.draws[j]))
                ++j;
            else
                break;
        }
        if (i < a.draws.size() || j < b.draws.size())
            SceneFuzz::fail("the kept draws are not the present ones",
                            std::to_string(i) + " of " + std::to_string(a.draws.size()) + "\n" +
                                SceneFuzz::write(m_root, false),
                            std::to_string(j) + " of " + std::to_string(b.draws.size()));
    }
    static bool sameDraw(const KsDrawList& a, const KsDraw& x, const KsDrawList& b, const KsDraw& y)
    {
        // A shape that is used with other points in turn makes its mesh anew each time.
        return x.mesh->positions == y.mesh->positions && x.matrix == y.matrix &&
               x.cullBack == y.cullBack && x.twoSided == y.twoSided && x.texture == y.texture &&
               same(a.materials[x.material].diffuse, b.materials[y.material].diffuse) &&
               a.clips[x.clip].size() == b.clips[y.clip].size() &&
               a.lightSets[x.lights].size() == b.lightSets[y.lights].size();
    }
    /// Whether one of its points is surely in sight.
    static bool isInView(const KsDrawList& list, const KsDraw& draw)
    {
        if (!list.hasCamera) return true;
        for (const KbVec3f& position : draw.mesh->positions) {
            KbVec3f at, onScreen;
            draw.matrix.multVecMatrix(position, at);
            if (!at.isFinite() || !list.viewVolume.intersect(at)) continue;
            list.viewVolume.projectToScreen(at, onScreen);
            constexpr float edge = 1e-3f;
            bool inside = true;
            for (int k = 0; k < 3; ++k)
                inside = inside && onScreen[k] > edge && onScreen[k] < 1 - edge;
            if (inside) return true;
        }
        return false;
    }

    void lookAtPicks()
    {
        KsRayPickAction pick(viewport);
        const float x = static_cast<float>(m_choices.upTo(48));
        pick.setPoint(KbVec2f(x, 20));
        pick.apply(m_root.get());
        pick.setRay(KbVec3f(x / 8 - 3, 0.1f, 100), KbVec3f(0, 0, -1));
        pick.apply(m_root.get());
        const KsPickedPoint* hit = pick.getPickedPoint();
        if (hit && !(hit->getPoint().isFinite() && std::isfinite(hit->getDistance())))
            SceneFuzz::fail("a hit nowhere");
        pick.setPickAll(true);
        pick.apply(m_root.get());
        if ((pick.getPickedPointsListLength() > 0) != (hit != nullptr))
            SceneFuzz::fail("the first of all hits is not the only one",
                            SceneFuzz::write(m_root, false));
    }

    ByteChoices& m_choices;
    KsRef<KsSeparator> m_root;
    KsRenderAction m_render;
    std::vector<KsRef<KsNode>> m_nodes;
    std::vector<KsGroup*> m_groups;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SceneFuzz::start();
    startFonts();
    const SceneFuzz::LeakCheck leaks;
    ByteChoices choices(data, size);
    const bool withFrame = choices.upTo(32) == 1;
    Scene scene(choices);
    scene.build();
    scene.look();
    if (withFrame) scene.lookAtFrame();
    return 0;
}
