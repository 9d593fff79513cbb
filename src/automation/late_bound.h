#pragma once

#include "automation/contract.h"

/// Calls by name: what IDispatch means for every object of this library.
namespace automation::late_bound {

/// Finds a member and the names of its arguments, in any case. DISP_E_UNKNOWNNAME where there is none.
HRESULT find_names(const Interface& contract, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

/// Calls a member of `object`, whose table of functions `contract` describes. Arguments are converted in the user's
/// locale; what a by-reference argument becomes goes back into the caller's storage. Fails before anything has run with
/// DISP_E_MEMBERNOTFOUND, DISP_E_BADPARAMCOUNT, DISP_E_PARAMNOTOPTIONAL, DISP_E_TYPEMISMATCH (with the argument's index);
/// an error of the member itself is DISP_E_EXCEPTION.
HRESULT invoke(void* object, const Interface& contract, DISPID id, REFIID reserved, LCID locale, WORD flags,
               DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept;

} // namespace automation::late_bound
