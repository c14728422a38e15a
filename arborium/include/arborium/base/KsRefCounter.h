#pragma once

#include <arborium/base/KsApi.h>

#include <cstdint>
#include <type_traits>

/// A count of references. A new object has none; it dies when the last reference is given back.
/// Not thread-safe: nodes belong to one thread at a time.
class ARBORIUM_API KsRefCounter {
public:
    KsRefCounter() = default;
    KsRefCounter(const KsRefCounter&) = delete;
    KsRefCounter& operator=(const KsRefCounter&) = delete;

    /// Takes one reference.
    void ref() const { ++m_refCount; }
    /// Gives one reference back; at 0 the object is destroyed. More `unref` than `ref` is ignored.
    void unref() const
    {
        if (m_refCount > 0 && --m_refCount == 0) release();
    }
    /// As `unref`, but the object stays alive at 0: for handing it on to a new owner.
    void unrefNoDelete() const
    {
        if (m_refCount > 0) --m_refCount;
    }
    /// References taken and not yet given back.
    std::int32_t getRefCount() const { return m_refCount; }

protected:
    virtual ~KsRefCounter();
    /// Runs once, when the count reaches 0; deletes the object. References taken and given back
    /// meanwhile do not run it again.
    virtual void destroy();

private:
    /// Runs `destroy`, or puts the object in a queue where releases are nested deeply.
    void release() const;
    mutable std::int32_t m_refCount = 0;
    mutable bool m_dying = false;
};

/// Holds one reference for a scope, or as a member. Null is allowed.
template <class T> class KsRef {
public:
    /// Takes a reference; moving one hands it on.
    KsRef() = default;
    KsRef(T* object) : m_object(object)
    {
        if (m_object) m_object->ref();
    }
    KsRef(const KsRef& other) : KsRef(other.m_object) {}
    KsRef(KsRef&& other) noexcept : m_object(other.m_object) { other.m_object = nullptr; }
    /// The same object as one of a base class.
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    KsRef(const KsRef<U>& other) : KsRef(static_cast<T*>(other.get()))
    {}
    ~KsRef() { reset(); }
    /// Takes the new reference before it gives the old one back.
    KsRef& operator=(KsRef other) noexcept
    {
        T* mine = m_object;
        m_object = other.m_object;
        other.m_object = mine;
        return *this;
    }
    /// Gives the reference back, and is null.
    void reset()
    {
        T* object = m_object;
        m_object = nullptr;
        if (object) object->unref();
    }
    /// The object, or null; it stays the holder's. `->` and `*` want one that is not null.
    T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    operator T*() const { return m_object; }

private:
    T* m_object = nullptr;
};

/// Keeps an object alive while listeners are told about it, also one that nobody has referenced
/// yet: leaving the scope does not destroy an object that had no reference at its start.
class ARBORIUM_API KsKeepAlive {
public:
    /// Null is allowed.
    explicit KsKeepAlive(const KsRefCounter* object)
        : m_object(object), m_wasFree(object && object->getRefCount() == 0)
    {
        if (m_object) m_object->ref();
    }
    ~KsKeepAlive()
    {
        if (!m_object) return;
        if (m_wasFree)
            m_object->unrefNoDelete();
        else
            m_object->unref();
    }
    KsKeepAlive(const KsKeepAlive&) = delete;
    KsKeepAlive& operator=(const KsKeepAlive&) = delete;
    /// FALSE if the object would be gone but for this guard.
    bool isStillWanted() const { return m_object && (m_wasFree || m_object->getRefCount() > 1); }

private:
    const KsRefCounter* m_object;
    bool m_wasFree;
};
