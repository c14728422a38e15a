#include <arborium/nodes/KsTransform.h>

KS_NODE_SOURCE(KsTransform, KsTransformation)

KsTransform::KsTransform()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("translation", translation, KbVec3f(0, 0, 0));
    build.field("rotation", rotation, KbRotation());
    build.field("scaleFactor", scaleFactor, KbVec3f(1, 1, 1));
    build.field("scaleOrientation", scaleOrientation, KbRotation());
    build.field("center", center, KbVec3f(0, 0, 0));
}

KsTransform::~KsTransform() = default;

void KsTransform::fieldHasChanged(KsField* field)
{
    m_matrixValid = false;
    KsTransformation::fieldHasChanged(field);
}

void KsTransform::multInto(KbMatrix& matrix) const
{
    if (!m_matrixValid) {
        m_matrix.setTransform(translation, rotation, scaleFactor, scaleOrientation, center);
        m_matrixValid = true;
    }
    matrix.multLeft(m_matrix);
}

void KsTransform::setMatrix(const KbMatrix& matrix)
{
    KbVec3f t, s;
    KbRotation r, so;
    matrix.getTransform(t, r, s, so);
    translation = t;
    rotation = r;
    scaleFactor = s;
    scaleOrientation = so;
    if (center.getValue() != KbVec3f()) center = KbVec3f();
}

void KsTransform::multLeft(const KbMatrix& matrix)
{
    KbMatrix product = getLocalMatrix();
    setMatrix(product.multLeft(matrix));
}

void KsTransform::multRight(const KbMatrix& matrix)
{
    KbMatrix product = getLocalMatrix();
    setMatrix(product.multRight(matrix));
}
