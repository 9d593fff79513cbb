#include "automation/type_library.h"

#include "automation/border.h"
#include "automation/module.h"

#include <atomic>

namespace automation {
namespace {

std::atomic<ITypeLib*> library{nullptr};

} // namespace

ITypeLib& type_library()
{
    if (ITypeLib* const read = library.load())
        return *read;
    Ref<ITypeLib> fresh;
    check(LoadTypeLibEx(module::path().c_str(), REGKIND_NONE, fresh.put()));
    // Where several threads read it at once, the first result counts.
    ITypeLib* first = nullptr;
    if (library.compare_exchange_strong(first, fresh.get()))
        return *fresh.release();
    return *first;
}

Ref<ITypeInfo> type_info(REFGUID id)
{
    Ref<ITypeInfo> info;
    check(type_library().GetTypeInfoOfGuid(id, info.put()));
    return info;
}

} // namespace automation
