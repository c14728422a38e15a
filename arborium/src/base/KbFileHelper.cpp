#include "Utf8.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbThread.h>
#include <arborium/base/KsPreferences.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }
    bool close()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd < 0 || ::close(fd) == 0;
    }

private:
    int m_fd;
};

// A zero byte would cut the path short where the system reads it.
bool isUsable(const std::string& path)
{
    return !path.empty() && path.find('\0') == std::string::npos;
}

bool getMode(const KbString& path, mode_t& mode)
{
    const std::string native = KbFileHelper::toNative(path);
    struct stat info;
    if (!isUsable(native) || ::stat(native.c_str(), &info) != 0) return false;
    mode = info.st_mode;
    return true;
}

std::string realPath(const std::string& path)
{
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr),
                                                      &std::free);
    return real ? std::string(real.get()) : std::string();
}

std::string directoryOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

bool writeAll(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

// Flushes to the device; file systems that cannot say so do not count as failing.
bool flush(int fd) { return ::fsync(fd) == 0 || errno == EINVAL || errno == EROFS; }

// Makes a new file beside `path`; its name is returned in `name`. -1 with errno.
int createBeside(const std::string& path, std::string& name)
{
    static std::atomic<unsigned> s_counter{0};
    const std::string stem = directoryOf(path) + "/.arborium-" + std::to_string(::getpid()) + "-" +
                             std::to_string(KbThread::getCurrentThreadId()) + "-";
    for (int i = 0; i < 1000; ++i) {
        name = stem + std::to_string(s_counter++);
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

bool isNameStart(char16_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isNamePart(char16_t c) { return isNameStart(c) || (c >= '0' && c <= '9'); }

} // namespace

std::string KbFileHelper::toNative(const KbString& path)
{
    return path.isUnicode() || !isUtf8(path.toLatin1()) ? path.toUtf8() : path.toLatin1();
}

int KbFileHelper::isAccessible(const KbString& path, int mode)
{
    const std::string native = toNative(path);
    return isUsable(native) && ::access(native.c_str(), mode & (R_OK | W_OK | X_OK)) == 0 ? 1 : 0;
}

bool KbFileHelper::isRegularFile(const KbString& path)
{
    mode_t mode;
    return getMode(path, mode) && S_ISREG(mode);
}

bool KbFileHelper::isDirectory(const KbString& path)
{
    mode_t mode;
    return getMode(path, mode) && S_ISDIR(mode);
}

KbString KbFileHelper::toUnixPath(const KbString& path)
{
    if (path.find("\\") == KbString::npos) return path;
    if (path.isUnicode()) {
        std::u16string text = path.toUtf16();
        for (char16_t& c : text)
            if (c == u'\\') c = u'/';
        return KbString::fromUtf16(text);
    }
    std::string text = path.toLatin1();
    for (char& c : text)
        if (c == '\\') c = '/';
    return KbString(std::move(text));
}

KbString KbFileHelper::expandString(const KbString& text)
{
    KbString result;
    const int length = text.getLength();
    int start = 0;
    if (text[0] == '~' && (length == 1 || text[1] == '/')) {
        if (const KbString* home = KsPreferences::getStringValue("HOME")) {
            result = *home;
            start = 1;
        }
    }
    for (int i = start; i < length;) {
        if (text[i] != '$') {
            ++i;
            continue;
        }
        const bool braced = text[i + 1] == '{';
        const int name = i + (braced ? 2 : 1);
        int end = name;
        if (isNameStart(text[end]))
            while (isNamePart(text[end])) ++end;
        const KbString* value = nullptr;
        if (end > name && (!braced || text[end] == '}'))
            value = KsPreferences::getStringValue(text.getSubString(name, end));
        if (!value) {
            ++i;
            continue;
        }
        result += text.getSubString(start, i);
        result += *value;
        i = start = end + (braced ? 1 : 0);
    }
    return result += text.getSubString(start, -1);
}

KbString KbFileHelper::getDirectory(const KbString& path)
{
    const int slash = path.rfind("/");
    return slash == KbString::npos ? KbString(".")
           : slash == 0            ? KbString("/")
                                   : path.getSubString(0, slash);
}

KbString KbFileHelper::getFileName(const KbString& path)
{
    return path.getSubString(path.rfind("/") + 1, -1);
}

bool KbFileHelper::isAbsolute(const KbString& path) { return path[0] == '/'; }

KbString KbFileHelper::join(const KbString& directory, const KbString& name)
{
    if (directory.isEmpty() || isAbsolute(name)) return name;
    return directory.endsWith("/") ? directory + name : directory + "/" + name;
}

KbString KbFileHelper::getRealPath(const KbString& path)
{
    const std::string native = toNative(path);
    return isUsable(native) ? KbString(realPath(native)) : KbString();
}

KbFileHelper::Status KbFileHelper::readWholeFile(const KbString& path, std::uint64_t limit,
                                                 std::string& bytes)
{
    const std::string native = toNative(path);
    if (!isUsable(native)) return Status::NotFound;
    // Not blocking: a pipe without a writer would hold the program up.
    const Descriptor file(::open(native.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen()) {
        if (errno == ENXIO) return Status::NotRegular;
        return errno == ENOENT || errno == ENOTDIR ? Status::NotFound : Status::Failed;
    }
    struct stat info;
    if (::fstat(file.get(), &info) != 0) return Status::Failed;
    if (!S_ISREG(info.st_mode)) return Status::NotRegular;
    const std::uint64_t size = static_cast<std::uint64_t>(info.st_size);
    if (size > limit) return Status::TooLarge;

    // The size is only a first guess: some files show 0, and a file may grow while it is read.
    std::string content(static_cast<std::size_t>(size) + 1, '\0');
    std::size_t filled = 0;
    for (;;) {
        if (filled == content.size()) content.resize(content.size() * 2);
        const ssize_t n = ::read(file.get(), &content[filled], content.size() - filled);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return Status::Failed;
        if (n == 0) break;
        filled += static_cast<std::size_t>(n);
        if (filled > limit) return Status::TooLarge;
    }
    content.resize(filled);
    bytes = std::move(content);
    return Status::Ok;
}

bool KbFileHelper::writeFileAtomically(const KbString& path, std::string_view bytes,
                                       KbString* error)
{
    const auto fail = [error](int code) {
        if (error) *error = KbString(std::generic_category().message(code));
        return false;
    };
    std::string target = toNative(path);
    if (!isUsable(target)) return fail(ENOENT);
    // Through a link the file that it names is replaced, not the link.
    const std::string real = realPath(target);
    if (!real.empty()) target = real;
    struct stat info;
    const bool exists = ::stat(target.c_str(), &info) == 0;
    if (exists && !S_ISREG(info.st_mode)) return fail(S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
    if (exists && ::access(target.c_str(), W_OK) != 0) return fail(errno);

    std::string temporary;
    Descriptor file(createBeside(target, temporary));
    if (!file.isOpen()) return fail(errno);
    errno = 0;
    const bool written = (!exists || ::fchmod(file.get(), info.st_mode & 0777) == 0) &&
                         writeAll(file.get(), bytes) && flush(file.get()) && file.close() &&
                         ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!written) {
        const int code = errno;
        ::unlink(temporary.c_str());
        return fail(code);
    }
    // The new name itself; the content is safe already, so that a failure here changes nothing.
    const Descriptor directory(
        ::open(directoryOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen()) flush(directory.get());
    return true;
}
