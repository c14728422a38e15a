// What the basic values answer beside their main work: their parts, and how they compare.

#include <arborium/base/KbBox2f.h>
#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbName.h>
#include <arborium/base/KbNumber.h>
#include <arborium/base/KbPList.h>
#include <arborium/base/KbPlane.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KbViewVolume.h>
#include <arborium/base/KbViewportRegion.h>

#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

namespace {
constexpr float s_nan = std::numeric_limits<float>::quiet_NaN();
constexpr float s_pi = 3.14159265f;
} // namespace

// shows: KbVec2f::setValue, KbVec2f::getValue, KbVec2f::x, KbVec2f::y, KbVec3f::setValue,
// KbVec3f::x, KbVec3f::y, KbVec3f::z, KbVec4f::setValue, KbVec4f::getValue, KbVec2i32::setValue,
// KbVec2i32::getValue, KbVec2i32::x, KbVec2i32::y
TEST(Vector, givesAndTakesItsComponents)
{
    KbVec2f two;
    EXPECT_EQ(&two.setValue(1, 2), &two);
    float x = 0, y = 0, z = 0, w = 0;
    two.getValue(x, y);
    EXPECT_EQ(x, 1);
    EXPECT_EQ(y, 2);
    EXPECT_EQ(two.x(), 1);
    EXPECT_EQ(two.y(), 2);

    KbVec3f three;
    three.setValue(3, 4, 5);
    EXPECT_EQ(three.x(), 3);
    EXPECT_EQ(three.y(), 4);
    EXPECT_EQ(three.z(), 5);

    KbVec4f four;
    four.setValue(6, 7, 8, 9);
    four.getValue(x, y, z, w);
    EXPECT_EQ(x + 10 * y + 100 * z + 1000 * w, 9876);

    KbVec2i32 whole;
    whole.setValue(-1, 2147483647);
    std::int32_t i = 0, j = 0;
    whole.getValue(i, j);
    EXPECT_EQ(i, -1);
    EXPECT_EQ(j, 2147483647);
    EXPECT_EQ(whole.x(), -1);
    EXPECT_EQ(whole.y(), 2147483647);
}

// shows: KbVecBase::getValue, KbVecBase::data, KbVecBase::operator-=, KbVecBase::operator*=,
// KbVecBase::operator+, KbVecBase::operator-, KbVecBase::operator*, KbVecBase::operator/,
// KbVecBase::length, KbVecBase::sqrLength, KbVecBase::operator==
TEST(Vector, isAddedScaledAndMeasured)
{
    const KbVec3f a(1, 2, 2);
    EXPECT_EQ(a.length(), 3);
    EXPECT_EQ(a.sqrLength(), 9);
    EXPECT_EQ(KbVec2i32(3, 4).length(), 5);
    EXPECT_EQ(KbVec3f(3e20f, 0, 4e20f).length(), 5e20f) << "although its square is no float";
    EXPECT_TRUE(a + a == KbVec3f(2, 4, 4));
    EXPECT_TRUE(a - KbVec3f(1, 1, 1) == KbVec3f(0, 1, 1));
    EXPECT_TRUE(a * 2 == 2 * a);
    EXPECT_TRUE(a * 2 != a);
    EXPECT_TRUE(a / 2 == KbVec3f(0.5f, 1, 1));
    EXPECT_FALSE(KbVec3f(s_nan, 0, 0) == KbVec3f(s_nan, 0, 0))
        << "what is no number equals nothing";
    KbVec3f b = a;
    b -= KbVec3f(0, 1, 0);
    b *= 3;
    EXPECT_EQ(b, KbVec3f(3, 3, 6));
    b.data()[1] = 7;
    EXPECT_EQ(b.getValue()[1], 7);
}

// shows: KbBox2f::getMin, KbBox2f::getMax, KbBox2f::getSize, KbBox2f::makeEmpty,
// KbBox2f::extendBy, KbBox2f::operator==
TEST(Rectangle, growsFromNothing)
{
    KbBox2f box;
    EXPECT_EQ(box.getSize(), KbVec2f());
    box.extendBy(KbVec2f(1, 5));
    box.extendBy(KbVec2f(s_nan, 2));
    EXPECT_EQ(box.getMin(), KbVec2f(1, 2));
    EXPECT_EQ(box.getMax(), KbVec2f(1, 5));
    box.extendBy(KbBox2f(-1, 0, 3, 4));
    EXPECT_TRUE(box == KbBox2f(-1, 0, 3, 5));
    box.extendBy(KbBox2f());
    EXPECT_TRUE(box == KbBox2f(-1, 0, 3, 5));
    float width = 0, height = 0;
    box.getSize(width, height);
    EXPECT_EQ(width, 4);
    EXPECT_EQ(height, 5);
    box.makeEmpty();
    EXPECT_TRUE(box == KbBox2f());
    EXPECT_TRUE(box != KbBox2f(0, 0, 0, 0));
}

// shows: KbBox3f::getBounds, KbBox3f::setBounds, KbBox3f::makeEmpty, KbBox3f::hasVolume,
// KbBox3f::operator==
TEST(Box, givesAndTakesItsBounds)
{
    KbBox3f box;
    EXPECT_FALSE(box.hasVolume());
    box.setBounds(1, 2, 3, 4, 5, 6);
    EXPECT_TRUE(box == KbBox3f(KbVec3f(1, 2, 3), KbVec3f(4, 5, 6)));
    EXPECT_TRUE(box.hasVolume());
    float n[6] = {};
    box.getBounds(n[0], n[1], n[2], n[3], n[4], n[5]);
    EXPECT_EQ(KbVec3f(n), KbVec3f(1, 2, 3));
    EXPECT_EQ(KbVec3f(n + 3), KbVec3f(4, 5, 6));
    KbVec3f low, high;
    box.getBounds(low, high);
    box.setBounds(low, KbVec3f(high[0], high[1], low[2]));
    EXPECT_FALSE(box.hasVolume()) << "flat";
    EXPECT_TRUE(box != KbBox3f(low, high));
    box.makeEmpty();
    EXPECT_TRUE(box == KbBox3f());
}

// shows: KbMatrix, KbMatrix::identity, KbMatrix::getValue, KbMatrix::setValue,
// KbMatrix::operator[], KbMatrix::makeIdentity, KbMatrix::operator==
TEST(Matrix, givesAndTakesItsNumbersRowByRow)
{
    float rows[4][4];
    for (int i = 0; i < 16; ++i) rows[i / 4][i % 4] = static_cast<float>(i);
    KbMatrix matrix(rows);
    EXPECT_EQ(matrix.getValue()[7], 7);
    EXPECT_EQ(matrix[1][3], 7);
    const KbMatrix& constant = matrix;
    EXPECT_EQ(constant[2][1], 9);
    EXPECT_EQ(constant[4][2], 2) << "a row that is not there means the first";
    EXPECT_EQ(matrix[-1][2], 2);
    KbMatrix other;
    EXPECT_TRUE(other == KbMatrix::identity());
    other.setValue(matrix.getValue());
    EXPECT_TRUE(other == matrix);
    other.setValue(static_cast<const float*>(nullptr));
    EXPECT_TRUE(other == matrix);
    float out[4][4];
    other.getValue(out);
    EXPECT_EQ(out[3][2], 14);
    other.makeIdentity();
    EXPECT_TRUE(other != matrix);
    EXPECT_EQ(other[2][2], 1);
    EXPECT_EQ(other[2][1], 0);
}

// shows: KbLine, KbLine::setValue, KbLine::setPosDir, KbLine::getPosition, KbLine::getDirection
TEST(Line, isMadeOfTwoPointsOrAPointAndADirection)
{
    KbLine line;
    EXPECT_EQ(line.getPosition(), KbVec3f());
    EXPECT_EQ(line.getDirection(), KbVec3f(0, 0, 1));
    EXPECT_EQ(KbLine(KbVec3f(2, 1, 0), KbVec3f(-1, 1, 0)).getDirection(), KbVec3f(-1, 0, 0));
    line.setValue(KbVec3f(1, 0, 0), KbVec3f(1, 5, 0));
    EXPECT_EQ(line.getPosition(), KbVec3f(1, 0, 0));
    EXPECT_EQ(line.getDirection(), KbVec3f(0, 1, 0));
    line.setPosDir(KbVec3f(2, 0, 0), KbVec3f(0, 0, -7));
    EXPECT_EQ(line.getPosition(), KbVec3f(2, 0, 0));
    EXPECT_EQ(line.getDirection(), KbVec3f(0, 0, -1));
    line.setPosDir(KbVec3f(2, 0, 0), KbVec3f());
    EXPECT_EQ(line.getDirection(), KbVec3f());
}

// shows: KbPlane::offset, KbPlane::operator==
TEST(Plane, movesAlongItsNormal)
{
    KbPlane plane(KbVec3f(0, 2, 0), 3);
    plane.offset(1.5f);
    EXPECT_TRUE(plane == KbPlane(KbVec3f(0, 1, 0), 4.5f));
    EXPECT_TRUE(plane != KbPlane(KbVec3f(0, -1, 0), 4.5f));
}

// shows: KbRotation::identity, KbRotation::setValue, KbRotation::invert, KbRotation::operator*=,
// KbRotation::scaleAngle, KbRotation::operator==
TEST(Rotation, isSetInvertedAndScaledInPlace)
{
    const KbRotation quarter(KbVec3f(0, 0, 1), s_pi / 2);
    KbRotation rotation;
    EXPECT_TRUE(rotation == KbRotation::identity());
    EXPECT_TRUE(rotation != quarter);
    rotation.setValue(KbVec3f(0, 0, 5), s_pi / 2);
    EXPECT_TRUE(rotation == quarter);
    rotation = KbRotation();
    rotation.setValue(KbVec3f(1, 0, 0), KbVec3f(0, 3, 0));
    EXPECT_TRUE(rotation.equals(quarter, 1e-6f));
    KbMatrix matrix;
    matrix.setRotate(quarter);
    EXPECT_TRUE(KbRotation().setValue(matrix).equals(quarter, 1e-6f));
    EXPECT_TRUE(rotation.setValue(0, 0, 0, 0).isIdentity()) << "no length, no rotation";
    EXPECT_TRUE(rotation.setValue(0, 0, 5, 5).equals(quarter, 1e-6f)) << "brought to length 1";

    rotation = quarter;
    rotation.scaleAngle(2);
    EXPECT_TRUE(rotation.equals(KbRotation(KbVec3f(0, 0, 1), s_pi), 1e-6f));
    rotation *= quarter;
    EXPECT_TRUE(rotation.equals(KbRotation(KbVec3f(0, 0, 1), 1.5f * s_pi), 1e-6f));
    rotation.invert();
    EXPECT_TRUE(rotation.equals(quarter, 1e-6f));
    rotation.scaleAngle(s_nan);
    EXPECT_TRUE(rotation.isIdentity());
}

// shows: KbViewVolume::scale, KbViewVolume::scaleWidth, KbViewVolume::scaleHeight,
// KbViewVolume::getHeight, KbViewVolume::getMatrices, KbViewVolume::getCameraMatrix,
// KbViewVolume::operator==
TEST(ViewVolume, isWidenedAboutTheLineOfSight)
{
    KbViewVolume volume;
    volume.ortho(-2, 4, -1, 1, 1, 9);
    volume.translateCamera(KbVec3f(10, 0, 0));
    const KbViewVolume before = volume;
    volume.scaleWidth(2);
    EXPECT_EQ(volume.getWidth(), 12);
    EXPECT_EQ(volume.getHeight(), 2);
    volume.scaleHeight(3);
    EXPECT_EQ(volume.getHeight(), 6);
    EXPECT_TRUE(volume != before);
    volume.scaleWidth(0.5f);
    volume.scale(1.0f / 3);
    volume.scaleWidth(3);
    for (float bad : {0.0f, s_nan}) volume.scale(bad);
    EXPECT_FLOAT_EQ(volume.getWidth(), 6);
    EXPECT_FLOAT_EQ(volume.getHeight(), 2);
    EXPECT_TRUE(before == KbViewVolume(before));

    KbMatrix affine, projection;
    before.getMatrices(affine, projection);
    EXPECT_TRUE(affine == before.getCameraMatrix());
    EXPECT_TRUE((affine * projection).equals(before.getMatrix(), 1e-6f));
    KbVec3f seen;
    affine.multVecMatrix(KbVec3f(10, 0, 0), seen);
    EXPECT_EQ(seen, KbVec3f()) << "where the camera stands";
}

// shows: KbViewportRegion::getViewportSize, KbViewportRegion::getPixelsPerPoint,
// KbViewportRegion::operator==
TEST(Viewport, isComparedByAllThatItKnows)
{
    KbViewportRegion region(400, 200);
    EXPECT_EQ(region.getViewportSize(), KbVec2f(1, 1));
    EXPECT_EQ(region.getPixelsPerPoint(), 1);
    KbViewportRegion other = region;
    EXPECT_TRUE(other == region);
    other.setPixelsPerInch(144);
    EXPECT_EQ(other.getPixelsPerPoint(), 2);
    EXPECT_TRUE(other != region);
    region.setPixelsPerInch(144);
    region.setViewport(0, 0, 0.5f, 1);
    EXPECT_EQ(region.getViewportSize(), KbVec2f(0.5f, 1));
    EXPECT_TRUE(other != region);
}

// shows: KbName::view, KbName::operator==, KbName::hash
TEST(Name, isComparedWithNamesAndTexts)
{
    const KbName a("lamp"), b(std::string("lamp")), c("lamps");
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == c);
    EXPECT_TRUE(a != c);
    EXPECT_TRUE(a == "lamp");
    EXPECT_TRUE("lamps" == c);
    EXPECT_FALSE(c == "lamp");
    EXPECT_FALSE("lamps" == a);
    EXPECT_TRUE(c != "lamp");
    EXPECT_TRUE(KbName() == static_cast<const char*>(nullptr));
    EXPECT_EQ(a.view(), "lamp");
    EXPECT_EQ(a.hash(), b.hash());
    EXPECT_NE(a.hash(), c.hash());
    EXPECT_EQ((std::unordered_set<KbName>{a, b, c}.size()), 2u);
}

// shows: KbString::compare, KbString::operator==
TEST(String, isComparedByTheCodesOfItsCharacters)
{
    EXPECT_LT(KbString("ab").compare("abc"), 0);
    EXPECT_GT(KbString("b").compare("abc"), 0);
    EXPECT_EQ(KbString("abc").compare(KbString(u"abc")), 0);
    EXPECT_LT(KbString("z").compare(KbString(u"\u03b1")), 0);
    EXPECT_GT(KbString("\xe9").compare("z"), 0) << "bytes have no sign";
    EXPECT_TRUE(KbString("abc") == "abc");
    EXPECT_FALSE(KbString("abc") == "abd");
    EXPECT_TRUE("abc" == KbString(u"abc"));
    EXPECT_FALSE("abd" == KbString("abc"));
    EXPECT_TRUE(KbString("abc") == KbString(u"abc"));
    EXPECT_FALSE(KbString(u"ab\u03b1") == KbString(u"ab\u03b2"));
    EXPECT_TRUE("abd" != KbString("abc"));
    EXPECT_TRUE(KbString(u"\u03b1") != KbString("?"));
    EXPECT_TRUE(KbString() == static_cast<const char*>(nullptr));
}

// shows: KbStringList::begin, KbStringList::end, KbStringList::operator==
TEST(StringList, isWalkedInOrder)
{
    const KbStringList list = KbStringList::split("a,b,c", ",");
    KbString all;
    for (const KbString& each : list) all += each;
    EXPECT_EQ(all, "abc");
    EXPECT_TRUE(list == KbStringList::split("a-b-c", "-"));
    EXPECT_TRUE(list != KbStringList::split("a-c-b", "-"));
    EXPECT_EQ(list.end() - list.begin(), 3);
}

// shows: KbPList::begin, KbPList::end, KbPList::operator==
TEST(PointerList, isWalkedInOrder)
{
    int things[2];
    KbPList list, other;
    list.append(&things[0]);
    list.append(&things[1]);
    EXPECT_EQ(list.end() - list.begin(), 2);
    EXPECT_TRUE(list != other);
    EXPECT_FALSE(list == other);
    for (void* each : list) other.append(each);
    EXPECT_TRUE(list == other);
}

// shows: KbNumber::leadingInt32, KbNumber::leadingFloat, KbNumber::append
TEST(Number, isReadFromTheBeginningOfAText)
{
    bool ok = false;
    EXPECT_EQ(KbNumber::leadingInt32("  -12px", &ok), -12);
    EXPECT_TRUE(ok);
    EXPECT_EQ(KbNumber::leadingInt32("px", &ok), 0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(KbNumber::leadingInt32("99999999999", &ok), 2147483647);
    EXPECT_EQ(KbNumber::leadingFloat("1.5e1 m", &ok), 15);
    EXPECT_TRUE(ok);
    EXPECT_EQ(KbNumber::leadingFloat("-1e99"), -std::numeric_limits<float>::max());
    EXPECT_EQ(KbNumber::leadingFloat("nan", &ok), 0);
    EXPECT_FALSE(ok);

    std::string text = "x";
    KbNumber::append(text, 0.1f);
    KbNumber::append(text, std::int64_t(255), 16);
    KbNumber::append(text, -2.5);
    EXPECT_EQ(text, "x0.1ff-2.5");
}
