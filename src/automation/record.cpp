#include "automation/record.h"

#include "automation/border.h"
#include "automation/type_library.h"

#include <cstring>
#include <utility>

namespace automation {

void Record::make(Ref<IRecordInfo> description, const void* source)
{
    check(description->GetSize(&size_));
    memory_ = description->RecordCreate();
    if (!memory_)
        throw Error{Runtime::OutOfMemory};
    description_ = std::move(description);
    if (source)
        std::memcpy(memory_, source, size_);
    else
        std::memset(memory_, 0, size_);
}

void Record::store(VARIANT& variable)
{
    GUID identity{};
    check(description_->GetGuid(&identity));
    if (record_of(variable, identity)) {
        std::memcpy(variable.pvRecord, memory_, size_);
        return;
    }
    if (variable.vt != VT_EMPTY)
        throw Error{Runtime::TypeMismatch};
    variable.vt = VT_RECORD;
    variable.pvRecord = std::exchange(memory_, nullptr);
    variable.pRecInfo = description_.release();
}

IRecordInfo* record_of(const VARIANT& value, REFGUID identity) noexcept
{
    GUID own{};
    const bool is_record = (value.vt & ~VT_BYREF) == VT_RECORD && value.pRecInfo && value.pvRecord;
    return is_record && SUCCEEDED(value.pRecInfo->GetGuid(&own)) && own == identity ? value.pRecInfo : nullptr;
}

Ref<IRecordInfo> record_info(REFGUID identity)
{
    Ref<IRecordInfo> description;
    check(GetRecordInfoFromTypeInfo(type_info(identity).get(), description.put()));
    return description;
}

} // namespace automation
