#include "ini/ini_format.h"

#include "automation/error.h"
#include "ini/line_source.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ini {
namespace {

[[noreturn]] void raise_too_deep()
{
    throw automation::Error{automation::Runtime::OutOfStackSpace};
}

constexpr bool is_blank(wchar_t character) noexcept
{
    return character == L' ' || character == L'\t';
}

std::wstring_view trimmed_left(std::wstring_view text) noexcept
{
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::wstring_view trimmed_right(std::wstring_view text) noexcept
{
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::wstring_view trimmed(std::wstring_view text) noexcept
{
    return trimmed_left(trimmed_right(text));
}

/// Drops `mark` and the blanks before it from the end of the line, if it ends so.
bool drop_last(std::wstring_view& line, wchar_t mark) noexcept
{
    if (line.empty() || line.back() != mark)
        return false;
    line.remove_suffix(1);
    line = trimmed_right(line);
    return true;
}

/// Puts sections and parameters into a tree, and unless they are to be kept, leaves the tree as it was.
/// What it adds lies in an arena of its own: this is how it knows what was there before.
class Merge {
public:
    Merge() : arena_{Arena::create()} {}
    Merge(const Merge&) = delete;
    Merge& operator=(const Merge&) = delete;
    ~Merge()
    {
        undo();
        arena_.let_go();
    }

    Section& section(Section& parent, std::wstring_view name)
    {
        Section& section = add(sections_of(parent), name, lists_of_sections_);
        if (!section.found_in_file() && !is_new(section))
            found_sections_.push_back(&section);
        section.set_found_in_file(true);
        return section;
    }

    void parameter(Section& section, std::wstring_view name, std::wstring_view value)
    {
        Parameter& parameter = add(section.parameters(arena_for(section)), name, lists_of_parameters_);
        if (is_new(parameter)) {
            parameter.value = StoredText{arena_, value};
            parameter.set_found_in_file(true);
            return;
        }
        if (parameter.found_in_file() && parameter.value == value)
            return;
        former_values_.push_back({&parameter, StoredText{value}, parameter.found_in_file()});
        parameter.value.swap(former_values_.back().value);
        parameter.set_found_in_file(true);
    }

    void keep() noexcept
    {
        lists_of_sections_.clear();
        lists_of_parameters_.clear();
        former_values_.clear();
        found_sections_.clear();
        sections_without_.clear();
    }

private:
    struct FormerValue {
        Parameter* parameter;
        StoredText value;
        bool found_in_file;
    };

    bool is_new(const Node& node) const noexcept { return node.arena() == &arena_; }
    Arena* arena_for(const Node& owner) const noexcept { return is_new(owner) ? &arena_ : nullptr; }

    Sections& sections_of(Section& section)
    {
        if (section.without_sections())
            sections_without_.push_back(&section);
        return section.create_sections(arena_for(section));
    }

    template <class Item>
    Item& add(NamedList<Item>& list, std::wstring_view name, std::vector<NamedList<Item>*>& grown)
    {
        const Item* const last = list.last();
        if (!is_new(list) && !(last && is_new(*last)))
            grown.push_back(&list);
        return list.add(name, &arena_);
    }

    template <class Item>
    void cut(const std::vector<NamedList<Item>*>& grown) noexcept
    {
        for (NamedList<Item>* const list : grown)
            while (list->last() && is_new(*list->last()))
                list->remove(*list->last());
    }

    void undo() noexcept
    {
        cut(lists_of_parameters_);
        cut(lists_of_sections_);
        for (; !former_values_.empty(); former_values_.pop_back()) {
            FormerValue& former = former_values_.back();
            former.parameter->value.swap(former.value);
            former.parameter->set_found_in_file(former.found_in_file);
        }
        for (Section* const section : found_sections_)
            section->set_found_in_file(false);
        for (Section* const section : sections_without_)
            section->set_sections(nullptr);
    }

    Arena& arena_;
    // What was there before and has changed.
    std::vector<Sections*> lists_of_sections_;
    std::vector<Parameters*> lists_of_parameters_;
    std::vector<FormerValue> former_values_;
    std::vector<Section*> found_sections_;
    std::vector<Section*> sections_without_;
};

class Reader {
public:
    Reader(Merge& merge, Section& root, bool hide_comments) : merge_{merge}, level_{&root, &root, 1}, hide_comments_{hide_comments} {}

    /// Reads one line; false when it ends the whole text.
    bool read_line(std::wstring_view line)
    {
        line = trimmed(line);
        if (line.empty() || (hide_comments_ && line.front() == L';'))
            return true;
        const bool opens = drop_last(line, L'{');
        const bool closes = drop_last(line, L'}');
        if (line.size() >= 2 && line.front() == L'[' && line.back() == L']')
            read_header(line.substr(1, line.size() - 2));
        else if (!opens && !line.empty())
            read_parameter(line);

        if (opens)
            open(closes);
        else if (closes)
            return close();
        return true;
    }

private:
    /// Where headers add sections, and where parameters go.
    struct Level {
        Section* parent;
        Section* current;
        std::size_t depth;
    };

    void read_header(std::wstring_view name)
    {
        const std::wstring_view without_blanks = trimmed(name);
        level_.current = &merge_.section(*level_.parent, without_blanks.empty() ? name : without_blanks);
    }

    void read_parameter(std::wstring_view line)
    {
        const std::size_t sign = find_character(line, L'=');
        if (sign == line.npos)
            return merge_.parameter(*level_.current, line, {});
        std::wstring_view value = trimmed_left(line.substr(sign + 1));
        if (hide_comments_)
            if (const std::size_t comment = find_character(value, L';'); comment != value.npos)
                value = trimmed_right(value.substr(0, comment));
        merge_.parameter(*level_.current, trimmed_right(line.substr(0, sign)), value);
    }

    /// A level that is closed by the very line that opens the next one ends with that next one.
    void open(bool closes)
    {
        if (level_.depth == deepest_level)
            raise_too_deep();
        if (!closes)
            outer_.push_back(level_);
        level_ = {level_.current, level_.current, level_.depth + 1};
    }

    bool close() noexcept
    {
        if (outer_.empty())
            return false;
        level_ = outer_.back();
        outer_.pop_back();
        return true;
    }

    Merge& merge_;
    std::vector<Level> outer_;
    Level level_;
    bool hide_comments_;
};

/// The lines of a text on their way to the sink.
class LineSink {
public:
    explicit LineSink(const std::function<void(std::wstring_view)>& sink)
        : sink_{sink}, buffer_{std::make_unique_for_overwrite<wchar_t[]>(buffer_size)}, rest_{buffer_size}, end_{buffer_.get()}
    {
    }

    void header(std::wstring_view name) { line(indent(), L'[', name, L']'); }
    void parameter(std::wstring_view name, std::wstring_view value) { line(indent(), name, L'=', value); }
    void empty() { line(std::wstring_view{}); }
    void open_brace()
    {
        line(indent(), L'{');
        indent_ += L'\t';
    }
    void close_brace()
    {
        indent_.pop_back();
        line(indent(), L'}');
    }
    void flush()
    {
        if (rest_ != buffer_size)
            sink_({buffer_.get(), buffer_size - rest_});
        rest_ = buffer_size;
        end_ = buffer_.get();
    }

private:
    static constexpr std::size_t buffer_size = 1 << 15;

    std::wstring_view indent() const noexcept { return indent_; }

    template <class... Parts>
    void line(Parts... parts)
    {
        const std::size_t length = (size_of(parts) + ... + 2);
        if (length > rest_)
            flush();
        if (length > rest_)
            return pass_on(length, parts..., L'\r', L'\n');
        (put(parts), ...);
        put(L'\r');
        put(L'\n');
        rest_ -= length;
    }

    static std::size_t size_of(wchar_t) noexcept { return 1; }
    static std::size_t size_of(std::wstring_view part) noexcept { return part.size(); }

    void put(wchar_t part) noexcept { *end_++ = part; }
    void put(std::wstring_view part) noexcept
    {
        end_ = std::ranges::copy(part, end_).out;
    }

    /// A line that is longer than the buffer.
    template <class... Parts>
    void pass_on(std::size_t length, Parts... parts)
    {
        std::wstring line;
        line.reserve(length);
        ((line += parts), ...);
        sink_(line);
    }

    const std::function<void(std::wstring_view)>& sink_;
    std::unique_ptr<wchar_t[]> buffer_;
    std::size_t rest_;
    wchar_t* end_;
    std::wstring indent_;
};

class Writer {
public:
    explicit Writer(const std::function<void(std::wstring_view)>& sink) : lines_{sink} {}
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer()
    {
        for (const Level& level : path_)
            level.list->on_path = false;
    }

    void write(const Section& root)
    {
        begin(root);
        while (!path_.empty()) {
            const Section* const section = path_.back().next;
            if (!section) {
                end();
                continue;
            }
            path_.back().next = section->next();
            if (!begin(*section))
                lines_.empty();
        }
        lines_.flush();
    }

private:
    /// A list of sub-sections that is being written.
    struct Level {
        const Sections* list;
        const Section* next;
        bool in_braces;
    };

    /// Writes what stands before the sub-sections; true when there are any.
    bool begin(const Section& section)
    {
        const Parameters* const parameters = section.parameters_if_any();
        const Sections* const sections = section.sections_if_any();
        const bool has_name = !section.name().empty();
        const bool has_sections = sections && sections->count() != 0;
        if (has_name)
            lines_.header(section.name());
        if (has_name && has_sections)
            lines_.open_brace();
        for (const Parameter* parameter = parameters ? parameters->first() : nullptr; parameter; parameter = parameter->next())
            lines_.parameter(parameter->name(), parameter->value);
        if (has_name || (parameters && parameters->count() != 0))
            lines_.empty();
        if (has_sections)
            descend(*sections, has_name);
        return has_sections;
    }

    void descend(const Sections& list, bool in_braces)
    {
        if (list.on_path || path_.size() == deepest_level)
            raise_too_deep();
        path_.push_back({&list, list.first(), in_braces});
        list.on_path = true;
    }

    /// Writes what stands behind a section with sub-sections, and what stands behind every sub-section.
    void end()
    {
        path_.back().list->on_path = false;
        if (path_.back().in_braces)
            lines_.close_brace();
        path_.pop_back();
        if (!path_.empty())
            lines_.empty();
    }

    LineSink lines_;
    std::vector<Level> path_;
};

} // namespace

void read(Section& root, const std::function<std::wstring_view()>& next_piece, bool hide_comments)
{
    Merge merge;
    Reader reader{merge, root, hide_comments};
    LineSource lines{next_piece};
    std::wstring_view line;
    while (lines.next(line) && reader.read_line(line))
        ;
    merge.keep();
}

void read(Section& root, std::wstring_view text, bool hide_comments)
{
    read(root, [&] { return std::exchange(text, {}); }, hide_comments);
}

void write(const Section& root, const std::function<void(std::wstring_view)>& sink)
{
    Writer{sink}.write(root);
}

} // namespace ini
