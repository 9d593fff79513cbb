#pragma once

#include "random_calls/members.h"

#include <initializer_list>
#include <iterator>
#include <random>

/// How the processor calculates: the modes, not the exceptions that have been seen.
struct FloatingModes {
    unsigned short x87 = 0;
    unsigned sse = 0;

    static FloatingModes now();
    void set() const;
    bool operator==(const FloatingModes&) const = default;
};
inline FloatingModes client_modes; ///< those of the client, whenever its own code runs

/// All that a variant holds or leads to but what lies behind references, for comparing it with what it holds later.
std::string image_of(const VARIANT& value);
/// The same for people.
std::string description_of(const VARIANT& value);

/// Makes values of all kinds, the same ones for the same seed.
class Values {
public:
    Values(unsigned seed, const members::Library& library) : random_{seed}, library_{library} {}

    std::vector<IDispatch*> objects; ///< that values may be
    std::vector<std::wstring> files; ///< whole paths that members may do with what they like
    long window = 0;                 ///< the handle of one that stays

    std::size_t below(std::size_t bound) { return bound == 0 ? 0 : random_() % bound; }
    bool one_in(std::size_t times) { return below(times) == 0; }
    template <class Item>
    Item one_of(std::initializer_list<Item> items)
    {
        return *std::next(items.begin(), static_cast<std::ptrdiff_t>(below(items.size())));
    }
    long small_number() { return static_cast<long>(below(24)) - 3; }

    VARTYPE any_type(); ///< of an element
    /// A value of this type; VT_VARIANT and VT_EMPTY stand for any.
    VARIANT of_type(VARTYPE type, int depth = 0);
    /// One that does no harm wherever it goes: it converts to no number but 0, to no text but one of `files`.
    VARIANT harmless(VARTYPE type);
    /// What an object of the client gives.
    HRESULT answer(VARIANT& result);

private:
    long number();
    double real();
    BSTR text();
    IDispatch* object();
    SAFEARRAY* array(VARTYPE type, int depth);
    void fill(SAFEARRAY& array, VARTYPE type, int depth);

    std::mt19937 random_;
    const members::Library& library_;
};

/// One argument with all that it leads to, as a client keeps it.
class Argument {
public:
    Argument(Values& values, VARTYPE type, bool by_reference, bool harmless);
    ~Argument();
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;

    const VARIANT& passed() const { return passed_; }
    /// The client's code gives its variable another value, if it is one that can be changed.
    void change();

    /// Requires that it is what it was, or after a success, or a failure that may change it, what a client can go on with.
    void check(bool succeeded, bool may_change) const;
    std::string description() const;

private:
    void refer(Values& values, bool by_reference);

    VARIANT passed_{}, between_{}, content_{};
    std::string before_, passed_before_;
    SAFEARRAY* special_ = nullptr; ///< locked, or of a fixed size
    USHORT features_ = 0;
    bool locked_ = false, changed_ = false;
};
