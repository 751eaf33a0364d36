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

/// What the handlers say, made while memory can still be had. Never freed: a signal may come late.
struct Texts {
    std::string begin;
    std::array<std::string, fatalSignals.size()> lines;
};
const Texts *texts = nullptr;

/// Enough for the handler of a thread whose own stack is full.
constexpr std::size_t handlerStackSize = std::size_t{64} << 10U;
alignas(16) std::array<char, handlerStackSize> handlerStack;

/// Only what may be done in the midst of anything.
void sayAndDie(int number, siginfo_t *info, void * /*context*/)
{
    for (std::size_t i = 0; i < fatalSignals.size(); ++i) {
        if (fatalSignals.at(i).number == number) {
            writeToStandardError(texts->lines.at(i));
        }
    }
    // By now the signal has its default action again. What the processor raised comes again when
    // this returns to the same place; what a process sent would not.
    if (info->si_code <= 0) {
        raise(number);
    }
}

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
    std::signal(SIGABRT, SIG_DFL); // all is said
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
