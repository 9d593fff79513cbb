#pragma once

#include "automation/values.h"

#include <oaidl.h>

namespace automation {

/// A record whose bytes are all there is to it, with its own memory. It is copied here byte by byte: the platform's own copy
/// leaves out arrays of fixed size under Wine, and reports success.
class Record {
public:
    Record() noexcept = default;
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
    ~Record()
    {
        if (memory_)
            description_->RecordDestroy(memory_);
    }

    /// Becomes a copy of `source`, or where that is null a record of zeros. Raises 7 when memory runs out.
    void make(Ref<IRecordInfo> description, const void* source);

    explicit operator bool() const noexcept { return memory_; }
    void* get() const noexcept { return memory_; }

    /// Puts it into a variable that holds a record of the same kind, or is empty. Raises 13 for any other.
    void store(VARIANT& variable);

private:
    Ref<IRecordInfo> description_;
    void* memory_ = nullptr;
    ULONG size_ = 0;
};

/// The description that a variant gives of its record; null where it holds none of this identity.
IRecordInfo* record_of(const VARIANT& value, REFGUID identity) noexcept;
/// The description of one of this module's records.
Ref<IRecordInfo> record_info(REFGUID identity);

} // namespace automation
