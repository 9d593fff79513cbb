#pragma once

#include <windows.h>

#include <utility>

/// Owners of the system's handles. A kind says which handles it owns and how they are given back.
namespace automation {

/// A kind of handle of which a null one is none.
template <class System, auto give_back>
struct NullMeansNone {
    using Value = System;
    static Value none() noexcept { return nullptr; }
    static void close(Value value) noexcept { give_back(value); }
};
/// A kind of handle of which -1 is none.
template <auto give_back>
struct InvalidMeansNone {
    using Value = HANDLE;
    static Value none() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Value value) noexcept { give_back(value); }
};

template <class Kind>
class Handle {
public:
    using Value = typename Kind::Value;

    explicit Handle(Value value = Kind::none()) noexcept : value_{value} {}
    Handle(Handle&& other) noexcept : value_{other.release()} {}
    Handle& operator=(Handle other) noexcept
    {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Handle() { close(); }

    Value get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != Kind::none(); }
    Value release() noexcept { return std::exchange(value_, Kind::none()); }
    void close() noexcept
    {
        if (*this)
            Kind::close(release());
    }
    /// Where a platform call puts a handle; what was held is given back.
    Value* put() noexcept
    {
        close();
        return &value_;
    }

private:
    Value value_;
};

using FileHandle = Handle<InvalidMeansNone<&CloseHandle>>;
using SearchHandle = Handle<InvalidMeansNone<&FindClose>>;
using KernelHandle = Handle<NullMeansNone<HANDLE, &CloseHandle>>; ///< of a process, a thread, a mapping
using RegistryHandle = Handle<NullMeansNone<HKEY, &RegCloseKey>>;

/// The handle that a client gives as a number.
template <class System>
System handle_from(long number) noexcept
{
    return reinterpret_cast<System>(static_cast<LONG_PTR>(number));
}

} // namespace automation
