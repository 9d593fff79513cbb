#include "ini/profile_text.h"

#include "automation/case_folding.h"
#include "ini/line_source.h"

#include <algorithm>

namespace profile {
namespace {

/// Without the blanks on both sides; tabs stay.
std::wstring_view trimmed(std::wstring_view text) noexcept
{
    text.remove_prefix(std::min(text.find_first_not_of(L' '), text.size()));
    return text.substr(0, text.find_last_not_of(L' ') + 1);
}

bool is_header(std::wstring_view line) noexcept
{
    return line.starts_with(L'[') && line.ends_with(L']');
}

} // namespace

std::vector<Entry> entries(std::wstring_view lines)
{
    std::vector<Entry> all;
    for (std::size_t from = 0, sign = 0; (sign = lines.find(L'=', from)) != lines.npos;) {
        const std::size_t start = lines.rfind(L'\0', sign) + 1; // 0 when there is none
        const std::size_t end = std::min(lines.find(L'\0', sign), lines.size());
        all.push_back({lines.substr(start, sign - start), lines.substr(sign + 1, end - sign - 1)});
        from = end;
    }
    return all;
}

std::vector<std::wstring_view> section_names(std::wstring_view list)
{
    std::vector<std::wstring_view> names;
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = std::min(list.find(L'\0', start), list.size());
        if (const std::wstring_view name = trimmed(list.substr(start, end - start)); !name.empty())
            names.push_back(name);
        start = end + 1;
    }
    return names;
}

std::wstring find_value(const std::function<std::wstring_view()>& next_piece, std::wstring_view section, std::wstring_view key)
{
    const std::wstring header = std::wstring{L'['}.append(section).append(1, L']');
    const std::wstring_view wanted = trimmed(key);
    ini::LineSource lines{next_piece};
    std::wstring_view line;
    bool found = false;
    while (!found && lines.next(line))
        found = automation::equal_folded(line, header);
    while (found && lines.next(line)) {
        line = trimmed(line);
        const std::size_t sign = line.find(L'=');
        if (sign != line.npos && automation::equal_folded(trimmed(line.substr(0, sign)), wanted))
            return std::wstring{trimmed(line.substr(sign + 1))};
        found = !is_header(line);
    }
    return {};
}

} // namespace profile
