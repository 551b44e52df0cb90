#pragma once

#include <csignal>
#include <sys/resource.h>

/// Caps the size of any file this process writes, for as long as it lives.
/// A write past the cap fails with EFBIG even for root, so tests can make a
/// save or a copy fail halfway through and check what is left on disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        m_ok = getrlimit(RLIMIT_FSIZE, &m_previous) == 0;
        if (m_ok) {
            rlimit capped = m_previous;
            capped.rlim_cur = bytes;
            m_ok = setrlimit(RLIMIT_FSIZE, &capped) == 0;
        }
    }
    ~FileSizeLimit()
    {
        if (m_ok)
            setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    bool active() const { return m_ok; }

private:
    rlimit m_previous{};
    void (*m_handler)(int) = nullptr;
    bool m_ok = false;
};
