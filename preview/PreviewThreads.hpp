#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

namespace tessaly {

/// The threads on which files are read and decoders are waited for. They start with the first job.
///
/// Ownership: a job keeps alive what it uses, since it may outlive this: the destructor drops jobs
///            that have not begun, asks the others to stop, and waits for them for two seconds at
///            most. What still runs then is left alone.
/// Threads:   any.
class PreviewThreads {
public:
    /// What follows of a file that is shown, pages and frames, has a thread of its own, on which
    /// all these jobs run in their order.
    enum class Lane : std::uint8_t { files, pages };
    using Job = std::function<void()>;

    PreviewThreads();
    ~PreviewThreads();
    PreviewThreads(const PreviewThreads &) = delete;
    PreviewThreads &operator=(const PreviewThreads &) = delete;
    PreviewThreads(PreviewThreads &&) = delete;
    PreviewThreads &operator=(PreviewThreads &&) = delete;

    /// Runs the job as soon as a thread is free; not at all if a stop is requested before.
    void post(Lane lane, std::stop_source stop, Job job);

private:
    struct Queue;

    std::shared_ptr<Queue> m_files;
    std::shared_ptr<Queue> m_pages;
};

} // namespace tessaly
