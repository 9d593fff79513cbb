#include "automation/module.h"

#include "automation/thread_state.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <span>

extern "C" {
extern IMAGE_DOS_HEADER __ImageBase;

// The unwinder that is linked in.
struct dwarf_eh_bases {
    void* text;
    void* data;
    void* function;
};
const void* _Unwind_Find_FDE(void* address, dwarf_eh_bases* bases);
void __register_frame_info(const void* tables, void* entry);
}

namespace automation::module {
namespace {

std::atomic<long> holds{0};

std::span<const IMAGE_SECTION_HEADER> sections() noexcept
{
    const auto* base = reinterpret_cast<const std::byte*>(&__ImageBase);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + __ImageBase.e_lfanew);
    return {IMAGE_FIRST_SECTION(headers), headers->FileHeader.NumberOfSections};
}

/// Whether a section begins as unwind tables do, with the information that several functions share. Its name does not tell: it
/// is too long for the section's header, and where the file keeps it is not in memory.
bool holds_unwind_tables(const IMAGE_SECTION_HEADER& section) noexcept
{
    struct Start {
        std::uint32_t length;
        std::uint32_t id; // 0: what is shared
        std::uint8_t version;
        char augmentation;
    };
    constexpr DWORD constants = IMAGE_SCN_CNT_INITIALIZED_DATA | IMAGE_SCN_MEM_READ;
    constexpr DWORD others = IMAGE_SCN_MEM_WRITE | IMAGE_SCN_MEM_EXECUTE | IMAGE_SCN_MEM_DISCARDABLE;
    if ((section.Characteristics & (constants | others)) != constants || section.Misc.VirtualSize < sizeof(Start))
        return false;
    const auto& start = *reinterpret_cast<const Start*>(reinterpret_cast<const std::byte*>(&__ImageBase) + section.VirtualAddress);
    return start.id == 0 && start.length < section.Misc.VirtualSize && start.version == 1 && start.augmentation == 'z';
}

/// Whether an exception raised in this module finds its handler.
bool can_unwind() noexcept
{
    dwarf_eh_bases bases{};
    return _Unwind_Find_FDE(reinterpret_cast<void*>(&can_unwind), &bases) != nullptr;
}

/// Start-up code gives the unwind tables to the compiler's shared runtime where the process has loaded that. The unwinder here
/// looks in its own list only.
bool register_unwind_tables() noexcept
{
    if (can_unwind())
        return true;
    alignas(void*) static std::byte entry[64]; // the unwinder's, which needs 24 bytes
    for (const IMAGE_SECTION_HEADER& section : sections()) {
        if (holds_unwind_tables(section))
            __register_frame_info(reinterpret_cast<const std::byte*>(&__ImageBase) + section.VirtualAddress, entry);
    }
    return can_unwind();
}

/// The first exception takes memory for locks and for the sorted unwind tables, the first static variable of a function for a
/// lock, and both end the process when they can't have it. So they are met here, where there is enough.
bool make_runtime_ready() noexcept
{
    constexpr std::size_t enough = 1 << 18;
    void* const memory = std::malloc(enough);
    if (!memory)
        return false;
    std::free(memory);
    if (!register_unwind_tables())
        return false;
    [[maybe_unused]] static const DWORD now = GetTickCount();
    try {
        throw 0;
    } catch (int) {
        return true;
    }
}

/// Keeps the module loaded until the process ends.
bool pin() noexcept
{
    HMODULE module = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                              reinterpret_cast<LPCWSTR>(&__ImageBase), &module);
}

} // namespace

bool attach() noexcept
{
    if (ThreadState::find_or_make() && make_runtime_ready() && pin())
        return true;
    ThreadState::forget();
    ThreadState::give_back_index();
    return false;
}

HINSTANCE handle() noexcept
{
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring path()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(handle(), path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            throw std::bad_alloc{};
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring name()
{
    const std::wstring file = path();
    const std::size_t start = file.find_last_of(L"\\/") + 1;
    const std::size_t dot = file.rfind(L'.');
    return file.substr(start, dot == std::wstring::npos || dot < start ? dot : dot - start);
}

void hold() noexcept
{
    ++holds;
}

void let_go() noexcept
{
    --holds;
}

long held() noexcept
{
    return holds;
}

} // namespace automation::module
