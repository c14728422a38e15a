#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbMatrix.h>

void KbBox3f::transform(const KbMatrix& matrix)
{
    if (isEmpty()) return;
    if (matrix.isAffine()) {
        // Each matrix entry moves a bound by one of two amounts; the lesser goes to the minimum.
        KbVec3f minimum(matrix[3]), maximum(matrix[3]);
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column) {
                const float a = matrix[row][column] * m_min[row];
                const float b = matrix[row][column] * m_max[row];
                minimum[column] += a < b ? a : b;
                maximum[column] += a < b ? b : a;
            }
        m_min = minimum;
        m_max = maximum;
        return;
    }
    KbBox3f result;
    for (int corner = 0; corner < 8; ++corner) {
        KbVec3f point(corner & 1 ? m_max[0] : m_min[0], corner & 2 ? m_max[1] : m_min[1],
                      corner & 4 ? m_max[2] : m_min[2]);
        matrix.multVecMatrix(point, point);
        result.extendBy(point);
    }
    *this = result;
}
