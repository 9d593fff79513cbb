// Texts that processes share. This program starts itself again for the other process.
#include "support/own_process.h"

#include "support/client.h"

#include <cstring>

using client::expect_error;
using client::Object;
using client::system_text;
using client::Value;

namespace {

constexpr const wchar_t* name_variable = L"SHARED_BLOCK";
constexpr long windows_base = static_cast<long>(0x80047148);
constexpr std::size_t megabyte = 1 << 20;
const std::wstring umlauts = L"Gr\u00FC\u00DFe, 5 \u20AC";

std::wstring text_of(const Object& memory)
{
    return memory.call(L"Str").text();
}

/// A new object on this block.
Object shared(const std::wstring& name, long size = 100)
{
    Object memory = Object::create(L"qvObjects.qvSharedMemory");
    memory.call(L"Create", {name, size});
    return memory;
}

/// A block's own memory, as any program finds it.
class Block {
public:
    explicit Block(const std::wstring& name) : mapping_{OpenFileMappingW(FILE_MAP_WRITE, FALSE, name.c_str())}
    {
        bytes_ = static_cast<char*>(MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, 0));
        EXPECT_TRUE(bytes_);
    }
    ~Block()
    {
        UnmapViewOfFile(bytes_);
        CloseHandle(mapping_);
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    char* bytes() const { return bytes_; }
    void put_length(std::int32_t length) const { std::memcpy(bytes_, &length, sizeof length); }

private:
    HANDLE mapping_;
    char* bytes_;
};

class SharedMemory : public testing::Test {
protected:
    /// A name that no other run has.
    std::wstring name(const wchar_t* purpose) const { return L"qvObjects " + std::to_wstring(GetCurrentProcessId()) + purpose; }

    client::Apartment apartment;
};

} // namespace

TEST_F(SharedMemory, WithoutABlockThereIsNoText)
{
    const Object memory = Object::create(L"qvObjects.qvSharedMemory");
    expect_error(memory.try_call(L"Str"), 13, L"Type mismatch", L"qvObjects.VBError");
    expect_error(memory.try_put(L"Str", {L"x"}), 13, L"Type mismatch", L"qvObjects.VBError");
    expect_error(memory.try_call(L"Create", {L"", 100}), -2147192344, system_text(160), L"qvObjects.Windows");
    EXPECT_EQ(memory.call(L"Size").number(), 0);
    memory.put(L"Size", {7});
    EXPECT_EQ(memory.call(L"Size").number(), 7);

    const std::wstring taken = name(L"event");
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, taken.c_str());
    memory.call(L"Create", {name(L"before"), 100});
    expect_error(memory.try_call(L"Create", {taken, 12}), windows_base + ERROR_INVALID_HANDLE, system_text(ERROR_INVALID_HANDLE),
                 L"qvObjects.Windows");
    CloseHandle(event);
    EXPECT_EQ(memory.call(L"Size").number(), 12);
    EXPECT_EQ(memory.try_call(L"Str").number(), 13) << "the block before is no longer this object's";
}

TEST_F(SharedMemory, ABlockHoldsLengthTextAndAsMuchAgain)
{
    const std::wstring block = name(L"abc");
    Value given = block, text = L"abc"; // variables of a script
    const Object memory = Object::create(L"qvObjects.qvSharedMemory");
    memory.call(L"CreateForString", {Value::variable(given), Value::variable(text)});
    EXPECT_EQ(memory.call(L"Size").number(), 10);
    EXPECT_EQ(text_of(memory), L"abc");
    EXPECT_EQ(std::memcmp(Block{block}.bytes(), "\3\0\0\0abc\0\0\0", 10), 0);

    const Object second = shared(block, 1);
    EXPECT_EQ(text_of(second), L"abc") << "it is not cleared";
    for (const std::wstring& next : {umlauts, std::wstring{}, std::wstring{L"a\0b", 3}, std::wstring{L"\u4E2D?"}}) {
        second.put(L"Str", {next});
        EXPECT_EQ(text_of(memory), next == L"\u4E2D?" ? L"??" : next);
    }
    EXPECT_EQ(shared(name(L"new"), 4).call(L"Str").text(), L"") << "a new one is empty";
}

TEST_F(SharedMemory, NothingGoesBeyondTheBlock)
{
    const std::wstring name = this->name(L"small");
    const Object memory = shared(name, 10);
    const std::size_t most = (4096 - 4) / 2; // memory comes in pages
    memory.put(L"Str", {std::wstring(most, L'x')});
    expect_error(memory.try_put(L"Str", {std::wstring(most + 1, L'y')}), 9, L"Subscript out of range", L"qvObjects.VBError");
    EXPECT_EQ(text_of(memory), std::wstring(most, L'x')) << "it is what it was";
    const Block block{name};
    for (const int length : {4093, -1, 0x7FFFFFFF}) {
        block.put_length(length);
        expect_error(memory.try_call(L"Str"), 9, L"Subscript out of range", L"qvObjects.VBError");
    }
    block.put_length(4092);
    EXPECT_EQ(text_of(memory).size(), 4092u) << "reading needs no filler";
}

TEST_F(SharedMemory, ABlockWithoutRoomInTheProcess)
{
    const Object memory = Object::create(L"qvObjects.qvSharedMemory");
    const auto outcome = memory.try_call(L"Create", {name(L"huge"), 0x7FFFFFFF});
    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.source, L"qvObjects.Windows");
    EXPECT_EQ(outcome.description, system_text(static_cast<DWORD>(outcome.number() - windows_base)));
    EXPECT_EQ(memory.call(L"Size").number(), 0x7FFFFFFF);
    EXPECT_EQ(memory.try_call(L"Str").number(), 9) << "a mapping without memory";
    EXPECT_EQ(memory.try_put(L"Str", {L"x"}).number(), 9);
    memory.call(L"Create", {name(L"fits"), 100});
    memory.put(L"Str", {L"x"});
    EXPECT_EQ(text_of(memory), L"x");
}

TEST(SharedMemoryRole, DISABLED_Partner)
{
    const client::Apartment apartment;
    wchar_t name[MAX_PATH];
    GetEnvironmentVariableW(name_variable, name, MAX_PATH);
    const Object memory = shared(name, 4);
    EXPECT_EQ(text_of(memory), umlauts);
    memory.put(L"Str", {L""});
    EXPECT_EQ(text_of(shared(name)), L"");
    memory.put(L"Str", {std::wstring(megabyte, L'\u00E4')});
    shared(std::wstring{name} + L"2").put(L"Str", {L"goes with its process"});
}

TEST_F(SharedMemory, TwoProcessesExchangeTextsWhenTheFirstObjectIsGone)
{
    const std::wstring block = name(L"both");
    shared(block, static_cast<long>(4 + 2 * megabyte)).put(L"Str", {umlauts});
    SetEnvironmentVariableW(name_variable, block.c_str());
    EXPECT_EQ(client::OwnProcess{L"SharedMemoryRole.DISABLED_Partner"}.exit_code(), 0u);
    EXPECT_TRUE(text_of(shared(block)) == std::wstring(megabyte, L'\u00E4')); // a megabyte is not to be shown
    EXPECT_EQ(text_of(shared(block + L"2")), L"");
}
