#include <arborium/nodes/KsTexture2.h>

#include "render/KsTextureLoader.h"

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KsDebugError.h>

KS_NODE_SOURCE(KsTexture2, KsNode)

KsTexture2::KsTexture2()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Wrap", {{"REPEAT", REPEAT}, {"CLAMP", CLAMP}});
    build.field("filename", filename, KbString());
    build.enumField("wrapS", wrapS, "Wrap", REPEAT);
    build.enumField("wrapT", wrapT, "Wrap", REPEAT);
}

KsTexture2::~KsTexture2() = default;

void KsTexture2::doAction(KsAction* action)
{
    KsState* state = action->getState();
    if (state) state->edit(state->texture) = filename.getValue().isEmpty() ? nullptr : this;
}

void KsTexture2::fieldHasChanged(KsField* field)
{
    KsNode::fieldHasChanged(field);
    if (field != &filename) return;
    m_isLoaded = false;
    m_image = nullptr;
}

void KsTexture2::copyContents(const KsNode* from, Copier& copier)
{
    KsNode::copyContents(from, copier);
    const auto* other = static_cast<const KsTexture2*>(from);
    m_isLoaded = other->m_isLoaded;
    m_image = other->m_image;
}

std::shared_ptr<const KsTextureImage> KsTexture2::getImage() const
{
    if (m_isLoaded || filename.getValue().isEmpty()) return m_image;
    m_isLoaded = true;
    std::string error;
    const KbString path = filename.findFile(error);
    if (!path.isEmpty()) m_image = ksLoadTexture(path, error);
    if (!m_image)
        KsDebugError::post("KsTexture2::getImage", "No texture from \"%s\": %s",
                           filename.getValue().toUtf8().c_str(), error.c_str());
    return m_image;
}
