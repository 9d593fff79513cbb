#include "ini/screen_size.h"

#include <windows.h>

namespace screen {
namespace {

/// The device context of the screen.
class Context {
public:
    Context() : context_{GetDC(nullptr)} {}
    ~Context() { ReleaseDC(nullptr, context_); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    double length_in_twips(int pixels, int pixels_per_inch) const
    {
        const int inch = GetDeviceCaps(context_, pixels_per_inch);
        return inch > 0 ? GetDeviceCaps(context_, pixels) * 1440. / inch : 0;
    }

private:
    HDC context_;
};

} // namespace

Size size_in_twips()
{
    const Context context;
    return {context.length_in_twips(HORZRES, LOGPIXELSX), context.length_in_twips(VERTRES, LOGPIXELSY)};
}

} // namespace screen
