#pragma once

#include "automation/thread_state.h"

#include <xmmintrin.h>

#include <cstdint>

/// The modes of the processor's two floating-point units. Programs differ in them: some compilers' ask for exceptions of the
/// processor, others calculate on the x87 unit with more bits than a Double has.
namespace automation {

/// The control words of both units, those of SSE with the conditions met so far.
struct FloatingControl {
    std::uint16_t x87;
    std::uint32_t sse;

    static FloatingControl now() noexcept
    {
        FloatingControl control;
        asm volatile("fnstcw %0" : "=m"(control.x87));
        control.sse = _mm_getcsr();
        return control;
    }
    /// Makes this the modes, where `former` is now. Conditions that were met under one of them raise nothing under the other.
    void replace(const FloatingControl& former) const noexcept
    {
        if ((x87 & former.x87 & no_exceptions) != no_exceptions)
            asm volatile("fnclex");
        if (x87 != former.x87)
            asm volatile("fldcw %0" : : "m"(x87));
        if (sse != former.sse)
            _mm_setcsr(sse);
    }
    bool calculates_like(const FloatingControl& other) const noexcept
    {
        return ((x87 ^ other.x87) & x87_modes) == 0 && ((sse ^ other.sse) & sse_modes) == 0;
    }

private:
    static constexpr std::uint16_t no_exceptions = 0x3F;
    static constexpr std::uint16_t x87_modes = 0xF3F; ///< exceptions, precision, rounding
    static constexpr std::uint32_t sse_modes = 0xFFC0; ///< exceptions, rounding, what becomes of the smallest numbers
};

/// The library's own modes: no exceptions, 53 bits, rounding to the nearest.
inline constexpr FloatingControl quiet_control{0x27F, 0x1F80};

/// While this lives, the thread calculates in the library's own modes; those of the client are back afterwards.
class CalculatesQuietly {
public:
    explicit CalculatesQuietly(ThreadState& thread) noexcept
        : thread_{thread}, clients_{FloatingControl::now()}, differs_{!clients_.calculates_like(quiet_control)}
    {
        if (differs_)
            enter();
    }
    ~CalculatesQuietly()
    {
        if (differs_)
            leave();
    }
    CalculatesQuietly(const CalculatesQuietly&) = delete;
    CalculatesQuietly& operator=(const CalculatesQuietly&) = delete;

private:
    void enter() noexcept;
    void leave() noexcept;

    ThreadState& thread_;
    const FloatingControl clients_;
    const bool differs_;
    const FloatingControl* outer_ = nullptr;
};

/// While this lives, the thread calculates in the modes in which the client called: for calls into the client's code.
class CalculatesAsClient {
public:
    CalculatesAsClient() noexcept;
    ~CalculatesAsClient();
    CalculatesAsClient(const CalculatesAsClient&) = delete;
    CalculatesAsClient& operator=(const CalculatesAsClient&) = delete;

private:
    const FloatingControl* clients_;
};

} // namespace automation
