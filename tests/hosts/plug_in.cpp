#include <stdexcept>

/// Whether this library raises and catches exceptions of its own.
extern "C" __declspec(dllexport) bool catches_exceptions() noexcept
{
    try {
        throw std::runtime_error{"of the plug-in"};
    } catch (const std::exception&) {
        return true;
    }
}
