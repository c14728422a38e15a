// A scene of one's own, on the scene-graph layer alone: a board with pieces that can be moved about.
//
//   scene          Drag a piece over the board; click it, and it changes its colour; click a square, and
//                  the ring goes there. Escape switches to turning the view with the mouse, and back.
//   scene --play   The same by itself, with the events of a mouse and without a display: prints what
//                  happened and leaves scene.png. The exit status is 0 if all of it came as it should.

#include <arborium/arborium.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

// The board is `columns` by `rows` squares of one unit; its upper side lies at y 0.
constexpr int columns = 9, rows = 6;

const char* const surroundings = R"(#Arborium V2.1 ascii
Separator {
    PerspectiveCamera {
        position 0 10.6 12.6  orientation 1 0 0 -0.7
        heightAngle 0.54  nearDistance 1  farDistance 60  focalDistance 16.5
    }
    DirectionalLight { direction -0.5 -1 -0.6  color 1 0.96 0.88  intensity 0.95 }
    DirectionalLight { direction 1 -0.5 -0.2  color 0.55 0.65 0.85  intensity 0.4 }
    Separator {
        Material { diffuseColor 0.24 0.15 0.1  specularColor 0.1 0.1 0.1 }
        Translation { translation 0 -0.26 0 }
        Cube { width 9.8  height 0.5  depth 6.8 }
    }
    DEF Board Group { }
    DEF Ring Switch {
        Separator {
            DEF RingPlace Translation { }
            LightModel { model BASE_COLOR }
            Material { diffuseColor 0.95 0.75 0.3 }
            Cylinder { parts SIDES  radius 0.42  height 0.12 }
        }
    }
    DEF Pieces Group { }
    Separator {
        Translation { translation 0 0.35 -3.7 }
        Scale { scaleFactor 1 1 0.08 }
        Material { diffuseColor 0.9 0.87 0.8  emissiveColor 0.4 0.38 0.34 }
        Font { name "DejaVu Sans"  size 0.62 }
        DEF Label Text3 { justification CENTER  parts ALL }
    }
}
)";

// Under each piece, also while it is lifted; darker in its middle.
const char* const shadow = R"(#Arborium V2.1 ascii
Separator {
    LightModel { model BASE_COLOR }
    Material { diffuseColor 0.05 0.03 0.02  transparency 0.75 }
    Translation { translation 0.05 0.01 -0.05 }
    Cylinder { parts TOP  radius 0.56  height 0.004 }
    Cylinder { parts TOP  radius 0.5  height 0.008 }
    Cylinder { parts TOP  radius 0.44  height 0.012 }
}
)";

// A click gives a piece the next one.
const KbColor colours[] = {
    {0.75f, 0.25f, 0.2f}, {0.9f, 0.6f, 0.2f},  {0.3f, 0.55f, 0.4f},
    {0.25f, 0.4f, 0.7f},  {0.5f, 0.35f, 0.6f},
};

struct Look {
    const char* name;
    float x, z;
    std::size_t colour;
    const char* shape; // standing on y 0
};

const Look looks[] = {
    {"drum", -3, -1, 0, "Translation { translation 0 0.4 0 } Cylinder { radius 0.42  height 0.8 }"},
    {"cone", -1, 1, 1,
     "Translation { translation 0 0.6 0 } Cone { bottomRadius 0.45  height 1.2 }"},
    {"cube", 1, -2, 2,
     "Translation { translation 0 0.36 0 } Rotation { rotation 0 1 0 0.5 } "
     "Cube { width 0.72  height 0.72  depth 0.72 }"},
    {"marble", 2, 1, 3,
     "Material { specularColor 0.9 0.9 0.9  shininess 0.8 } "
     "Translation { translation 0 0.45 0 } Sphere { radius 0.45 }"},
    {"pawn", 3, -1, 4,
     "Separator { Translation { translation 0 0.1 0 } Cylinder { radius 0.42  height 0.2 } } "
     "Separator { Translation { translation 0 0.6 0 } Cone { bottomRadius 0.34  height 1 } } "
     "Translation { translation 0 1.05 0 } Sphere { radius 0.26 }"},
};

KsRef<KsSeparator> parse(const std::string& text)
{
    KsInput in;
    in.setBuffer(text.data(), text.size());
    return KsRef<KsSeparator>(KsDB::readAll(&in));
}

template <class T> T* named(const char* name) { return ksCast<T>(KsNode::getByName(name)); }

/// The centre of the square in which a place of the board lies; at its edge the nearest one.
KbVec3f centreOfSquare(const KbVec3f& place)
{
    const auto nearest = [](float value, int count) {
        const float index = std::floor(value + static_cast<float>(count) / 2);
        return std::clamp(index, 0.0f, static_cast<float>(count - 1)) + 0.5f -
               static_cast<float>(count) / 2;
    };
    return KbVec3f(nearest(place[0], columns), 0, nearest(place[2], rows));
}

/// The name of a square: letters from left to right, numbers from front to back.
std::string squareAt(const KbVec3f& place)
{
    const KbVec3f centre = centreOfSquare(place);
    const auto column = static_cast<int>(std::floor(centre[0] + columns / 2.0f));
    const auto row = static_cast<int>(std::floor(rows / 2.0f - centre[2]));
    return std::string(1, static_cast<char>('A' + column)) + std::to_string(row + 1);
}

void tell(const std::string& text) { named<KsText3>("Label")->string = text; }

/// The squares of one of the two colours, as one shape.
KsNode* makeSquares(int parity, const KbColor& colour)
{
    auto* group = new KsSeparator;
    auto* material = new KsMaterial;
    auto* squares = new KsFaceSet;
    auto* property = new KsVertexProperty;
    material->diffuseColor.setValue(colour);
    squares->vertexProperty = property;
    squares->numVertices.setNum(0);
    for (int column = 0; column < columns; ++column) {
        for (int row = 0; row < rows; ++row) {
            if ((column + row) % 2 != parity) continue;
            const float x = static_cast<float>(column) - columns / 2.0f;
            const float z = static_cast<float>(row) - rows / 2.0f;
            const KbVec3f corners[] = {{x, 0, z}, {x, 0, z + 1}, {x + 1, 0, z + 1}, {x + 1, 0, z}};
            property->vertex.setValues(property->vertex.getNum(), 4, corners);
            squares->numVertices.set1Value(squares->numVertices.getNum(), 4);
        }
    }
    group->addChild(material);
    group->addChild(squares);
    return group;
}

/// A piece: a dragger whose geometry stands behind a place that its callbacks change.
class Piece {
public:
    explicit Piece(const Look& look) : m_name(look.name), m_colour(look.colour)
    {
        m_place->translation = centreOfSquare(KbVec3f(look.x, 0, look.z));
        m_material->diffuseColor.setValue(colours[m_colour]);
        auto* geometry = ksCast<KsGroup>(m_dragger->getAnyPart("geomSeparator", true));
        geometry->addChild(m_place);
        geometry->addChild(parse(shadow));
        geometry->addChild(m_lift);
        geometry->addChild(m_material);
        geometry->addChild(parse(std::string("#Arborium V2.1 ascii\n") + look.shape));
        m_dragger->addStartCallback(&start, this);
        m_dragger->addMotionCallback(&motion, this);
        m_dragger->addFinishCallback(&finish, this);
        named<KsGroup>("Pieces")->addChild(m_dragger);
    }
    const std::string& name() const { return m_name; }
    KbVec3f place() const { return m_place->translation; }
    bool isLifted() const { return m_lift->translation.getValue()[1] > 0; }
    KbColor colour() const { return m_material->diffuseColor[0]; }

private:
    /// Where the pointer means on the level at which the piece was grabbed.
    KbVec3f pointed()
    {
        m_projector.setViewVolume(m_dragger->getViewVolume());
        m_projector.setWorkingSpace(m_dragger->getLocalToWorldMatrix());
        return m_projector.project(m_dragger->getNormalizedLocaterPosition());
    }
    static void start(void* data, KsDragger* dragger)
    {
        auto* piece = static_cast<Piece*>(data);
        const KbVec3f hit = dragger->getLocalStartingPoint();
        piece->m_projector.setPlane(KbPlane(KbVec3f(0, 1, 0), hit));
        piece->m_fromHit = piece->place() - hit;
        piece->m_moved = false;
    }
    static void motion(void* data, KsDragger*)
    {
        auto* piece = static_cast<Piece*>(data);
        const KbVec3f to = piece->pointed() + piece->m_fromHit;
        constexpr float x = (columns - 1) / 2.0f, z = (rows - 1) / 2.0f;
        piece->m_place->translation =
            KbVec3f(std::clamp(to[0], -x, x), 0, std::clamp(to[2], -z, z));
        piece->m_lift->translation = KbVec3f(0, 0.25f, 0);
        piece->m_moved = true;
        tell(piece->m_name + " over " + squareAt(to));
    }
    static void finish(void* data, KsDragger*)
    {
        auto* piece = static_cast<Piece*>(data);
        if (piece->m_moved) {
            piece->m_place->translation = centreOfSquare(piece->place());
            piece->m_lift->translation = KbVec3f(0, 0, 0);
        } else { // it was clicked
            piece->m_colour = (piece->m_colour + 1) % std::size(colours);
            piece->m_material->diffuseColor.setValue(colours[piece->m_colour]);
        }
        tell(piece->m_name + " on " + squareAt(piece->place()));
    }

    std::string m_name;
    std::size_t m_colour;
    KsRef<KsDragger> m_dragger{new KsDragger};
    KsRef<KsTranslation> m_place{new KsTranslation};
    KsRef<KsTranslation> m_lift{new KsTranslation};
    KsRef<KsMaterial> m_material{new KsMaterial};
    KbPlaneProjector m_projector;
    KbVec3f m_fromHit;
    bool m_moved = false;
};

/// Where a press meets the board itself, there the ring goes.
void pressOnBoard(void*, KsEventCallback* node)
{
    const KsPickedPoint* hit = node->getPickedPoint();
    if (!KsMouseButtonEvent::isButtonPress(node->getEvent(), KsMouseButtonEvent::BUTTON1)) return;
    if (!hit || !hit->getPath()->containsNode(named<KsGroup>("Board"))) return;
    named<KsTranslation>("RingPlace")->translation = centreOfSquare(hit->getPoint());
    named<KsSwitch>("Ring")->whichChild = 0;
    tell("the ring on " + squareAt(hit->getPoint()));
    node->setHandled();
}

/// The whole scene, with what its pieces need to live.
class Table {
public:
    Table() : m_root(parse(surroundings))
    {
        named<KsGroup>("Board")->addChild(makeSquares(0, KbColor(0.42f, 0.28f, 0.18f)));
        named<KsGroup>("Board")->addChild(makeSquares(1, KbColor(0.8f, 0.68f, 0.5f)));
        for (const Look& look : looks) m_pieces.push_back(std::make_unique<Piece>(look));
        auto* listener = new KsEventCallback;
        listener->addEventCallback(KsMouseButtonEvent::getClassTypeId(), &pressOnBoard);
        m_root->addChild(listener);
        tell("drag a piece, click a square");
    }
    KsSeparator* root() const { return m_root; }
    const Piece& piece(std::size_t i) const { return *m_pieces[i]; }

private:
    KsRef<KsSeparator> m_root;
    std::vector<std::unique_ptr<Piece>> m_pieces;
};

// ---- the program playing with itself -------------------------------------------------------

/// Sends the events of a mouse at places of the board.
class Hand {
public:
    explicit Hand(KsQtViewer& viewer) : m_viewer(viewer) {}
    void press(const KbVec3f& place) { send(QEvent::MouseButtonPress, place); }
    void release(const KbVec3f& place) { send(QEvent::MouseButtonRelease, place); }
    /// Along a line, a frame at each step.
    void move(const KbVec3f& from, const KbVec3f& to, int steps)
    {
        for (int i = 1; i <= steps; ++i) {
            const float part = static_cast<float>(i) / static_cast<float>(steps);
            send(QEvent::MouseMove, from + (to - from) * part);
            m_viewer.repaint();
        }
    }

private:
    void send(QEvent::Type type, const KbVec3f& place)
    {
        const float aspect =
            static_cast<float>(m_viewer.width()) / static_cast<float>(m_viewer.height());
        KbVec3f p;
        m_viewer.getCamera()->getViewVolume(aspect).projectToScreen(place, p);
        const QPointF at(static_cast<double>(p[0]) * m_viewer.width(),
                         (1 - static_cast<double>(p[1])) * m_viewer.height());
        const bool isMove = type == QEvent::MouseMove;
        QMouseEvent event(
            type, at, m_viewer.mapToGlobal(at.toPoint()), isMove ? Qt::NoButton : Qt::LeftButton,
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_viewer, &event);
    }
    KsQtViewer& m_viewer;
};

bool play(KsQtViewer& viewer, const Table& table)
{
    bool good = true;
    const auto check = [&](bool isSo, const std::string& what) {
        std::cout << (isSo ? "" : "NOT SO: ") << what << '\n';
        good = good && isSo;
    };
    Hand hand(viewer);
    const Piece& pawn = table.piece(4);
    const Piece& cube = table.piece(2);
    const KbVec3f grip(0, 0.3f, 0);

    const KbVec3f from = pawn.place(), to = centreOfSquare(KbVec3f(-2.5f, 0, 2));
    hand.press(from + grip);
    hand.move(from + grip, to + grip, 40);
    check(pawn.isLifted(), "the pawn is lifted while it is dragged");
    hand.release(to + grip);
    check(pawn.place() == to && !pawn.isLifted(), "the pawn stands on " + squareAt(pawn.place()));

    const KbColor before = cube.colour();
    hand.press(cube.place() + grip);
    hand.release(cube.place() + grip);
    check(cube.colour() != before, "a click gives the cube another colour");

    const KbVec3f square = centreOfSquare(KbVec3f(0.5f, 0, 0));
    hand.press(square);
    hand.release(square);
    check(named<KsTranslation>("RingPlace")->translation.getValue() == square,
          "the ring lies on " + squareAt(square));

    const QImage picture = viewer.renderToImage(viewer.size());
    check(picture.save("scene.png"), "scene.png shows the board");
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    const bool playing = argc > 1 && std::strcmp(argv[1], "--play") == 0;
    if (playing && !std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    KsDB::init();
    KsQt::init();
    int status = EXIT_SUCCESS;
    {
        const Table table;
        KsQtViewer viewer;
        viewer.setWindowTitle("A board with pieces");
        viewer.setBackgroundGradient(KbColor(0.16f, 0.19f, 0.24f), KbColor(0.42f, 0.48f, 0.56f));
        viewer.setSceneGraph(table.root());
        viewer.resize(900, 640);
        viewer.show();
        if (!playing)
            status = QApplication::exec();
        else if (!play(viewer, table))
            status = EXIT_FAILURE;
    }
    KsQt::finish();
    KsDB::finish();
    return status;
}
