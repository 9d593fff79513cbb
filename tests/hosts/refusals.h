#pragma once

#include <windows.h>

#include <direct.h>
#include <objbase.h>
#include <objidl.h>
#include <oleauto.h>
#include <olectl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// What the system refuses to the library: its calls go through the functions here, by way of its tables of imports.
namespace refusals {

enum class Kind { Memory, System, Never };

/// Which of the calls of one thread are refused.
struct Plan {
    Kind kind;
    int first; ///< from 1
    bool lasts = false;
};

struct State {
    Plan plan{};
    DWORD thread = 0; ///< 0 while nothing is refused
    int asked = 0;
    std::string_view last; ///< the function that was refused last
    std::atomic<long> held{0}; ///< blocks of memory and handles that were taken and not given back
};
inline State state;

/// While this lives, this thread's calls are refused as planned.
class Active {
public:
    explicit Active(const Plan& plan)
    {
        state.plan = plan;
        state.asked = 0;
        state.last = {};
        state.thread = GetCurrentThreadId();
    }
    ~Active() { state.thread = 0; }
    Active(const Active&) = delete;
    Active& operator=(const Active&) = delete;
};
/// While this lives, nothing is refused.
class Paused {
public:
    Paused() : thread_{std::exchange(state.thread, 0)} {}
    ~Paused() { state.thread = thread_; }
    Paused(const Paused&) = delete;
    Paused& operator=(const Paused&) = delete;

private:
    DWORD thread_;
};

inline bool refused_one()
{
    return state.asked >= state.plan.first;
}

inline bool refuses(Kind kind, std::string_view name)
{
    if (state.thread != GetCurrentThreadId() || state.plan.kind != kind)
        return false;
    ++state.asked;
    const bool refused = state.plan.lasts ? state.asked >= state.plan.first : state.asked == state.plan.first;
    if (refused)
        state.last = name;
    return refused;
}

template <auto function>
constexpr std::string_view name_of()
{
    constexpr std::string_view told = __PRETTY_FUNCTION__, label = "function = ";
    constexpr std::size_t start = told.find(label) + label.size();
    return told.substr(start, told.find_first_of(";]", start) - start);
}

enum class Handles { Same, Taken, GivenBack };

template <class Result>
bool succeeded(Result result)
{
    if constexpr (std::is_pointer_v<Result>)
        return result && result != reinterpret_cast<Result>(LONG_PTR{-1});
    else
        return std::is_same_v<Result, BOOL> ? result != 0 : result == 0; // or else a status
}

/// A function of the platform as the library calls it. Where it is refused, it answers this and leaves that error.
template <auto function, Kind kind, auto refusal, DWORD error, Handles handles>
struct Diverted;
template <class Result, class... Arguments, Result(WINAPI* function)(Arguments...), Kind kind, auto refusal, DWORD error,
          Handles handles>
struct Diverted<function, kind, refusal, error, handles> {
    static Result WINAPI call(Arguments... arguments)
    {
        if (refuses(kind, name_of<function>())) {
            SetLastError(error);
            if constexpr (std::is_pointer_v<Result>)
                return reinterpret_cast<Result>(LONG_PTR{refusal});
            else
                return static_cast<Result>(refusal);
        }
        const Result result = function(arguments...);
        if (handles != Handles::Same && succeeded(result))
            state.held += handles == Handles::Taken ? 1 : -1;
        return result;
    }
};

struct Import {
    std::string_view name;
    const void* function;
};

inline void* counted(void* memory)
{
    state.held += memory != nullptr;
    return memory;
}
inline void* allocate(std::size_t size)
{
    return refuses(Kind::Memory, "malloc") ? nullptr : counted(std::malloc(size));
}
inline void* allocate_zeros(std::size_t count, std::size_t size)
{
    return refuses(Kind::Memory, "calloc") ? nullptr : counted(std::calloc(count, size));
}
inline void* allocate_anew(void* memory, std::size_t size)
{
    if (refuses(Kind::Memory, "realloc"))
        return nullptr;
    void* const moved = std::realloc(memory, size);
    return memory ? moved : counted(moved);
}
inline void give_back(void* memory)
{
    state.held -= memory != nullptr;
    std::free(memory);
}
inline int change_folder(const wchar_t* folder)
{
    if (!refuses(Kind::System, "_wchdir"))
        return _wchdir(folder);
    _doserrno = ERROR_ACCESS_DENIED;
    return -1;
}
FARPROC WINAPI find_function(HMODULE library, const char* name);

/// Adds functions that have the same answer and error where they are refused.
template <auto refusal, DWORD error, Kind kind, Handles handles, auto... functions>
void add(std::vector<Import>& imports)
{
    (imports.push_back({name_of<functions>(),
                        reinterpret_cast<const void*>(&Diverted<functions, kind, refusal, error, handles>::call)}), ...);
}

inline std::vector<Import> made_imports()
{
    using enum Kind;
    using enum Handles;
    const auto own = [](std::string_view name, auto* function) { return Import{name, reinterpret_cast<const void*>(function)}; };
    std::vector<Import> all{own("malloc", &allocate), own("calloc", &allocate_zeros), own("realloc", &allocate_anew),
                            own("free", &give_back), own("_wchdir", &change_folder), own("GetProcAddress", &find_function)};
    constexpr LONG no_memory = E_OUTOFMEMORY, no_library = TYPE_E_REGISTRYACCESS;
    add<0, 0, Memory, Same, SysAllocStringLen, SafeArrayCreate, TlsSetValue>(all);
    add<no_memory, 0, Memory, Same, SafeArrayCopy, SafeArrayRedim, CreateErrorInfo, LoadTypeLibEx, GetRecordInfoFromTypeInfo,
        VariantCopyInd, VariantChangeTypeEx, VarBstrFromR8, VarAdd, VarMul>(all);
    add<no_memory, 0, System, Same, CoRegisterInitializeSpy, OleInitialize, OleCreateFontIndirect,
        SHGetSpecialFolderLocation>(all);

    add<-1, ERROR_ACCESS_DENIED, System, Taken, CreateFileW, FindFirstFileW>(all);
    add<0, ERROR_NOT_ENOUGH_MEMORY, System, Taken, OpenProcess, CreateFileMappingA, CreateBitmap, CreateDCW,
        CreateFontIndirectW, CreateICW, CreatePatternBrush, SetEnhMetaFileBits, CreateWindowExA, GetDC>(all);
    add<ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED, System, Taken, RegCreateKeyExW, RegOpenKeyExW>(all);
    add<0, 0, Never, GivenBack, CloseHandle, FindClose, RegCloseKey, DeleteDC, DeleteEnhMetaFile, DeleteObject, DestroyWindow,
        ReleaseDC>(all);

    add<0, ERROR_ACCESS_DENIED, System, Same, GetFileInformationByHandle, SetFileInformationByHandle,
        GetVolumeInformationByHandleW, MoveFileExW, DeleteFileW, CreateDirectoryW, FindNextFileW, GetFileAttributesExW,
        GetShortPathNameW, SetCurrentDirectoryW, GetTempFileNameA, GetPrivateProfileSectionA, GetPrivateProfileSectionNamesA,
        GetPrivateProfileStringA, WritePrivateProfileStringA, GetExitCodeProcess, TerminateProcess, VirtualQuery,
        SetWindowLongA>(all);
    add<-1, ERROR_ACCESS_DENIED, System, Same, GetFileAttributesW, WaitForSingleObject>(all);
    add<0, ERROR_CRC, System, Same, ReadFile, SetFilePointerEx, GetFileSizeEx, GetFileType>(all);
    add<0, ERROR_DISK_FULL, System, Same, WriteFile, FlushFileBuffers, SetEndOfFile>(all);
    add<0, ERROR_UNABLE_TO_REMOVE_REPLACED, System, Same, ReplaceFileW>(all);
    add<0, ERROR_NOT_ENOUGH_MEMORY, System, Same, GetFinalPathNameByHandleW, GetFullPathNameW, GetCurrentDirectoryW,
        GetTempPathA, GetSystemDirectoryA, GetWindowsDirectoryA, MapViewOfFile, LoadLibraryA, GetModuleFileNameW,
        GetComputerNameA, FormatMessageA, FormatMessageW, GetDateFormatW, GetTimeFormatW, EnumFontFamiliesExW,
        GetTextExtentPoint32W, PlayEnhMetaFile, SaveDC, SetMapMode, SHGetPathFromIDListW, CreateWindowExW, DrawTextW,
        EnumWindows, GetMonitorInfoW, GetWindowTextA, MessageBoxW, SetPropA, SetTimer, SystemParametersInfoW>(all);
    add<-1, ERROR_NOT_ENOUGH_MEMORY, System, Same, DialogBoxIndirectParamW>(all);
    add<ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED, System, Same, RegDeleteKeyW, RegDeleteValueW, RegQueryInfoKeyW,
        RegQueryValueExW, RegSetValueExW>(all);
    add<no_library, ERROR_ACCESS_DENIED, System, Same, RegisterTypeLib, UnRegisterTypeLib>(all);
    return all;
}

inline const Import* find_import(std::string_view name)
{
    static const std::vector<Import> imports = made_imports();
    const auto found = std::ranges::find(imports, name, &Import::name);
    return found == imports.end() ? nullptr : &*found;
}

inline FARPROC WINAPI find_function(HMODULE library, const char* name)
{
    const FARPROC found = GetProcAddress(library, name);
    const Import* const import = found ? find_import(name) : nullptr;
    return import ? reinterpret_cast<FARPROC>(reinterpret_cast<DWORD>(import->function)) : found;
}

/// The imports of a module that no one has called yet.
class Imports {
public:
    explicit Imports(HMODULE module) : base_{reinterpret_cast<std::byte*>(module)}
    {
        const auto& directory = headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress); library->Name; ++library)
            divert(at<IMAGE_THUNK_DATA>(library->OriginalFirstThunk), at<IMAGE_THUNK_DATA>(library->FirstThunk));
        find_delayed();
    }
    /// Forgets what was found of the libraries that are loaded when they are first called.
    void forget_delayed() const
    {
        for (const Delayed& import : delayed_)
            *import.place = import.finder;
    }
    std::size_t delayed() const { return delayed_.size(); }

private:
    /// Where the address of a function stands, and that of what finds it.
    struct Delayed {
        DWORD* place;
        DWORD finder;
    };

    template <class Data>
    Data* at(DWORD offset) const { return reinterpret_cast<Data*>(base_ + offset); }
    const IMAGE_NT_HEADERS& headers() const
    {
        return *at<IMAGE_NT_HEADERS>(static_cast<DWORD>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }

    void divert(const IMAGE_THUNK_DATA* name, IMAGE_THUNK_DATA* place) const
    {
        for (; name->u1.AddressOfData; ++name, ++place)
            if (const Import* const import = find_import(at<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name)) {
                DWORD former = 0;
                VirtualProtect(place, sizeof *place, PAGE_READWRITE, &former);
                place->u1.Function = reinterpret_cast<DWORD>(import->function);
                VirtualProtect(place, sizeof *place, former, &former);
            }
    }
    /// Each is three words of the second section: code in the first, and two names in the third, a library's and a function's.
    void find_delayed()
    {
        const IMAGE_SECTION_HEADER* const sections = IMAGE_FIRST_SECTION(&headers());
        const auto is_in = [&](int section, DWORD address) {
            const DWORD offset = address - reinterpret_cast<DWORD>(base_) - sections[section].VirtualAddress;
            return offset < sections[section].Misc.VirtualSize;
        };
        auto* const words = at<DWORD>(sections[1].VirtualAddress);
        const std::size_t count = sections[1].Misc.VirtualSize / sizeof(DWORD);
        for (std::size_t i = 0; i + 2 < count; ++i)
            if (is_in(0, words[i]) && is_in(2, words[i + 1]) && is_in(2, words[i + 2]) && names_library(words[i + 1]))
                delayed_.push_back({&words[i], words[i]});
    }
    static bool names_library(DWORD address)
    {
        constexpr std::string_view names[]{"comctl32", "gdi32", "shell32", "shlwapi", "user32", "winspool.drv"};
        const auto* const text = reinterpret_cast<const char*>(address);
        return std::ranges::find(names, std::string_view{text, strnlen(text, 16)}) != std::end(names);
    }

    std::byte* base_;
    std::vector<Delayed> delayed_;
};

/// Counts the memory of automation, its texts and arrays.
class AutomationMemory final : public IMallocSpy {
public:
    AutomationMemory()
    {
        const auto automation = GetModuleHandleW(L"oleaut32.dll");
        const FARPROC keep_nothing = GetProcAddress(automation, "SetOaNoCache"); // freed texts, to be used again
        if (keep_nothing)
            reinterpret_cast<void(WINAPI*)()>(reinterpret_cast<void*>(keep_nothing))();
        CoRegisterMallocSpy(this);
    }
    ~AutomationMemory() { CoRevokeMallocSpy(); }
    AutomationMemory(const AutomationMemory&) = delete;
    AutomationMemory& operator=(const AutomationMemory&) = delete;

    HRESULT WINAPI QueryInterface(REFIID iid, void** object) override
    {
        *object = iid == IID_IUnknown || iid == IID_IMallocSpy ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG WINAPI AddRef() override { return 2; }
    ULONG WINAPI Release() override { return 1; }
    SIZE_T WINAPI PreAlloc(SIZE_T size) override { return size; }
    void* WINAPI PostAlloc(void* memory) override { return counted(memory); }
    void* WINAPI PreFree(void* memory, BOOL) override
    {
        state.held -= memory != nullptr;
        return memory;
    }
    void WINAPI PostFree(BOOL) override {}
    SIZE_T WINAPI PreRealloc(void* memory, SIZE_T size, void** given, BOOL) override
    {
        *given = memory;
        is_new_ = !memory;
        return size;
    }
    void* WINAPI PostRealloc(void* memory, BOOL) override { return is_new_ ? counted(memory) : memory; }
    void* WINAPI PreGetSize(void* memory, BOOL) override { return memory; }
    SIZE_T WINAPI PostGetSize(SIZE_T size, BOOL) override { return size; }
    void* WINAPI PreDidAlloc(void* memory, BOOL) override { return memory; }
    int WINAPI PostDidAlloc(void*, BOOL, int answer) override { return answer; }
    void WINAPI PreHeapMinimize() override {}
    void WINAPI PostHeapMinimize() override {}

private:
    bool is_new_ = false;
};

} // namespace refusals
