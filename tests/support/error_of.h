#pragma once

#include "automation/error.h"

/// The number of the error that an action raises; 0 for none.
template <class Action>
int error_of(const Action& action)
{
    try {
        action();
        return 0;
    } catch (const automation::Error& error) {
        return error.number();
    }
}
