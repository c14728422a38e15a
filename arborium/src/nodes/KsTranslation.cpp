#include <arborium/nodes/KsTranslation.h>

KS_NODE_SOURCE(KsTranslation, KsTransformation)

KsTranslation::KsTranslation()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("translation", translation, KbVec3f(0, 0, 0));
}

KsTranslation::~KsTranslation() = default;

void KsTranslation::multInto(KbMatrix& matrix) const
{
    // Only the last row of the product differs from that of the matrix.
    const KbVec3f& t = translation.getValue();
    float* last = matrix[3];
    for (int column = 0; column < 4; ++column) {
        last[column] +=
            t[0] * matrix[0][column] + t[1] * matrix[1][column] + t[2] * matrix[2][column];
    }
}
