// Preloaded into the program: a medium that fails where DATAEXPORT_TEST_UNREADABLE, the end of a
// path, is stored. Its files open, and every attempt to read them fails as on a damaged disk; to
// touch what was mapped of them ends the program.
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

bool isUnreadable(int descriptor)
{
    const char *wanted = std::getenv("DATAEXPORT_TEST_UNREADABLE");
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = wanted ? ::readlink(link.c_str(), path, sizeof(path)) : -1;
    return size > 0 && std::string_view(path, std::size_t(size)).ends_with(wanted);
}

template <class Function>
Function original(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
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
