#pragma once

#include <functional>

#include <sys/types.h>

namespace tessaly {

/// Runs a piece of a test in a process of its own, which may change its user, its limits or its
/// mounts. Failed expectations in there fail the test; so does a child that does not end within two
/// minutes or that dies.
void runInChild(const std::function<void()> &body);

/// The same as a user without rights.
/// Requires: the tests run as root.
void runUnprivileged(const std::function<void()> &body);

/// The same with mounts of its own, which nobody else sees.
/// Requires: canMount().
void runWithPrivateMounts(const std::function<void()> &body);

/// Whether this process is root, so that it can become somebody else.
[[nodiscard]] bool isRoot();

/// Whether this process may mount things, as runWithPrivateMounts() has to.
[[nodiscard]] bool canMount();

/// A process of its own that runs a piece of a test until it ends or is killed, at the latest when
/// the thread that made it ends or after two minutes. Expectations in there count for nothing.
class KillableChild {
public:
    explicit KillableChild(const std::function<void()> &body);
    /// Kills it, if wasKilled() has not seen its end.
    ~KillableChild();
    KillableChild(const KillableChild &) = delete;
    KillableChild &operator=(const KillableChild &) = delete;

    void kill() const;

    /// Waits for the end; true when it was killed.
    [[nodiscard]] bool wasKilled();

private:
    pid_t m_process;
};

/// The number of descriptors that this process has open.
[[nodiscard]] int openDescriptorCount();

/// Allows this process so many descriptors for as long as this lives.
class DescriptorLimit {
public:
    explicit DescriptorLimit(unsigned count);
    ~DescriptorLimit();
    DescriptorLimit(const DescriptorLimit &) = delete;
    DescriptorLimit &operator=(const DescriptorLimit &) = delete;

private:
    unsigned long m_before;
};

} // namespace tessaly
