#include "ini/profile_text.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace {

std::wstring told_entries(std::wstring_view lines)
{
    std::wstring all;
    for (const auto& [key, value] : profile::entries(lines))
        all.append(L"(").append(key).append(L"|").append(value).append(L")");
    return all;
}

std::wstring told_names(std::wstring_view list)
{
    std::wstring all;
    for (const std::wstring_view name : profile::section_names(list))
        all.append(L"(").append(name).append(L")");
    return all;
}

/// What is found in a text that comes in pieces of this size.
std::wstring found(std::wstring_view text, std::wstring_view section, std::wstring_view key, std::size_t piece = 1000)
{
    const auto next = [&] {
        const std::wstring_view next = text.substr(0, piece);
        text.remove_prefix(next.size());
        return next;
    };
    return profile::find_value(next, section, key);
}

} // namespace

TEST(ProfileText, EntriesOfASection)
{
    struct Case {
        std::wstring_view lines, entries;
    };
    for (const auto& [lines, entries] :
         {Case{L""sv, L""}, Case{L"\0\0"sv, L""}, Case{L"a=1\0b=2\0\0"sv, L"(a|1)(b|2)"}, Case{L"a=1\0b=2"sv, L"(a|1)(b|2)"},
          Case{L"a=\0=1\0=\0"sv, L"(a|)(|1)(|)"}, Case{L"a=1=2\0b==\0"sv, L"(a|1=2)(b|=)"}, Case{L"plain\0a=1\0more\0b=2\0last\0"sv, L"(a|1)(b|2)"},
          Case{L" a = 1 \0;b=2\0"sv, L"( a | 1 )(;b|2)"}, Case{L"a=1\0a=2\0\0    "sv, L"(a|1)(a|2)"}})
        EXPECT_EQ(told_entries(lines), entries) << lines.size() << " characters, " << std::wstring{lines}.c_str();
}

TEST(ProfileText, NamesOfSections)
{
    EXPECT_EQ(told_names(L""sv), L"");
    EXPECT_EQ(told_names(L"One\0Two\0"sv), L"(One)(Two)");
    EXPECT_EQ(told_names(L"\0 One  \0\0   \0\tTwo\0One\0a b"sv), L"(One)(\tTwo)(One)(a b)") << "a tab is no blank";
}

TEST(ProfileText, ValuesAreFoundInAnyCaseAndBetweenBlanks)
{
    constexpr std::wstring_view text = L"Path=before\r\n[ main ]\r\nPath=blanks in the brackets\r\n[MAIN] \r\nPath=a blank behind\r\n"
                                       L"[Main]\r\n  PATH = C:\\x  \r\n;Path=comment\r\nPath=second\r\nEmpty=\r\n"
                                       L"Empty=too late\r\n\tTab=\tt\t\r\nEq==a=b=\r\nStra\u00DFe \u00C4=\u00E4\r\nno sign\r\n=no key\r\n"
                                       L"Line\nFeed=lf\r\n [k] \r\nBehind=1\r\n[main]\r\nLate=1";
    struct Case {
        const wchar_t *section, *key, *value;
    };
    for (const auto& [section, key, value] :
         {Case{L"main", L"Path", L"C:\\x"}, Case{L"mAIN", L"  path ", L"C:\\x"}, Case{L" main ", L"path", L"blanks in the brackets"},
          Case{L"main", L";PATH", L"comment"}, Case{L"main", L"Empty", L""}, Case{L"main", L"Tab", L""},
          Case{L"main", L"\ttab", L"\tt\t"}, Case{L"main", L"Eq", L"=a=b="}, Case{L"main", L"stra\u00DFe \u00E4", L"\u00E4"},
          Case{L"main", L"no sign", L""}, Case{L"main", L"", L"no key"}, Case{L"main", L"line\nfeed", L"lf"},
          Case{L"main", L"Behind", L""}, Case{L"main", L"Late", L""}, Case{L"", L"Path", L""}, Case{L"none", L"Path", L""},
          Case{L"k", L"Behind", L""}})
        for (const std::size_t piece : {1u, 7u, 1000u})
            EXPECT_EQ(found(text, section, key, piece), value) << section << ", " << key << ", " << piece;
    EXPECT_EQ(found(L"[a]\rk=1\r[b]", L"A", L"K"), L"1") << "lines may end with CR alone";
    EXPECT_EQ(found(L"[a]\r\nx=1\r\n[b=c]\r\nk=1", L"a", L"[b"), L"c]") << "the next section's line is still looked at";
    EXPECT_EQ(found(L"[]\r\nk=1", L"", L"k"), L"1");
    EXPECT_EQ(found(L"[a]", L"a", L"k"), L"");
}
