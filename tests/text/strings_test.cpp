#include "text/strings.h"

#include <gtest/gtest.h>

using namespace text;

TEST(StringCut, RemovesTheFirstOccurrenceAndTheBlanksAroundIt)
{
    EXPECT_EQ(StringCut(L"Hello  World", L"O", -1), L"Hell  World");
    EXPECT_EQ(StringCut(L"Hello  World", L"o", 1), L"Hell World");
    EXPECT_EQ(StringCut(L"Hello  World", L"o"), L"HellWorld");
    EXPECT_EQ(StringCut(L" abc ", L"x", 3), L" abc ") << "not found: its blanks stay as well";
    EXPECT_EQ(StringCut(L"ab", L"abc"), L"ab");
    EXPECT_EQ(StringCut(L"a  x \t b", L"x"), L"a\t b") << "a tab is no blank";
    EXPECT_EQ(StringCut(L" a x b ", L"x"), L" ab ") << "only those around the cut";
    EXPECT_EQ(StringCut(L"  x  ", L"x", 2), L"  ");
    EXPECT_EQ(StringCut(L"  abc", L""), L"abc") << "an empty part is found at the start";
    EXPECT_EQ(StringCut(L"  abc", L"", -1), L"  abc");
    EXPECT_EQ(StringCut(L"", L"", 3), L"") << "nothing is found in an empty text";
}

TEST(QuotationMarks, AnEmptyTextGetsOneOnly)
{
    EXPECT_EQ(in_quotation_marks(L""), L"\"");
    EXPECT_EQ(in_quotation_marks(L" "), L"\" \"");
}

TEST(Trim, BlanksAndTabsGoUnlessThereIsNothingElse)
{
    EXPECT_EQ(qvTrimL(L" \t x \t"), L"x \t");
    EXPECT_EQ(qvTrimR(L" \t x \t"), L" \t x");
    EXPECT_EQ(qvTrim(L" \t x y\t "), L"x y");
    for (const std::wstring_view text : {L"", L" ", L"\t", L" \t ", L"x", L"\r\n", L"\u00a0x\u00a0"})
        for (const auto trim : {qvTrimL, qvTrimR, qvTrim})
            EXPECT_EQ(trim(text), text);
}

TEST(StrToBOOL, KnowsFourTruths)
{
    for (const wchar_t* text : {L"true", L"TRUE", L"wahr", L"Wahr", L"1", L"-1"})
        EXPECT_TRUE(StrToBOOL(text)) << text;
    for (const wchar_t* text : {L"", L"false", L"0", L"yes", L" 1", L"1 ", L"+1", L"01", L"2", L"truer", L"tru"})
        EXPECT_FALSE(StrToBOOL(text)) << text;
}

TEST(DigitRuns, EverythingElseSplitsThem)
{
    const auto runs = [](std::wstring_view text) { return digit_runs(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; }); };
    using Runs = std::vector<std::wstring_view>;
    EXPECT_EQ(runs(L"a12b3,45"), (Runs{L"12", L"3", L"45"}));
    EXPECT_EQ(runs(L"007-"), Runs{L"007"});
    EXPECT_EQ(runs(L""), Runs{});
}
