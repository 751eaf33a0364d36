#include "platform/linux/process/FileSystemProbe.hpp"

#include "platform/linux/process/ProbeProcess.hpp"

#include <charconv>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

/// A killed process is gone within microseconds, or the kernel keeps it for much longer.
constexpr std::chrono::milliseconds endTimeout(200);

/// The number at the front of a text, which it is taken off; nothing when there is none.
std::optional<std::uint64_t> takeNumber(std::string_view &text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// "TOTAL FREE"
std::optional<VolumeFigures> figuresIn(std::string_view answer)
{
    const auto total = takeNumber(answer);
    if (!total || !answer.starts_with(' ')) {
        return std::nullopt;
    }
    answer.remove_prefix(1);
    const auto free = takeNumber(answer);
    return free ? std::optional(VolumeFigures{*total, *free}) : std::nullopt;
}

} // namespace

struct FileSystemProbe::State {
    using Process = std::shared_ptr<ProbeProcess>;

    /// Asks at a path; nullptr where that is silenced.
    [[nodiscard]] Process start(const std::string &program, const std::string &path)
    {
        const std::scoped_lock lock(mutex);
        if (silenced.contains(path)) {
            return nullptr;
        }
        auto process = std::make_shared<ProbeProcess>(program, ProbeProcess::figures, path);
        running.emplace(path, process);
        return process;
    }

    void remove(const Process &process)
    {
        const std::scoped_lock lock(mutex);
        std::erase_if(running, [&](const auto &entry) { return entry.second == process; });
    }

    std::mutex mutex;
    std::multimap<std::string, Process> running; ///< by path; guarded by mutex
    std::multiset<std::string> silenced;         ///< paths; guarded by mutex
};

FileSystemProbe::FileSystemProbe(std::string program)
    : m_program(std::move(program)), m_state(std::make_shared<State>())
{
}

FileSystemProbe::~FileSystemProbe() = default;

FileSystemProbe::Reading FileSystemProbe::spaceAt(const std::string &path)
{
    const auto process = m_state->start(m_program, path);
    if (process == nullptr) {
        return std::nullopt;
    }
    const std::string answer = process->wholeAnswer();
    m_state->remove(process);
    return process->isStopped() ? Reading() : Reading(figuresIn(answer));
}

bool FileSystemProbe::answersWithin(std::chrono::milliseconds timeout,
                                    const std::string &path) const
{
    return ProbeProcess(m_program, ProbeProcess::figures, path).waitForAnswer(timeout);
}

FileSystemProbe::Quiet FileSystemProbe::silence(const std::string &path)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->silenced.insert(path);
    const auto [first, end] = m_state->running.equal_range(path);
    for (auto running = first; running != end; ++running) {
        running->second->stop(endTimeout);
    }
    return {this, [state = m_state, path](void *) {
                const std::scoped_lock locked(state->mutex);
                state->silenced.erase(state->silenced.find(path));
            }};
}

void FileSystemProbe::stopAll()
{
    const std::scoped_lock lock(m_state->mutex);
    for (const auto &[path, process] : m_state->running) {
        process->stop(std::chrono::milliseconds(0));
    }
}

} // namespace tessaly
