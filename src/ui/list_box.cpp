#include "ui/list_box.h"

#include "automation/border.h"
#include "automation/case_folding.h"
#include "automation/client_object.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <unordered_set>
#include <vector>

namespace list_box {
namespace {

using automation::Ref;
using automation::Variant;

/// An entry with all its columns.
struct Entry {
    std::vector<Variant> cells;
    bool is_selected;
};

/// What never got a text is Null.
automation::Text text_of(const Variant& cell)
{
    return cell.vt == VT_NULL ? automation::Text{} : automation::to_text(cell);
}

class Box {
public:
    explicit Box(IDispatch* box) : box_{box} {}

    long count() const { return automation::to_long(automation::get(box_.get(), L"ListCount")); }
    /// Below 0, a list box shows all of its columns; one that is not bound to data has ten.
    long columns() const
    {
        const long count = automation::to_long(automation::get(box_.get(), L"ColumnCount"));
        return count < 0 ? 10 : count;
    }
    bool is_selected(long row) const { return automation::to_bool(automation::get(box_.get(), L"Selected", {Variant{row}})); }
    automation::Text text(long row) const { return text_of(automation::get(box_.get(), L"List", {Variant{row}})); }
    std::vector<Variant> cells(long row, long columns) const
    {
        std::vector<Variant> cells;
        for (long column = 0; column < columns; ++column)
            cells.push_back(automation::get(box_.get(), L"Column", {Variant{column}, Variant{row}}));
        return cells;
    }

    void select(long row, bool selected) const { automation::put(box_.get(), L"Selected", {Variant{row}}, Variant{selected}); }
    void put_cell(long column, long row, const Variant& cell) const
    {
        automation::put(box_.get(), L"Column", {Variant{column}, Variant{row}}, cell);
    }
    void append(std::wstring_view text) const { automation::call(box_.get(), L"AddItem", {Variant{text}}); }
    void remove(long row) const { automation::call(box_.get(), L"RemoveItem", {Variant{row}}); }
    void clear() const { automation::call(box_.get(), L"Clear"); }
    void make_current(long row) const { automation::put(box_.get(), L"ListIndex", Variant{row}); }

    std::vector<long> selected_rows() const
    {
        std::vector<long> rows;
        const long count = this->count();
        for (long row = 0; row < count; ++row)
            if (is_selected(row))
                rows.push_back(row);
        return rows;
    }
    /// From the end backwards, so that those before keep their places.
    void remove(const std::vector<long>& rows) const
    {
        std::for_each(rows.rbegin(), rows.rend(), [&](long row) { remove(row); });
    }

private:
    Ref<IDispatch> box_;
};

using Texts = std::unordered_set<std::wstring, automation::FoldedHash, automation::FoldedEqual>;

Texts texts_in(const Box& box)
{
    Texts texts;
    const long count = box.count();
    for (long row = 0; row < count; ++row)
        texts.emplace(std::wstring_view{box.text(row)});
    return texts;
}

void append(const Box& box, std::wstring_view text, const std::vector<Variant>& cells)
{
    box.append(text);
    const long row = box.count() - 1;
    long column = 0;
    for (const Variant& cell : cells) {
        if (cell.vt != VT_NULL)
            box.put_cell(column, row, cell);
        ++column;
    }
}

/// The rows that were taken.
std::vector<long> copy(const Box& from, const Box& to, bool all)
{
    const long count = from.count();
    const long from_columns = from.columns(), columns = std::min(from_columns, to.columns());
    Texts there = texts_in(to);
    std::vector<long> taken;
    for (long row = 0; row < count; ++row) {
        if (!all && !from.is_selected(row))
            continue;
        const automation::Text text = from.text(row);
        if (there.emplace(std::wstring_view{text}).second) {
            append(to, text, from.cells(row, columns));
            taken.push_back(row);
        }
    }
    return taken;
}

/// An entry that takes the place of another.
struct Exchange {
    long to, from;
};

/// What takes which place when the entries are in order.
std::vector<Exchange> exchanges(const std::vector<Entry>& entries, std::size_t column)
{
    std::vector<automation::Text> texts;
    texts.reserve(entries.size());
    for (const Entry& entry : entries)
        texts.push_back(text_of(entry.cells[column]));
    std::vector<long> order(entries.size());
    std::iota(order.begin(), order.end(), 0L);
    std::ranges::stable_sort(order, [&](long one, long other) {
        return VarBstrCmp(texts[one].get(), texts[other].get(), LOCALE_USER_DEFAULT, NORM_IGNORECASE) == VARCMP_LT;
    });
    std::vector<Exchange> exchanges;
    for (long row = 0; row < static_cast<long>(order.size()); ++row)
        if (order[row] != row)
            exchanges.push_back({row, order[row]});
    return exchanges;
}

/// Entries that come back to their own places are written whole, others as far as they differ from what is there.
void write(const Box& box, const std::vector<Entry>& entries, const std::vector<Exchange>& exchanges)
{
    for (const auto [to, from] : exchanges)
        for (std::size_t column = 0; column < entries[from].cells.size(); ++column) {
            const Variant& cell = entries[from].cells[column];
            if (to == from || cell.vt != VT_NULL || entries[to].cells[column].vt != VT_NULL)
                box.put_cell(static_cast<long>(column), to, cell);
        }
    // Where only one can be selected, selecting it must come last.
    for (const bool selected : {false, true})
        for (const auto [to, from] : exchanges)
            if (entries[from].is_selected == selected && (to == from || entries[to].is_selected != selected))
                box.select(to, selected);
}

} // namespace

bool has_selection(IDispatch* client)
{
    const Box box{client};
    const long count = box.count();
    constexpr long most = 0x7FFF; // the highest row that clients' loops count to
    if (count - 1 > most)
        throw automation::Error{automation::Runtime::Overflow};
    for (long row = 0; row < count; ++row)
        if (box.is_selected(row))
            return true;
    if (count - 1 == most)
        throw automation::Error{automation::Runtime::Overflow};
    return false;
}

long copy(IDispatch* from, IDispatch* to, bool all)
{
    return static_cast<long>(copy(Box{from}, Box{to}, all).size());
}

long move(IDispatch* from, IDispatch* to, bool all)
{
    const Box source{from};
    const std::vector<long> taken = copy(source, Box{to}, all);
    source.remove(taken);
    return static_cast<long>(taken.size());
}

bool sort(IDispatch* client, long column)
{
    const Box box{client};
    const long columns = box.columns();
    if (column < 0 || column >= columns)
        return false;
    std::vector<Entry> entries;
    const long count = box.count();
    for (long row = 0; row < count; ++row)
        entries.push_back({box.cells(row, columns), box.is_selected(row)});
    std::vector<Exchange> exchanges = list_box::exchanges(entries, static_cast<std::size_t>(column));
    try {
        write(box, entries, exchanges);
    } catch (...) {
        for (Exchange& exchange : exchanges)
            exchange.from = exchange.to;
        automation::or_default([&] { write(box, entries, exchanges); });
        throw;
    }
    return true;
}

long remove_selected(IDispatch* client)
{
    const Box box{client};
    const std::vector<long> rows = box.selected_rows();
    const auto removed = static_cast<long>(rows.size());
    if (removed == 0)
        return 0;
    const long left = box.count() - removed;
    if (left <= 0) {
        box.clear();
        return removed;
    }
    box.remove(rows);
    box.make_current(std::min(rows.back() + 1 - removed, left - 1));
    return removed;
}

} // namespace list_box
