#include "automation/thread_state.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>

namespace automation {
namespace {

constinit std::atomic<std::size_t> places_claimed{0};
constinit std::array<ThreadState::End, ThreadState::most_places> ends{};

/// Allocated when it is first asked for: in the module's tests nobody attaches it.
DWORD index(std::atomic<DWORD>& tls_index) noexcept
{
    DWORD known = tls_index.load(std::memory_order_acquire);
    if (known != TLS_OUT_OF_INDEXES)
        return known;
    const DWORD fresh = TlsAlloc();
    if (tls_index.compare_exchange_strong(known, fresh) || fresh == TLS_OUT_OF_INDEXES)
        return fresh;
    TlsFree(fresh);
    return known;
}

} // namespace

constinit std::atomic<DWORD> ThreadState::tls_index{TLS_OUT_OF_INDEXES};

ThreadState* ThreadState::make() noexcept
{
    const DWORD place = index(tls_index);
    if (place == TLS_OUT_OF_INDEXES)
        return nullptr;
    void* const fresh = std::calloc(1, sizeof(ThreadState));
    if (!fresh || !TlsSetValue(place, fresh)) {
        std::free(fresh);
        return nullptr;
    }
    return static_cast<ThreadState*>(fresh);
}

void ThreadState::forget() noexcept
{
    ThreadState* const state = find();
    if (!state)
        return;
    for (std::size_t place = 0; place < ends.size(); ++place)
        if (ends[place])
            ends[place](state->places[place]);
    TlsSetValue(tls_index, nullptr);
    std::free(state);
}

void ThreadState::give_back_index() noexcept
{
    const DWORD known = tls_index.exchange(TLS_OUT_OF_INDEXES);
    if (known != TLS_OUT_OF_INDEXES)
        TlsFree(known);
}

std::size_t claim_place(ThreadState::End end) noexcept
{
    const std::size_t place = places_claimed++;
    if (place >= ThreadState::most_places)
        std::abort(); // at the first start of the library, when a place was added
    ends[place] = end;
    return place;
}

} // namespace automation
