#pragma once

#include "ui/qvWindowProc.h"

#include <vector>

/// The one window procedure of all windows that are watched, and who watches them.
namespace MWindowProcSubClassing {

/// The windows of a thread with the objects that watch them, which it keeps alive. It disables and lets go of them when the
/// thread ends or leaves automation, as nothing of a client may be called any more after that.
class WindowRegistry {
public:
    /// Raises what keeps the thread from telling when it leaves automation.
    WindowRegistry();
    ~WindowRegistry() { end_all(); }
    WindowRegistry(const WindowRegistry&) = delete;
    WindowRegistry& operator=(const WindowRegistry&) = delete;

    /// The object that watches a window of the calling thread; null for none.
    static automation::Ref<qvWindowProc> watcher_of(long hwnd) noexcept;
    /// Has an object watch a window of the calling thread, unless another one does. False when no memory is left for it.
    static bool add(long hwnd, automation::Ref<qvWindowProc> watcher) noexcept;
    /// Has no object watch a window of the calling thread.
    static void remove(long hwnd) noexcept;
    /// Ends the watching of all windows of the calling thread.
    static void end() noexcept;

private:
    struct Entry {
        long hwnd;
        automation::Ref<qvWindowProc> watcher;
    };
    using Entries = std::vector<Entry>;

    void end_all() noexcept;
    Entries::iterator place_of(long hwnd) noexcept;
    bool has(Entries::iterator place, long hwnd) const noexcept { return place != entries_.end() && place->hwnd == hwnd; }

    Entries entries_; ///< by handle
};

/// The address of the window procedure.
LONG procedure() noexcept;

} // namespace MWindowProcSubClassing
