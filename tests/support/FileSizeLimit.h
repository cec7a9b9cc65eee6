#pragma once

#include <csignal>

#include <sys/resource.h>

namespace sendrel::test {

// While it lives, files may grow to `bytes` only: a write beyond fails with EFBIG, as on a full
// disk, instead of ending the process (SIGXFSZ ignored). The limit is inherited by child processes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before{};
    void (*m_signal)(int) = nullptr;
};

}  // namespace sendrel::test
