#include "automation/module.h"

#include <atomic>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace automation::module {
namespace {

std::atomic<long> holds{0};

} // namespace

HINSTANCE handle() noexcept
{
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring path()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(handle(), path.data(), static_cast<DWORD>(path.size()));
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
