// Preloaded into the program: media that fail.
// DATAEXPORT_TEST_UNREADABLE, the end of a path: such a file opens, and every attempt to read it
// fails as on a damaged disk; to touch what was mapped of it ends the program.
// DATAEXPORT_TEST_FULL, a folder: what is written or synced below it fails, from the call on that
// DATAEXPORT_TEST_FULL_AFTER others came before, with the number DATAEXPORT_TEST_FULL_ERROR, and
// standard error is told.
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

std::string pathOf(int descriptor)
{
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = ::readlink(link.c_str(), path, sizeof(path));
    return { path, std::size_t(size > 0 ? size : 0) };
}

bool isFull(int descriptor)
{
    static std::atomic<int> calls { 0 };
    const char *folder = std::getenv("DATAEXPORT_TEST_FULL");
    if (!folder || !pathOf(descriptor).starts_with(folder))
        return false;
    return ++calls > std::atoi(std::getenv("DATAEXPORT_TEST_FULL_AFTER"));
}

bool isUnreadable(int descriptor)
{
    const char *wanted = std::getenv("DATAEXPORT_TEST_UNREADABLE");
    return wanted && pathOf(descriptor).ends_with(wanted);
}

template <class Function>
Function original(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

template <class Answer, class... Arguments>
Answer writeOrFail(const char *name, int descriptor, Arguments... arguments)
{
    if (isFull(descriptor)) {
        constexpr std::string_view note = "The medium is full.\n";
        original<decltype(&::write)>("write")(STDERR_FILENO, note.data(), note.size());
        errno = std::atoi(std::getenv("DATAEXPORT_TEST_FULL_ERROR"));
        return -1;
    }
    return original<Answer (*)(int, Arguments...)>(name)(descriptor, arguments...);
}

template <class... Arguments>
ssize_t readOrFail(const char *name, int descriptor, Arguments... arguments)
{
    if (isUnreadable(descriptor)) {
        errno = EIO;
        return -1;
    }
    return original<ssize_t (*)(int, Arguments...)>(name)(descriptor, arguments...);
}

void *mapOrFail(
    const char *name, void *at, std::size_t size, int rights, int flags, int descriptor, off_t from)
{
    if (descriptor >= 0 && isUnreadable(descriptor))
        rights = PROT_NONE;
    return original<decltype(&::mmap)>(name)(at, size, rights, flags, descriptor, from);
}

} // namespace

extern "C" {

ssize_t write(int descriptor, const void *bytes, std::size_t size)
{
    return writeOrFail<ssize_t>("write", descriptor, bytes, size);
}

int fsync(int descriptor)
{
    return writeOrFail<int>("fsync", descriptor);
}

int syncfs(int descriptor) noexcept
{
    return writeOrFail<int>("syncfs", descriptor);
}

ssize_t read(int descriptor, void *bytes, std::size_t size)
{
    return readOrFail("read", descriptor, bytes, size);
}

ssize_t pread(int descriptor, void *bytes, std::size_t size, off_t from)
{
    return readOrFail("pread", descriptor, bytes, size, from);
}

ssize_t pread64(int descriptor, void *bytes, std::size_t size, off64_t from)
{
    return readOrFail("pread64", descriptor, bytes, size, from);
}

void *mmap(void *at, std::size_t size, int rights, int flags, int descriptor, off_t from)
{
    return mapOrFail("mmap", at, size, rights, flags, descriptor, from);
}

void *mmap64(void *at, std::size_t size, int rights, int flags, int descriptor, off64_t from)
{
    return mapOrFail("mmap64", at, size, rights, flags, descriptor, from);
}
}
