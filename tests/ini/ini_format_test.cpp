#include "ini/outline.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

using ini::deepest_level;
using ini::Held;
using ini::outline;
using ini::read;
using ini::Section;
using ini::written;

namespace {

std::wstring loaded(std::wstring_view text, bool hide_comments = false)
{
    const auto root = Section::create();
    read(*root, text, hide_comments);
    return outline(*root);
}

std::wstring repeated(std::wstring_view text, std::size_t times)
{
    std::wstring all;
    while (times-- > 0)
        all += text;
    return all;
}

constexpr int too_deep = 28;

} // namespace

TEST(IniReading, LinesEndAtCarriageReturns)
{
    EXPECT_EQ(loaded(L"a=1\rb=2\r\nc=3"), L"a=1;b=2;c=3;");
    EXPECT_EQ(loaded(L"a=1\n[B]\r\n\nc=2\r\n"), L"a=1\n[B];\nc=2;") << "a line feed alone is an ordinary character";
    EXPECT_EQ(loaded(L"\r\n  \t \r\n\ta = 1 \t\r\r\n"), L"a=1;") << "a line of blanks is empty";
    EXPECT_EQ(loaded(L""), L"");
    const std::wstring_view nuls{L"\0a\0=\0\r\n\0", 8};
    EXPECT_EQ(loaded(nuls), (std::wstring{L"\0a\0=\0;\0=;", 9}));
}

TEST(IniReading, Headers)
{
    EXPECT_EQ(loaded(L"[ Main ]\ra=1\r[Other]\rb=2"), L"[Main]{a=1;}[Other]{b=2;}");
    EXPECT_EQ(loaded(L"[Main\r[\r]"), L"[Main=;[=;]=;") << "what is not closed is a parameter";
    EXPECT_EQ(loaded(L"[]\ra=1\r[  ]\r[a]b]\r[k=v]"), L"[]{a=1;}[  ]{}[a]b]{}[k=v]{}");
}

TEST(IniReading, Parameters)
{
    EXPECT_EQ(loaded(L"key = a;b\r = x\ralone\ra=b=c\rempty=\r\"q\"= \"v\" "), L"key=a;b;=x;alone=;a=b=c;empty=;\"q\"=\"v\";");
    EXPECT_EQ(loaded(L"a=1\r[S]\rA=2\r[T]\rx=\r[s]\ra=3\rb=4\r[t]\rX=5"), L"a=1;[S]{A=3;b=4;}[T]{x=5;}")
        << "what is repeated goes on with the first one";
}

TEST(IniReading, Comments)
{
    const wchar_t* const text = L";note\r ; [S] {\rkey = a ; b;c\rall=;x\rna;me=v\rp;q\r[;S]";
    EXPECT_EQ(loaded(text, true), L"key=a;all=;na;me=v;p;q=;[;S]{}");
    EXPECT_EQ(loaded(L";note=1\rkey = a ; b;c", false), L";note=1;key=a ; b;c;");
}

TEST(IniReading, Nesting)
{
    EXPECT_EQ(loaded(L"[Outer] {\r[Inner]\rk=v\r}\rx=1"), L"[Outer]{x=1;[Inner]{k=v;}}");
    EXPECT_EQ(loaded(L"[O]\r{\ra=1\r[I]\r{\rb=2\r[J]\r}\rc=3\r[K]\r}\r[P]"), L"[O]{a=1;[I]{b=2;c=3;[J]{}}[K]{}}[P]{}");
    EXPECT_EQ(loaded(L"{\ra=1\r[S]\rb=2\r}\rc=3"), L"a=1;c=3;[S]{b=2;}") << "before all headers, the level goes on";
    EXPECT_EQ(loaded(L"[S]\rtext = lost {\rk=v\r}"), L"[S]{k=v;}");
    EXPECT_EQ(loaded(L"[S] {\r[T] {\ra=1"), L"[S]{[T]{a=1;}}") << "the end of the file ends all levels";
    EXPECT_EQ(loaded(L"[S] {\ra=1 }\rb={0}\rc=2"), L"[S]{a=1;b={0;}") << "at the top a closing brace ends the load";
    EXPECT_EQ(loaded(L"[S] {\r[T] }\ra=1\r[U] } {\rb=2\r}\rc=3"), L"[S]{a=1;[T]{}}[U]{b=2;}");
    EXPECT_EQ(loaded(L"[S] {\r[T] } {\rb=2\r}\rc=3\r[U]"), L"[S]{c=3;[T]{b=2;}}[U]{}");
}

TEST(IniReading, MergesIntoWhatIsThere)
{
    const auto root = Section::create();
    root->parameters().add(L"Kept").value = ini::StoredText{L"k"};
    root->parameters().add(L"Changed").value = ini::StoredText{L"old"};
    root->sections()->add(L"Main").sections()->add(L"Sub");
    const std::wstring text = L"changed=new\radded=1\r[other]\r[MAIN] {\ra=1\r[sub]\rb=2";
    const std::wstring merged = L"Kept=k!;Changed=new;added=1;[Main]{a=1;[Sub]{b=2;}}[other]{}";
    read(*root, text, false);
    EXPECT_EQ(outline(*root), merged);
    read(*root, text, false);
    EXPECT_EQ(outline(*root), merged) << "loading twice leaves one of each";

    root->set_sections(nullptr);
    root->set_parameters(nullptr);
    read(*root, L"a=1\r[S]", false);
    EXPECT_EQ(outline(*root), L"a=1;[S]{}");
}

TEST(IniReading, SharedListsAreReadAsOne)
{
    const auto root = Section::create();
    Section& a = root->sections()->add(L"A");
    root->sections()->add(L"B").set_sections(Held{a.sections()});
    read(*root, L"[A] {\r[X]\rk=1\r}\r[B] {\r[x]\rk=2\r}", false);
    EXPECT_EQ(outline(*root), L"[A]{[X]{k=2;}}[B]{[X]{k=2;}}");
}

TEST(IniReading, AFailedLoadChangesNothing)
{
    const auto root = Section::create();
    read(*root, L"a=1\rb=2\r[S] {\r[T]\rc=3\r}\r[U]\r[V]", false);
    root->parameters().add(L"own");
    root->sections()->find_name(L"u")->rename(L"renamed");
    root->sections()->find_name(L"S")->set_found_in_file(false);
    root->sections()->find_name(L"V")->set_sections(nullptr);
    Section* const had_key = root->sections()->find_key(L"U");
    const std::wstring before = outline(*root);

    const std::wstring text = L"a=9\ra=8\rown=7\rnew=6\r[New]\r[S] {\rs=5\r[T] {\rc=4\r[Deep]\r}\r}\r[U]\rk=1\r[V] {\r[W]\r}\r[Last]";
    EXPECT_EQ(error_of([&] { read(*root, text + repeated(L"{\r", deepest_level), false); }), too_deep);
    EXPECT_EQ(outline(*root), before);
    EXPECT_EQ(root->sections()->find_key(L"U"), had_key);

    read(*root, text, false);
    EXPECT_EQ(outline(*root),
              L"a=8;b=2;own=7;new=6;[S]{s=5;[T]{c=4;[Deep]{}}}[renamed]{}[V]{[W]{}}[New]{}[U]{k=1;}[Last]{}");
}

TEST(IniWriting, NestedSectionsAreIndented)
{
    const auto root = Section::create();
    read(*root, L"[Outer] {\r[Inner]\rk=v\r}", false);
    EXPECT_EQ(written(*root), L"[Outer]\r\n{\r\n\r\n\t[Inner]\r\n\tk=v\r\n\r\n\r\n}\r\n\r\n");

    read(*root, L"top = 1\r;note\r[Outer]\rp\r{\r[Inner] {\r[Core]\rc=\r}\r[Next]\r}\r[Last]\rl = \"x\" ", false);
    EXPECT_EQ(written(*root),
              L"top=1\r\n;note=\r\n\r\n"
              L"[Outer]\r\n{\r\n\tp=\r\n\r\n"
              L"\t[Inner]\r\n\t{\r\n\t\tk=v\r\n\r\n"
              L"\t\t[Core]\r\n\t\tc=\r\n\r\n\r\n"
              L"\t}\r\n\r\n"
              L"\t[Next]\r\n\r\n\r\n"
              L"}\r\n\r\n"
              L"[Last]\r\nl=\"x\"\r\n\r\n\r\n");
}

TEST(IniWriting, SectionsWithoutNameOrContent)
{
    const auto root = Section::create();
    EXPECT_EQ(written(*root), L"");
    root->sections()->add(L"").sections()->add(L"Sub").parameters().add(L"a");
    EXPECT_EQ(written(*root), L"[Sub]\r\na=\r\n\r\n\r\n\r\n") << "without a name there are no braces";
    root->rename(L"Root");
    EXPECT_EQ(written(*root), L"[Root]\r\n{\r\n\r\n\t[Sub]\r\n\ta=\r\n\r\n\r\n\r\n}\r\n");
    root->set_sections(nullptr);
    EXPECT_EQ(written(*root), L"[Root]\r\n\r\n");
}

TEST(IniWriting, WhatWasWrittenIsReadBack)
{
    const auto root = Section::create();
    std::wstring text;
    for (int i = 0; i < 500; ++i)
        text += L"[Section " + std::to_wstring(i) + L"]\rname = Gr\u00f6\u00dfe \u20ac\r{\r[Sub]\rlong=" + repeated(L"x", i % 40 * 450) + L"\r}\r";
    read(*root, text, false);
    const auto again = Section::create();
    read(*again, written(*root), false);
    EXPECT_EQ(outline(*again), outline(*root));
    EXPECT_EQ(written(*again), written(*root));
}

TEST(IniDepth, TheDeepestTreeIsReadAndWritten)
{
    const std::wstring text = repeated(L"[a] {\r", deepest_level - 1) + L"[a]\r";
    const auto root = Section::create();
    read(*root, text, false);
    std::size_t size = 0;
    ini::write(*root, [&](std::wstring_view piece) { size += piece.size(); });
    // [a], {, } of every level but the last with their indents and ends, its two or three empty lines, the last [a]
    const std::size_t n = deepest_level - 1;
    EXPECT_EQ(size, 3 * n * (n - 1) / 2 + n * (5 + 3 + 2 + 3 + 2) + n + 5 + 2 + 2);

    EXPECT_EQ(error_of([&] { read(*root, L"b=1\r" + text + L"{\r", false); }), too_deep);
    EXPECT_EQ(error_of([&] { read(*Section::create(), repeated(L"[a] {\r", 100'000), false); }), too_deep);
    EXPECT_EQ(error_of([&] { read(*Section::create(), repeated(L"[a] } {\r", 100'000), false); }), too_deep);
    EXPECT_EQ(root->parameters().count(), 0u);
}

TEST(IniDepth, ATreeThatIsTooDeepOrContainsItselfIsNotWritten)
{
    const auto root = Section::create();
    Section& outer = root->sections()->add(L"Outer");
    Section& inner = outer.sections()->add(L"Inner");
    inner.set_sections(Held{root->sections()});
    EXPECT_EQ(error_of([&] { written(*root); }), too_deep);
    inner.set_sections(Held{inner.sections_if_any()});
    inner.set_sections(Held{outer.sections()});
    EXPECT_EQ(error_of([&] { written(*root); }), too_deep);
    inner.set_sections(nullptr);
    EXPECT_EQ(written(*root), L"[Outer]\r\n{\r\n\r\n\t[Inner]\r\n\r\n\r\n}\r\n\r\n");

    Section* deep = &inner;
    for (int level = 0; level < 1'000'000; ++level)
        deep = &deep->create_sections().add(L"x");
    EXPECT_EQ(error_of([&] { written(*root); }), too_deep);
    Held kept{deep};
    root->sections()->remove(outer);
    EXPECT_EQ(kept->name(), L"x");
}
