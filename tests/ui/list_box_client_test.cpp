// The members of qvForm that work on list boxes, with list boxes of the client that write down all that happens to them.

#include "support/client.h"
#include "support/dispatch_object.h"

#include <sstream>

using client::expect_error;
using client::Object;
using client::Value;

namespace {

/// A list box with columns. Its entries are told as "red,1|*green,-": cells with commas between them, a "*" before a selected
/// entry, a "-" for a cell that was never filled.
class ListBox : public DispatchObject {
public:
    enum Member { ListCount = 1, ColumnCount, Selected, List, Column, AddItem, RemoveItem, Clear, ListIndex };

    ListBox(const std::wstring& entries, int columns)
        : DispatchObject{{L"ListCount", L"ColumnCount", L"Selected", L"List", L"Column", L"AddItem", L"RemoveItem", L"Clear",
                          L"ListIndex"},
                         [this](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
                             return answer(static_cast<Member>(member), arguments, result);
                         }},
          columns{columns}
    {
        std::wistringstream rest{entries};
        for (std::wstring entry; std::getline(rest, entry, L'|');) {
            const bool is_selected = entry.starts_with(L'*');
            rows_.push_back({{}, is_selected});
            std::wistringstream cells{entry.substr(is_selected)};
            for (std::wstring cell; std::getline(cells, cell, L',');)
                rows_.back().cells.push_back(cell == L"-" ? Value::null() : Value{cell});
            rows_.back().cells.resize(10, Value::null());
        }
    }

    std::wstring told() const
    {
        std::wstring all;
        for (const Row& row : rows_) {
            all += (all.empty() ? L"" : L"|") + std::wstring{row.is_selected ? L"*" : L""};
            const int shown = columns < 0 ? 10 : std::max(columns, 1);
            for (int i = 0; i < shown; ++i)
                all += (i > 0 ? L"," : L"") + (row.cells[i].vt == VT_NULL ? L"-" : row.cells[i].text());
        }
        return all;
    }
    /// After so many uses of this member, it fails once.
    void fail(Member member, int after) { failing_ = member, left_ = after; }

    int columns;
    long current = -1;
    std::wstring log;       ///< what was done, without what was only asked
    std::wstring questions; ///< what was asked

private:
    struct Row {
        std::vector<Value> cells;
        bool is_selected;
    };

    HRESULT answer(Member member, const DISPPARAMS& arguments, VARIANT* result)
    {
        if (member == failing_ && left_-- == 0)
            return CTL_E_PERMISSIONDENIED;
        const bool is_put = arguments.cNamedArgs == 1;
        const auto argument = [&](UINT i) -> VARIANTARG& { return arguments.rgvarg[arguments.cArgs - 1 - i]; };
        const auto row = [&](UINT i) { return static_cast<std::size_t>(argument(i).lVal); };
        const auto give = [&](Value value) { return VariantCopy(result, &value); };
        if (!is_put && member <= Column)
            questions += L"#cslC"[member - 1] + (arguments.cArgs > 0 ? std::to_wstring(arguments.rgvarg[0].lVal) : L"") + L" ";
        switch (member) {
        case ListCount:
            return give(static_cast<long>(rows_.size()));
        case ColumnCount:
            return give(columns);
        case Selected:
            if (row(0) >= rows_.size())
                return DISP_E_BADINDEX;
            if (!is_put)
                return give(rows_[row(0)].is_selected);
            log += L"select " + std::to_wstring(row(0)) + (argument(1).boolVal ? L" " : L" not ");
            rows_[row(0)].is_selected = argument(1).boolVal;
            return S_OK;
        case List:
            return row(0) < rows_.size() ? give(rows_[row(0)].cells[0]) : DISP_E_BADINDEX;
        case Column:
            if (row(1) >= rows_.size() || row(0) >= 10)
                return DISP_E_BADINDEX;
            if (!is_put)
                return give(rows_[row(1)].cells[row(0)]);
            return VariantCopy(&rows_[row(1)].cells[row(0)], &argument(2));
        case AddItem:
            rows_.push_back({std::vector<Value>(10, Value::null()), false});
            return VariantCopy(&rows_.back().cells[0], &argument(0));
        case RemoveItem:
            if (row(0) >= rows_.size())
                return DISP_E_BADINDEX;
            log += L"remove " + std::to_wstring(row(0)) + L" ";
            rows_.erase(rows_.begin() + argument(0).lVal);
            return S_OK;
        case Clear:
            log += L"clear ";
            rows_.clear();
            return S_OK;
        case ListIndex:
            current = argument(0).lVal;
            return S_OK;
        }
        return DISP_E_MEMBERNOTFOUND;
    }

    static constexpr HRESULT CTL_E_PERMISSIONDENIED = static_cast<HRESULT>(0x800A0046);

    std::vector<Row> rows_;
    Member failing_{};
    int left_ = 0;
};

class ListBoxes : public testing::Test {
protected:
    client::Apartment apartment;
    const Object form = Object::create(L"qvObjects.qvForm");
};

} // namespace

TEST_F(ListBoxes, TheFirstSelectedEntryDecides)
{
    struct Case { const wchar_t *entries, *questions; bool selected; };
    for (const Case& c : {Case{L"", L"# ", false}, {L"a|b", L"# s0 s1 ", false}, {L"a|*b|*c", L"# s0 s1 ", true}}) {
        ListBox box{c.entries, 1};
        EXPECT_EQ(form.call(L"Box_Sel", {&box}).flag(), c.selected);
        EXPECT_EQ(box.questions, c.questions);
    }
}

TEST_F(ListBoxes, SelectionsAreLookedForInSoManyEntriesOnly)
{
    long count = 0, asked = 0, selected = -1;
    DispatchObject box{{L"ListCount", L"Selected"}, [&](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
                           asked += member == 2;
                           *result = member == 1 ? Value{count} : Value{arguments.rgvarg[0].lVal == selected};
                           return S_OK;
                       }};
    count = 32767;
    EXPECT_FALSE(form.call(L"Box_Sel", {&box}).flag());
    count = 32768;
    expect_error(form.try_call(L"Box_Sel", {&box}), 6, L"Overflow");
    EXPECT_EQ(asked, 32767 + 32768);
    selected = 32767;
    EXPECT_TRUE(form.call(L"Box_Sel", {&box}).flag());
    asked = 0;
    count = 32769;
    expect_error(form.try_call(L"Box_Sel", {&box}), 6, L"Overflow");
    EXPECT_EQ(asked, 0);
}

TEST_F(ListBoxes, EntriesAreCopiedAndMoved)
{
    struct Case {
        const wchar_t* from;
        int from_columns;
        const wchar_t* to;
        int to_columns;
        bool all;
        long taken;
        const wchar_t *copied, *left;
    };
    for (const Case& c : {
             Case{L"", 1, L"x", 1, true, 0, L"x", L""},
             {L"a|*b|c|*d", 1, L"x", 1, false, 2, L"x|b|d", L"a|c"},
             {L"a|*b|c|*d", 1, L"x", 1, true, 4, L"x|a|b|c|d", L""},
             {L"*x|*b|*B|*\u00e4|c", 1, L"X|\u00c4", 1, false, 1, L"X|\u00c4|b", L"*x|*B|*\u00e4|c"},
             {L"a,1,2|b,-,3", 3, L"", 3, true, 2, L"a,1,2|b,-,3", L""},
             {L"a,1,2|b,-,3", 3, L"", 2, true, 2, L"a,1|b,-", L""},
             {L"a,1|b,2", 1, L"z,9,8", 3, true, 2, L"z,9,8|a,-,-|b,-,-", L""},
             {L"a,1,2", -1, L"", 3, true, 1, L"a,1,2", L""},
             {L"a,1,2,3,4,5,6,7,8,9", -1, L"", -1, true, 1, L"a,1,2,3,4,5,6,7,8,9", L""},
             {L"-,1|-,2", 2, L"", 2, true, 1, L",1", L"-,2"},
         }) {
        SCOPED_TRACE(testing::Message() << std::wstring{c.from}.c_str());
        ListBox from{c.from, c.from_columns}, to{c.to, c.to_columns};
        EXPECT_EQ(form.call(L"Box_Copy", {&from, &to, c.all}).number(), c.taken);
        EXPECT_EQ(from.told(), ListBox(c.from, c.from_columns).told()) << "only copied";
        ListBox target{c.to, c.to_columns};
        EXPECT_EQ(form.call(L"Box_Move", {&from, &target, c.all}).number(), c.taken);
        EXPECT_EQ(target.told(), to.told());
        EXPECT_EQ(from.told(), c.left);
        EXPECT_EQ(to.told(), c.copied);
    }
    ListBox from{L"*a|b|*c|*d", 1}, to{L"", 1};
    form.call(L"Box_Move", {&from, &to, false});
    EXPECT_EQ(from.log, L"remove 3 remove 2 remove 0 ");
    ListBox same{L"*a|b", 1};
    EXPECT_EQ(form.call(L"Box_Move", {&same, &same, true}).number(), 0);
    EXPECT_EQ(same.told(), L"*a|b");
}

TEST_F(ListBoxes, NoEntryIsLostWhenAListBoxFails)
{
    ListBox from{L"*a,1|*b,2", 2}, to{L"x,0", 2};
    to.fail(ListBox::AddItem, 1);
    expect_error(form.try_call(L"Box_Move", {&from, &to, true}), 70, L"Permission denied");
    EXPECT_EQ(from.told(), L"*a,1|*b,2");
    EXPECT_EQ(to.told(), L"x,0|a,1");

    for (const auto& [member, after] : {std::pair{ListBox::Column, 8 + 3}, {ListBox::Selected, 4 + 1}}) {
        ListBox box{L"d,1|*c,2|b,3|*a,-", 2};
        box.fail(member, after);
        expect_error(form.try_call(L"Box_Sort", {&box, 0}), 70, L"Permission denied");
        EXPECT_EQ(box.told(), L"d,1|*c,2|b,3|*a,-");
    }
}

TEST_F(ListBoxes, EntriesAreSortedWithAllTheirColumns)
{
    struct Case { const wchar_t* entries; int columns; long column; bool sorted; const wchar_t* result; };
    for (const Case& c : {
             Case{L"", 1, 0, true, L""},
             {L"b|C|*a", 1, 0, true, L"*a|b|C"},
             {L"b,1|*B,2|a,3|*b,4", 2, 0, true, L"a,3|b,1|*B,2|*b,4"},
             {L"x,10|y,9|z,-|*w,b", 2, 1, true, L"z,-|x,10|y,9|*w,b"},
             {L"z|\u00e4|a|\u00c4b", 1, 0, true, L"a|\u00e4|\u00c4b|z"},
             {L"b,1|a,2", 1, 1, false, L"b|a"},
             {L"b,1|a,2", 2, -1, false, L"b,1|a,2"},
             {L"b|a", 0, 0, false, L"b|a"},
             {L"b,2|a,3|c,1", -1, 1, true, L"c,1,-,-,-,-,-,-,-,-|b,2,-,-,-,-,-,-,-,-|a,3,-,-,-,-,-,-,-,-"},
         }) {
        ListBox box{c.entries, c.columns};
        EXPECT_EQ(form.call(L"Box_Sort", {&box, c.column}).flag(), c.sorted);
        EXPECT_EQ(box.told(), c.result);
    }
    ListBox box{L"c|*b|a|*d", 1};
    form.call(L"Box_Sort", {&box, 0});
    EXPECT_EQ(box.log, L"") << "the selection stands where it was";
    ListBox one{L"*b|a", 1};
    form.call(L"Box_Sort", {&one, 0});
    EXPECT_EQ(one.log, L"select 0 not select 1 ") << "where one entry can be selected, that comes last";
}

TEST_F(ListBoxes, SelectedEntriesAreRemoved)
{
    struct Case { const wchar_t* entries; long removed; const wchar_t *left, *log; long current; };
    for (const Case& c : {
             Case{L"", 0, L"", L"", -1},
             {L"a|b", 0, L"a|b", L"", -1},
             {L"*a|*b", 2, L"", L"clear ", -1},
             {L"a|*b|c|*d|e|f", 2, L"a|c|e|f", L"remove 3 remove 1 ", 2},
             {L"*a|b", 1, L"b", L"remove 0 ", 0},
             {L"a|b|*c|*d", 2, L"a|b", L"remove 3 remove 2 ", 1},
         }) {
        ListBox box{c.entries, 1};
        EXPECT_EQ(form.call(L"Box_Del", {&box}).number(), c.removed) << std::wstring{c.entries}.c_str();
        EXPECT_EQ(box.told(), c.left);
        EXPECT_EQ(box.log, c.log);
        EXPECT_EQ(box.current, c.current);
    }
}

TEST_F(ListBoxes, WhatIsNoListBoxIsAnError)
{
    DispatchObject other{{L"Caption"}, {}};
    ListBox box{L"a", 1};
    const Value nothing{static_cast<IDispatch*>(nullptr)};
    for (const auto& [member, arguments] : {std::pair{L"Box_Sel", std::vector<Value>{}}, {L"Box_Del", {}}, {L"Box_Sort", {0}},
                                            {L"Box_Copy", {&box, true}}, {L"Box_Move", {&box, true}}}) {
        std::vector<Value> with = arguments;
        with.insert(with.begin(), Value{&other});
        expect_error(form.try_call(member, with), 438, L"Object doesn't support this property or method");
        with[0] = nothing;
        expect_error(form.try_call(member, with), 91, L"Object variable or With block variable not set");
    }
}
