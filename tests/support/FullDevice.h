#ifndef TESTS_SUPPORT_FULLDEVICE_H
#define TESTS_SUPPORT_FULLDEVICE_H

#include <csignal>
#include <sys/resource.h>

//! While it lives, no file of this process grows past a size: as on a device that is full there.
class FullDevice
{
public:
    explicit FullDevice(rlim_t sizeBytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // the write is to fail, not the process
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limited = m_before;
        limited.rlim_cur = sizeBytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FullDevice()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDevice(const FullDevice &) = delete;
    FullDevice &operator=(const FullDevice &) = delete;

private:
    rlimit m_before {};
    void (*m_handler)(int) = SIG_DFL;
};

#endif
