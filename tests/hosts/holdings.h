#pragma once

#include <windows.h>

#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// What this process holds, as it can be counted while nothing else runs in it. Where the platform has no answer, as Wine has
/// none, the things themselves are counted.
struct Holdings {
    std::size_t blocks = 0, bytes = 0; ///< of all heaps
    std::size_t handles = 0;           ///< of files, threads, events and the like
    std::size_t drawing_objects = 0;
    std::size_t windows = 0;           ///< where the platform answers, with menus, hooks and the like
    std::size_t mappings = 0;          ///< views of files and of shared memory, and images
    std::size_t thread_places = 0;     ///< indexes of thread storage
    std::size_t atoms = 0;
    std::size_t committed = 0;         ///< bytes of the address space
    std::size_t resident = 0;          ///< bytes, also of what lies outside the address space that the process sees

    /// The memory in heaps alone, which takes less time than all.
    static Holdings of_heaps()
    {
        Holdings all;
        all.count_heaps();
        return all;
    }
    static Holdings now()
    {
        Holdings all = of_heaps();
        all.count_address_space();
        const DWORD drawing = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
        DWORD handles = 0;
        GetProcessHandleCount(GetCurrentProcess(), &handles);
        all.handles = handles != 0 ? handles : handles_found();
        all.drawing_objects = drawing != 0 ? drawing : drawing_objects_found();
        all.windows = user != 0 ? user : windows_found();
        all.thread_places = thread_places_taken();
        all.atoms = atoms_found();
        PROCESS_MEMORY_COUNTERS memory{};
        GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
        all.resident = memory.WorkingSetSize;
        return all;
    }

private:
    void count_heaps()
    {
        HANDLE heaps[64];
        const DWORD count = std::min(GetProcessHeaps(64, heaps), 64ul);
        for (DWORD i = 0; i < count; ++i) {
            PROCESS_HEAP_ENTRY entry{};
            HeapLock(heaps[i]);
            while (HeapWalk(heaps[i], &entry))
                if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
                    ++blocks;
                    bytes += entry.cbData;
                }
            HeapUnlock(heaps[i]);
        }
    }
    void count_address_space()
    {
        MEMORY_BASIC_INFORMATION region{};
        const void* last = nullptr;
        for (ULONG_PTR place = 0; VirtualQuery(reinterpret_cast<void*>(place), &region, sizeof region);) {
            committed += region.State == MEM_COMMIT ? region.RegionSize : 0;
            mappings += (region.Type == MEM_MAPPED || region.Type == MEM_IMAGE) && region.AllocationBase != last;
            last = region.AllocationBase;
            const ULONG_PTR next = reinterpret_cast<ULONG_PTR>(region.BaseAddress) + region.RegionSize;
            if (next <= place)
                break;
            place = next;
        }
    }

    /// Those of this process in the list of all that the system has.
    static std::size_t handles_found()
    {
        struct Entry {
            ULONG process;
            std::uint8_t type, flags;
            std::uint16_t value;
            void* object;
            ULONG access;
        };
        struct List {
            ULONG count;
            Entry entries[0x8000];
        };
        static List list;
        if (NtQuerySystemInformation(SystemHandleInformation, &list, sizeof list, nullptr) != 0)
            return 0;
        const auto is_own = [](const Entry& entry) { return entry.process == GetCurrentProcessId(); };
        return static_cast<std::size_t>(std::count_if(list.entries, list.entries + list.count, is_own));
    }
    /// They follow each other, but for those that were given back.
    static std::size_t atoms_found()
    {
        std::size_t count = 0;
        wchar_t name[256];
        for (UINT atom = 0xC000, misses = 0; misses < 64; ++atom) {
            const bool is_taken = GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256) != 0;
            count += is_taken;
            misses = is_taken ? 0 : misses + 1;
        }
        return count;
    }
    /// In the table of all drawing objects of the process, as Wine keeps it.
    static std::size_t drawing_objects_found()
    {
        struct Entry {
            std::uint64_t object;
            std::uint32_t owner;
            std::uint16_t generation;
            std::uint8_t type;
            std::uint8_t flags;
            std::uint64_t more;
        };
        constexpr std::size_t place_of_table = 0x94, length = 0x4000;
        PROCESS_BASIC_INFORMATION process{};
        const Entry* table = nullptr;
        if (NtQueryInformationProcess(GetCurrentProcess(), ProcessBasicInformation, &process, sizeof process, nullptr) == 0)
            std::memcpy(&table, reinterpret_cast<const std::byte*>(process.PebBaseAddress) + place_of_table, sizeof table);
        const auto is_taken = [](const Entry& entry) { return entry.type != 0; };
        return table ? static_cast<std::size_t>(std::count_if(table, table + length, is_taken)) : 0;
    }
    static WINBOOL CALLBACK count_own(HWND window, LPARAM count)
    {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        *reinterpret_cast<std::size_t*>(count) += process == GetCurrentProcessId();
        return TRUE;
    }
    static std::size_t windows_found()
    {
        std::size_t count = 0;
        const auto total = reinterpret_cast<LPARAM>(&count);
        EnumChildWindows(GetDesktopWindow(), &count_own, total);
        for (HWND window = nullptr; (window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
            count_own(window, total);
        return count;
    }
    /// Those that can't be had any more.
    static std::size_t thread_places_taken()
    {
        constexpr std::size_t most = TLS_MINIMUM_AVAILABLE + 1024;
        DWORD taken[most];
        std::size_t free = 0;
        while (free < most && (taken[free] = TlsAlloc()) != TLS_OUT_OF_INDEXES)
            ++free;
        std::for_each(taken, taken + free, &TlsFree);
        return most - free;
    }
};
