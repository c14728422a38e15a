#include <arborium/base/KsRefCounter.h>

#include <deque>

KsRefCounter::~KsRefCounter() = default;

void KsRefCounter::destroy() { delete this; }

void KsRefCounter::release() const
{
    // A tree is released from its root down, each level inside the one above it. Beyond some depth
    // what dies waits in a queue until the outermost release is through.
    static constexpr int maxDepth = 64;
    static int s_depth = 0;
    static std::deque<KsRefCounter*>& s_waiting = *new std::deque<KsRefCounter*>;

    if (m_dying) return;
    m_dying = true;
    auto* self = const_cast<KsRefCounter*>(this);
    if (s_depth >= maxDepth) {
        s_waiting.push_back(self);
        return;
    }
    ++s_depth;
    self->destroy();
    if (s_depth == 1) {
        while (!s_waiting.empty()) {
            KsRefCounter* next = s_waiting.front();
            s_waiting.pop_front();
            next->destroy();
        }
    }
    --s_depth;
}
