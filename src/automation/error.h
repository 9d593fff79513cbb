#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace automation {

/// The numbers of the runtime's own errors that this library raises.
enum class Runtime : std::int32_t {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    ArrayLocked = 10,
    DivisionByZero = 11,
    TypeMismatch = 13,
    OutOfStackSpace = 28,
    BadFileNumber = 52,
    FileNotFound = 53,
    FileAlreadyOpen = 55,
    DeviceIo = 57,
    FileAlreadyExists = 58,
    DiskFull = 61,
    InputPastEnd = 62,
    BadFileName = 64,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidNull = 94,
    InvalidPropertyArrayIndex = 381,
    MemberNotSupported = 438,
    Automation = 440,
    NoNamedArguments = 446,
    LocaleNotSupported = 447,
    NamedArgumentNotFound = 448,
    ArgumentNotOptional = 449,
    WrongArgumentCount = 450,
    KeyExists = 457,
    Printer = 482,
};

/// The text of runtime errors without one of their own.
inline constexpr std::wstring_view unknown_runtime_text = L"Application-defined or object-defined error";

/// The standard English text of a runtime error; empty for a number without one.
std::wstring_view runtime_text(std::int32_t number) noexcept;

/// An error on its way to the client. Numbers 1 to 65535 arrive there as they are (`Err.Number`), numbers with the high
/// bit set as well. An empty source stands for the library's name.
class Error : public std::exception {
public:
    Error(std::int32_t number, std::wstring description, std::wstring source = {});
    explicit Error(Runtime runtime);

    std::int32_t number() const noexcept { return number_; }
    const std::wstring& description() const noexcept { return description_; }
    const std::wstring& source() const noexcept { return source_; }
    const char* what() const noexcept override { return "automation error"; }

private:
    std::int32_t number_;
    std::wstring description_;
    std::wstring source_;
};

} // namespace automation
