// Functions that are loaded when they are first called.

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

extern "C" __declspec(dllimport) int WINAPI InMissingLibrary(int, int);
extern "C" __declspec(dllimport) int WINAPI MissingInLibrary(int);
extern "C" __declspec(dllimport) int WINAPI InPlantedLibrary();

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

TEST(DelayedImports, ComeFromTheSystemAlone)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring planted{program};
    planted.replace(planted.rfind(L'\\') + 1, planted.npos, L"planted-library.dll");
    ASSERT_TRUE(CopyFileW(program, planted.c_str(), FALSE));
    const HMODULE found = LoadLibraryExW(L"planted-library", nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EXPECT_TRUE(found) << "beside the program";
    FreeLibrary(found);
    EXPECT_EQ(error_of([] { InPlantedLibrary(); }), HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
    DeleteFileW(planted.c_str());
}
