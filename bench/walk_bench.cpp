// A walk over 20,000 files in 1,000 folders, against the barest recursion that lists them, and a client in C++ that hears of
// every file against a walk of which nobody hears. Every ratio is of two times taken in this run, alternately, the typical
// one of several.
#include "stopwatch.h"

#include "files/folder_removal.h"
#include "files/qvFile.h"

#include <cstdio>
#include <string>

namespace {

constexpr int rounds = 15;
constexpr int outer = 10, middle = 10, inner = 9; // folders: 10 with 10 each with 9 each, and the top one makes 1,011
constexpr int files_each = 20;

/// A tree in the folder for temporary files, gone with its owner.
class Tree {
public:
    Tree()
    {
        wchar_t place[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, place);
        GetTempFileNameW(place, L"qvw", 0, name);
        DeleteFileW(name);
        top_ = name;
        add(top_, 0);
    }
    ~Tree()
    {
        files::clear_folder(top_, true);
        RemoveDirectoryW(top_.c_str());
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    const std::wstring& top() const { return top_; }
    int folders() const { return folders_; }

private:
    void add(const std::wstring& folder, int depth)
    {
        CreateDirectoryW(folder.c_str(), nullptr);
        ++folders_;
        for (int i = 0; i < files_each; ++i) {
            const std::wstring path = folder + L"\\Measured data " + std::to_wstring(i) + L".txt";
            CloseHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        }
        constexpr int below[]{outer, middle, inner, 0};
        for (int i = 0; i < below[depth]; ++i)
            add(folder + L"\\Folder " + std::to_wstring(i), depth + 1);
    }

    std::wstring top_;
    int folders_ = 0;
};

int plain_walk(const std::wstring& folder)
{
    int files = 0;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return 0;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            ++files;
        else if (found.cFileName[0] != L'.')
            files += plain_walk(folder + found.cFileName + L"\\");
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return files;
}

/// A client that counts. It lives where it is declared.
class Counter final : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        *object = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        ++count;
        return S_OK;
    }

    int count = 0;
};

/// The object, and one that a client listens to.
struct Objects {
    Objects()
    {
        const auto container = automation::query<IConnectionPointContainer>(heard->unknown());
        automation::Ref<IConnectionPoint> point;
        DWORD cookie = 0;
        container->FindConnectionPoint(__uuidof(__qvFile), point.put());
        point->Advise(&counter, &cookie);
    }
    Counter counter;
    automation::Ref<qvFile> unheard = automation::make<qvFile>(), heard = automation::make<qvFile>();
};

void walk(qvFile& object, std::wstring_view folder, std::wstring_view pattern)
{
    BSTR path = automation::Text{folder}.release();
    object.face<_qvFile>()->WalkDirTree(&path, automation::Text{pattern}.get(), dwWalkDirNormal, 0);
    SysFreeString(path);
}

} // namespace

int main()
{
    const Tree tree;
    Objects objects;
    const std::wstring top = tree.top() + L"\\";
    Sleep(4000); // what has changed only now is searched again when a client has heard of it
    Typical plain, unheard, heard, heard_of_text;
    int files = 0;
    for (int round = 0; round < rounds; ++round) {
        plain.take([&] { files = plain_walk(top); });
        unheard.take([&] { walk(*objects.unheard, top, L"*.*"); });
        heard.take([&] { walk(*objects.heard, top, L"*.*"); });
        heard_of_text.take([&] { walk(*objects.heard, top, L"*.txt"); });
    }
    std::printf("A walk over %d files in %d folders, %.0f ms by bare recursion\n", files, tree.folders(), 1000 * plain.seconds());
    std::printf("  %.2f times the bare recursion when nobody listens\n", unheard.seconds() / plain.seconds());
    std::printf("  %.2f times that with a client in C++ that hears of every file, %.2f times when it asked for *.txt\n",
                heard.seconds() / unheard.seconds(), heard_of_text.seconds() / unheard.seconds());
    return objects.counter.count == 2 * rounds * files ? 0 : 1;
}
