#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace automation {

struct FloatingControl;

/// What the library keeps for a thread that calls it: one block of memory under one index of the platform's thread storage.
/// A thread's first call takes the block, its end gives it back. The compiler's own `thread_local` won't do: it ends the
/// process when memory runs short, and its indexes are never given back.
struct ThreadState {
    static constexpr std::size_t most_places = 8;
    static constexpr std::size_t most_reserves = 8;
    struct Reserve {
        bool taken;
        alignas(8) std::byte bytes[256];
    };
    struct Place {
        alignas(void*) std::byte bytes[sizeof(void*)];
    };
    /// What becomes of a place when its thread ends.
    using End = void (*)(Place& place) noexcept;

    /// The calling thread's; null when it has none yet.
    static ThreadState* find() noexcept
    {
        const DWORD known = tls_index.load(std::memory_order_acquire);
        return known == TLS_OUT_OF_INDEXES ? nullptr : static_cast<ThreadState*>(TlsGetValue(known));
    }
    /// The same, made if need be; null when memory runs short.
    static ThreadState* find_or_make() noexcept
    {
        ThreadState* const known = find();
        return known ? known : make();
    }
    /// The thread ends, or no longer calls the library. What its places own goes first, and may still call the library.
    static void forget() noexcept;
    /// Gives the index back; only while the module goes.
    static void give_back_index() noexcept;

    struct {
        void* caught;
        unsigned uncaught;
    } exceptions;                                   ///< the language runtime's
    std::array<Reserve, most_reserves> reserves;    ///< for exceptions when memory runs short
    const FloatingControl* clients_control;         ///< the client's modes where they are not the library's
    std::array<Place, most_places> places;          ///< the values of the `PerThread`s

private:
    static ThreadState* make() noexcept;

    static std::atomic<DWORD> tls_index;
};

/// The number of a place in the state of every thread that no one else has.
std::size_t claim_place(ThreadState::End end = nullptr) noexcept;

/// A value that each thread has for itself. It is all zero bits until it is changed, and needs no destructor. For variables
/// that live as long as the module.
template <class Value>
    requires(sizeof(Value) <= sizeof(void*) && std::is_trivially_copyable_v<Value>)
class PerThread {
public:
    explicit PerThread(ThreadState::End end = nullptr) noexcept : place_{claim_place(end)} {}
    PerThread(const PerThread&) = delete;
    PerThread& operator=(const PerThread&) = delete;

    Value get() const noexcept
    {
        ThreadState* const state = ThreadState::find();
        return state ? in(*state) : Value{};
    }
    /// For a change. Raises 7.
    Value& here() const
    {
        ThreadState* const state = ThreadState::find_or_make();
        if (!state)
            throw std::bad_alloc{};
        return in(*state);
    }

private:
    Value& in(ThreadState& state) const noexcept { return *reinterpret_cast<Value*>(state.places[place_].bytes); }

    const std::size_t place_;
};

/// An object that each thread has for itself, from its first use to the end of the thread. For variables that live as long as
/// the module.
template <class Object>
class OwnedPerThread {
public:
    OwnedPerThread() noexcept : objects_{&destroy} {}

    /// Null when the thread has none yet.
    Object* find() const noexcept { return objects_.get(); }
    /// The same, made if need be. Raises 7.
    Object& here() const
    {
        Object*& object = objects_.here();
        if (!object)
            object = new Object;
        return *object;
    }

private:
    static void destroy(ThreadState::Place& place) noexcept { delete std::exchange(reinterpret_cast<Object*&>(place), nullptr); }

    const PerThread<Object*> objects_;
};

} // namespace automation
