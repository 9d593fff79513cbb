#include "messages/messages.h"

#include <gtest/gtest.h>

using messages::Language;
using messages::text;

TEST(Messages, AreExactInBothLanguages)
{
    EXPECT_EQ(text(10001, Language::German), L"Fehler");
    EXPECT_EQ(text(10001, Language::English), L"Error");
    EXPECT_EQ(text(10002, Language::German), L"Fehler ") << "a fragment keeps its blank";
    EXPECT_EQ(text(10003, Language::English), L". Please contact the manufacturer!");
    EXPECT_EQ(text(1801, Language::English), L"The destination directory") << "without the colon of the German text";
    EXPECT_EQ(text(2041, Language::English), L"is invalid, incomplete or write protected. Please specify a complete path with drive "
                                             L"letter, e.g. 'C:\\\\Applications'.");
    EXPECT_EQ(text(2071, Language::German), L"Bitte stellen Sie sicher, da\u00df der Pfad richtig ist und da\u00df Sie die n\u00f6tigen "
                                            L"Zugriffsrechte haben.");
    EXPECT_EQ(text(10015, Language::German), L"|n|nHinweis: \u00c4ndern Sie den Datentyp in |aVariant/x|a wobei f\u00fcr |ax|a die "
                                             L"Datentypen |aByte|a, |aInteger|a, |aLong|a, |aSingle|a und |aDouble|a verwendet werden "
                                             L"k\u00f6nnen!");
}

TEST(Messages, UnknownNumbersHaveNone)
{
    for (const int number : {-1, 0, 1600, 1602, 9999, 10000, 10016})
        EXPECT_EQ(text(number, Language::German), L"") << number;
}
