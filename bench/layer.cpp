// What the scene-graph layer costs: files, fields, boxes, frames, picks, memory, and how each grows
// with the size of a scene. scripts/install-deps bench brings what it is compared with.

#include "forms.h"

#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsOutput.h>
#include <arborium/kits/KsInteractionKit.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsNodeList.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/render/KsOffscreenRenderer.h>
#include <arborium/sensors/KsSensor.h>

#include <cmath>
#include <dlfcn.h>
#include <malloc.h>
#include <memory>
#include <random>
#include <vector>

#ifdef BENCH_EXPAT
#include <expat.h>
#endif

namespace {

// ---- scenes ---------------------------------------------------------------------------------

/// Nodes as a modeller writes them: separators with a place, a colour and shapes.
KsRef<KsSeparator> plainScene(int nodes)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> number(-100, 100);
    std::uniform_real_distribution<float> part(0, 1);
    KsRef<KsSeparator> root(new KsSeparator);
    for (int count = 1; count < nodes;) {
        auto* group = new KsSeparator;
        root->addChild(group);
        auto* place = new KsTranslation;
        place->translation.setValue(KbVec3f(number(random), number(random), number(random)));
        auto* color = new KsMaterial;
        color->diffuseColor.setValue(KbColor(part(random), part(random), part(random)));
        group->addChild(place);
        group->addChild(color);
        count += 3;
        for (int i = 0; i < 7 && count < nodes; ++i, ++count) {
            auto* cube = new KsCube;
            cube->width = part(random) + 1;
            cube->height = part(random) + 1;
            group->addChild(cube);
        }
    }
    return root;
}

std::string textOf(KsNode* root, bool binary)
{
    KsOutput out;
    out.setBinary(binary);
    KsWriteAction action(&out);
    action.apply(root);
    return out.getBuffer();
}

void readScene(benchmark::State& state, bool binary)
{
    measureReading(state, textOf(plainScene(static_cast<int>(state.range(0))).get(), binary),
                   state.range(0));
}
void readAscii(benchmark::State& state) { readScene(state, false); }
void readBinary(benchmark::State& state) { readScene(state, true); }
BENCHMARK(readAscii)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(readBinary)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

#ifdef BENCH_EXPAT
/// The same scene as XML, as much of it as gives a text of `size` bytes.
std::string xmlOf(const std::string& scene, std::size_t size)
{
    std::string text = "<scene>\n";
    std::vector<std::string> open;
    std::size_t at = 0;
    bool inTag = false;
    const auto endTag = [&] {
        if (inTag) text += ">\n";
        inTag = false;
    };
    while (at < scene.size() && text.size() < size) {
        std::size_t end = scene.find('\n', at);
        if (end == std::string::npos) end = scene.size();
        std::size_t first = at;
        while (first < end && scene[first] == ' ') ++first;
        const std::string indent = scene.substr(at, first - at);
        const std::string line = scene.substr(first, end - first);
        at = end + 1;
        if (line.empty() || line[0] == '#') continue;
        if (line == "}") {
            endTag();
            text += indent + "</" + open.back() + ">\n";
            open.pop_back();
        } else if (line.back() == '{') {
            endTag();
            open.push_back(line.substr(0, line.find(' ')));
            text += indent + "<" + open.back();
            inTag = true;
        } else {
            const std::size_t blank = line.find(' ');
            text += " " + line.substr(0, blank) + "=\"" + line.substr(blank + 1) + "\"";
        }
    }
    endTag();
    for (; !open.empty(); open.pop_back()) text += "</" + open.back() + ">\n";
    return text + "</scene>\n";
}

void readWithExpat(benchmark::State& state)
{
    const std::string scene = textOf(plainScene(static_cast<int>(state.range(0))).get(), false);
    const std::string text = xmlOf(scene, scene.size());
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreate(nullptr);
        long elements = 0;
        XML_SetUserData(parser, &elements);
        XML_SetElementHandler(
            parser,
            [](void* data, const XML_Char*, const XML_Char**) { ++*static_cast<long*>(data); },
            [](void*, const XML_Char*) {});
        if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK)
            state.SkipWithError("not read");
        benchmark::DoNotOptimize(elements);
        XML_ParserFree(parser);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(readWithExpat)->Arg(100000)->Unit(benchmark::kMillisecond);
#endif

void writeScene(benchmark::State& state, bool binary)
{
    const KsRef<KsSeparator> root = plainScene(static_cast<int>(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) bytes = textOf(root.get(), binary).size();
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
void writeAscii(benchmark::State& state) { writeScene(state, false); }
void writeBinary(benchmark::State& state) { writeScene(state, true); }
BENCHMARK(writeAscii)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(writeBinary)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// ---- fields ---------------------------------------------------------------------------------

/// What reading cannot be faster than: the same nodes, made by calls.
void makeByCalls(benchmark::State& state)
{
    for (auto _ : state) {
        KsRef<KsSeparator> root = plainScene(static_cast<int>(state.range(0)));
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(makeByCalls)->Arg(100000)->Unit(benchmark::kMillisecond);

void setValueUnwatched(benchmark::State& state)
{
    const KsRef<KsCube> cube(new KsCube);
    float value = 1;
    for (auto _ : state) {
        value += 1;
        cube->width.setValue(value);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(setValueUnwatched);

void setValueWithSensor(benchmark::State& state)
{
    const KsRef<KsCube> cube(new KsCube);
    long calls = 0;
    KsFieldSensor sensor([](void* data, KsSensor*) { ++*static_cast<long*>(data); }, &calls);
    sensor.setPriority(0);
    sensor.attach(&cube->width);
    float value = 1;
    for (auto _ : state) {
        value += 1;
        cube->width.setValue(value);
        benchmark::ClobberMemory();
    }
    if (calls != state.iterations()) state.SkipWithError("the sensor was not told");
    sensor.detach();
}
BENCHMARK(setValueWithSensor);

// ---- boxes ----------------------------------------------------------------------------------

/// Separators, `fanOut` in each, down to so many of them with a place and a cube in it.
class Tree {
public:
    Tree(int leaves, int fanOut) : root(new KsSeparator) { fill(root.get(), leaves, fanOut); }
    const KsRef<KsSeparator> root;
    std::vector<KsTranslation*> places;
    std::vector<KsMaterial*> colors;

private:
    void fill(KsSeparator* group, int leaves, int fanOut)
    {
        if (leaves == 1) {
            places.push_back(new KsTranslation);
            const auto n = static_cast<int>(places.size());
            places.back()->translation =
                KbVec3f(static_cast<float>(n % 100) * 2, static_cast<float>(n / 100) * 2, 0);
            colors.push_back(new KsMaterial);
            colors.back()->diffuseColor =
                KbColor(static_cast<float>(n % 10) / 10.0f, 0.5f, static_cast<float>(n % 7) / 7.0f);
            group->addChild(places.back());
            group->addChild(colors.back());
            auto* cube = new KsCube;
            cube->width = cube->height = cube->depth = 1.5f;
            group->addChild(cube);
            return;
        }
        const int parts = std::min(leaves, fanOut);
        for (int i = 0; i < parts; ++i) {
            auto* inner = new KsSeparator;
            group->addChild(inner);
            fill(inner, leaves / parts, fanOut);
        }
    }
};

void measureBox(benchmark::State& state, int fanOut)
{
    const Tree tree(static_cast<int>(state.range(0)), fanOut);
    KsGetBoundingBoxAction action{KbViewportRegion(1000, 1000)};
    action.apply(tree.root.get());
    KsTranslation* place = tree.places[tree.places.size() / 2];
    float z = 0;
    for (auto _ : state) {
        place->translation = KbVec3f(0, 0, z += 1);
        action.apply(tree.root.get());
        benchmark::DoNotOptimize(action.getBoundingBox());
    }
}
/// One leaf of a tree changed; ten separators in each.
void boxAfterChange(benchmark::State& state) { measureBox(state, 10); }
BENCHMARK(boxAfterChange)->Arg(1000)->Arg(10000)->Arg(100000);
/// The worst: all are siblings.
void boxAfterChangeFlat(benchmark::State& state) { measureBox(state, 1 << 30); }
BENCHMARK(boxAfterChangeFlat)->Arg(1000)->Arg(10000)->Arg(100000);

void boxOfNewScene(benchmark::State& state)
{
    KsLimits::current().visits = 10 * state.range(0); // four nodes in a leaf, and what holds them
    for (auto _ : state) {
        state.PauseTiming();
        auto tree = std::make_unique<Tree>(static_cast<int>(state.range(0)), 10);
        KsGetBoundingBoxAction action{KbViewportRegion(1000, 1000)};
        state.ResumeTiming();
        action.apply(tree->root.get());
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(boxOfNewScene)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// ---- frames ---------------------------------------------------------------------------------

/// While it lives, what the driver would draw, wait for or copy is left out: what is left is our
/// side of a frame, whatever the driver is.
class NoDriver {
public:
    NoDriver()
    {
        for (const char* name : {"glDrawElements", "glDrawArrays", "glDrawRangeElements",
                                 "glMultiDrawElements", "glReadPixels", "glBlitFramebuffer",
                                 "glClear", "glFinish", "glFlush", "glGetTexImage"}) {
            auto* slot =
                static_cast<void**>(dlsym(RTLD_DEFAULT, (std::string("epoxy_") + name).c_str()));
            if (!slot) continue;
            m_slots.emplace_back(slot, *slot);
            *slot = reinterpret_cast<void*>(&nothing);
        }
    }
    ~NoDriver()
    {
        for (const auto& each : m_slots) *each.first = each.second;
    }
    bool works() const { return m_slots.size() >= 8; }

private:
    // Called with more arguments than it takes, which this calling convention allows.
    static void nothing() {}
    std::vector<std::pair<void**, void*>> m_slots;
};

/// 10,000 cubes and 2,000 lines of text, a camera that sees them all.
struct FrameScene {
    FrameScene() : tree(10000, 10)
    {
        auto* camera = new KsOrthographicCamera;
        tree.root->insertChild(camera, 0);
        auto* texts = new KsSeparator;
        auto* font = new KsFont;
        font->size = 2;
        texts->addChild(font);
        for (int i = 0; i < 200; ++i) {
            auto* group = new KsSeparator;
            auto* place = new KsTranslation;
            place->translation =
                KbVec3f(static_cast<float>(i % 20) * 10, static_cast<float>(i / 20) * 20 + 20, 2);
            auto* text = new KsText3;
            for (int line = 0; line < 10; ++line)
                text->string.set1Value(line, ("line " + std::to_string(10 * i + line)).c_str());
            group->addChild(place);
            group->addChild(text);
            texts->addChild(group);
        }
        tree.root->addChild(texts);
        KsGetBoundingBoxAction action(viewport);
        action.apply(tree.root.get());
        camera->viewAll(tree.root.get(), viewport);
    }
    const KbViewportRegion viewport{1000, 1000};
    Tree tree;
};

/// What to change before each frame.
using Change = std::function<void(FrameScene&, int)>;

void measureFrame(benchmark::State& state, bool withDriver, const Change& change)
{
    FrameScene scene;
    KsOffscreenRenderer renderer{scene.viewport};
    // A driver in software smooths edges by drawing larger and averaging, which is its work.
    if (!withDriver) renderer.setSamples(1);
    if (!renderer.render(scene.tree.root.get())) state.SkipWithError("no OpenGL");
    std::unique_ptr<NoDriver> none;
    if (!withDriver) none = std::make_unique<NoDriver>();
    if (none && !none->works()) state.SkipWithError("the driver's functions are not found");
    const long before = renderer.getRenderAction()->getNumVisits();
    int i = 0;
    for (auto _ : state) {
        if (change) change(scene, ++i);
        renderer.render(scene.tree.root.get());
    }
    state.counters["visits"] =
        benchmark::Counter(static_cast<double>(renderer.getRenderAction()->getNumVisits() - before),
                           benchmark::Counter::kAvgIterations);
}

void changeMaterial(FrameScene& scene, int i)
{
    scene.tree.colors[4711]->diffuseColor =
        KbColor(static_cast<float>(i % 100) / 100.0f, 0.5f, 0.5f);
}

void movePlace(FrameScene& scene, int i)
{
    scene.tree.places[4711]->translation = KbVec3f(static_cast<float>(i % 100), 50, 0);
}

void frameUnchanged(benchmark::State& state) { measureFrame(state, true, {}); }
BENCHMARK(frameUnchanged);
void frameOneMaterial(benchmark::State& state) { measureFrame(state, false, changeMaterial); }
BENCHMARK(frameOneMaterial)->Unit(benchmark::kMicrosecond);
void frameOneMoved(benchmark::State& state) { measureFrame(state, false, movePlace); }
BENCHMARK(frameOneMoved)->Unit(benchmark::kMicrosecond);
/// The same with what a driver in software adds.
void frameOneMaterialDrawn(benchmark::State& state) { measureFrame(state, true, changeMaterial); }
BENCHMARK(frameOneMaterialDrawn)->Unit(benchmark::kMillisecond);

/// The list of draws for a camera that moves over so many siblings and sees a hundredth of them.
void drawListOfPart(benchmark::State& state)
{
    const KbViewportRegion viewport(1000, 1000);
    const Tree tree(static_cast<int>(state.range(0)), 1 << 30);
    auto* camera = new KsOrthographicCamera;
    tree.root->insertChild(camera, 0);
    camera->viewAll(tree.root.get(), viewport);
    camera->height = camera->height.getValue() / 10;
    const KbVec3f center = camera->position;
    KsGetBoundingBoxAction measure(viewport);
    KsRenderAction render(viewport);
    float i = 0;
    for (auto _ : state) {
        i += 1;
        camera->position = center + KbVec3f(40 * std::sin(i), 40 * std::cos(i), 0);
        measure.apply(tree.root.get());
        render.apply(tree.root.get());
    }
    state.counters["draws"] = static_cast<double>(render.getDrawList().draws.size());
}
BENCHMARK(drawListOfPart)->Arg(10000)->Unit(benchmark::kMicrosecond);

// ---- picks ----------------------------------------------------------------------------------

void measurePick(benchmark::State& state, int fanOut, bool shuffled = false)
{
    const Tree tree(static_cast<int>(state.range(0)), fanOut);
    if (shuffled) {
        std::mt19937 random(1);
        for (std::size_t i = tree.places.size() - 1; i > 0; --i) {
            KsSFVec3f& a = tree.places[i]->translation;
            KsSFVec3f& b = tree.places[random() % (i + 1)]->translation;
            const KbVec3f place = a;
            a = b.getValue();
            b = place;
        }
    }
    const KbViewportRegion viewport(1000, 1000);
    auto* camera = new KsOrthographicCamera;
    tree.root->insertChild(camera, 0);
    camera->viewAll(tree.root.get(), viewport);
    KsGetBoundingBoxAction(viewport).apply(tree.root.get());
    KsRayPickAction action(viewport);
    int hits = 0, i = 0;
    for (auto _ : state) {
        // All over the scene, and at no regular distance.
        const double n = ++i;
        action.setPoint(KbVec2f(static_cast<float>(std::fmod(n * 618.034, 1000)),
                                static_cast<float>(std::fmod(n * 414.214, 1000))));
        action.apply(tree.root.get());
        if (action.getPickedPoint()) ++hits;
    }
    state.counters["hits"] =
        benchmark::Counter(static_cast<double>(hits), benchmark::Counter::kAvgIterations);
}
void pick(benchmark::State& state) { measurePick(state, 10); }
BENCHMARK(pick)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
void pickFlat(benchmark::State& state) { measurePick(state, 1 << 30); }
BENCHMARK(pickFlat)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
/// Where their order has nothing to do with their places.
void pickFlatShuffled(benchmark::State& state) { measurePick(state, 1 << 30, true); }
BENCHMARK(pickFlatShuffled)->Arg(10000)->Unit(benchmark::kMicrosecond);

// ---- children and names ---------------------------------------------------------------------

void addChildren(benchmark::State& state)
{
    for (auto _ : state) {
        KsRef<KsGroup> group(new KsGroup);
        for (int i = 0; i < state.range(0); ++i) group->addChild(new KsGroup);
        state.PauseTiming();
        group.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(addChildren)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

/// Each of so many names looked up once.
void getByName(benchmark::State& state)
{
    const auto count = static_cast<int>(state.range(0));
    const KsRef<KsGroup> group(new KsGroup);
    std::vector<KbName> names;
    for (int i = 0; i < count; ++i) {
        names.emplace_back("node" + std::to_string(i));
        auto* node = new KsGroup;
        node->setName(names.back());
        group->addChild(node);
    }
    for (auto _ : state) {
        int found = 0;
        for (const KbName& name : names) {
            KsNodeList list;
            found += KsNode::getByName(name, list);
        }
        if (found != count) state.SkipWithError("not found");
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(getByName)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

/// So many nodes of one name: named, found together, and unnamed.
void manyOfOneName(benchmark::State& state)
{
    const auto count = static_cast<int>(state.range(0));
    const KsRef<KsGroup> group(new KsGroup);
    for (int i = 0; i < count; ++i) group->addChild(new KsGroup);
    const KbName name("twin");
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) group->getChild(i)->setName(name);
        KsNodeList list;
        if (KsNode::getByName(name, list) != count) state.SkipWithError("not found");
        for (int i = 0; i < count; ++i) group->getChild(i)->setName(KbName());
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(manyOfOneName)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// ---- memory ---------------------------------------------------------------------------------

template <class Node> void memoryOf(benchmark::State& state)
{
    constexpr int count = 10000;
    double bytes = 0;
    for (auto _ : state) {
        std::vector<KsRef<Node>> nodes;
        nodes.reserve(count);
        const std::size_t before = heapBytes();
        for (int i = 0; i < count; ++i) nodes.emplace_back(new Node);
        bytes = static_cast<double>(heapBytes() - before) / count;
    }
    state.counters["bytes"] = bytes;
    state.counters["sizeof"] = static_cast<double>(sizeof(Node));
}
BENCHMARK_TEMPLATE(memoryOf, KsSeparator)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(memoryOf, KsMaterial)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(memoryOf, KsBaseKit)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(memoryOf, KsInteractionKit)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    // Memory stays with the process: how the system fills pages is not measured here.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    return runBenchmarks(argc, argv);
}
