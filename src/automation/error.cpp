#include "automation/error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace automation {
namespace {

using Text = std::pair<Runtime, std::wstring_view>;

constexpr std::array texts{
    Text{Runtime::InvalidCall, L"Invalid procedure call or argument"},
    Text{Runtime::Overflow, L"Overflow"},
    Text{Runtime::OutOfMemory, L"Out of memory"},
    Text{Runtime::SubscriptOutOfRange, L"Subscript out of range"},
    Text{Runtime::ArrayLocked, L"This array is fixed or temporarily locked"},
    Text{Runtime::DivisionByZero, L"Division by zero"},
    Text{Runtime::TypeMismatch, L"Type mismatch"},
    Text{Runtime::OutOfStackSpace, L"Out of stack space"},
    Text{Runtime::BadFileNumber, L"Bad file name or number"},
    Text{Runtime::FileNotFound, L"File not found"},
    Text{Runtime::FileAlreadyOpen, L"File already open"},
    Text{Runtime::DeviceIo, L"Device I/O error"},
    Text{Runtime::FileAlreadyExists, L"File already exists"},
    Text{Runtime::DiskFull, L"Disk full"},
    Text{Runtime::InputPastEnd, L"Input past end of file"},
    Text{Runtime::BadFileName, L"Bad file name"},
    Text{Runtime::PermissionDenied, L"Permission denied"},
    Text{Runtime::PathFileAccess, L"Path/File access error"},
    Text{Runtime::PathNotFound, L"Path not found"},
    Text{Runtime::ObjectNotSet, L"Object variable or With block variable not set"},
    Text{Runtime::InvalidNull, L"Invalid use of Null"},
    Text{Runtime::InvalidPropertyArrayIndex, L"Invalid property array index"},
    Text{Runtime::MemberNotSupported, L"Object doesn't support this property or method"},
    Text{Runtime::Automation, L"Automation error"},
    Text{Runtime::NoNamedArguments, L"Object doesn't support named arguments"},
    Text{Runtime::LocaleNotSupported, L"Object doesn't support current locale setting"},
    Text{Runtime::NamedArgumentNotFound, L"Named argument not found"},
    Text{Runtime::ArgumentNotOptional, L"Argument not optional"},
    Text{Runtime::WrongArgumentCount, L"Wrong number of arguments or invalid property assignment"},
    Text{Runtime::KeyExists, L"This key is already associated with an element of this collection"},
    Text{Runtime::Printer, L"Printer error"},
};

} // namespace

std::wstring_view runtime_text(std::int32_t number) noexcept
{
    const auto found = std::ranges::find(texts, static_cast<Runtime>(number), &Text::first);
    return found == texts.end() ? std::wstring_view{} : found->second;
}

Error::Error(std::int32_t number, std::wstring description, std::wstring source)
    : number_{number}, description_{std::move(description)}, source_{std::move(source)}
{
}

Error::Error(Runtime runtime)
    : Error{static_cast<std::int32_t>(runtime), std::wstring{runtime_text(static_cast<std::int32_t>(runtime))}}
{
}

} // namespace automation
