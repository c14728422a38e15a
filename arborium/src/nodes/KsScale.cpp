#include <arborium/nodes/KsScale.h>

KS_NODE_SOURCE(KsScale, KsTransformation)

KsScale::KsScale()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("scaleFactor", scaleFactor, KbVec3f(1, 1, 1));
}

KsScale::~KsScale() = default;

void KsScale::multInto(KbMatrix& matrix) const
{
    const KbVec3f& factors = scaleFactor.getValue();
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column) matrix[row][column] *= factors[row];
}
