#include "automation/border.h"

#include <atomic>
#include <cstring>

namespace {

/// What delayed_import.inc lays out for each function.
struct Import {
    std::atomic<FARPROC> function;
    const char* library;
    const char* name;
};
static_assert(sizeof(Import) == 3 * sizeof(void*));

/// One of the system's own, whatever lies in the program's folder or in the current one. It stays loaded: its functions are called
/// without asking for it again.
HMODULE load(const char* library)
{
    const HMODULE loaded = LoadLibraryExA(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const bool is_old_system = !loaded && GetLastError() == ERROR_INVALID_PARAMETER; // a Windows 7 without updates
    return is_old_system ? LoadLibraryA(library) : loaded;
}

extern "C" Import first_import[], end_of_imports[];

/// Finds all that is imported from the same library: who has called one of its functions may call the others where nothing can
/// be raised. Raises what the platform says about it when there is no such library or function.
FARPROC find(const Import& import)
{
    const HMODULE library = load(import.library);
    const FARPROC function = library ? GetProcAddress(library, import.name) : nullptr;
    if (!function)
        automation::check(HRESULT_FROM_WIN32(GetLastError()));
    for (Import* other = first_import; other != end_of_imports; ++other)
        if (!std::strcmp(other->library, import.library))
            if (const FARPROC found = GetProcAddress(library, other->name))
                other->function = found;
    return function;
}

} // namespace

/// Called by an import's first caller, or by several at once: they find the same function.
extern "C" FARPROC load_import(const Import& import)
{
    const DWORD last_error = GetLastError();
    const FARPROC function = find(import);
    SetLastError(last_error);
    return function;
}
