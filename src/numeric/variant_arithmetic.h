#pragma once

#include "automation/values.h"

/// The platform's arithmetic on values of any type. Texts count as the numbers that they say in the user's locale. Each raises
/// 13 for what is no number and 6 when numbers that are finite give one beyond a Double; Null gives Null.
namespace numeric {

automation::Variant product(const VARIANT& left, const VARIANT& right);
automation::Variant sum(const VARIANT& left, const VARIANT& right);
automation::Variant difference(const VARIANT& left, const VARIANT& right);
automation::Variant quotient(const VARIANT& left, const VARIANT& right);

/// The value as a Double. Raises 13 for what is no number, 94 for Null.
double to_double(const VARIANT& value);

} // namespace numeric
