#include "automation/stdcall.h"

namespace automation {

// The compiler can't make a call whose arguments are counted at run time, hence assembly: the words are pushed from the
// last to the first, and the function called takes them off again.
__attribute__((naked)) HRESULT call_stdcall(const void*, const std::uint32_t*, std::size_t) noexcept
{
    asm("push %ebp\n\t"
        "mov %esp, %ebp\n\t"
        "mov 12(%ebp), %edx\n\t"
        "mov 16(%ebp), %ecx\n\t"
        "jmp 2f\n"
        "1:\n\t"
        "push (%edx,%ecx,4)\n"
        "2:\n\t"
        "sub $1, %ecx\n\t"
        "jns 1b\n\t"
        "call *8(%ebp)\n\t"
        "mov %ebp, %esp\n\t"
        "pop %ebp\n\t"
        "ret");
}

} // namespace automation
