#include "system/temporary_prefix.h"

#include <gtest/gtest.h>

TEST(TemporaryPrefix, HasThreeCharacters)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[]{
        {L"qvObjects", L"qvO"}, {L"abc", L"abc"}, {L"ab", L"$ab"}, {L"", L"$$$"}, {L"abcd.ext", L"abc"}, {L"a.bcd.e", L"$$a"}};
    for (const auto& [module, prefix] : cases)
        EXPECT_EQ(processes::temporary_prefix(module), prefix);
}
