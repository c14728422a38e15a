#include <arborium/render/KsDrawList.h>

void KsDrawList::clear()
{
    draws.clear();
    materials.clear();
    clips.clear();
    lightSets.clear();
    viewVolume = KbViewVolume();
    hasCamera = false;
}
