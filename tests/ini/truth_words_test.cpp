#include "ini/truth_words.h"

#include <gtest/gtest.h>

TEST(TruthWords, StandAnywhereAndTheListsOrderDecides)
{
    using Truth = std::optional<bool>;
    constexpr Truth none;
    struct Case {
        const wchar_t* text;
        Truth by_words, by_digits_too;
    };
    for (const auto& [text, by_words, by_digits_too] :
         {Case{L"True", true, true}, Case{L"wahr", true, true}, Case{L"FALSCH", false, false}, Case{L"it is faLse!", false, false},
          Case{L"False, not True", true, true}, Case{L"Wahr oder False", false, false}, Case{L"Falsch: 1", false, false},
          Case{L"Falsch, wahr", true, true}, Case{L"1", none, true}, Case{L"-1", none, true}, Case{L"0", none, false},
          Case{L"10", none, true}, Case{L"0,0", none, false}, Case{L"yes", none, none}, Case{L"tru", none, none},
          Case{L"t rue", none, none}, Case{L"", none, none}}) {
        EXPECT_EQ(settings::truth_in_words(text), by_words) << text;
        EXPECT_EQ(settings::truth_in_words_or_digits(text), by_digits_too) << text;
    }
}
