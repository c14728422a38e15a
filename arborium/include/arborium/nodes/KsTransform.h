#pragma once

#include <arborium/nodes/KsTransformation.h>

/// Places what stands behind it: scales it along the axes that `scaleOrientation` turns to, then
/// rotates it, both about `center`, then moves it.
class ARBORIUM_API KsTransform : public KsTransformation {
    KS_NODE_HEADER(KsTransform);

public:
    KsTransform();

    KsSFVec3f translation;         ///< Default (0, 0, 0).
    KsSFRotation rotation;         ///< Axis and angle in radians. Default none.
    KsSFVec3f scaleFactor;         ///< Default (1, 1, 1).
    KsSFRotation scaleOrientation; ///< Turns the axes along which is scaled. Default none.
    KsSFVec3f center;              ///< What rotation and scaling leave in place. Default (0, 0, 0).

    /// Sets the fields so that they describe `matrix`; `center` becomes the origin. Of a matrix
    /// that is no affine one the fields hold what they can; one that holds infinity or not-a-number
    /// yields the identity.
    void setMatrix(const KbMatrix& matrix);
    /// `matrix` acts before what the node does already. The fields change as by `setMatrix`.
    void multLeft(const KbMatrix& matrix);
    /// `matrix` acts behind what the node does already. The fields change as by `setMatrix`.
    void multRight(const KbMatrix& matrix);

    void fieldHasChanged(KsField* field) override;

protected:
    ~KsTransform() override;
    void multInto(KbMatrix& matrix) const override;

private:
    mutable KbMatrix m_matrix; // composed when first needed
    mutable bool m_matrixValid = false;
};
