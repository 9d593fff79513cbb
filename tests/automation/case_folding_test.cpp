#include "automation/case_folding.h"

#include <gtest/gtest.h>

#include <set>

using namespace automation;

TEST(CaseFolding, LettersMeetInUpperCaseAndNothingElseDoes)
{
    EXPECT_TRUE(equal_folded(L"Anf\u00fc", L"ANF\u00dc"));
    EXPECT_TRUE(equal_folded(L"\u00ff", L"\u0178"));
    EXPECT_FALSE(equal_folded(L"\u00f7", L"\u00d7")) << "the signs for division and product are no letters";
    EXPECT_FALSE(equal_folded(L"@[`{", L"`{@["));
    EXPECT_FALSE(equal_folded(L"a", L"a "));
    EXPECT_TRUE(equal_folded(std::wstring_view{L"a\0B", 3}, std::wstring_view{L"A\0b", 3}));
}

TEST(CaseFolding, EqualTextsHaveEqualHashes)
{
    for (unsigned one = 1; one < 0x250; ++one)
        for (unsigned other = 1; other < 0x250; ++other) {
            const wchar_t a[]{static_cast<wchar_t>(one), 0}, b[]{static_cast<wchar_t>(other), 0};
            if (equal_folded(a, b)) {
                ASSERT_EQ(hash_folded(a), hash_folded(b)) << one << " and " << other;
                ASSERT_EQ(table_hash(a), table_hash(b)) << one << " and " << other;
            }
        }
}

TEST(CaseFolding, NamesThatWereMadeToMeetDoNotMeetInTables)
{
    std::set<std::uint32_t> known, in_tables;
    for (const wchar_t* name : {L"!<@T!!!&E", L"S)+1!!!,*", L"TX/L!!!16", L".`I'!!!8,", L"'#4Q!!!8?", L"+VD+!!!@J", L"*6Q-!!!A#",
                                L"U@KQ!!!EH"}) {
        known.insert(hash_folded(name));
        in_tables.insert(table_hash(name));
    }
    EXPECT_EQ(known.size(), 1u);
    EXPECT_GT(in_tables.size(), 6u) << "two may meet once in millions of processes";
}

TEST(CaseFolding, FindsTheFirstPlaceAtOrBehindTheStart)
{
    EXPECT_EQ(find_folded(L"Hello  World", L"O"), 4u);
    EXPECT_EQ(find_folded(L"Hello  World", L"O", 5), 8u);
    EXPECT_EQ(find_folded(L"aab", L"AB"), 1u);
    EXPECT_EQ(find_folded(L"ab", L"abc"), std::wstring_view::npos);
    EXPECT_EQ(find_folded(L"ab", L"", 2), 2u);
    EXPECT_EQ(find_folded(L"ab", L"", 3), std::wstring_view::npos);
}
