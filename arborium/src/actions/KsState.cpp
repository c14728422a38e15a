#include <arborium/actions/KsState.h>

KsState::KsState() = default;
KsState::~KsState() = default;

void KsState::push()
{
    m_marks.push_back(m_log.size());
    ++m_depth;
}

void KsState::pop()
{
    if (m_marks.empty()) return;
    unwind(m_marks.back());
    m_marks.pop_back();
    --m_depth;
}

void KsState::reset()
{
    unwind(0);
    m_marks.clear();
    m_depth = 1;
}

void KsState::unwind(std::size_t mark)
{
    while (m_log.size() > mark) {
        const Log entry = m_log.back();
        m_log.pop_back();
        entry.restore(entry.element);
    }
}

bool KsViewVolumeElement::isSet(const KsState* state)
{
    return state && state->viewVolume.setAt() > 0 && state->viewVolume.get().isSet();
}

const KbViewVolume& KsViewVolumeElement::get(const KsState* state)
{
    static const KbViewVolume none;
    return state ? state->viewVolume.get() : none;
}
