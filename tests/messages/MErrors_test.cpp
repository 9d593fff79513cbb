#include "messages/MErrors.h"

#include "automation/error.h"
#include "support/message_box.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

automation::Error raised_for(std::int32_t code)
{
    try {
        MErrors::RaiseWindowsError(code);
    } catch (const automation::Error& error) {
        return error;
    }
}

} // namespace

TEST(MErrors, TextsComeInTheThreadsLanguage)
{
    EXPECT_EQ(MErrors::LangStr(10001), L"Fehler");
    MErrors::set_language(1);
    EXPECT_EQ(MErrors::LangStr(10001), L"Error");
    std::thread{[] { EXPECT_EQ(MErrors::LangStr(10001), L"Fehler"); }}.join();
    MErrors::set_language(0);
    EXPECT_EQ(MErrors::LangStr(9999), L"");
}

TEST(MErrors, SystemErrorsCarryTheSystemsText)
{
    const automation::Error error = raised_for(ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(error.number(), static_cast<std::int32_t>(0x80047148 + 2));
    EXPECT_EQ(error.source(), L"class_tests.Windows");
    EXPECT_EQ(error.description(), MErrors::GetSystemErrorText(2));
    EXPECT_NE(MErrors::GetSystemErrorText(2), L"");
    EXPECT_EQ(MErrors::GetSystemErrorText(0x7ffffff), L"") << "a code that the system does not know";
}

TEST(MErrors, NumbersOfSystemErrorsOverflowWhereTheSumDoes)
{
    EXPECT_EQ(raised_for(-291144).number(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(raised_for(-291145).number(), 6);
    EXPECT_EQ(raised_for(0x7fffffff).number(), static_cast<std::int32_t>(0x80047148u + 0x7fffffffu));
    EXPECT_EQ(MErrors::ToObjectError(106), -2147221398);
}

TEST(MErrors, TheErrorBoxFramesItsText)
{
    for (const std::int32_t language : {0, 1}) {
        MErrors::set_language(language);
        MessageBoxCatcher box;
        MErrors::ShowErrorBox(L"x");
        ASSERT_TRUE(box.caught());
        EXPECT_EQ(box.caption, language ? L"Error" : L"Fehler");
        EXPECT_EQ(box.text, language ? L"Error x. Please contact the manufacturer!"
                                     : L"Fehler x. Bitte informieren Sie den Hersteller!");
        EXPECT_EQ(box.icon, 32513) << "the critical stop";
        EXPECT_EQ(box.buttons, 1);
    }
    MErrors::set_language(0);
}
