#include <arborium/base/KbBox2f.h>
#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbColor.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbVec.h>

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace {
constexpr float s_nan = std::numeric_limits<float>::quiet_NaN();
constexpr float s_infinity = std::numeric_limits<float>::infinity();
} // namespace

// shows: KbVec2f, KbVec3f, KbVec4f, KbVec2i32
TEST(Vector, isZeroOrMadeOfItsNumbers)
{
    const float numbers[] = {1, 2, 3, 4};
    for (int i = 0; i < 4; ++i) {
        if (i < 2) {
            const std::int32_t whole[] = {5, 6};
            EXPECT_EQ(KbVec2f()[i], 0.0f);
            EXPECT_EQ(KbVec2f(numbers)[i], numbers[i]);
            EXPECT_EQ(KbVec2i32()[i], 0);
            EXPECT_EQ(KbVec2i32(5, 6)[i], 5 + i);
            EXPECT_EQ(KbVec2i32(whole)[i], 5 + i);
        }
        if (i < 3) {
            EXPECT_EQ(KbVec3f()[i], 0.0f);
            EXPECT_EQ(KbVec3f(1, 2, 3)[i], numbers[i]);
            EXPECT_EQ(KbVec3f(numbers)[i], numbers[i]);
        }
        EXPECT_EQ(KbVec4f()[i], 0.0f);
        EXPECT_EQ(KbVec4f(1, 2, 3, 4)[i], numbers[i]);
        EXPECT_EQ(KbVec4f(KbVec3f(1, 2, 3), 4)[i], numbers[i]);
        EXPECT_EQ(KbVec4f(numbers)[i], numbers[i]);
    }
    EXPECT_EQ(KbVec3f(static_cast<const float*>(nullptr)), KbVec3f());
}

// shows: KbVecBase::operator+=, KbVecBase::operator/=, KbVecBase::operator-, KbVecBase::dot,
// KbVec3f::getValue, KbVec3f::cross
TEST(Vector, calculatesByComponents)
{
    KbVec3f v(1, 2, 3);
    v += KbVec3f(1, 1, 1);
    EXPECT_EQ(v, KbVec3f(2, 3, 4));
    v /= 2;
    EXPECT_EQ(v, KbVec3f(1, 1.5f, 2));
    EXPECT_EQ(v * 2.0f - KbVec3f(1, 0, 0), KbVec3f(1, 3, 4));
    EXPECT_EQ(-KbVec3f(1, -2, 3), KbVec3f(-1, 2, -3));
    EXPECT_EQ(KbVec3f(1, 0, 0).cross(KbVec3f(0, 1, 0)), KbVec3f(0, 0, 1));
    EXPECT_EQ(KbVec3f(1, 2, 3).dot(KbVec3f(4, 5, 6)), 32.0f);
    float x, y, z;
    v.getValue(x, y, z);
    EXPECT_EQ(KbVec3f(x, y, z), v);
}

// shows: KbVecBase::operator[], KbVecBase::setValue
TEST(Vector, takesABadIndexForTheFirstComponent)
{
    KbVec3f v(1, 2, 3);
    EXPECT_EQ(v[3], 1.0f);
    EXPECT_EQ(v[-1], 1.0f);
    v[2] = 9;
    EXPECT_EQ(v, KbVec3f(1, 2, 9));
    const KbVec3f& constant = v;
    EXPECT_EQ(constant[2], 9.0f);
    EXPECT_EQ(constant[7], 1.0f);
    const float more[] = {4, 5, 6};
    EXPECT_EQ(v.setValue(more), KbVec3f(4, 5, 6));
    EXPECT_EQ(v.setValue(static_cast<const float*>(nullptr)), KbVec3f(4, 5, 6));
}

// shows: KbVecBase::normalize, KbVecBase::isFinite
TEST(Vector, normalizesToLengthOneAndLeavesWhatHasNoDirection)
{
    KbVec3f v(3, 0, 4);
    EXPECT_EQ(v.normalize(), 5.0f);
    EXPECT_TRUE(v.equals(KbVec3f(0.6f, 0, 0.8f), 1e-6f));
    KbVec3f zero;
    EXPECT_EQ(zero.normalize(), 0.0f);
    EXPECT_EQ(zero, KbVec3f());
    KbVec3f endless(s_infinity, 0, 0);
    EXPECT_EQ(endless.normalize(), 0.0f);
    EXPECT_FALSE(endless.isFinite());
    EXPECT_FALSE(KbVec3f(0, 0, s_nan).isFinite());
    EXPECT_TRUE(zero.isFinite());
    KbVec3f large(3e30f, 4e30f, 0);
    EXPECT_FLOAT_EQ(large.normalize(), 5e30f);
    EXPECT_TRUE(large.equals(KbVec3f(0.6f, 0.8f, 0), 1e-6f));
}

TEST(Vector, ofWholeNumbersWrapsAndBearsADivisionByZero)
{
    constexpr std::int32_t top = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t bottom = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(KbVec2i32(top, 1) + KbVec2i32(1, 1), KbVec2i32(bottom, 2));
    EXPECT_EQ(KbVec2i32(7, -7) / 0, KbVec2i32(7, -7));
    EXPECT_EQ(KbVec2i32(bottom, 6) / -1, KbVec2i32(bottom, -6));
    EXPECT_EQ(KbVec2i32(7, -7) / 2, KbVec2i32(3, -3));
    EXPECT_EQ(-KbVec2i32(bottom, 1), KbVec2i32(bottom, -1));
}

// shows: KbVecBase::equals
TEST(Vector, comparesWithinATolerance)
{
    EXPECT_TRUE(KbVec2f(1, 1).equals(KbVec2f(1.05f, 0.95f), 0.1f));
    EXPECT_FALSE(KbVec2f(1, 1).equals(KbVec2f(1.2f, 1), 0.1f));
    EXPECT_FALSE(KbVec2f(s_nan, 1).equals(KbVec2f(s_nan, 1), 1));
    EXPECT_TRUE(KbVec2f(s_infinity, 1).equals(KbVec2f(s_infinity, 1), 0));
    EXPECT_FALSE(KbVec2f(s_nan, 0) == KbVec2f(s_nan, 0));
    EXPECT_TRUE(KbVec2i32(std::numeric_limits<std::int32_t>::min(), 0)
                    .equals(KbVec2i32(std::numeric_limits<std::int32_t>::min(), 1), 1));
}

TEST(Vector, printsAsFilesWriteIt)
{
    std::ostringstream out;
    out << KbVec3f(1, 0.5f, -100000) << "|" << KbVec2i32(3, -4);
    EXPECT_EQ(out.str(), "1 0.5 -100000|3 -4");
}

// shows: KbVec3f::getClosestAxis
TEST(Vector, knowsItsClosestAxis)
{
    EXPECT_EQ(KbVec3f(0.1f, -3, 2).getClosestAxis(), KbVec3f(0, -1, 0));
    EXPECT_EQ(KbVec3f().getClosestAxis(), KbVec3f(0, 0, 1));
}

// shows: KbVec4f::getReal
TEST(Vector4, dividesByItsFourthComponent)
{
    EXPECT_EQ(KbVec4f(2, 4, 6, 2).getReal(), KbVec3f(1, 2, 3));
    EXPECT_EQ(KbVec4f(2, 4, 6, 0).getReal(), KbVec3f(2, 4, 6));
}

// shows: KbColor, KbColor::getPackedValue, KbColor::setPackedValue
TEST(Color, packsAndUnpacksEightBits)
{
    float transparency = -1;
    KbColor color;
    color.setPackedValue(0xff8000ffu, transparency);
    EXPECT_TRUE(color.equals(KbColor(1, 128 / 255.0f, 0), 1e-6f));
    EXPECT_EQ(transparency, 0.0f);
    EXPECT_EQ(color.getPackedValue(), 0xff8000ffu);
    EXPECT_EQ(KbColor(2, -1, s_nan).getPackedValue(1), 0xff000000u);
    EXPECT_EQ(KbColor(), KbColor(0, 0, 0));
    EXPECT_EQ(KbColor(static_cast<const float*>(nullptr)), KbColor());
    EXPECT_EQ(KbColor(KbVec3f(0, 2, 0))[1], 2.0f) << "kept as it is";
}

// shows: KbBox3f::getCenter, KbBox3f::getSize, KbBox3f::isEmpty
TEST(Box, isEmptyUntilItHoldsAPoint)
{
    KbBox3f box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(box.getSize(), KbVec3f());
    EXPECT_EQ(box.getCenter(), KbVec3f());
    box.extendBy(KbVec3f(1, 2, 3));
    EXPECT_FALSE(box.isEmpty());
    box.extendBy(KbVec3f(3, 2, 1));
    EXPECT_EQ(box, KbBox3f(1, 2, 1, 3, 2, 3));
    EXPECT_EQ(box.getCenter(), KbVec3f(2, 2, 2));
    float x, y, z;
    box.getSize(x, y, z);
    EXPECT_EQ(KbVec3f(x, y, z), KbVec3f(2, 0, 2));
    KbVec3f size;
    box.getSize(size);
    EXPECT_EQ(size, KbVec3f(2, 0, 2));
    EXPECT_TRUE(KbBox3f(0, 0, 2, 1, 1, 1).isEmpty()) << "an end before its beginning";
    EXPECT_TRUE(KbBox3f(0, s_nan, 0, 1, 1, 1).isEmpty());
}

// shows: KbBox3f::getMin, KbBox3f::getMax
TEST(Box, withAllSixNumbersTheSameIsAPoint)
{
    const KbBox3f stale(-1, -1, -1, -1, -1, -1);
    EXPECT_FALSE(stale.isEmpty());
    EXPECT_EQ(stale.getMin(), stale.getMax());
    EXPECT_NE(stale, KbBox3f());
}

// shows: KbBox3f, KbBox3f::extendBy
TEST(Box, isNotChangedByEmptyBoxesAndByWhatIsNotANumber)
{
    KbBox3f box(0, 0, 0, 1, 1, 1);
    box.extendBy(KbBox3f());
    box.extendBy(KbVec3f(s_nan, s_nan, s_nan));
    EXPECT_EQ(box, KbBox3f(0, 0, 0, 1, 1, 1));
    box.extendBy(KbBox3f(-1, 0, 0, 0, 2, 0));
    EXPECT_EQ(box, KbBox3f(-1, 0, 0, 1, 2, 1));
}

// shows: KbBox3f::transform
TEST(Box, transformsToTheBoxOfItsCorners)
{
    KbBox3f box(-1, -2, -3, 1, 2, 3);
    KbMatrix m;
    m.setTransform(KbVec3f(10, 0, 0), KbRotation(KbVec3f(0, 0, 1), 1.57079633f), KbVec3f(2, 1, 1));
    box.transform(m);
    EXPECT_TRUE(box.getMin().equals(KbVec3f(8, -2, -3), 1e-5f)) << box;
    EXPECT_TRUE(box.getMax().equals(KbVec3f(12, 2, 3), 1e-5f)) << box;

    KbBox3f empty;
    empty.transform(m);
    EXPECT_TRUE(empty.isEmpty());
}

// shows: KbMatrix::isAffine
TEST(Box, transformsAlikeOnBothRoadsThroughAMatrix)
{
    KbMatrix affine;
    affine.setTransform(KbVec3f(1, 2, 3), KbRotation(KbVec3f(1, 2, 3), 0.7f), KbVec3f(-1, 2, 0.5f));
    KbMatrix same(affine);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) same[i][j] *= 2; // the same points, but no affine form
    ASSERT_FALSE(same.isAffine());
    KbBox3f a(-1, 0, 2, 4, 5, 6), b(a);
    a.transform(affine);
    b.transform(same);
    EXPECT_TRUE(a.getMin().equals(b.getMin(), 1e-4f)) << a << " and " << b;
    EXPECT_TRUE(a.getMax().equals(b.getMax(), 1e-4f)) << a << " and " << b;
}

// shows: KbBox2f, KbBox2f::getCenter, KbBox2f::isEmpty, KbBox2f::intersect, KbBox3f::intersect
TEST(Box, knowsWhatItMeets)
{
    const KbBox3f box(0, 0, 0, 1, 1, 1);
    EXPECT_TRUE(box.intersect(KbVec3f(1, 0.5f, 0)));
    EXPECT_FALSE(box.intersect(KbVec3f(1.1f, 0.5f, 0)));
    EXPECT_FALSE(box.intersect(KbVec3f(s_nan, 0.5f, 0)));
    EXPECT_TRUE(box.intersect(KbBox3f(1, 1, 1, 2, 2, 2)));
    EXPECT_FALSE(box.intersect(KbBox3f()));
    EXPECT_FALSE(box.intersect(KbBox3f(1.1f, 0, 0, 2, 1, 1)));
    EXPECT_FALSE(KbBox3f().intersect(KbVec3f()));

    const KbBox2f square(KbVec2f(0, 0), KbVec2f(2, 2));
    EXPECT_TRUE(square.intersect(KbVec2f(2, 1)));
    EXPECT_FALSE(square.intersect(KbVec2f(1, 2.1f)));
    EXPECT_FALSE(square.intersect(KbVec2f(1, s_nan)));
    EXPECT_TRUE(square.intersect(KbBox2f(2, 2, 3, 3)));
    EXPECT_FALSE(square.intersect(KbBox2f(2.1f, 0, 3, 2)));
    EXPECT_FALSE(square.intersect(KbBox2f()));
    EXPECT_EQ(KbBox2f(0, 0, 4, 2).getCenter(), KbVec2f(2, 1));
    EXPECT_EQ(KbBox2f().getCenter(), KbVec2f());
    EXPECT_TRUE(KbBox2f().isEmpty());
    EXPECT_FALSE(square.isEmpty());
}
