#include "system/qvSharedMemory.h"

#include "automation/ansi_call.h"
#include "messages/MErrors.h"

#include <algorithm>
#include <cstring>
#include <limits>

using automation::Error;
using automation::KernelHandle;
using automation::Runtime;

namespace {

constexpr std::size_t length_size = sizeof(std::int32_t);

[[noreturn]] void raise(Runtime error)
{
    const auto number = static_cast<std::int32_t>(error);
    throw Error{number, std::wstring{automation::runtime_text(number)}, automation::module::name() + L".VBError"};
}

void require(bool fits)
{
    if (!fits)
        raise(Runtime::SubscriptOutOfRange);
}

void put_length(std::span<char> block, std::int32_t length)
{
    std::memcpy(block.data(), &length, length_size);
}

} // namespace

void qvSharedMemory::open(std::wstring_view name, long size)
{
    if (name.empty())
        MErrors::RaiseWindowsError(ERROR_BAD_ARGUMENTS);
    const automation::AnsiText ansi_name{name};
    size_ = size;
    is_open_ = false;
    mapping_.release(); // a block opened before stays open
    SetLastError(ERROR_SUCCESS);
    const auto bytes = static_cast<DWORD>(size);
    KernelHandle mapping{CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, bytes, ansi_name)};
    const DWORD outcome = GetLastError();
    if (!mapping)
        MErrors::RaiseWindowsError(static_cast<std::int32_t>(outcome));
    is_open_ = true;
    memory_ = static_cast<char*>(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, 0));
    if (!memory_) {
        mapping.close();
        MErrors::RaiseWindowsError(static_cast<std::int32_t>(GetLastError()));
    }
    if (outcome == ERROR_ALREADY_EXISTS) {
        mapping_ = std::move(mapping);
        return;
    }
    put_length(block(), 0);
    mapping.release();
}

/// The memory of the block, in whole pages.
std::span<char> qvSharedMemory::block() const
{
    if (!is_open_)
        raise(Runtime::TypeMismatch);
    MEMORY_BASIC_INFORMATION pages{};
    require(memory_ && VirtualQuery(memory_, &pages, sizeof pages) && pages.State == MEM_COMMIT);
    return {memory_, pages.RegionSize};
}

void qvSharedMemory::CreateForString(const BSTR& sName, const BSTR& sString)
{
    const std::wstring_view text = automation::view(sString);
    constexpr std::size_t longest = (std::numeric_limits<std::int32_t>::max() - length_size) / 2;
    if (text.size() > longest)
        throw Error{Runtime::Overflow};
    open(automation::view(sName), static_cast<long>(length_size + 2 * text.size()));
    store(text);
}

void qvSharedMemory::store(std::wstring_view text)
{
    const std::span<char> memory = block();
    require(text.size() <= (memory.size() - length_size) / 2);
    std::string bytes;
    automation::append_encoded(bytes, text);
    bytes.resize(text.size()); // in a code page with longer characters, the end of the text is lost
    bytes.resize(2 * text.size());
    put_length(memory, static_cast<std::int32_t>(text.size()));
    std::ranges::copy(bytes, memory.data() + length_size);
}

std::wstring qvSharedMemory::get_Str()
{
    const std::span<char> memory = block();
    // Read once: others may change it behind the check.
    const std::int32_t length = *reinterpret_cast<const volatile std::int32_t*>(memory.data());
    require(length >= 0 && static_cast<std::size_t>(length) <= memory.size() - length_size);
    const std::string bytes(memory.data() + length_size, static_cast<std::size_t>(length)); // others may write meanwhile
    return automation::decode(automation::without_cut_character(bytes));
}
