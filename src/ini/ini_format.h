#pragma once

#include "ini/ini_tree.h"

#include <functional>
#include <string_view>

/// The text form of a tree:
///
///     parameter=value          of the root
///     [Section]
///     parameter=value
///     [Section with sub-sections]
///     {
///         parameter=value
///
///         [Sub-section]
///         ...
///     }
///
/// Lines end with CR LF or CR. Blanks and tabs around lines, names and values don't count, and neither do empty lines.
namespace ini {

/// How many levels of sections a text may have. A deeper one would be all indent: its size grows with the square.
inline constexpr std::size_t deepest_level = 10'000;

/// Puts what the text holds into the tree: a section that is there already is continued, a parameter that is there gets
/// the new value. With `hide_comments`, lines that begin with ";" are skipped and values end before a ";"; otherwise these
/// are ordinary text. The text comes in pieces, cut anywhere, from `next_piece`, the last one followed by an empty one.
/// Raises 28 for a text with too many levels; whatever it or `next_piece` raises, the tree is then as it was.
void read(Section& root, const std::function<std::wstring_view()>& next_piece, bool hide_comments);

/// The same for a text in one piece.
void read(Section& root, std::wstring_view text, bool hide_comments);

/// Gives the tree's text piece by piece to `sink`; each piece ends with a whole line. Raises 28 for a tree that has too many
/// levels or contains itself, which may be after the first pieces.
void write(const Section& root, const std::function<void(std::wstring_view)>& sink);

} // namespace ini
