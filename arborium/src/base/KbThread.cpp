#include <arborium/base/KbThread.h>

#include <cstring>

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

void KbThreadMutex::lock() { m_isRecursive ? m_recursive.lock() : m_plain.lock(); }

bool KbThreadMutex::tryLock()
{
    return m_isRecursive ? m_recursive.try_lock() : m_plain.try_lock();
}

void KbThreadMutex::unlock() { m_isRecursive ? m_recursive.unlock() : m_plain.unlock(); }

unsigned long KbThread::getCurrentThreadId()
{
    static thread_local const unsigned long s_id =
        static_cast<unsigned long>(::syscall(SYS_gettid));
    return s_id;
}

void KbThread::setName(const char* name)
{
    if (!name) return;
    char shortName[16] = {}; // all that the system keeps
    std::strncpy(shortName, name, sizeof shortName - 1);
    ::pthread_setname_np(::pthread_self(), shortName);
}
