#pragma once

#include "datafiles/decimal_digits.h"

#include <string>

namespace nif {

/// The texts of Doubles in the user's locale, the same as the automation conversion gives, only quicker.
///
/// How the platform writes a number is not the same everywhere. So a few numbers are held against the platform first, and
/// where it writes them in another way, and for numbers that are rounded in doubt, it is asked for every text.
class LocaleNumbers {
public:
    LocaleNumbers();

    /// Appends the text of a number in the system's code page.
    void append(std::string& bytes, double number) const;

private:
    bool is_known(const DecimalDigits& digits) const noexcept;

    std::string point_;
    bool knows_plain_ = false; ///< the texts of numbers from 0.1 to below 1E+15
    bool knows_all_ = false;   ///< the texts of the other numbers as well
};

} // namespace nif
