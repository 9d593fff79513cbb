// Lists the files below a folder, the current one if none is named, and stops after some of them:
//     walk [FOLDER [PATTERN [MOST]]]
//
// It shows how a program in C++ hears the events of an object: here ItemFound of qvFile, which its member WalkDirTree raises.
// Build it as a 32-bit program, with one of
//     cl /std:c++17 /EHsc /DUNICODE walk.cpp ole32.lib oleaut32.lib uuid.lib
//     i686-w64-mingw32-g++ -std=c++17 -municode -static walk.cpp -o walk.exe -lole32 -loleaut32 -luuid
#include "../late_bound.h"

#include <clocale>
#include <cstdio>
#include <cwchar>

/// Prints what the walk finds.
class Printer final : public Listener {
public:
    explicit Printer(int most) : most_{most} {}

    /// The one event is ItemFound(sPath, sFileName, fCancel). Arguments come in reverse order.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        constexpr DISPID item_found = 1;
        if (event != item_found || arguments->cArgs != 3)
            return DISP_E_MEMBERNOTFOUND;
        const VARIANTARG &path = arguments->rgvarg[2], &name = arguments->rgvarg[1], &cancel = arguments->rgvarg[0];
        std::wprintf(L"%ls%ls\n", path.bstrVal, name.bstrVal);
        if (++found_ == most_)
            *cancel.pboolVal = VARIANT_TRUE; // ends the walk
        return S_OK;
    }

    int found() const { return found_; }

private:
    const int most_;
    int found_ = 0;
};

void list(const wchar_t* folder, const wchar_t* pattern, int most)
{
    const Object files{L"qvObjects.qvFile"};
    Printer printer{most};
    printer.listen_to(files);
    files.call(L"WalkDirTree", {folder, pattern});
    std::wprintf(L"%d found%ls\n", printer.found(), most > 0 && printer.found() == most ? L", there may be more" : L"");
}

int wmain(int count, wchar_t** arguments)
{
    std::setlocale(LC_ALL, ""); // names may hold any letter of the user's language
    CoInitialize(nullptr);
    int code = 0;
    try {
        list(count > 1 ? arguments[1] : L".", count > 2 ? arguments[2] : L"*.*",
             count > 3 ? static_cast<int>(std::wcstol(arguments[3], nullptr, 10)) : 0);
    } catch (const std::exception& error) {
        std::wprintf(L"%hs\n", error.what());
        code = 1;
    }
    CoUninitialize();
    return code;
}
