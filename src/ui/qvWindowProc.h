#pragma once

#include "automation/collection.h"
#include "automation/connection_point.h"

#include <qvObjects_contract.h>

#include <array>

/// Watches the messages of a window: reports those that are chosen by an event, in which they may be altered or kept from the
/// window, or limits the sizes of the window.
class qvWindowProc final : public automation::WithEvents<automation::Object<qvWindowProc, faces::qvWindowProc>, __qvWindowProc> {
public:
    qvWindowProc() = default;
    ~qvWindowProc() { HookWindow(false); }

    void RaiseFormMessage(long hwnd, long& wMsg, long& wParam, long& lParam, VARIANT_BOOL& Cancel);

    void AddMsg(long Msg) noexcept;
    void RemoveMsg(long Msg) noexcept;
    /// Raises what the collection does when an item's own code empties it meanwhile.
    void ClearAllMsgs();
    automation::Ref<automation::Collection> get_RegisteredMessages();

    long get_hwnd() const noexcept { return hwnd_; }
    /// Moves the object to another window, on the thread of that window; to none, 0, when memory runs out.
    void put_hwnd(long value) noexcept;
    long get_OriginalWindowProc() const noexcept { return original_; }
    void put_OriginalWindowProc(long value) noexcept { original_ = value; }
    bool get_Enabled() const noexcept { return enabled_; }
    void put_Enabled(bool value) noexcept;
    bool get_MonitorAll() const noexcept { return monitors_all_; }
    void put_MonitorAll(bool value) noexcept { monitors_all_ = value; }

    /// A limit of 0, or a null pointer, stands for none. Always gives False.
    bool SetMinMaxInfo(const long* MinTrackSizeX, const long* MinTrackSizeY, const long* MaxTrackSizeX, const long* MaxTrackSizeY,
                       const long* MaxSizeX, const long* MaxSizeY, const long* MaxPositionX, const long* MaxPositionY,
                       const long* ReservedX, const long* ReservedY) noexcept;

private:
    /// The fields of a MINMAXINFO in their order.
    using MinMaxFields = std::array<long, sizeof(MINMAXINFO) / sizeof(long)>;

    void HookWindow(bool enable) noexcept;
    void limit(long min_max_info) const noexcept;

    long hwnd_ = 0;
    long original_ = 0; ///< the procedure that the window had before
    bool enabled_ = false;
    bool monitors_all_ = false;
    bool limits_sizes_ = false;
    MinMaxFields limits_{}; ///< 0 for none
    automation::Ref<automation::Collection> messages_; ///< made when it is first asked for
};
