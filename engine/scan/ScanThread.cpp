#include "engine/scan/ScanThread.hpp"

#include <cstddef>
#include <memory>

#include <pthread.h>

namespace tessaly::scan {

namespace {

constexpr std::size_t stackByteCount = std::size_t{512} << 10U;

void *runWork(void *argument)
{
    const std::unique_ptr<std::function<void()>> work(
        static_cast<std::function<void()> *>(argument));
    (*work)();
    return nullptr;
}

} // namespace

bool startDetachedThread(const std::function<void()> &work)
{
    // Not std::thread: it has no way to set the size of the stack, and it throws where there are no
    // threads left.
    auto copy = std::make_unique<std::function<void()>>(work);
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) {
        return false;
    }
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_attr_setstacksize(&attributes, stackByteCount);
    pthread_t thread;
    const bool started = pthread_create(&thread, &attributes, runWork, copy.get()) == 0;
    pthread_attr_destroy(&attributes);
    if (started) {
        static_cast<void>(copy.release()); // the thread owns it now
    }
    return started;
}

} // namespace tessaly::scan
