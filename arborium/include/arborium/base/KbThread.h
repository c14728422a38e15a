#pragma once

#include <arborium/base/KsApi.h>

#include <mutex>

/// Mutual exclusion between threads. It must not be held when it dies.
class ARBORIUM_API KbThreadMutex {
public:
    /// With a flag other than 0 the thread that holds the mutex may lock it again.
    constexpr explicit KbThreadMutex(int flag = 0) : m_isRecursive(flag != 0) {}
    KbThreadMutex(const KbThreadMutex&) = delete;
    KbThreadMutex& operator=(const KbThreadMutex&) = delete;

    /// Waits until no other thread holds the mutex. Without the flag the holder must not lock it
    /// again: it would wait for itself.
    void lock();
    /// FALSE, at once, if another thread holds it.
    bool tryLock();
    /// By the thread that holds it, once for each time that it was locked.
    void unlock();

private:
    std::mutex m_plain;
    std::recursive_mutex m_recursive;
    const bool m_isRecursive;
};

/// Holds a mutex until the end of its scope.
class ARBORIUM_API KbThreadAutoLock {
public:
    /// Waits for the mutex.
    explicit KbThreadAutoLock(KbThreadMutex& mutex) : KbThreadAutoLock(&mutex) {}
    /// Null holds nothing.
    explicit KbThreadAutoLock(KbThreadMutex* mutex) : m_mutex(mutex)
    {
        if (m_mutex) m_mutex->lock();
    }
    KbThreadAutoLock(const KbThreadAutoLock&) = delete;
    KbThreadAutoLock& operator=(const KbThreadAutoLock&) = delete;
    ~KbThreadAutoLock() { unlock(); }

    /// Gives the mutex back before the end of the scope; a second time does nothing.
    void unlock()
    {
        if (m_mutex) m_mutex->unlock();
        m_mutex = nullptr;
    }

private:
    KbThreadMutex* m_mutex;
};

/// The calling thread.
class ARBORIUM_API KbThread {
public:
    /// A number that no two running threads share.
    static unsigned long getCurrentThreadId();
    /// Names the calling thread for debuggers; the system may cut the name. Null does nothing.
    static void setName(const char* name);
};
