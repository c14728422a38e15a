#pragma once

#include <arborium/nodes/KsNode.h>

#include <memory>

struct KsTextureImage;

/// An image that the shapes behind it wear, multiplied by their colour and lit as they are. Vertex
/// shapes without `texCoord` wear it as wide as the longest side of their box is. An image that is
/// missing or broken gives a message, once, and no texture.
class ARBORIUM_API KsTexture2 : public KsNode {
    KS_NODE_HEADER(KsTexture2);

public:
    /// What lies beyond the edges of the image: the image again, or its outermost pixels.
    enum Wrap { REPEAT, CLAMP };

    KsSFFilePathString filename; ///< Of the image. Default empty: no texture.
    KsSFEnum wrapS;              ///< To the left and to the right. Default REPEAT.
    KsSFEnum wrapT;              ///< Above and below. Default REPEAT.

    KsTexture2();
    /// The image, read when it is first asked for; null if there is none.
    std::shared_ptr<const KsTextureImage> getImage() const;

    void doAction(KsAction* action) override;
    void fieldHasChanged(KsField* field) override;

protected:
    ~KsTexture2() override;
    void copyContents(const KsNode* from, Copier& copier) override;

private:
    mutable bool m_isLoaded = false;
    mutable std::shared_ptr<const KsTextureImage> m_image;
};
