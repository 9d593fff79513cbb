// Functions that are loaded when they are first called.

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

extern "C" __declspec(dllimport) int WINAPI InMissingLibrary(int, int);
extern "C" __declspec(dllimport) int WINAPI MissingInLibrary(int);

TEST(DelayedImports, FailureToLoadIsAnErrorEveryTime)
{
    // The arguments stay on the stack when the error leaves: what the caller keeps there must be found again.
    for (int i = 1; i <= 3; ++i) {
        const std::wstring kept(100, static_cast<wchar_t>(L'0' + i));
        EXPECT_EQ(error_of([&] { InMissingLibrary(i, 2); }), HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
        EXPECT_EQ(error_of([&] { MissingInLibrary(i); }), HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND));
        EXPECT_EQ(kept, std::wstring(100, static_cast<wchar_t>(L'0' + i)));
    }
}
