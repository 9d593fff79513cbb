#include "automation/enumerator.h"

#include "automation/object.h"

#include <algorithm>

namespace automation {
namespace {

class Enumerator final : public Helper<Enumerator, IEnumVARIANT> {
public:
    Enumerator(IUnknown& owner, Sequence& sequence, std::size_t start)
        : owner_{&owner}, sequence_{sequence}, cursor_{sequence.cursors(), start}
    {
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* items, ULONG* fetched) noexcept override
    {
        if (!items || (wanted != 1 && !fetched))
            return E_POINTER;
        ULONG given = 0;
        for (ULONG i = 0; i < wanted; ++i)
            VariantInit(&items[i]);
        const HRESULT result = answer([&] {
            for (; given < wanted && cursor_.next < sequence_.count(); ++given, ++cursor_.next)
                items[given] = sequence_.item(cursor_.next).release();
        });
        if (fetched)
            *fetched = given;
        if (FAILED(result))
            return result;
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override
    {
        const std::size_t left = sequence_.count() - std::min(cursor_.next, sequence_.count());
        cursor_.next += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override
    {
        cursor_.next = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** clone) noexcept override
    {
        return answer(clone, [&] { return Ref<Enumerator>::adopt(new Enumerator{*owner_, sequence_, cursor_.next}); });
    }

private:
    Ref<IUnknown> owner_; // before the cursor, which needs the list until its end
    Sequence& sequence_;
    Cursor cursor_;
};

} // namespace

Ref<IUnknown> make_enumerator(IUnknown& owner, Sequence& sequence, std::size_t start)
{
    return Ref<Enumerator>::adopt(new Enumerator{owner, sequence, start});
}

} // namespace automation
