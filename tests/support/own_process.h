#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <utility>

namespace client {

/// This program, started again for the tests that a filter names.
class OwnProcess {
public:
    explicit OwnProcess(const std::wstring& filter)
    {
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        std::wstring line = L"\"" + std::wstring{program} + L"\" --gtest_also_run_disabled_tests --gtest_brief=1 --gtest_filter=" + filter;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        EXPECT_TRUE(CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process_));
    }
    OwnProcess(OwnProcess&& other) noexcept : process_{std::exchange(other.process_, {})} {}
    ~OwnProcess()
    {
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }

    DWORD id() const { return process_.dwProcessId; }

    /// After its end.
    DWORD exit_code() const
    {
        DWORD code = 1;
        EXPECT_EQ(WaitForSingleObject(process_.hProcess, 60'000), WAIT_OBJECT_0);
        GetExitCodeProcess(process_.hProcess, &code);
        return code;
    }

private:
    PROCESS_INFORMATION process_{};
};

} // namespace client
