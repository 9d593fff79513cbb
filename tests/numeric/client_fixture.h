#pragma once

#include "support/dispatch_object.h"
#include "support/message_box.h"
#include "support/tables.h"

#include <optional>
#include <source_location>

/// An error, by its number and text.
struct Failure {
    long number;
    const wchar_t* text;
};
constexpr Failure invalid_call{5, L"Invalid procedure call or argument"}, overflow{6, L"Overflow"},
    no_memory{7, L"Out of memory"}, subscript{9, L"Subscript out of range"},
    locked{10, L"This array is fixed or temporarily locked"}, mismatch{13, L"Type mismatch"}, no_null{94, L"Invalid use of Null"};

/// An object of the client, with a default value or without one.
class Thing final : public DispatchObject {
public:
    explicit Thing(std::optional<client::Value> value = {})
        : DispatchObject{{}, [=](DISPID id, const DISPPARAMS&, VARIANT* result) mutable {
                             return id == DISPID_VALUE && value ? VariantCopy(result, &*value) : DISP_E_MEMBERNOTFOUND;
                         }}
    {
    }
    long holders() const { return references() - 1; }
};

/// A client of the classes that compute with lists and tables.
class NumericClient : public testing::Test {
protected:
    using Object = client::Object;
    using Value = client::Value;

    static void expect_error(const client::Outcome& outcome, const Failure& failure)
    {
        client::expect_error(outcome, failure.number, failure.text);
    }
    /// Expects that a member raises this error.
    static void expect_failure(const Object& object, const wchar_t* member, std::initializer_list<Value> arguments,
                               const Failure& failure, const std::source_location& caller = std::source_location::current())
    {
        const testing::ScopedTrace trace{caller.file_name(), static_cast<int>(caller.line()), "called here"};
        expect_error(object.try_call(member, arguments), failure);
    }
    /// Expects a message box with one button and this icon, if any.
    static void expect_box(MessageBoxCatcher& box, const std::wstring& caption, const std::wstring& text, int icon)
    {
        EXPECT_TRUE(box.caught());
        EXPECT_EQ(box.caption, caption);
        EXPECT_EQ(box.text, text);
        EXPECT_EQ(box.icon, icon);
        EXPECT_EQ(box.buttons, 1);
    }

    client::Apartment apartment;
    Object common = Object::create(L"qvObjects.qvCommon"), math = Object::create(L"qvObjects.qvMath");
    Value undimensioned = Value::of_type(VT_ARRAY | VT_VARIANT), nothing{static_cast<IDispatch*>(nullptr)};
};
