#include <arborium/nodes/KsRotation.h>

KS_NODE_SOURCE(KsRotation, KsTransformation)

KsRotation::KsRotation()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("rotation", rotation, KbRotation());
}

KsRotation::~KsRotation() = default;

void KsRotation::multInto(KbMatrix& matrix) const
{
    KbMatrix local;
    local.setRotate(rotation.getValue());
    matrix.multLeft(local);
}
