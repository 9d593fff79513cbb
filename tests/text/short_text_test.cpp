#include "text/short_text.h"

#include <gtest/gtest.h>

#include <random>

using text::shortened;

namespace {

class ShortText : public testing::Test {
protected:
    ~ShortText() override { DeleteDC(context); }

    long width(std::wstring_view text) const
    {
        SIZE size{};
        GetTextExtentPoint32W(context, text.data(), static_cast<int>(text.size()), &size);
        return size.cx;
    }

    HDC context = CreateCompatibleDC(nullptr);
};

constexpr std::wstring_view path = L"C:\\Folder\\Another folder\\file.txt";

} // namespace

TEST_F(ShortText, APathLosesItsMiddleAndKeepsItsLength)
{
    EXPECT_EQ(shortened(context, path, width(path) + 1, 0), path);
    EXPECT_EQ(shortened(context, L"", 10, 0), L"");
    const std::wstring result = shortened(context, path, width(path) * 2 / 3, 0);
    ASSERT_EQ(result.size(), path.size());
    const std::wstring shown = result.c_str();
    EXPECT_NE(shown.find(L"..."), shown.npos);
    EXPECT_TRUE(shown.ends_with(L"\\file.txt"));
    EXPECT_LE(width(shown), width(path) * 2 / 3);
    EXPECT_EQ(result.substr(shown.size() + 1), path.substr(shown.size() + 1)) << "what was there before";
}

TEST_F(ShortText, TheStyleDecides)
{
    const std::wstring result = shortened(context, path, width(path) / 2, DT_END_ELLIPSIS | DT_MODIFYSTRING);
    EXPECT_TRUE(std::wstring{result.c_str()}.ends_with(L"..."));
    EXPECT_EQ(shortened(context, path, 10, DT_END_ELLIPSIS), path) << "without leave to change it";
    EXPECT_EQ(shortened(context, L"a", 1, DT_END_ELLIPSIS | DT_MODIFYSTRING).size(), 1u) << "shorter than an ellipsis";
}

TEST_F(ShortText, NeverFailsWhateverTheContextAndTheStyle)
{
    const HBRUSH brush = CreateSolidBrush(0);
    for (const HGDIOBJ other : {HGDIOBJ{}, reinterpret_cast<HGDIOBJ>(0x1234), static_cast<HGDIOBJ>(brush)})
        EXPECT_EQ(shortened(static_cast<HDC>(other), path, 10, 0), path) << "no device context";
    DeleteObject(brush);

    std::mt19937 random{5};
    for (int i = 0; i < 3000; ++i) {
        std::wstring text(random() % 40 + 1, L' ');
        for (wchar_t& character : text)
            character = L"ab\t\r\n\\&.\u00e4\u4e2d"[random() % 10];
        auto style = static_cast<long>(random() & 0xFFFFFF);
        if (style & DT_PATH_ELLIPSIS) // Wine ends the process where another ellipsis comes on top
            style &= ~(DT_END_ELLIPSIS | DT_WORD_ELLIPSIS);
        ASSERT_EQ(shortened(context, text, static_cast<long>(random() % 300) - 50, style).size(), text.size()) << style;
    }
}
