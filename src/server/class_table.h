#pragma once

#include "automation/class_factory.h"

#include <span>

/// The classes that clients can create.
std::span<automation::ClassFactory> class_table() noexcept;
