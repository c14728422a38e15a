#include <arborium/base/KbLine.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbRotation.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

namespace {

constexpr float s_pi = 3.14159265f;

struct Parts {
    KbVec3f translation, scale;
    KbRotation rotation, orientation;

    explicit Parts(const KbMatrix& m) { m.getTransform(translation, rotation, scale, orientation); }

    KbMatrix compose() const
    {
        KbMatrix m;
        m.setTransform(translation, rotation, scale, orientation);
        return m;
    }
};

bool isRotation(const KbRotation& rotation)
{
    const float* q = rotation.getValue();
    return std::fabs(KbVec4f(q).length() - 1) < 1e-5f;
}

} // namespace

// shows: KbMatrix::setTranslate, KbMatrix::multDirMatrix
TEST(Matrix, keepsTheTranslationInItsLastRow)
{
    KbMatrix m;
    m.setTranslate(KbVec3f(1, 2, 3));
    EXPECT_EQ(m, KbMatrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1));
    KbVec3f p;
    m.multVecMatrix(KbVec3f(10, 10, 10), p);
    EXPECT_EQ(p, KbVec3f(11, 12, 13));
    m.multDirMatrix(KbVec3f(10, 10, 10), p);
    EXPECT_EQ(p, KbVec3f(10, 10, 10));
}

// shows: KbMatrix::multLeft, KbMatrix::multRight, KbMatrix::operator*=, KbMatrix::operator*
TEST(Matrix, appliesTheLeftFactorFirst)
{
    KbMatrix scale, move;
    scale.setScale(2);
    move.setTranslate(KbVec3f(1, 0, 0));
    KbVec3f p;
    (scale * move).multVecMatrix(KbVec3f(1, 1, 1), p);
    EXPECT_EQ(p, KbVec3f(3, 2, 2));
    KbMatrix m(move);
    m.multLeft(scale);
    EXPECT_EQ(m, scale * move);
    m = move;
    m.multRight(scale);
    EXPECT_EQ(m, move * scale);
    m = move;
    m *= m;
    EXPECT_EQ(m, move * move);
    m.multLeft(m);
    EXPECT_EQ(m, move * move * move * move);
}

// shows: KbMatrix::setRotate
TEST(Matrix, rotatesCounterClockwise)
{
    KbMatrix m;
    m.setRotate(KbRotation(KbVec3f(0, 0, 1), s_pi / 2));
    KbVec3f p;
    m.multVecMatrix(KbVec3f(1, 0, 0), p);
    EXPECT_TRUE(p.equals(KbVec3f(0, 1, 0), 1e-6f)) << p;
}

// shows: KbMatrix::setTransform, KbMatrix::getTransform
TEST(Matrix, scalesAndRotatesAboutACenter)
{
    KbMatrix m;
    const KbVec3f center(5, 6, 7);
    m.setTransform(KbVec3f(), KbRotation(KbVec3f(1, 1, 0), 1), KbVec3f(2, 3, 4), KbRotation(),
                   center);
    KbVec3f p;
    m.multVecMatrix(center, p);
    EXPECT_TRUE(p.equals(center, 1e-4f)) << p;

    KbVec3f translation, scale;
    KbRotation rotation, orientation;
    m.getTransform(translation, rotation, scale, orientation, center);
    EXPECT_TRUE(translation.equals(KbVec3f(), 1e-4f)) << translation;

    m.setTransform(KbVec3f(1, 0, 0), KbRotation(KbVec3f(0, 0, 1), s_pi / 2), KbVec3f(2, 2, 2),
                   KbRotation(), center);
    m.multVecMatrix(center + KbVec3f(3, 0, 0), p);
    EXPECT_TRUE(p.equals(center + KbVec3f(1, 6, 0), 1e-4f)) << p;
    m.getTransform(translation, rotation, scale, orientation, center);
    EXPECT_TRUE(translation.equals(KbVec3f(1, 0, 0), 1e-4f)) << translation;
    EXPECT_TRUE(rotation.equals(KbRotation(KbVec3f(0, 0, 1), s_pi / 2), 1e-5f)) << rotation;
    EXPECT_TRUE(scale.equals(KbVec3f(2, 2, 2), 1e-5f)) << scale;
}

// shows: KbMatrix::setTransform
TEST(Matrix, scalesAlongTheOrientedAxes)
{
    KbMatrix m;
    m.setTransform(KbVec3f(), KbRotation(), KbVec3f(3, 1, 1),
                   KbRotation(KbVec3f(0, 0, 1), s_pi / 4));
    KbVec3f along, across;
    // The x axis, turned by an eighth, is the diagonal that grows.
    m.multVecMatrix(KbVec3f(1, 1, 0), along);
    m.multVecMatrix(KbVec3f(1, -1, 0), across);
    EXPECT_TRUE(along.equals(KbVec3f(3, 3, 0), 1e-5f)) << along;
    EXPECT_TRUE(across.equals(KbVec3f(1, -1, 0), 1e-5f)) << across;
}

// shows: KbMatrix::setTransform, KbMatrix::getTransform
TEST(Matrix, comesApartIntoWhatItWasMadeOf)
{
    KbMatrix m;
    const KbRotation turn(KbVec3f(1, 2, 3), 0.8f);
    m.setTransform(KbVec3f(4, 5, 6), turn, KbVec3f(200, 20, 1));
    const Parts parts(m);
    EXPECT_EQ(parts.translation, KbVec3f(4, 5, 6));
    EXPECT_TRUE(parts.rotation.equals(turn, 1e-5f)) << parts.rotation;
    EXPECT_TRUE(parts.scale.equals(KbVec3f(200, 20, 1), 1e-3f)) << parts.scale;
    EXPECT_TRUE(parts.orientation.isIdentity());
}

TEST(Matrix, getsBackFromItsPartsWhateverTheyAre)
{
    std::mt19937 random(20240917);
    std::uniform_real_distribution<float> number(-3, 3);
    for (int round = 0; round < 2000; ++round) {
        KbMatrix m;
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 3; ++j) m[i][j] = number(random);
        const Parts parts(m);
        EXPECT_TRUE(parts.compose().equals(m, 1e-4f)) << "round " << round << "\n"
                                                      << m << "\n\n"
                                                      << parts.compose();
        EXPECT_TRUE(isRotation(parts.rotation));
        EXPECT_TRUE(isRotation(parts.orientation));
    }
}

TEST(Matrix, getsBackFromItsPartsWhenItFlattens)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> number(-3, 3);
    for (int round = 0; round < 500; ++round) {
        KbMatrix turn, m;
        turn.setRotate(KbRotation(number(random), number(random), number(random), number(random)));
        KbVec3f factors(number(random), number(random), number(random));
        for (int i = 0; i < 3; ++i)
            if ((round >> i & 1) == 0) factors[i] = 0;
        m.setScale(factors);
        // Rows that stay perpendicular, and rows that do not.
        const KbMatrix flat = round & 8 ? m * turn : turn * m;
        const Parts parts(flat);
        EXPECT_TRUE(parts.compose().equals(flat, 1e-4f)) << "round " << round << "\n" << flat;
        EXPECT_TRUE(isRotation(parts.rotation));
    }
}

TEST(Matrix, thatFlattensAnAxisIsNotTakenForARotation)
{
    for (const KbVec3f& scale : {KbVec3f(0, 20, 1), KbVec3f(0, 0, 1), KbVec3f(3, 0, 0),
                                 KbVec3f(0, 0, 0), KbVec3f(208, 0, 1)}) {
        KbMatrix m;
        m.setTransform(KbVec3f(1, 2, 3), KbRotation(), scale);
        const Parts parts(m);
        EXPECT_TRUE(parts.rotation.isIdentity()) << scale << " gives " << parts.rotation;
        EXPECT_EQ(parts.scale, scale);
        EXPECT_TRUE(parts.orientation.isIdentity());
    }
}

TEST(Matrix, thatMirrorsKeepsItsRotationAndGetsANegativeScale)
{
    for (const KbVec3f& scale : {KbVec3f(-1, 1, 1), KbVec3f(1, -2, 3), KbVec3f(-1, -1, -1)}) {
        KbMatrix m;
        m.setScale(scale);
        const Parts parts(m);
        EXPECT_TRUE(parts.rotation.isIdentity()) << scale << " gives " << parts.rotation;
        EXPECT_TRUE(parts.scale.equals(scale, 1e-6f)) << parts.scale;
    }
}

TEST(Matrix, ofTheIdentityComesApartExactly)
{
    const Parts parts{KbMatrix()};
    EXPECT_EQ(parts.rotation, KbRotation());
    EXPECT_EQ(parts.orientation, KbRotation());
    EXPECT_EQ(parts.scale, KbVec3f(1, 1, 1));
    EXPECT_EQ(parts.compose(), KbMatrix());
}

TEST(Matrix, withInfinityOrNotANumberComesApartAsTheIdentity)
{
    for (float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        KbMatrix m;
        m[1][2] = bad;
        EXPECT_EQ(Parts(m).compose(), KbMatrix());
        EXPECT_EQ(m.inverse(), KbMatrix());
        EXPECT_FALSE(m.isInvertible());
    }
}

// shows: KbMatrix::inverse
TEST(Matrix, timesItsInverseIsTheIdentity)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> number(-3, 3);
    for (int round = 0; round < 500; ++round) {
        KbMatrix m;
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < (round & 1 ? 4 : 3); ++j) m[i][j] = number(random);
        if (std::fabs(m.det4()) < 0.1f) continue;
        EXPECT_TRUE((m * m.inverse()).equals(KbMatrix(), 1e-3f)) << m;
        EXPECT_TRUE((m.inverse() * m).equals(KbMatrix(), 1e-3f)) << m;
    }
}

// shows: KbMatrix::inverse, KbMatrix::isInvertible
TEST(Matrix, withVeryUnequalScalesStillHasItsInverse)
{
    KbMatrix m;
    m.setScale(KbVec3f(1e6f, 1e-7f, 1));
    ASSERT_TRUE(m.isInvertible());
    EXPECT_FLOAT_EQ(m.inverse()[1][1], 1e7f);
}

// shows: KbMatrix::isInvertible
TEST(Matrix, thatFlattensHasTheIdentityForItsInverse)
{
    KbMatrix m;
    m.setScale(KbVec3f(1, 0, 1));
    EXPECT_FALSE(m.isInvertible());
    EXPECT_EQ(m.inverse(), KbMatrix());
    EXPECT_EQ(m.det4(), 0.0f);
    KbMatrix twice(1, 2, 3, 0, 2, 4, 6, 0, 1, 1, 1, 0, 0, 0, 0, 1);
    EXPECT_FALSE(twice.isInvertible());
}

// shows: KbMatrix::det4, KbMatrix::det3
TEST(Matrix, knowsItsDeterminants)
{
    KbMatrix m;
    m.setScale(KbVec3f(2, 3, -4));
    EXPECT_FLOAT_EQ(m.det4(), -24);
    EXPECT_FLOAT_EQ(m.det3(), -24);
    m[3][3] = 2;
    EXPECT_FLOAT_EQ(m.det4(), -48);
    EXPECT_FLOAT_EQ(m.det3(), -24);
}

// shows: KbMatrix::makeIdentity, KbMatrix::setTranslate, KbMatrix::setScale, KbMatrix::setRotate
TEST(Matrix, forgetsWhatItWasWhenItIsMadeAnew)
{
    const KbMatrix old(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    KbMatrix m(old);
    m.makeIdentity();
    EXPECT_EQ(m, KbMatrix());
    m = old;
    m.setScale(3);
    EXPECT_EQ(m, KbMatrix(3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1));
    m = old;
    m.setScale(KbVec3f(1, -2, 3));
    EXPECT_EQ(m, KbMatrix(1, 0, 0, 0, 0, -2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1));
    m = old;
    m.setTranslate(KbVec3f(7, 8, 9));
    EXPECT_EQ(m, KbMatrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, 8, 9, 1));
    m = old;
    m.setRotate(KbRotation());
    EXPECT_EQ(m, KbMatrix());
}

// shows: KbMatrix::isIdentity, KbMatrix::isAffine, KbMatrix::isFinite, KbMatrix::equals
TEST(Matrix, tellsWhatKindItIs)
{
    KbMatrix m;
    EXPECT_TRUE(m.isIdentity());
    EXPECT_TRUE(m.isAffine());
    EXPECT_TRUE(m.isFinite());
    m[3][0] = 0.25f;
    EXPECT_FALSE(m.isIdentity());
    EXPECT_TRUE(m.isAffine());
    EXPECT_TRUE(m.equals(KbMatrix(), 0.25f));
    EXPECT_FALSE(m.equals(KbMatrix(), 0.2f));
    m[0][3] = 1e-20f;
    EXPECT_FALSE(m.isAffine());
    m[1][2] = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(m.isFinite());
    m[1][2] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(m.isFinite());
    EXPECT_FALSE(m.equals(m, 1));
}

// shows: KbMatrix::multVecMatrix
TEST(Matrix, dividesByTheFourthComponentWhereItCan)
{
    const KbMatrix perspective(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, -1, 0, 0, 0, 0);
    KbVec3f p;
    perspective.multVecMatrix(KbVec3f(2, 4, -2), p);
    EXPECT_EQ(p, KbVec3f(1, 2, -1));
    perspective.multVecMatrix(KbVec3f(2, 4, 0), p);
    EXPECT_EQ(p, KbVec3f(2, 4, 0));
    KbVec4f undivided;
    perspective.multVecMatrix(KbVec4f(2, 4, -2, 1), undivided);
    EXPECT_EQ(undivided, KbVec4f(2, 4, -2, 2));
}

// shows: KbMatrix::transpose, KbMatrix::multMatrixVec
TEST(Matrix, timesAColumnIsItsTransposedTimesARow)
{
    const KbMatrix m(1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 10, 0, 0, 0, 0, 1);
    KbVec3f column, row;
    m.multMatrixVec(KbVec3f(1, 2, 3), column);
    m.transpose().multVecMatrix(KbVec3f(1, 2, 3), row);
    EXPECT_EQ(column, row);
    EXPECT_EQ(column, KbVec3f(14, 32, 53));
}

TEST(Matrix, mayWriteOverItsOwnArgument)
{
    KbMatrix m;
    m.setRotate(KbRotation(KbVec3f(0, 0, 1), s_pi / 2));
    KbVec3f p(1, 0, 0);
    m.multVecMatrix(p, p);
    EXPECT_TRUE(p.equals(KbVec3f(0, 1, 0), 1e-6f)) << p;
    m.multDirMatrix(p, p);
    EXPECT_TRUE(p.equals(KbVec3f(-1, 0, 0), 1e-6f)) << p;
}

// shows: KbMatrix::multLineMatrix
TEST(Matrix, movesALineWithItsPoints)
{
    KbMatrix m;
    m.setTransform(KbVec3f(0, 0, 5), KbRotation(KbVec3f(0, 1, 0), s_pi / 2), KbVec3f(2, 2, 2));
    KbLine line(KbVec3f(1, 0, 0), KbVec3f(1, 0, 1));
    m.multLineMatrix(line, line);
    EXPECT_TRUE(line.getPosition().equals(KbVec3f(0, 0, 3), 1e-5f)) << line.getPosition();
    EXPECT_TRUE(line.getDirection().equals(KbVec3f(1, 0, 0), 1e-5f)) << line.getDirection();
}

// shows: KbRotation::getValue
TEST(Rotation, equalsItsMatrix)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> number(-1, 1);
    for (int round = 0; round < 500; ++round) {
        const KbRotation r(number(random), number(random), number(random), number(random));
        KbMatrix m;
        r.getValue(m);
        EXPECT_TRUE(KbRotation(m).equals(r, 1e-5f)) << r;
        const KbVec3f v(number(random), number(random), number(random));
        KbVec3f byRotation, byMatrix;
        r.multVec(v, byRotation);
        m.multVecMatrix(v, byMatrix);
        EXPECT_TRUE(byRotation.equals(byMatrix, 1e-5f)) << r;
    }
}

// shows: KbRotation::inverse, KbRotation::operator*
TEST(Rotation, appliesTheLeftFactorFirst)
{
    const KbRotation a(KbVec3f(1, 0, 0), 0.5f), b(KbVec3f(0, 1, 0), 0.9f);
    KbMatrix ma, mb, mab;
    a.getValue(ma);
    b.getValue(mb);
    (a * b).getValue(mab);
    EXPECT_TRUE(mab.equals(ma * mb, 1e-5f));
    EXPECT_TRUE((a * a.inverse()).equals(KbRotation(), 1e-6f));
}

// shows: KbRotation::getValue
TEST(Rotation, givesItsAxisAndAngleBack)
{
    KbVec3f axis;
    float radians;
    KbRotation(KbVec3f(0, 0, 5), 1.25f).getValue(axis, radians);
    EXPECT_TRUE(axis.equals(KbVec3f(0, 0, 1), 1e-6f));
    EXPECT_NEAR(radians, 1.25f, 1e-6f);
    KbRotation(KbVec3f(0, 1, 0), 5).getValue(axis, radians);
    EXPECT_TRUE(axis.equals(KbVec3f(0, 1, 0), 1e-6f));
    EXPECT_NEAR(radians, 5, 1e-5f);
    KbRotation().getValue(axis, radians);
    EXPECT_EQ(axis, KbVec3f(0, 0, 1));
    EXPECT_EQ(radians, 0.0f);

    const KbRotation half(KbVec3f(1, 0, 0), s_pi);
    float x, y, z, w;
    half.getValue(x, y, z, w);
    EXPECT_TRUE(KbVec4f(x, y, z, w).equals(KbVec4f(1, 0, 0, 0), 1e-6f));
    EXPECT_EQ(KbVec4f(half.getValue()), KbVec4f(x, y, z, w));
}

// shows: KbRotation::equals
TEST(Rotation, equalsOneOfTheOtherSign)
{
    const KbRotation a(KbVec3f(0, 0, 1), 1), near(KbVec3f(0, 0, 1), 1.001f);
    const float* q = a.getValue();
    const KbRotation negative(-q[0], -q[1], -q[2], -q[3]);
    EXPECT_TRUE(a.equals(negative, 1e-6f));
    EXPECT_FALSE(a == negative);
    EXPECT_TRUE(a.equals(near, 1e-3f));
    EXPECT_FALSE(a.equals(near, 1e-5f));
}

// shows: KbRotation::isIdentity
TEST(Rotation, ofNothingIsNone)
{
    EXPECT_TRUE(KbRotation(KbVec3f(), 1).isIdentity());
    EXPECT_TRUE(KbRotation(0, 0, 0, 0).isIdentity());
    EXPECT_TRUE(KbRotation(KbVec3f(), KbVec3f(1, 0, 0)).isIdentity());
    EXPECT_TRUE(KbRotation(std::numeric_limits<float>::quiet_NaN(), 0, 0, 1).isIdentity());
    EXPECT_TRUE(KbRotation(KbVec3f(1, 0, 0), std::numeric_limits<float>::infinity()).isIdentity());
    EXPECT_FALSE(KbRotation(KbVec3f(1, 0, 0), 1e-6f).isIdentity());
}

// shows: KbRotation, KbRotation::multVec
TEST(Rotation, turnsOneVectorToAnother)
{
    const KbVec3f vectors[] = {{1, 0, 0},     {-1, 0, 0},     {0, 2, 0},          {0.3f, -4, 1},
                               {1, 1e-4f, 0}, {-1, 1e-4f, 0}, {-1, 1e-3f, 2e-3f}, {0, 0, -3}};
    for (const KbVec3f& from : vectors) {
        for (const KbVec3f& to : vectors) {
            KbVec3f image, wanted(to);
            KbRotation(from, to).multVec(from, image);
            image.normalize();
            wanted.normalize();
            EXPECT_TRUE(image.equals(wanted, 1e-4f)) << from << " to " << to << " gives " << image;
        }
    }
    KbVec3f v(1, 0, 0); // written over itself
    KbRotation(KbVec3f(0, 0, 3), s_pi / 2).multVec(v, v);
    EXPECT_TRUE(v.equals(KbVec3f(0, 1, 0), 1e-6f)) << v;
}

// shows: KbRotation::slerp
TEST(Rotation, movesEvenlyFromOneToAnother)
{
    const KbRotation from(KbVec3f(0, 0, 1), 0.2f), to(KbVec3f(0, 0, 1), 1.2f);
    EXPECT_TRUE(KbRotation::slerp(from, to, 0).equals(from, 1e-6f));
    EXPECT_TRUE(KbRotation::slerp(from, to, 1).equals(to, 1e-6f));
    EXPECT_TRUE(
        KbRotation::slerp(from, to, 0.25f).equals(KbRotation(KbVec3f(0, 0, 1), 0.45f), 1e-6f));
    EXPECT_TRUE(KbRotation::slerp(from, from, 0.5f).equals(from, 1e-6f));
    const float* q = to.getValue();
    const KbRotation otherSign(-q[0], -q[1], -q[2], -q[3]);
    EXPECT_TRUE(
        KbRotation::slerp(from, otherSign, 0.5f).equals(KbRotation(KbVec3f(0, 0, 1), 0.7f), 1e-5f));
}
