#include <arborium/base/KbLine.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbRotation.h>

#include <Eigen/Dense>

#include <algorithm>
#include <cstring>

namespace {

using Matrix3 = Eigen::Matrix3d;
using Vector3 = Eigen::Vector3d;

// Below this share of the largest length an axis counts as flattened.
constexpr double s_flat = 1e-12;
// The cosine up to which two axes count as perpendicular: what products of float matrices leave.
constexpr double s_perpendicular = 1e-5;

// Makes the rows that stand for flattened axes unit vectors again, so that the whole is an
// orthonormal frame turned no further than the remaining rows ask for.
void completeFrame(Matrix3& frame, const bool (&isFlat)[3])
{
    int flat = 0, someFlat = 0, someFull = 0;
    for (int i = 0; i < 3; ++i) {
        if (isFlat[i]) {
            ++flat;
            someFlat = i;
        } else {
            someFull = i;
        }
    }
    if (flat == 3) {
        frame = Matrix3::Identity();
    } else if (flat == 2) {
        const Vector3 axis = Vector3::Unit(someFull);
        const Vector3 image = frame.row(someFull).transpose();
        const Matrix3 turn =
            Eigen::Quaterniond::FromTwoVectors(axis, image).toRotationMatrix().transpose();
        for (int i = 0; i < 3; ++i)
            if (isFlat[i]) frame.row(i) = turn.row(i);
    } else if (flat == 1) {
        const Vector3 a = frame.row((someFlat + 1) % 3).transpose();
        const Vector3 b = frame.row((someFlat + 2) % 3).transpose();
        frame.row(someFlat) = a.cross(b).normalized().transpose();
    }
}

// Of a frame that mirrors, turns one row around, or all three, whichever leaves the least rotation.
void unmirrorRows(Matrix3& frame, Vector3& scale)
{
    if (frame.determinant() >= 0) return;
    int best = -1;
    double bestTrace = -frame.trace();
    for (int i = 0; i < 3; ++i) {
        const double trace = frame.trace() - 2 * frame(i, i);
        if (trace > bestTrace + 1e-12) {
            bestTrace = trace;
            best = i;
        }
    }
    for (int i = 0; i < 3; ++i) {
        if (best == -1 || best == i) {
            frame.row(i) = -frame.row(i);
            scale[i] = -scale[i];
        }
    }
}

// linear = diag(scale) * rotation, if the rows are perpendicular to each other.
bool splitPerpendicularRows(const Matrix3& linear, Vector3& scale, Matrix3& rotation)
{
    const double largest = linear.rowwise().norm().maxCoeff();
    bool isFlat[3];
    for (int i = 0; i < 3; ++i) {
        scale[i] = linear.row(i).norm();
        isFlat[i] = scale[i] <= s_flat * largest;
        if (isFlat[i]) scale[i] = 0;
        rotation.row(i) = isFlat[i] ? Eigen::RowVector3d(Eigen::RowVector3d::Zero())
                                    : Eigen::RowVector3d(linear.row(i) / scale[i]);
    }
    for (int i = 0; i < 3; ++i)
        if (std::fabs(rotation.row(i).dot(rotation.row((i + 1) % 3))) > s_perpendicular)
            return false;
    completeFrame(rotation, isFlat);
    unmirrorRows(rotation, scale);
    return true;
}

// linear = orientation^T * diag(scale) * orientation * rotation, by the singular values.
void splitSheared(const Matrix3& linear, Vector3& scale, Matrix3& orientation, Matrix3& rotation)
{
    const Eigen::JacobiSVD<Matrix3> svd(linear, Eigen::ComputeFullU | Eigen::ComputeFullV);
    Matrix3 u = svd.matrixU();
    const Matrix3 v = svd.matrixV();
    scale = svd.singularValues();

    Matrix3 turned = u * v.transpose();
    if (turned.determinant() < 0) {
        // A flattened axis may take the mirroring; else the axis or axes with the least rotation.
        int best = -1;
        double bestTrace = (-turned).trace();
        for (int i = 0; i < 3; ++i) {
            Vector3 signs = Vector3::Ones();
            signs[i] = -1;
            const double trace = (u * signs.asDiagonal() * v.transpose()).trace();
            const bool flat = scale[2] <= s_flat * scale[0];
            if (flat ? i == 2 : trace > bestTrace) {
                bestTrace = trace;
                best = i;
            }
        }
        Vector3 signs = best < 0 ? Vector3(-Vector3::Ones()) : Vector3(Vector3::Ones());
        if (best >= 0) signs[best] = -1;
        turned = u * signs.asDiagonal() * v.transpose();
        scale = scale.cwiseProduct(signs);
    }
    rotation = turned;

    // The axes in the order and with the signs that lie nearest to the coordinate axes.
    int order[3] = {0, 1, 2}, bestOrder[3] = {0, 1, 2};
    double bestSum = -1;
    do {
        double sum = 0;
        for (int i = 0; i < 3; ++i) sum += std::fabs(u(i, order[i]));
        if (sum > bestSum + 1e-12) {
            bestSum = sum;
            std::copy(order, order + 3, bestOrder);
        }
    } while (std::next_permutation(order, order + 3));
    Matrix3 axes;
    Vector3 sorted;
    for (int i = 0; i < 3; ++i) {
        axes.col(i) = u.col(bestOrder[i]) * (u(i, bestOrder[i]) < 0 ? -1.0 : 1.0);
        sorted[i] = scale[bestOrder[i]];
    }
    if (axes.determinant() < 0) {
        int least = 0;
        for (int i = 1; i < 3; ++i)
            if (std::fabs(axes(i, i)) < std::fabs(axes(least, least))) least = i;
        axes.col(least) = -axes.col(least);
    }
    scale = sorted;
    orientation = axes.transpose();
}

KbRotation toRotation(const Matrix3& rows)
{
    // Eigen multiplies columns from the right: its matrix is the transposed one.
    const Eigen::Quaterniond q(Matrix3(rows.transpose()));
    return KbRotation(static_cast<float>(q.x()), static_cast<float>(q.y()),
                      static_cast<float>(q.z()), static_cast<float>(q.w()));
}

} // namespace

KbMatrix::KbMatrix(float a11, float a12, float a13, float a14, float a21, float a22, float a23,
                   float a24, float a31, float a32, float a33, float a34, float a41, float a42,
                   float a43, float a44)
    : m_value{
          {a11, a12, a13, a14}, {a21, a22, a23, a24}, {a31, a32, a33, a34}, {a41, a42, a43, a44}}
{}

void KbMatrix::getValue(float (&rows)[4][4]) const { std::memcpy(rows, m_value, sizeof m_value); }

void KbMatrix::setValue(const float (&rows)[4][4]) { std::memmove(m_value, rows, sizeof m_value); }

void KbMatrix::setValue(const float* values)
{
    if (values) std::memmove(m_value, values, sizeof m_value);
}

void KbMatrix::makeIdentity()
{
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) m_value[i][j] = i == j ? 1.0f : 0.0f;
}

void KbMatrix::setTranslate(const KbVec3f& translation)
{
    makeIdentity();
    for (int i = 0; i < 3; ++i) m_value[3][i] = translation[i];
}

void KbMatrix::setScale(float factor) { setScale(KbVec3f(factor, factor, factor)); }

void KbMatrix::setScale(const KbVec3f& factors)
{
    makeIdentity();
    for (int i = 0; i < 3; ++i) m_value[i][i] = factors[i];
}

void KbMatrix::setRotate(const KbRotation& rotation) { rotation.getValue(*this); }

void KbMatrix::setTransform(const KbVec3f& translation, const KbRotation& rotation,
                            const KbVec3f& scale)
{
    setRotate(rotation);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) m_value[i][j] *= scale[i];
        m_value[3][i] = translation[i];
    }
}

void KbMatrix::setTransform(const KbVec3f& translation, const KbRotation& rotation,
                            const KbVec3f& scale, const KbRotation& scaleOrientation)
{
    if (scaleOrientation.isIdentity()) {
        setTransform(translation, rotation, scale);
        return;
    }
    KbMatrix scaled, turn;
    scaled.setTransform(KbVec3f(), scaleOrientation, scale);
    turn.setRotate(rotation);
    setRotate(scaleOrientation.inverse());
    multRight(scaled);
    multRight(turn);
    for (int i = 0; i < 3; ++i) m_value[3][i] = translation[i];
}

void KbMatrix::setTransform(const KbVec3f& translation, const KbRotation& rotation,
                            const KbVec3f& scale, const KbRotation& scaleOrientation,
                            const KbVec3f& center)
{
    setTransform(translation, rotation, scale, scaleOrientation);
    KbVec3f moved;
    multDirMatrix(center, moved);
    for (int i = 0; i < 3; ++i) m_value[3][i] = translation[i] + center[i] - moved[i];
}

void KbMatrix::getTransform(KbVec3f& translation, KbRotation& rotation, KbVec3f& scale,
                            KbRotation& scaleOrientation) const
{
    translation.setValue(0, 0, 0);
    rotation = scaleOrientation = KbRotation();
    scale.setValue(1, 1, 1);
    if (!isFinite()) return;

    const double w = m_value[3][3] == 0.0f ? 1.0 : m_value[3][3];
    Matrix3 linear;
    for (int i = 0; i < 3; ++i) {
        translation[i] = static_cast<float>(m_value[3][i] / w);
        for (int j = 0; j < 3; ++j) linear(i, j) = m_value[i][j] / w;
    }
    Vector3 factors;
    Matrix3 turn;
    if (!splitPerpendicularRows(linear, factors, turn)) {
        Matrix3 orientation = Matrix3::Identity();
        splitSheared(linear, factors, orientation, turn);
        scaleOrientation = toRotation(orientation);
    }
    rotation = toRotation(turn);
    for (int i = 0; i < 3; ++i) scale[i] = static_cast<float>(factors[i]);
}

void KbMatrix::getTransform(KbVec3f& translation, KbRotation& rotation, KbVec3f& scale,
                            KbRotation& scaleOrientation, const KbVec3f& center) const
{
    getTransform(translation, rotation, scale, scaleOrientation);
    KbMatrix linear;
    linear.setTransform(KbVec3f(), rotation, scale, scaleOrientation);
    KbVec3f moved;
    linear.multDirMatrix(center, moved);
    translation += moved - center;
}

KbMatrix& KbMatrix::multRight(const KbMatrix& m)
{
    float product[4][4];
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            product[i][j] = m_value[i][0] * m.m_value[0][j] + m_value[i][1] * m.m_value[1][j] +
                            m_value[i][2] * m.m_value[2][j] + m_value[i][3] * m.m_value[3][j];
    setValue(product);
    return *this;
}

KbMatrix& KbMatrix::multLeft(const KbMatrix& m)
{
    KbMatrix product(m);
    product.multRight(*this);
    return *this = product;
}

float KbMatrix::det3() const
{
    const auto& m = m_value;
    const double a =
        static_cast<double>(m[1][1]) * m[2][2] - static_cast<double>(m[1][2]) * m[2][1];
    const double b =
        static_cast<double>(m[1][0]) * m[2][2] - static_cast<double>(m[1][2]) * m[2][0];
    const double c =
        static_cast<double>(m[1][0]) * m[2][1] - static_cast<double>(m[1][1]) * m[2][0];
    return static_cast<float>(m[0][0] * a - m[0][1] * b + m[0][2] * c);
}

float KbMatrix::det4() const
{
    Eigen::Matrix4d m;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) m(i, j) = m_value[i][j];
    return static_cast<float>(m.determinant());
}

// Elimination with pivots. Each row is first brought to a largest entry of 1, so that what counts as
// no pivot does not depend on the scale of the axes.
bool KbMatrix::invert(double (&result)[4][4]) const
{
    double a[4][8] = {};
    for (int i = 0; i < 4; ++i) {
        double largest = 0;
        for (int j = 0; j < 4; ++j)
            largest = std::max(largest, std::fabs(static_cast<double>(m_value[i][j])));
        if (!(largest > 0) || !std::isfinite(largest)) return false;
        for (int j = 0; j < 4; ++j) a[i][j] = m_value[i][j] / largest;
        a[i][4 + i] = 1 / largest;
    }
    for (int column = 0; column < 4; ++column) {
        int pivot = column;
        for (int i = column + 1; i < 4; ++i)
            if (std::fabs(a[i][column]) > std::fabs(a[pivot][column])) pivot = i;
        if (!(std::fabs(a[pivot][column]) > 1e-14)) return false;
        if (pivot != column) std::swap_ranges(a[pivot], a[pivot] + 8, a[column]);
        const double divisor = a[column][column];
        for (double& v : a[column]) v /= divisor;
        for (int i = 0; i < 4; ++i) {
            if (i == column) continue;
            const double factor = a[i][column];
            for (int j = 0; j < 8; ++j) a[i][j] -= factor * a[column][j];
        }
    }
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            result[i][j] = a[i][4 + j];
            if (!(std::fabs(result[i][j]) <= std::numeric_limits<float>::max())) return false;
        }
    }
    return true;
}

KbMatrix KbMatrix::inverse() const
{
    KbMatrix inverted;
    double rows[4][4];
    if (invert(rows)) {
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 4; ++j) inverted.m_value[i][j] = static_cast<float>(rows[i][j]);
        if (isAffine()) // what rounding left of it
            for (int i = 0; i < 4; ++i) inverted.m_value[i][3] = i == 3 ? 1.0f : 0.0f;
    }
    return inverted;
}

bool KbMatrix::isInvertible() const
{
    double rows[4][4];
    return invert(rows);
}

KbMatrix KbMatrix::transpose() const
{
    KbMatrix m;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) m.m_value[i][j] = m_value[j][i];
    return m;
}

void KbMatrix::multVecMatrix(const KbVec3f& source, KbVec3f& result) const
{
    KbVec4f image;
    multVecMatrix(KbVec4f(source, 1), image);
    result = image[3] == 1.0f ? KbVec3f(image.getValue()) : image.getReal();
}

void KbMatrix::multVecMatrix(const KbVec4f& source, KbVec4f& result) const
{
    KbVec4f image;
    for (int j = 0; j < 4; ++j)
        image[j] = source[0] * m_value[0][j] + source[1] * m_value[1][j] +
                   source[2] * m_value[2][j] + source[3] * m_value[3][j];
    result = image;
}

void KbMatrix::multDirMatrix(const KbVec3f& source, KbVec3f& result) const
{
    KbVec3f image;
    for (int j = 0; j < 3; ++j)
        image[j] =
            source[0] * m_value[0][j] + source[1] * m_value[1][j] + source[2] * m_value[2][j];
    result = image;
}

void KbMatrix::multMatrixVec(const KbVec3f& source, KbVec3f& result) const
{
    KbVec4f image;
    for (int i = 0; i < 4; ++i)
        image[i] = m_value[i][0] * source[0] + m_value[i][1] * source[1] +
                   m_value[i][2] * source[2] + m_value[i][3];
    result = image.getReal();
}

void KbMatrix::multLineMatrix(const KbLine& source, KbLine& result) const
{
    KbVec3f p, q;
    multVecMatrix(source.getPosition(), p);
    if (isAffine()) {
        multDirMatrix(source.getDirection(), q);
        result.setPosDir(p, q);
    } else {
        multVecMatrix(source.getPosition() + source.getDirection(), q);
        result.setValue(p, q);
    }
}

bool KbMatrix::isIdentity() const { return *this == KbMatrix(); }

bool KbMatrix::isAffine() const
{
    return m_value[0][3] == 0.0f && m_value[1][3] == 0.0f && m_value[2][3] == 0.0f &&
           m_value[3][3] == 1.0f;
}

bool KbMatrix::isFinite() const
{
    for (const auto& row : m_value)
        for (float v : row)
            if (!std::isfinite(v)) return false;
    return true;
}

bool KbMatrix::equals(const KbMatrix& m, float tolerance) const
{
    for (int i = 0; i < 4; ++i)
        if (!KbVec4f(m_value[i]).equals(KbVec4f(m.m_value[i]), tolerance)) return false;
    return true;
}
