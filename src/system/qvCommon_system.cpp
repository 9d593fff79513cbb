#include "system/qvCommon_system.h"

#include "automation/ansi_call.h"
#include "automation/error.h"
#include "automation/floating_control.h"
#include "automation/handle.h"
#include "automation/message_pump.h"
#include "files/folder_search.h"
#include "files/path_names.h"
#include "messages/MErrors.h"

using automation::AnsiText;
using automation::CalculatesAsClient;
using automation::KernelHandle;

namespace {

KernelHandle open_process(long identifier)
{
    constexpr DWORD all_access = 0x1F0FFF; // that of systems before Windows Vista, which later ones grant too
    return KernelHandle{OpenProcess(all_access, FALSE, static_cast<DWORD>(identifier))};
}

/// 0 for no process.
DWORD exit_code(const KernelHandle& process)
{
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    return code;
}

/// The thread handles no messages.
void wait_until_ended(const KernelHandle& process)
{
    const DWORD result = WaitForSingleObject(process.get(), INFINITE);
    if (result != WAIT_FAILED)
        return;
    const auto reason = static_cast<std::int32_t>(GetLastError());
    throw automation::Error{static_cast<std::int32_t>(result), MErrors::GetSystemErrorText(reason)};
}

/// The thread handles its messages. The handle says whether the process has ended: its exit code may be that of one which runs.
void wait_with_messages(const KernelHandle& process)
{
    constexpr DWORD pause = 5; // milliseconds
    automation::MessagePump messages;
    while (WaitForSingleObject(process.get(), pause) == WAIT_TIMEOUT)
        messages.handle();
}

/// While this lives, another folder may be the current one. Raises 7.
class CurrentFolder {
public:
    CurrentFolder()
    {
        DWORD length = 0;
        while ((length = GetCurrentDirectoryW(static_cast<DWORD>(former_.size()), former_.data())) > former_.size())
            former_.resize(length);
        if (length == 0)
            throw automation::Error{automation::Runtime::OutOfMemory};
        former_.resize(length);
    }
    ~CurrentFolder() { SetCurrentDirectoryW(former_.c_str()); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    std::wstring former_;
};

/// Makes the folder of a library the current one: there the system finds others that it needs. A library that is only named is
/// one of the system's or on the path: what lies in the folder that happens to be current was not asked for.
void go_to_library(std::wstring_view library)
{
    if (library.find_first_of(L"\\/:") == library.npos) {
        wchar_t system[MAX_PATH] = L"";
        GetSystemDirectoryW(system, MAX_PATH);
        SetCurrentDirectoryW(system);
    } else if (const std::wstring folder{files::GetPath(library)}; !folder.empty() && files::finds(folder, files::Folders)) {
        SetCurrentDirectoryW(folder.c_str());
    }
}

/// The system shows no message of a library that it can't load.
class NoLoadMessages {
public:
    NoLoadMessages() noexcept { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &former_); }
    ~NoLoadMessages() { SetThreadErrorMode(former_, nullptr); }
    NoLoadMessages(const NoLoadMessages&) = delete;
    NoLoadMessages& operator=(const NoLoadMessages&) = delete;

private:
    DWORD former_ = 0;
};

using LibraryHandle = automation::Handle<automation::NullMeansNone<HMODULE, &FreeLibrary>>;

} // namespace

long qvCommon_system::WaitOnProgram(long idProg, bool WaitDead)
{
    const KernelHandle process = open_process(idProg);
    WaitDead ? wait_until_ended(process) : wait_with_messages(process);
    return static_cast<long>(exit_code(process));
}

long qvCommon_system::TerminateProgram(long& hProg)
{
    constexpr int ended_by_us = -24321;
    KernelHandle process = open_process(hProg);
    if (exit_code(process) == STILL_ACTIVE)
        TerminateProcess(process.get(), static_cast<UINT>(ended_by_us));
    // It stays open: the identifier keeps meaning this process, so that a wait for it finds how it ended.
    process.release();
    return 0;
}

bool qvCommon_system::CheckLibFunction(std::wstring_view sLib, std::wstring_view sFkt)
{
    const CurrentFolder former;
    const AnsiText path{sLib}, function{sFkt};
    go_to_library(sLib);
    const NoLoadMessages quiet;
    const CalculatesAsClient as_client; // the library's own code runs as it comes and goes
    const LibraryHandle library{LoadLibraryA(path)};
    return library && function && GetProcAddress(library.get(), function);
}
