#include "ui/whole_path.h"

#include <algorithm>

namespace ui {
namespace {

constexpr std::wstring_view blanks = L" \t";

std::wstring_view without_blanks(std::wstring_view text) noexcept
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool is_letter(wchar_t character) noexcept
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

bool can_be_named(wchar_t character) noexcept
{
    return character >= L' ' && std::wstring_view{L"<>:\"|?*"}.find(character) == std::wstring_view::npos;
}

/// Takes the next part of a path off its start. Empty only at the end.
std::wstring_view take_part(std::wstring_view& path) noexcept
{
    path.remove_prefix(std::min(path.find_first_not_of(L'\\'), path.size()));
    const std::wstring_view part = path.substr(0, path.find(L'\\'));
    path.remove_prefix(part.size());
    return part;
}

/// The name that a part of a path stands for; empty for none.
std::wstring_view name_in(std::wstring_view part) noexcept
{
    return part.substr(0, part.find_last_not_of(L" .") + 1);
}

/// Takes the root off the start of a path. None when it has no whole one.
std::optional<WholePath> take_root(std::wstring_view& path)
{
    if (path.size() >= 3 && is_letter(path[0]) && path[1] == L':' && path[2] == L'\\') {
        WholePath drive{std::wstring{path.substr(0, 3)}, 3};
        path.remove_prefix(3);
        return drive;
    }
    if (!path.starts_with(L"\\\\"))
        return std::nullopt;
    std::wstring share;
    for (int i = 0; i < 2; ++i) {
        const std::wstring_view name = name_in(take_part(path));
        if (name.empty())
            return std::nullopt;
        share.append(i == 0 ? L"\\\\" : L"\\").append(name);
    }
    const std::size_t of_root = share.size() + 1;
    return WholePath{std::move(share), of_root};
}

} // namespace

WholePath WholePath::parent() const
{
    const std::size_t shortest = is_on_network() ? of_root - 1 : of_root;
    return {text.substr(0, std::max(text.rfind(L'\\'), shortest)), of_root};
}

std::wstring_view bare(std::wstring_view typed) noexcept
{
    typed = without_blanks(typed);
    if (typed.size() >= 2 && typed.starts_with(L'"') && typed.ends_with(L'"'))
        typed = without_blanks(typed.substr(1, typed.size() - 2));
    return typed;
}

std::optional<WholePath> whole_path(std::wstring_view typed)
{
    std::wstring turned{bare(typed)};
    std::ranges::replace(turned, L'/', L'\\');
    std::wstring_view rest{turned};
    auto path = take_root(rest);
    if (!path || !std::ranges::all_of(path->text.substr(path->is_on_network() ? 0 : 2), can_be_named) ||
        !std::ranges::all_of(rest, can_be_named))
        return std::nullopt;
    for (std::wstring_view part = take_part(rest); !part.empty(); part = take_part(rest)) {
        const std::wstring_view name = name_in(part);
        if (part == L"..") {
            if (!path->is_root())
                *path = path->parent();
        } else if (!name.empty()) {
            if (!path->text.ends_with(L'\\'))
                path->text += L'\\';
            path->text += name;
        } else if (part != L".") {
            return std::nullopt;
        }
    }
    return path;
}

std::wstring for_platform(const WholePath& path)
{
    constexpr std::size_t longest_folder = 247;
    if (path.text.size() <= longest_folder)
        return path.text;
    return path.is_on_network() ? L"\\\\?\\UNC" + path.text.substr(1) : L"\\\\?\\" + path.text;
}

} // namespace ui
