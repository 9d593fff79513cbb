#include "files/qvFile.h"

#include "files/arguments.h"
#include "files/folder_search.h"
#include "files/folder_walk.h"

using automation::Text;
using automation::view;

namespace {

/// Raises ItemFound for what a walk finds. The folder's text is made once for all that it holds.
class ItemFoundEvents final : public files::WalkVisitor {
public:
    ItemFoundEvents(const automation::ConnectionPoint& events, VARIANT_BOOL& cancelled)
        : events_{events}, cancelled_{cancelled}
    {
    }

    bool listens() const noexcept override { return events_.has_sinks(); }

    bool found(const std::wstring& folder, const files::FolderSearch& entry) override
    {
        constexpr DISPID item_found = 1;
        if (std::wstring_view{folder_} != folder)
            folder_ = Text{folder};
        const Text name{entry.name()};
        events_.fire(item_found, {automation::argument(folder_), automation::argument(name), automation::by_reference(cancelled_)});
        return cancelled_ == VARIANT_FALSE;
    }

private:
    const automation::ConnectionPoint& events_;
    VARIANT_BOOL& cancelled_;
    Text folder_;
};

} // namespace

void qvFile::WalkDirTree(BSTR& sSrcDir, std::wstring_view sSearchItem, WalkDirConsts fFlags, long Attributes)
{
    const std::wstring pattern{sSearchItem}; // before its text goes, which may be the folder's too
    if (!view(sSrcDir).ends_with(L'\\'))
        files::replace(sSrcDir, std::wstring{view(sSrcDir)} + L'\\');
    cancelled_ = VARIANT_FALSE;
    const std::wstring folder{view(sSrcDir)};
    const files::WalkRules rules{
        .pattern = pattern,
        .admitted = Attributes,
        .folders_only = (fFlags & dwDirectoriesOnly) != 0,
        .this_folder_only = (fFlags & dwWalkCurDirOnly) != 0,
    };
    ItemFoundEvents raised{events(), cancelled_};
    files::walk(folder, rules, raised);
}
