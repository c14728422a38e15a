#pragma once

#include <arborium/base/KbMatrix.h>

/// How directions of surfaces go along with a matrix: right for any scale, also one of zero.
struct KsNormalMatrix {
    float m[9];
    explicit KsNormalMatrix(const KbMatrix& matrix)
    {
        const KbVec3f a(matrix[0]), b(matrix[1]), c(matrix[2]);
        const float sign = matrix.det3() < 0 ? -1.0f : 1.0f;
        const KbVec3f rows[3] = {b.cross(c) * sign, c.cross(a) * sign, a.cross(b) * sign};
        for (int i = 0; i < 9; ++i) m[i] = rows[i / 3][i % 3];
    }
    KbVec3f operator()(const KbVec3f& n) const
    {
        KbVec3f r(n[0] * m[0] + n[1] * m[3] + n[2] * m[6], n[0] * m[1] + n[1] * m[4] + n[2] * m[7],
                  n[0] * m[2] + n[1] * m[5] + n[2] * m[8]);
        r.normalize();
        return r;
    }
};
