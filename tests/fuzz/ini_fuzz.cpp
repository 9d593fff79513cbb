// Any bytes, read as an INI file, with comments and without: what comes of it can be written, and what was written is the
// same tree when it is read. Loading into a tree that is there changes nothing when it fails, whichever allocation fails.
#include "fuzz/driver.h"
#include "ini/outline.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t never = static_cast<std::size_t>(-1);
std::size_t allocations_left = never;

} // namespace

void* operator new(std::size_t size)
{
    if (allocations_left != never && allocations_left-- == 0) {
        allocations_left = never;
        throw std::bad_alloc{};
    }
    if (void* const memory = std::malloc(size))
        return memory;
    throw std::bad_alloc{};
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept // what the fuzzer's own memory comes from
{
    return std::malloc(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

/// Whether the format can hold these texts: a closing brace ends a value, a parameter must not look like a header, and a
/// section without a name has no header.
bool survives(const ini::Section& section)
{
    const ini::Parameters* const parameters = section.parameters_if_any();
    for (const ini::Parameter* p = parameters ? parameters->first() : nullptr; p; p = p->next()) {
        const std::wstring_view value = p->value;
        if (value.ends_with(L'{') || value.ends_with(L'}') || (p->name().starts_with(L'[') && value.ends_with(L']')))
            return false;
    }
    const ini::Sections* const sections = section.sections_if_any();
    for (const ini::Section* s = sections ? sections->first() : nullptr; s; s = s->next())
        if (s->name().empty() || !survives(*s))
            return false;
    return true;
}

void check_round_trip(std::wstring_view text, bool hide_comments, std::size_t piece)
{
    const auto root = ini::Section::create();
    ini::read(*root, text, hide_comments);
    const auto in_pieces = ini::Section::create();
    std::wstring_view rest = text;
    const auto next_piece = [&] {
        const std::wstring_view next = rest.substr(0, piece);
        rest.remove_prefix(next.size());
        return next;
    };
    ini::read(*in_pieces, next_piece, hide_comments);
    fuzz_require(ini::outline(*in_pieces) == ini::outline(*root), "the text in pieces is another tree");

    const std::wstring once = ini::written(*root);
    const auto again = ini::Section::create();
    ini::read(*again, once, hide_comments);
    const std::wstring twice = ini::written(*again);
    if (!survives(*root))
        return;
    fuzz_require(ini::outline(*again) == ini::outline(*root), "what was written is another tree");
    fuzz_require(twice == once, "the same tree is written in another way");
}

void check_failing_load(std::wstring_view text, bool hide_comments, std::size_t cut, std::size_t allocations)
{
    const auto root = ini::Section::create();
    ini::read(*root, text.substr(0, cut), hide_comments);
    if (ini::Sections* const sections = root->sections(); sections->first()) {
        sections->first()->rename(L"renamed");
        sections->last()->set_sections(nullptr);
        sections->last()->set_found_in_file(false);
    }
    if (ini::Parameter* const parameter = root->parameters().last())
        parameter->set_found_in_file(false);
    const std::wstring before = ini::outline(*root);
    allocations_left = allocations;
    try {
        ini::read(*root, text.substr(cut), hide_comments);
        allocations_left = never;
    } catch (const std::bad_alloc&) {
        fuzz_require(ini::outline(*root) == before, "a failed load has changed the tree");
    } catch (const automation::Error&) {
        allocations_left = never;
        fuzz_require(ini::outline(*root) == before, "a load that was too deep has changed the tree");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 3)
        return 0;
    const std::wstring text(data + 3, data + size);
    for (const bool hide_comments : {false, true}) {
        fuzz_succeeds({28}, [&] { check_round_trip(text, hide_comments, 1 + data[2] % 16u); });
        check_failing_load(text, hide_comments, text.empty() ? 0 : data[0] * text.size() / 256, data[1] + (data[2] & 3u) * 256u);
    }
    return 0;
}

std::vector<std::string> fuzz_seeds()
{
    return {
        "\x40\x10\x01top=1\r\n[Main]\r\nPath = C:\\x ; note\r\n;comment\r\nalone\r\n",
        "\x80\x20\x02[Outer] {\r\n[Inner]\r\nk=v\r\n}\r\n[outer]\r\n{\r\na=1\r\n[Inner] {\r\n[Core]\r\n}\r\n}\r\nb=2\r\n",
        "\xC0\x08\x03[A]\ra=1\rA=2\r[B]\r[a]\rb=3\r[]\rc=\r[ ]\r\n{0}\rx={\ry=}\r",
        "\r\n", "\r", "\n", "[x]", "[x] {", "{", "}", "} {", " = ", "=", ";", "\t", " ", "a=b", std::string(1, '\0'), "\xFC",
        "1=1\r2=2\r3=3\r4=4\r5=5\r6=6\r7=7\r8=8\r9=9\r10=\r11=\r12=\r13=\r14=\r15=\r16=\r17=\r",
        "[1]\r[2]\r[3]\r[4]\r[5]\r[6]\r[7]\r[8]\r[9]\r[10]\r[11]\r[12]\r[13]\r[14]\r[15]\r[16]\r[17]\r",
    };
}
