#pragma once

#include <arborium/base/KbVec.h>

class KbLine;
class KbRotation;

/// A 4 by 4 matrix for row vectors: a point p becomes p * M, the translation stands in the last row,
/// and in A * B the transformation A comes first. The identity by default.
class ARBORIUM_API KbMatrix {
public:
    KbMatrix() { makeIdentity(); }
    /// The sixteen numbers row by row, in the order of files.
    KbMatrix(float a11, float a12, float a13, float a14, float a21, float a22, float a23, float a24,
             float a31, float a32, float a33, float a34, float a41, float a42, float a43,
             float a44);
    explicit KbMatrix(const float (&rows)[4][4]) { setValue(rows); }

    /// A new matrix that changes nothing.
    static KbMatrix identity() { return KbMatrix(); }

    /// Sixteen numbers, row by row: OpenGL takes them as they are. They live as long as the matrix.
    const float* getValue() const { return m_value[0]; }
    void getValue(float (&rows)[4][4]) const;
    void setValue(const float (&rows)[4][4]);
    /// Sixteen numbers, row by row; null changes nothing.
    void setValue(const float* values);
    /// A row; an index outside of 0 .. 3 means the first.
    float* operator[](int row) { return m_value[row >= 0 && row < 4 ? row : 0]; }
    const float* operator[](int row) const { return m_value[row >= 0 && row < 4 ? row : 0]; }

    /// Each of these forgets what the matrix was before.
    void makeIdentity();
    void setTranslate(const KbVec3f& translation);
    void setScale(float factor);
    void setScale(const KbVec3f& factors);
    void setRotate(const KbRotation& rotation);
    /// Scales along the axes that `scaleOrientation` turns to, then rotates, then translates; scale
    /// and rotation are about `center`.
    void setTransform(const KbVec3f& translation, const KbRotation& rotation, const KbVec3f& scale);
    void setTransform(const KbVec3f& translation, const KbRotation& rotation, const KbVec3f& scale,
                      const KbRotation& scaleOrientation);
    void setTransform(const KbVec3f& translation, const KbRotation& rotation, const KbVec3f& scale,
                      const KbRotation& scaleOrientation, const KbVec3f& center);
    /// Takes the matrix apart so that `setTransform` of the results gives it back. A direction that
    /// the matrix flattens to nothing gets scale 0 and the least possible rotation; a mirrored matrix
    /// gets a negative scale. A matrix that holds infinity or not-a-number yields the identity.
    void getTransform(KbVec3f& translation, KbRotation& rotation, KbVec3f& scale,
                      KbRotation& scaleOrientation) const;
    void getTransform(KbVec3f& translation, KbRotation& rotation, KbVec3f& scale,
                      KbRotation& scaleOrientation, const KbVec3f& center) const;

    /// This becomes `m` * this: `m` acts first.
    KbMatrix& multLeft(const KbMatrix& m);
    /// This becomes this * `m`: `m` acts last.
    KbMatrix& multRight(const KbMatrix& m);
    /// `a` acts first. A factor may be this matrix itself.
    KbMatrix& operator*=(const KbMatrix& m) { return multRight(m); }
    friend KbMatrix operator*(const KbMatrix& a, const KbMatrix& b)
    {
        KbMatrix product(a);
        return product.multRight(b);
    }

    /// The determinant; 0 where the matrix flattens.
    float det4() const;
    /// The determinant of the upper left 3 by 3 part: negative where the matrix mirrors.
    float det3() const;
    /// A matrix that cannot be inverted yields the identity; `isInvertible` tells.
    KbMatrix inverse() const;
    /// FALSE where the matrix flattens, holds infinity or not-a-number, or has an inverse beyond
    /// the range of floats.
    bool isInvertible() const;
    /// Rows for columns.
    KbMatrix transpose() const;

    /// The point times the matrix, divided by the fourth component; undivided where that is 0.
    /// `source` and `result` may be the same.
    void multVecMatrix(const KbVec3f& source, KbVec3f& result) const;
    /// As four numbers, undivided.
    void multVecMatrix(const KbVec4f& source, KbVec4f& result) const;
    /// The direction times the matrix: the translation has no part in it.
    void multDirMatrix(const KbVec3f& source, KbVec3f& result) const;
    /// The matrix times the point as a column, divided like the others.
    void multMatrixVec(const KbVec3f& source, KbVec3f& result) const;
    /// The line through the images of two of its points.
    void multLineMatrix(const KbLine& source, KbLine& result) const;

    /// To the last bit.
    bool isIdentity() const;
    /// Whether the last column is 0 0 0 1.
    bool isAffine() const;
    /// Whether no number is infinite or not-a-number.
    bool isFinite() const;
    /// Whether no number differs by more than `tolerance`; not-a-number equals nothing.
    bool equals(const KbMatrix& m, float tolerance) const;
    friend bool operator==(const KbMatrix& a, const KbMatrix& b)
    {
        for (int i = 0; i < 16; ++i)
            if (!(a.m_value[i / 4][i % 4] == b.m_value[i / 4][i % 4])) return false;
        return true;
    }
    friend bool operator!=(const KbMatrix& a, const KbMatrix& b) { return !(a == b); }

private:
    bool invert(double (&result)[4][4]) const;

    float m_value[4][4];
};

/// The rows, each in a line.
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbMatrix& m);
