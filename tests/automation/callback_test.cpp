#include "automation/ansi_call.h"
#include "automation/handle.h"
#include "automation/specimen.h"

using automation::answer_callback;
using automation::KernelHandle;
using automation::Ref;

TEST(Callback, LetsNothingOutAndKeepsItsObject)
{
    client::Apartment apartment;
    auto object = automation::make<Specimen>();
    Specimen* const raw = object.get();
    const auto last = [&](long n) {
        object = nullptr; // the client lets go of it in the middle
        return raw->Twice(static_cast<short>(n)) == 2 * n ? 1L : 0L;
    };
    EXPECT_EQ(answer_callback(Ref{raw}, 0L, [&] { return last(21); }), 1L);
    EXPECT_EQ(automation::module::held(), 0);
    EXPECT_EQ(answer_callback(Ref<Specimen>{}, -1L, []() -> long { throw automation::Error{5, L"refused"}; }), -1L);
    EXPECT_EQ(answer_callback(Ref<Specimen>{}, -1L, []() -> long { throw 5; }), -1L);
}

TEST(Handle, IsGivenBackOnce)
{
    const auto is_open = [](HANDLE handle) {
        DWORD flags = 0;
        return GetHandleInformation(handle, &flags) != FALSE;
    };
    const HANDLE first = CreateEventW(nullptr, FALSE, FALSE, nullptr), second = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    KernelHandle owner{first};
    KernelHandle moved = std::move(owner);
    EXPECT_FALSE(owner);
    EXPECT_TRUE(is_open(first));
    moved = KernelHandle{second};
    EXPECT_FALSE(is_open(first));
    EXPECT_EQ(moved.release(), second);
    moved.close();
    EXPECT_TRUE(is_open(second)) << "it was released";
    *moved.put() = second;
    moved.put();
    EXPECT_FALSE(is_open(second));
    *moved.put() = nullptr;
}

TEST(AnsiCall, TakesWhatTheFunctionSaysItWrote)
{
    const auto written = [](const char* text, int told) {
        return automation::ansi_result<4>([&](char* buffer, unsigned long size) {
            std::copy_n(text, std::min<std::size_t>(size, 4), buffer);
            return told;
        });
    };
    EXPECT_EQ(written("abcd", 3), L"abc");
    EXPECT_EQ(written("abcd", 40), L"abcd") << "more than there is room for";
    EXPECT_STREQ(automation::AnsiText{L"text"}, "text");
    EXPECT_STREQ(automation::AnsiText{L""}, "");
    EXPECT_EQ(static_cast<const char*>(automation::AnsiText{automation::view(nullptr)}), nullptr);
}
