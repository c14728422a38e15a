#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbThread.h>
#include <arborium/base/KcInitModuleCmd.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/base/KsModule.h>
#include <arborium/base/KsPreferences.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <pthread.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

// A folder of its own for each test.
class Files : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = testing::TempDir() + "arborium-base-XXXXXX";
        ASSERT_NE(::mkdtemp(&pattern[0]), nullptr);
        m_folder = pattern;
    }
    void TearDown() override
    {
        for (const std::string& name : list()) ::unlink((m_folder + "/" + name).c_str());
        ::rmdir(m_folder.c_str());
    }
    std::vector<std::string> list() const
    {
        std::vector<std::string> names;
        if (DIR* folder = ::opendir(m_folder.c_str())) {
            while (const dirent* entry = ::readdir(folder))
                if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
                    names.push_back(entry->d_name);
            ::closedir(folder);
        }
        return names;
    }
    KbString path(const char* name) const { return KbString(m_folder + "/" + name); }
    std::string read(const char* name) const
    {
        std::string bytes = "(unread)";
        KbFileHelper::readWholeFile(path(name), 1 << 20, bytes);
        return bytes;
    }

    std::string m_folder;
};

using Status = KbFileHelper::Status;

struct Heard {
    KsDebugError::Severity severity;
    std::string where, message;
};

void hear(void* data, KsDebugError::Severity severity, const char* where, const char* message)
{
    static_cast<std::vector<Heard>*>(data)->push_back({severity, where, message});
}

// Puts back the handler that the test began with.
class HandlerScope {
public:
    HandlerScope(KsDebugError::Handler handler, void* data)
        : m_former(KsDebugError::setHandler(handler, data, &m_formerData))
    {}
    ~HandlerScope() { KsDebugError::setHandler(m_former, m_formerData); }

private:
    void* m_formerData = nullptr;
    KsDebugError::Handler m_former;
};

} // namespace

// shows: KbFileHelper::readWholeFile, KbFileHelper::writeFileAtomically
TEST_F(Files, areWrittenWholeAndReadBack)
{
    const std::string content("a\0b\nc", 5);
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), content));
    EXPECT_EQ(read("f"), content);
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), ""));
    EXPECT_EQ(read("f"), "");
    EXPECT_EQ(list(), std::vector<std::string>{"f"});
}

TEST_F(Files, keepTheirPermissionsWhenTheyAreReplaced)
{
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), "1"));
    const std::string name = m_folder + "/f";
    ASSERT_EQ(::chmod(name.c_str(), 0640), 0);
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), "2"));
    struct stat info;
    ASSERT_EQ(::stat(name.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST_F(Files, areReplacedThroughALink)
{
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), "1"));
    ASSERT_EQ(::symlink("f", (m_folder + "/link").c_str()), 0);
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("link"), "2"));
    EXPECT_EQ(read("f"), "2");
    struct stat info;
    ASSERT_EQ(::lstat((m_folder + "/link").c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
}

// shows: KbFileHelper::writeFileAtomically
TEST_F(Files, thatCannotBeWrittenLeaveAMessageAndNothingBehind)
{
    KbString error;
    EXPECT_FALSE(KbFileHelper::writeFileAtomically(path("missing/f"), "1", &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(KbFileHelper::writeFileAtomically(KbString(m_folder), "1"));
    EXPECT_FALSE(KbFileHelper::writeFileAtomically("", "1"));
    EXPECT_FALSE(KbFileHelper::writeFileAtomically(KbString(std::string("a\0b", 3)), "1"));
    EXPECT_TRUE(list().empty());
}

TEST_F(Files, areAsTheyWereWhenTheDeviceIsFull)
{
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), "old"));
    // A bound on the size of files stands in for the full device.
    const pid_t child = ::fork();
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const bool written = KbFileHelper::writeFileAtomically(path("f"), std::string(5000, 'x'));
        ::_exit(written ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(read("f"), "old");
    EXPECT_EQ(list(), std::vector<std::string>{"f"});
}

// shows: KbFileHelper::readWholeFile
TEST_F(Files, areReadUpToTheLimit)
{
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), std::string(100, 'x')));
    std::string bytes = "before";
    EXPECT_EQ(KbFileHelper::readWholeFile(path("f"), 99, bytes), Status::TooLarge);
    EXPECT_EQ(bytes, "before");
    EXPECT_EQ(KbFileHelper::readWholeFile(path("f"), 100, bytes), Status::Ok);
    EXPECT_EQ(bytes.size(), 100u);
    EXPECT_EQ(KbFileHelper::readWholeFile(path("f"), 101, bytes), Status::Ok);
}

TEST_F(Files, thatAreNoneAreRefusedAtOnce)
{
    std::string bytes = "before";
    EXPECT_EQ(KbFileHelper::readWholeFile(path("missing"), 10, bytes), Status::NotFound);
    EXPECT_EQ(KbFileHelper::readWholeFile("", 10, bytes), Status::NotFound);
    EXPECT_EQ(KbFileHelper::readWholeFile(KbString(m_folder), 10, bytes), Status::NotRegular);
    EXPECT_EQ(KbFileHelper::readWholeFile("/dev/zero", 10, bytes), Status::NotRegular);
    ASSERT_EQ(::mkfifo((m_folder + "/pipe").c_str(), 0600), 0);
    EXPECT_EQ(KbFileHelper::readWholeFile(path("pipe"), 10, bytes), Status::NotRegular);
    ASSERT_EQ(::symlink("loop", (m_folder + "/loop").c_str()), 0);
    EXPECT_EQ(KbFileHelper::readWholeFile(path("loop"), 10, bytes), Status::Failed);
    // One whose size says nothing about its content.
    EXPECT_EQ(KbFileHelper::readWholeFile("/proc/self/status", 1 << 20, bytes), Status::Ok);
    EXPECT_GT(bytes.size(), 10u);
}

// shows: KbFileHelper::isAccessible, KbFileHelper::isRegularFile, KbFileHelper::isDirectory,
// KbFileHelper::getRealPath
TEST_F(Files, areAccessibleWhereTheyExist)
{
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(path("f"), "1"));
    EXPECT_EQ(KbFileHelper::isAccessible(path("f"), 0), 1);
    EXPECT_EQ(KbFileHelper::isAccessible(path("f"), 4), 1);
    EXPECT_EQ(KbFileHelper::isAccessible(path("f"), 4 + 2), 1);
    EXPECT_EQ(KbFileHelper::isAccessible(path("f"), 1), 0) << "no program";
    EXPECT_EQ(KbFileHelper::isAccessible(path("g"), 0), 0);
    EXPECT_EQ(KbFileHelper::isAccessible("", 0), 0);
    EXPECT_EQ(KbFileHelper::isAccessible(KbString(m_folder)), 1);
    EXPECT_TRUE(KbFileHelper::isRegularFile(path("f")));
    EXPECT_FALSE(KbFileHelper::isRegularFile(KbString(m_folder)));
    EXPECT_TRUE(KbFileHelper::isDirectory(KbString(m_folder)));
    EXPECT_FALSE(KbFileHelper::isDirectory(path("f")));
    EXPECT_FALSE(KbFileHelper::isDirectory(path("g")));
    EXPECT_FALSE(KbFileHelper::isRegularFile(path("g")));
    const KbString real = KbFileHelper::getRealPath(path("f"));
    EXPECT_TRUE(KbFileHelper::isAbsolute(real) && real.endsWith("/f")) << real;
    ASSERT_EQ(::symlink("f", (m_folder + "/link").c_str()), 0);
    EXPECT_EQ(KbFileHelper::getRealPath(path("./link")), real);
    EXPECT_EQ(KbFileHelper::getRealPath(path("g")), "");
}

TEST_F(Files, haveTheSameNameHoweverItIsKept)
{
    const KbString folder(m_folder + "/");
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(folder + KbString::fromUtf8("caf\xc3\xa9"), "1"));
    EXPECT_EQ(KbFileHelper::isAccessible(folder + KbString(u"caf\u00e9")), 1);
    EXPECT_EQ(KbFileHelper::isAccessible(folder + "caf\xc3\xa9"), 1) << "the bytes of an argument";
    EXPECT_EQ(list(), std::vector<std::string>{"caf\xc3\xa9"});
    ASSERT_TRUE(KbFileHelper::writeFileAtomically(folder + KbString(u"\u03b1"), "2"));
    EXPECT_EQ(read("\xce\xb1"), "2");
}

// shows: KbFileHelper::toUnixPath, KbFileHelper::toNative, KbFileHelper::getDirectory,
// KbFileHelper::getFileName, KbFileHelper::isAbsolute, KbFileHelper::join
TEST(Path, comesApartAndTogether)
{
    EXPECT_EQ(KbFileHelper::getDirectory("/a/b"), "/a");
    EXPECT_EQ(KbFileHelper::getDirectory("b"), ".");
    EXPECT_EQ(KbFileHelper::getDirectory("/b"), "/");
    EXPECT_EQ(KbFileHelper::getFileName("/a/b"), "b");
    EXPECT_EQ(KbFileHelper::getFileName("b"), "b");
    EXPECT_EQ(KbFileHelper::getFileName("a/"), "");
    EXPECT_EQ(KbFileHelper::join("/a", "b"), "/a/b");
    EXPECT_EQ(KbFileHelper::join("/a/", "b"), "/a/b");
    EXPECT_EQ(KbFileHelper::join("/a", "/b"), "/b");
    EXPECT_EQ(KbFileHelper::join("", "b"), "b");
    EXPECT_EQ(KbFileHelper::toUnixPath("C:\\skins;D:\\more"), "C:/skins;D:/more");
    EXPECT_EQ(KbFileHelper::toUnixPath(u"\u03b1\\b").toUtf16(), u"\u03b1/b");
    EXPECT_TRUE(KbFileHelper::isAbsolute("/a"));
    EXPECT_FALSE(KbFileHelper::isAbsolute("a/b"));
    EXPECT_FALSE(KbFileHelper::isAbsolute(""));
    EXPECT_EQ(KbFileHelper::toNative(u"\u03b1/b"), "\u03b1/b") << "as UTF-8";
    EXPECT_EQ(KbFileHelper::toNative("\u03b1"), "\u03b1") << "the same bytes, if these are UTF-8";
}

// shows: KbFileHelper::expandString
TEST(Path, expandsHomeAndNamesAndNothingElse)
{
    KsPreferences::setString("HOME", "/home/ann");
    KsPreferences::setString("BASE_TEST_DIR", "/data");
    KsPreferences::setString("BASE_TEST_LOOP", "$BASE_TEST_LOOP");
    EXPECT_EQ(KbFileHelper::expandString("~"), "/home/ann");
    EXPECT_EQ(KbFileHelper::expandString("~/x"), "/home/ann/x");
    EXPECT_EQ(KbFileHelper::expandString("~bob/x"), "~bob/x");
    EXPECT_EQ(KbFileHelper::expandString("a~"), "a~");
    EXPECT_EQ(KbFileHelper::expandString("$BASE_TEST_DIR/x"), "/data/x");
    EXPECT_EQ(KbFileHelper::expandString("a${BASE_TEST_DIR}b$"), "a/datab$");
    EXPECT_EQ(KbFileHelper::expandString("$BASE_TEST_NONE/x"), "$BASE_TEST_NONE/x");
    EXPECT_EQ(KbFileHelper::expandString("${BASE_TEST_DIR"), "${BASE_TEST_DIR");
    EXPECT_EQ(KbFileHelper::expandString("$(id)`id`$1$$"), "$(id)`id`$1$$");
    EXPECT_EQ(KbFileHelper::expandString("$BASE_TEST_LOOP"), "$BASE_TEST_LOOP");
    EXPECT_EQ(KbFileHelper::expandString(u"$BASE_TEST_DIR/\u03b1").toUtf16(), u"/data/\u03b1");
    EXPECT_EQ(KbFileHelper::expandString(""), "");
}

// shows: KsPreferences::getValue, KsPreferences::getStringValue, KsPreferences::getString,
// KsPreferences::unset
TEST(Preferences, fallBackToTheEnvironment)
{
    ::setenv("BASE_TEST_PREFERENCE", "from outside", 1);
    EXPECT_STREQ(KsPreferences::getValue("BASE_TEST_PREFERENCE"), "from outside");
    EXPECT_EQ(KsPreferences::getString("BASE_TEST_PREFERENCE", "default"), "from outside");
    ASSERT_NE(KsPreferences::getStringValue("BASE_TEST_PREFERENCE"), nullptr);
    EXPECT_EQ(*KsPreferences::getStringValue("BASE_TEST_PREFERENCE"), "from outside");

    KsPreferences::setString("BASE_TEST_PREFERENCE", "from inside");
    EXPECT_STREQ(KsPreferences::getValue("BASE_TEST_PREFERENCE"), "from inside");
    EXPECT_STREQ(KsPreferences::getValue(KbString("BASE_TEST_PREFERENCE")), "from inside");
    EXPECT_STREQ(::getenv("BASE_TEST_PREFERENCE"), "from outside");
    KsPreferences::unset("BASE_TEST_PREFERENCE");
    EXPECT_STREQ(KsPreferences::getValue("BASE_TEST_PREFERENCE"), "from outside");
    ::setenv("BASE_TEST_PREFERENCE", "changed", 1);
    EXPECT_STREQ(KsPreferences::getValue("BASE_TEST_PREFERENCE"), "changed");
    ::unsetenv("BASE_TEST_PREFERENCE");
    EXPECT_EQ(KsPreferences::getValue("BASE_TEST_PREFERENCE"), nullptr);
    EXPECT_EQ(KsPreferences::getStringValue("BASE_TEST_PREFERENCE"), nullptr);
    EXPECT_EQ(KsPreferences::getString("BASE_TEST_PREFERENCE", "default"), "default");
    EXPECT_EQ(KsPreferences::getValue(static_cast<const char*>(nullptr)), nullptr);
    EXPECT_EQ(KsPreferences::getValue(""), nullptr);
}

// shows: KsPreferences::setString
TEST(Preferences, keepPointersUntilTheNameIsSetAgain)
{
    KsPreferences::setString("BASE_TEST_A", "value");
    const char* const value = KsPreferences::getValue("BASE_TEST_A");
    for (int i = 0; i < 1000; ++i)
        KsPreferences::setString(KbString("BASE_TEST_B") + KbString(i), "other");
    EXPECT_STREQ(value, "value");
    KsPreferences::setString("BASE_TEST_A", *KsPreferences::getStringValue("BASE_TEST_A"));
    EXPECT_STREQ(KsPreferences::getValue("BASE_TEST_A"), "value");
    KsPreferences::setString("BASE_TEST_A", KbString(u"\u03b1"));
    EXPECT_TRUE(KsPreferences::getStringValue("BASE_TEST_A")->isUnicode());
    EXPECT_STREQ(KsPreferences::getValue("BASE_TEST_A"), "\xce\xb1");
    KsPreferences::setString("BASE_TEST_A", "");
    EXPECT_EQ(KsPreferences::getString("BASE_TEST_A", "default"), "") << "an empty value is one";
    KsPreferences::setString("", "value");
    EXPECT_EQ(KsPreferences::getValue(""), nullptr);
    KsPreferences::unset("BASE_TEST_NEVER_SET");
}

// shows: KsDebugError::post, KsDebugError::postInfo
TEST(DebugError, reachesTheHandler)
{
    std::vector<Heard> heard;
    const HandlerScope scope(&hear, &heard);
    KsDebugError::post("KsGroup::addChild", "Index %d is out of range %d - %d", 7, 0, 3);
    KsDebugError::postInfo(nullptr, "%s", "50% done");
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].severity, KsDebugError::Severity::Error);
    EXPECT_EQ(heard[0].where, "KsGroup::addChild");
    EXPECT_EQ(heard[0].message, "Index 7 is out of range 0 - 3");
    EXPECT_EQ(heard[1].severity, KsDebugError::Severity::Info);
    EXPECT_EQ(heard[1].where, "");
    EXPECT_EQ(heard[1].message, "50% done");
    const char* const volatile none = nullptr;
    KsDebugError::post("a", none); // such as a text that was not found
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[2].message, "");
}

TEST(DebugError, isWrittenToStandardErrorByDefault)
{
    const HandlerScope scope(nullptr, nullptr);
    testing::internal::CaptureStderr();
    KsDebugError::post("KsX::y", "text");
    KsDebugError::post("KsX::y", "with its own end\n");
    KsDebugError::postInfo("KsX::z", "%s", std::string(5000, 'a').c_str());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Arborium error in KsX::y: text\n"
                                                      "Arborium error in KsX::y: with its own end\n"
                                                      "Arborium info in KsX::z: " +
                                                          std::string(5000, 'a') + "\n");
}

// shows: KsDebugError::setHandler
TEST(DebugError, giverOfAHandlerGetsTheFormerOneBack)
{
    std::vector<Heard> first, second;
    const HandlerScope scope(&hear, &first);
    void* data = nullptr;
    EXPECT_EQ(KsDebugError::setHandler(&hear, &second, &data), &hear);
    EXPECT_EQ(data, &first);
    KsDebugError::post("a", "b");
    EXPECT_TRUE(first.empty());
    EXPECT_EQ(second.size(), 1u);
    EXPECT_EQ(KsDebugError::setHandler(nullptr), &hear);
    EXPECT_EQ(KsDebugError::setHandler(&hear, &first), nullptr);
}

TEST(DebugError, endsAHandlerThatPostsEachTime)
{
    static int s_calls;
    s_calls = 0;
    const HandlerScope scope(
        [](void*, KsDebugError::Severity, const char*, const char*) {
            ++s_calls;
            KsDebugError::post("again", "and again");
        },
        nullptr);
    testing::internal::CaptureStderr();
    KsDebugError::post("a", "b");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Arborium error in again: and again\n");
    EXPECT_GT(s_calls, 1);
}

// shows: KbThreadAutoLock
TEST(Mutex, letsOneThreadInAtATime)
{
    for (int flag : {0, 1}) {
        KbThreadMutex mutex(flag);
        int count = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int j = 0; j < 2000; ++j) {
                    const KbThreadAutoLock lock(mutex);
                    ++count;
                }
            });
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(count, 8000);
    }
}

// shows: KbThreadMutex, KbThreadMutex::tryLock
TEST(Mutex, withAFlagMayBeLockedAgainByItsOwner)
{
    KbThreadMutex mutex(1);
    const KbThreadAutoLock outer(mutex);
    const KbThreadAutoLock inner(&mutex);
    const KbThreadAutoLock none(static_cast<KbThreadMutex*>(nullptr));
    bool entered = true;
    std::thread([&] { entered = mutex.tryLock(); }).join();
    EXPECT_FALSE(entered);
    entered = mutex.tryLock(); // by the owner itself
    EXPECT_TRUE(entered);
    if (entered) mutex.unlock();
}

// shows: KbThreadMutex::lock, KbThreadMutex::tryLock, KbThreadMutex::unlock,
// KbThreadAutoLock::unlock
TEST(Mutex, isFreeAtTheEndOfTheScope)
{
    KbThreadMutex mutex;
    {
        KbThreadAutoLock lock(mutex);
        lock.unlock();
        lock.unlock();
    }
    {
        const KbThreadAutoLock lock(mutex);
    }
    mutex.lock();
    std::thread([&] { EXPECT_FALSE(mutex.tryLock()); }).join();
    mutex.unlock();
    EXPECT_TRUE(mutex.tryLock());
    mutex.unlock();
}

// shows: KbThread::getCurrentThreadId, KbThread::setName
TEST(Thread, hasANumberOfItsOwn)
{
    const unsigned long here = KbThread::getCurrentThreadId();
    EXPECT_EQ(here, KbThread::getCurrentThreadId());
    unsigned long there = here;
    std::thread([&] {
        KbThread::setName("a name that is longer than the system allows");
        KbThread::setName(nullptr);
        char name[100] = "";
        ::pthread_getname_np(::pthread_self(), name, sizeof name);
        EXPECT_STREQ(name, "a name that is "); // what the system keeps of it
        there = KbThread::getCurrentThreadId();
    }).join();
    EXPECT_NE(here, there);
}

// shows: KsModule, KsModule::getFileName, KsModule::getVersion, KsModule::getCompiler,
// KsModule::getArchitecture, KsModule::getFirstFlag, KsModule::getSecondFlag,
// KsModule::getNumModules, KsModule::getModule
TEST(Module, isListedWhileItLives)
{
    const int before = KsModule::getNumModules();
    {
        const KsModule module("libx.so", "1.0.0.0", nullptr, "64 bits", 1, 2);
        ASSERT_EQ(KsModule::getNumModules(), before + 1);
        EXPECT_EQ(KsModule::getModule(before), &module);
        EXPECT_EQ(module.getFileName(), "libx.so");
        EXPECT_EQ(module.getArchitecture(), "64 bits");
        EXPECT_EQ(module.getCompiler(), "");
        const KsModule second("liby.so", "2", "g++", nullptr, 0, 0);
        EXPECT_EQ(second.getCompiler(), "g++");
        EXPECT_EQ(KsModule::getModule(before + 1), &second) << "in the order of loading";
        EXPECT_EQ(module.getVersion(), "1.0.0.0");
        EXPECT_EQ(module.getFirstFlag(), 1);
        EXPECT_EQ(module.getSecondFlag(), 2);
    }
    EXPECT_EQ(KsModule::getNumModules(), before);
    EXPECT_EQ(KsModule::getModule(before), nullptr);
    EXPECT_EQ(KsModule::getModule(-1), nullptr);
}

// shows: KcInitModuleCmd::Instance, KcInitModuleCmd::serialize, KcInitModuleCmd::getNames
TEST(Module, announcementsAreKept)
{
    const std::size_t before = KcInitModuleCmd::Instance()->getNames().size();
    KcInitModuleCmd::Instance()->serialize("Formweave");
    KcInitModuleCmd::Instance()->serialize(nullptr);
    ASSERT_EQ(KcInitModuleCmd::Instance()->getNames().size(), before + 1);
    EXPECT_EQ(KcInitModuleCmd::Instance()->getNames().back(), "Formweave");
    KcInitModuleCmd::Instance()->serialize("Formweave");
    EXPECT_EQ(KcInitModuleCmd::Instance()->getNames().size(), before + 2) << "each time";
}

// shows: KsDBImpl::isRunningCluster, KsDBImpl::setRunningCluster, KsDBImpl::isRunningToolMode,
// KsDBImpl::setRunningToolMode
TEST(ProcessState, isAPlainProcessUntilToldOtherwise)
{
    EXPECT_FALSE(KsDBImpl::isRunningCluster());
    EXPECT_FALSE(KsDBImpl::isRunningToolMode());
    EXPECT_FALSE(KsDBImpl::m_noLocalWidgets);
    KsDBImpl::setRunningCluster(true);
    KsDBImpl::setRunningToolMode(true);
    EXPECT_TRUE(KsDBImpl::isRunningCluster());
    KsDBImpl::setRunningCluster(false);
    EXPECT_FALSE(KsDBImpl::isRunningCluster());
    EXPECT_TRUE(KsDBImpl::isRunningToolMode());
    KsDBImpl::setRunningToolMode(false);
    EXPECT_FALSE(KsDBImpl::isRunningToolMode());
}

// shows: KsLimits::current
TEST(Limits, canBeSet)
{
    const KsLimits defaults;
    EXPECT_EQ(KsLimits::current().nesting, 512);
    EXPECT_EQ(KsLimits::current().fileBytes, 256LL * 1024 * 1024);
    KsLimits::current().nesting = 3;
    EXPECT_EQ(KsLimits::current().nesting, 3);
    KsLimits::current() = defaults;
    EXPECT_EQ(KsLimits::current().nesting, 512);
}
