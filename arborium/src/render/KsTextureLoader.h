#pragma once

#include <arborium/base/KbString.h>
#include <arborium/render/KsDrawList.h>

/// Decodes an image file of any format that Qt knows. Null, with the reason in `error`, if that is
/// not possible or the image is larger than 8192 pixels in a direction.
KsTexturePtr ksLoadTexture(const KbString& path, std::string& error);
