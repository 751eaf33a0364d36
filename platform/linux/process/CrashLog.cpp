#include "platform/linux/process/CrashLog.hpp"

#include "engine/tree/PrintableText.hpp"
#include "platform/linux/process/StandardError.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <string>
#include <typeinfo>

#include <cxxabi.h>

namespace tessaly {

namespace {

struct FatalSignal {
    int number;
    const char *description;
};

constexpr std::array fatalSignals = {
    FatalSignal{SIGSEGV, "SIGSEGV (invalid memory reference)"},
    FatalSignal{SIGABRT, "SIGABRT (abort)"},
    FatalSignal{SIGBUS, "SIGBUS (memory that cannot be reached)"},
    FatalSignal{SIGILL, "SIGILL (invalid instruction)"},
    FatalSignal{SIGFPE, "SIGFPE (arithmetic error)"},
};

/// The lines that the handlers write, made in advance since a handler must not allocate memory.
/// Never freed: a signal may arrive while static objects are being destroyed.
struct Texts {
    std::string begin;
    std::array<std::string, fatalSignals.size()> lines;
};
const Texts *texts = nullptr;

/// A stack overflow raises SIGSEGV on a stack without room for a handler.
constexpr std::size_t handlerStackSize = std::size_t{64} << 10U;
alignas(16) std::array<char, handlerStackSize> handlerStack;

/// A signal handler: only async-signal-safe calls.
void sayAndDie(int number, siginfo_t *info, void * /*context*/)
{
    for (std::size_t i = 0; i < fatalSignals.size(); ++i) {
        if (fatalSignals.at(i).number == number) {
            writeToStandardError(texts->lines.at(i));
        }
    }
    // SA_RESETHAND has restored the default action. A fault of the processor is raised again when
    // this returns to the same instruction; a signal that a process sent (si_code <= 0) is not.
    if (info->si_code <= 0) {
        raise(number);
    }
}

/// Whether there is a handler already, such as a sanitizer's, which says more.
bool isWatched(int number)
{
    struct sigaction before = {};
    return sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_DFL &&
           before.sa_handler != SIG_IGN;
}

void watch(int number)
{
    if (isWatched(number)) {
        return;
    }
    struct sigaction action = {};
    action.sa_sigaction = sayAndDie;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

/// For this thread, the main one; others die of an overflow without a line.
void giveHandlersAStack()
{
    stack_t stack = {};
    if (sigaltstack(nullptr, &stack) == 0 && (stack.ss_flags & SS_DISABLE) != 0) {
        stack = {};
        stack.ss_sp = handlerStack.data();
        stack.ss_size = handlerStack.size();
        sigaltstack(&stack, nullptr);
    }
}

/// The exception that was being thrown, as "TYPE: TEXT" where it has a text.
std::string currentException()
{
    const std::type_info *type = abi::__cxa_current_exception_type();
    if (type == nullptr) {
        return "no exception";
    }
    int status = 0;
    char *readable = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
    std::string text = status == 0 ? readable : type->name();
    std::free(readable); // NOLINT(cppcoreguidelines-no-malloc): the C++ library's own
    try {
        std::rethrow_exception(std::current_exception());
    } catch (const std::exception &exception) {
        text += ": " + tree::printableText(exception.what());
    } catch (...) {
        // Its type is all that is known of it.
    }
    return text;
}

[[noreturn]] void sayAndAbort() noexcept
{
    writeToStandardError(texts->begin + "uncaught exception: " + currentException() + '\n');
    std::signal(SIGABRT, SIG_DFL); // one line is enough
    std::abort();
}

} // namespace

void CrashLog::install(std::string_view program, std::string_view version)
{
    auto *made = new Texts;
    made->begin.append(program).append(" ").append(version).append(" died: ");
    for (std::size_t i = 0; i < fatalSignals.size(); ++i) {
        made->lines.at(i) = made->begin + fatalSignals.at(i).description + '\n';
    }
    texts = made;
    giveHandlersAStack();
    for (const FatalSignal &fatal : fatalSignals) {
        watch(fatal.number);
    }
    std::set_terminate(sayAndAbort);
}

} // namespace tessaly
