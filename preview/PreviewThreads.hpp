#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

namespace tessaly {

/// The threads on which files are read and decoders are waited for. They start with the first job.
///
/// Ownership: a job keeps alive what it uses, since it may outlive this: the destructor drops jobs
///            that have not begun, asks the others to stop, and waits for them for `endTimeout` at
///            most. What still runs then is left alone.
/// Threads:   any.
class PreviewThreads {
public:
    /// The pages and frames of the file that is shown have one thread, on which their jobs run in
    /// their order.
    enum class Lane : std::uint8_t { files, pages };
    using Job = std::function<void()>;

    explicit PreviewThreads(std::chrono::milliseconds endTimeout = std::chrono::seconds(2));
    ~PreviewThreads();
    Q_DISABLE_COPY_MOVE(PreviewThreads)

    /// Runs the job as soon as a thread is free; not at all if a stop is requested before.
    void post(Lane lane, std::stop_source stop, Job job);

private:
    struct Queue;

    const std::chrono::milliseconds m_endTimeout;
    std::shared_ptr<Queue> m_files;
    std::shared_ptr<Queue> m_pages;
};

} // namespace tessaly
