#include <arborium/nodes/KsMatrixTransform.h>

KS_NODE_SOURCE(KsMatrixTransform, KsTransformation)

KsMatrixTransform::KsMatrixTransform()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("matrix", matrix, KbMatrix());
}

KsMatrixTransform::~KsMatrixTransform() = default;

void KsMatrixTransform::multInto(KbMatrix& target) const { target.multLeft(matrix.getValue()); }
