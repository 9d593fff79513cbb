#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Paths as users type them.
namespace ui {

/// The path of a folder from a drive's root, or from a share of the network.
struct WholePath {
    std::wstring text;   ///< "C:\", "C:\Data", "\\server\share\Data": it ends in a backslash only as a drive's root
    std::size_t of_root; ///< the length of its "C:\" or "\\server\share\", also where it is no more than "\\server\share"

    bool is_on_network() const noexcept { return text.starts_with(L'\\'); }
    bool is_root() const noexcept { return text.size() <= of_root; }
    /// The root, closed by a backslash.
    std::wstring root() const { return is_root() && is_on_network() ? text + L'\\' : text.substr(0, of_root); }
    /// The folder that it lies in. Only of what is no root.
    WholePath parent() const;
};

/// What was typed without the blanks around it, and without the quotation marks of a path that was copied with them.
std::wstring_view bare(std::wstring_view typed) noexcept;

/// The path that was typed, its . and .. parts resolved, with what the platform overlooks left out: blanks around it, slashes the
/// other way, backslashes in a row, blanks and dots behind a name. None for what is no whole path or has characters that
/// no name has.
std::optional<WholePath> whole_path(std::wstring_view typed);

/// The path as the platform takes it, which asks for a prefix before long ones.
std::wstring for_platform(const WholePath& path);

} // namespace ui
