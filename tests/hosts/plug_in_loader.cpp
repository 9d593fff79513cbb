#include <gtest/gtest.h>

#include <windows.h>

namespace {

/// Loads the plug-in before anything of the library under test.
class PlugIn : public testing::Environment {
    void SetUp() override
    {
        const HMODULE plug_in = LoadLibraryW(L"plug_in.dll");
        ASSERT_TRUE(plug_in);
        const FARPROC entry = GetProcAddress(plug_in, "catches_exceptions");
        ASSERT_TRUE(entry);
        ASSERT_TRUE(reinterpret_cast<bool (*)()>(reinterpret_cast<void*>(entry))());
    }
};

[[maybe_unused]] const auto* const plug_in = testing::AddGlobalTestEnvironment(new PlugIn);

} // namespace
