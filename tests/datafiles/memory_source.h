#pragma once

#include "automation/error.h"
#include "datafiles/qvb_format.h"

#include <algorithm>
#include <string_view>

namespace qvb {

/// The bytes of a file that is in memory.
class MemorySource final : public Source {
public:
    explicit MemorySource(std::string_view bytes) : bytes_{bytes} {}

    void read(void* bytes, std::size_t size) override
    {
        if (size > bytes_.size())
            throw automation::Error{automation::Runtime::InputPastEnd};
        std::copy_n(bytes_.data(), size, static_cast<char*>(bytes));
        bytes_.remove_prefix(size);
    }
    std::uint64_t left() const noexcept override { return bytes_.size(); }

private:
    std::string_view bytes_;
};

} // namespace qvb
