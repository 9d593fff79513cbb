#include "ui/enhanced_metafile.h"

#include <algorithm>
#include <cstring>

namespace ui {
namespace {

// Where the header has what, and what it is.
constexpr std::size_t frame = 24, signature = 40, size_of_all = 48, least_header = 88;
constexpr std::uint32_t header_type = 1, end_type = 14, signature_of_all = 0x464D4520; // " EMF"

template <class Number>
Number number_at(std::string_view bytes, std::size_t place) noexcept
{
    Number number;
    std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

/// Every record begins with its type and its size.
bool ends_with_its_last_record(std::string_view records) noexcept
{
    constexpr std::size_t least_record = 8;
    while (records.size() >= least_record) {
        const auto type = number_at<std::uint32_t>(records, 0), size = number_at<std::uint32_t>(records, 4);
        if (size < least_record || size % 4 != 0 || size > records.size())
            return false;
        records.remove_prefix(size);
        if (type == end_type)
            return records.empty();
    }
    return false;
}

double length(std::string_view bytes, std::size_t from, std::size_t to) noexcept
{
    return static_cast<double>(number_at<std::int32_t>(bytes, to)) - number_at<std::int32_t>(bytes, from);
}

} // namespace

std::optional<Metafile> enhanced_metafile(std::string_view bytes) noexcept
{
    if (bytes.size() < least_header || number_at<std::uint32_t>(bytes, 0) != header_type ||
        number_at<std::uint32_t>(bytes, 4) < least_header || number_at<std::uint32_t>(bytes, signature) != signature_of_all ||
        number_at<std::uint32_t>(bytes, size_of_all) > bytes.size())
        return std::nullopt;
    const Metafile found{bytes.substr(0, number_at<std::uint32_t>(bytes, size_of_all)),
                         {length(bytes, frame, frame + 8), length(bytes, frame + 4, frame + 12)}};
    if (!ends_with_its_last_record(found.records))
        return std::nullopt;
    return found;
}

Extent picture_size(Extent wanted, Extent page, Extent picture) noexcept
{
    if (wanted.width != 0 && wanted.height != 0)
        return wanted;
    const Extent place{wanted.width != 0 ? wanted.width : page.width, wanted.height != 0 ? wanted.height : page.height};
    if (picture.width <= 0 || picture.height <= 0)
        return place;
    const double scale = std::min(place.width / picture.width, place.height / picture.height);
    return {picture.width * scale, picture.height * scale};
}

} // namespace ui
