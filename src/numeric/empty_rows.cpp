#include "numeric/empty_rows.h"

#include "automation/border.h"
#include "numeric/client_table.h"

#include <optional>
#include <vector>

namespace numeric {
namespace {

using automation::Error;
using automation::Ref;
using automation::Runtime;
using automation::Text;
using automation::Variant;

Text text_of(const VARIANT& cell)
{
    if (cell.vt == VT_EMPTY || (cell.vt == VT_BSTR && SysStringLen(cell.bstrVal) == 0))
        return {};
    if (cell.vt == VT_BSTR)
        return Text{automation::view(cell.bstrVal)};
    return automation::to_text(cell);
}

bool is_something(const Text& text) noexcept
{
    return SysStringLen(text.get()) > 0;
}

Ref<IDispatch> object_of(const VARIANT& cell)
{
    if (cell.vt == VT_DISPATCH)
        return Ref{cell.pdispVal};
    Ref<IDispatch> object;
    if (cell.vt == VT_UNKNOWN)
        object = automation::query<IDispatch>(cell.punkVal);
    if (cell.vt != VT_UNKNOWN || (cell.punkVal && !object))
        throw Error{Runtime::TypeMismatch};
    return object;
}

bool is_something(const Ref<IDispatch>& object) noexcept
{
    if (!object)
        return false;
    const Variant holder{object};
    Variant text;
    const bool has_text = SUCCEEDED(automation::change_type(text, holder, VT_BSTR));
    return !has_text || SysStringLen(text.bstrVal) > 0;
}

/// The rows that are kept of a table, and behind them one that may not be.
template <class Cell>
class Rows {
public:
    explicit Rows(const VARIANT& table) : source_{table} {}

    const ClientTable& source() const noexcept { return source_; }

    bool has(long long index) const noexcept { return index >= source_.lower(1) && index <= source_.upper(1); }

    /// Puts a row behind the first `kept` ones.
    template <class Convert>
    void put(std::size_t kept, long long index, const Convert& convert)
    {
        cells_.resize(kept * source_.columns());
        const std::size_t first = source_.at(index, source_.lower(2));
        for (std::size_t column = 0; column < source_.columns(); ++column)
            cells_.push_back(convert(source_[first + column * source_.rows()]));
    }

    /// Puts a row that holds nothing there.
    void put_nothing(std::size_t kept)
    {
        cells_.resize(kept * source_.columns());
        cells_.resize(cells_.size() + source_.columns());
    }

    /// Whether the row behind the first `kept` ones holds anything.
    bool is_used(std::size_t kept) const noexcept
    {
        for (std::size_t i = kept * source_.columns(); i < cells_.size(); ++i)
            if (is_something(cells_[i]))
                return true;
        return false;
    }

    /// The first rows as a new table.
    Variant table(VARTYPE type, std::size_t rows)
    {
        cells_.resize(rows * source_.columns());
        Variant result = new_table(type, bounds(0, static_cast<long long>(rows) - 1),
                                   bounds(0, static_cast<long long>(source_.columns()) - 1));
        const ClientTable locked{result};
        const auto target = locked.view<decltype(cells_[0].release())>();
        for (std::size_t column = 0; column < target.columns; ++column)
            for (std::size_t row = 0; row < target.rows; ++row)
                target(row, column) = cells_[row * target.columns + column].release();
        return result;
    }

private:
    const ClientTable source_;
    std::vector<Cell> cells_;
};

struct Remaining {
    std::size_t rows = 0;
    Variant texts, objects;
};

Remaining remaining(const VARIANT& text_table, const VARIANT* object_table)
{
    Rows<Text> texts{text_table};
    std::optional<Rows<Ref<IDispatch>>> objects;
    if (object_table)
        objects.emplace(*object_table);
    Remaining all;
    for (long long index = texts.source().lower(1); index <= texts.source().upper(1); ++index) {
        texts.put(all.rows, index, text_of);
        const bool has_text = texts.is_used(all.rows);
        if (objects && has_text && !objects->has(index))
            objects->put_nothing(all.rows);
        else if (objects)
            objects->put(all.rows, index, object_of);
        if (has_text || (objects && objects->is_used(all.rows)))
            ++all.rows;
    }
    const std::size_t rows = all.rows > 0 ? all.rows : 1;
    all.texts = texts.table(VT_BSTR, rows);
    if (objects)
        all.objects = objects->table(VT_DISPATCH, rows);
    return all;
}

/// The array as the caller's variable can take it.
Variant fitting(const VARIANT& variable, Variant array)
{
    const VARIANT& inner = automation::followed(variable);
    const bool any = !(inner.vt & VT_BYREF) || inner.vt == (VT_BYREF | array.vt);
    return any ? std::move(array) : automation::array_of_type(array.parray, automation::element_type(inner));
}

void require_replaceable(const VARIANT& variable)
{
    // The objects in the tables may have left their code something else in the variable.
    const SAFEARRAY* const array = automation::array_in(variable).value_or(nullptr);
    if (!array)
        return;
    const bool fixed = (automation::followed(variable).vt & VT_BYREF) && (array->fFeatures & (FADF_STATIC | FADF_FIXEDSIZE));
    if (fixed || array->cLocks > 0)
        throw Error{Runtime::ArrayLocked};
}

} // namespace

long remove_empty_rows(VARIANT& texts, VARIANT* objects)
{
    Remaining left = remaining(texts, objects);
    left.texts = fitting(texts, std::move(left.texts));
    if (objects)
        left.objects = fitting(*objects, std::move(left.objects));
    // Both or neither.
    require_replaceable(texts);
    if (objects)
        require_replaceable(*objects);
    automation::assign(texts, std::move(left.texts));
    if (objects)
        automation::assign(*objects, std::move(left.objects));
    return static_cast<long>(left.rows);
}

} // namespace numeric
