#include "automation/thread_state.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>

// The parts of the language's runtime that a thread needs to raise an exception, in the place of the compiler's own. Those take
// memory at a thread's first exception, and locks at the first one under short memory, and end the process when they can't
// have them. Here everything lies in the thread's state, which every border makes sure of before anything can be raised.

namespace __cxxabiv1 {
struct __cxa_eh_globals {
    void* caught;
    unsigned uncaught;
};
} // namespace __cxxabiv1

namespace {

using automation::ThreadState;

/// Before an exception lies what the runtime notes of it, which is less than this.
constexpr std::size_t notes_size = 128;

ThreadState& state() noexcept
{
    ThreadState* const state = ThreadState::find_or_make();
    if (!state)
        std::terminate();
    return *state;
}

void* take_reserve(std::size_t size) noexcept
{
    ThreadState* const state = ThreadState::find();
    if (!state || size > sizeof(ThreadState::Reserve::bytes))
        return nullptr;
    const auto free = std::ranges::find(state->reserves, false, &ThreadState::Reserve::taken);
    if (free == state->reserves.end())
        return nullptr;
    free->taken = true;
    return free->bytes;
}

bool give_reserve_back(void* memory) noexcept
{
    ThreadState* const state = ThreadState::find();
    if (!state)
        return false;
    const auto taken = std::ranges::find_if(state->reserves, [&](const auto& reserve) { return reserve.bytes == memory; });
    if (taken == state->reserves.end())
        return false;
    taken->taken = false;
    return true;
}

/// Memory of zero bits for an exception.
void* take(std::size_t size) noexcept
{
    void* memory = std::malloc(size);
    if (!memory)
        memory = take_reserve(size);
    if (!memory)
        std::terminate();
    return std::memset(memory, 0, size);
}

void give_back(void* memory) noexcept
{
    if (!give_reserve_back(memory))
        std::free(memory);
}

} // namespace

extern "C" {

__cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals() noexcept
{
    return reinterpret_cast<__cxa_eh_globals*>(&state().exceptions);
}

__cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals_fast() noexcept
{
    return __cxa_get_globals();
}

void* __cxxabiv1::__cxa_allocate_exception(std::size_t size) noexcept
{
    return static_cast<std::byte*>(take(notes_size + size)) + notes_size;
}

void __cxxabiv1::__cxa_free_exception(void* exception) noexcept
{
    give_back(static_cast<std::byte*>(exception) - notes_size);
}

__cxxabiv1::__cxa_dependent_exception* __cxxabiv1::__cxa_allocate_dependent_exception() noexcept
{
    return static_cast<__cxa_dependent_exception*>(take(notes_size));
}

void __cxxabiv1::__cxa_free_dependent_exception(__cxa_dependent_exception* exception) noexcept
{
    give_back(exception);
}

} // extern "C"
