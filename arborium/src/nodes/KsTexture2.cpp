#include <arborium/nodes/KsTexture2.h>

#include "io/KsNamedFile.h"
#include "render/KsTextureLoader.h"

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsInput.h>

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
    m_isFromFile = false;
}

bool KsTexture2::readInstance(KsInput* in, unsigned short flags)
{
    const bool result = KsNode::readInstance(in, flags);
    m_isFromFile = true;
    const KbString file = KbString::fromUtf8(in->getFileName());
    m_directory = file.isEmpty() || file[0] == u'<' ? KbString() : KbFileHelper::getDirectory(file);
    return result;
}

void KsTexture2::copyContents(const KsNode* from, Copier& copier)
{
    KsNode::copyContents(from, copier);
    const auto* other = static_cast<const KsTexture2*>(from);
    m_directory = other->m_directory;
    m_isFromFile = other->m_isFromFile;
    m_isLoaded = other->m_isLoaded;
    m_image = other->m_image;
}

KbString KsTexture2::findImage(std::string& error) const
{
    const KbString& name = filename.getValue();
    if (m_isFromFile) return ksFindNamedFile(name, m_directory, error);
    if (KbFileHelper::isAbsolute(name)) return name;
    for (const KbString& directory : KsInput::getDirectories()) {
        const KbString path = KbFileHelper::getRealPath(KbFileHelper::join(directory, name));
        if (!path.isEmpty()) return path;
    }
    error = "there is no such file where images are looked for";
    return KbString();
}

std::shared_ptr<const KsTextureImage> KsTexture2::getImage() const
{
    if (m_isLoaded || filename.getValue().isEmpty()) return m_image;
    m_isLoaded = true;
    std::string error;
    const KbString path = findImage(error);
    if (!path.isEmpty()) m_image = ksLoadTexture(path, error);
    if (!m_image)
        KsDebugError::post("KsTexture2::getImage", "No texture from \"%s\": %s",
                           filename.getValue().toUtf8().c_str(), error.c_str());
    return m_image;
}
