#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace text {

/// The text without the first occurrence of `CutString` (any case). The blanks on both sides of it go as well, and
/// `intSpace` blanks take its place; a negative number leaves the blanks and puts none. Tabs are no blanks here.
/// An empty `CutString` is found at the start. Where it is not found, the text stays as it is.
std::wstring StringCut(std::wstring_view s, std::wstring_view CutString, int intSpace = 0);

/// The text between quotation marks; one quotation mark for an empty text.
std::wstring in_quotation_marks(std::wstring_view text);

/// The part of the text behind its leading blanks and tabs; all of a text that holds nothing else.
std::wstring_view qvTrimL(std::wstring_view s) noexcept;
/// The part of the text before its trailing blanks and tabs; all of a text that holds nothing else.
std::wstring_view qvTrimR(std::wstring_view s) noexcept;
/// Both of them.
std::wstring_view qvTrim(std::wstring_view s) noexcept;

/// True for "true", "wahr", "1" and "-1" in any case, false for everything else.
bool StrToBOOL(std::wstring_view sStr) noexcept;

/// The longest runs of characters that `is_digit` accepts, in order: parts of `text`.
std::vector<std::wstring_view> digit_runs(std::wstring_view text, bool (*is_digit)(wchar_t));

} // namespace text
