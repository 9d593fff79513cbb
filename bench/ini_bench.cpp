// Loading and saving an INI file of 10,000 sections with 20 parameters each, against the plain way of doing it, and finding
// by key in a long list against a short one. Every ratio is of two times taken in this run, alternately, the best of several.
#include "plain_ini.h"
#include "stopwatch.h"

#include "automation/code_page.h"
#include "files/file.h"
#include "files/text_file.h"
#include "ini/ini_format.h"
#include "ini/qvIniSections.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 9;

std::string sample()
{
    std::string text;
    char line[80];
    for (int section = 0; section < 10'000; ++section) {
        text.append(line, static_cast<std::size_t>(std::snprintf(line, sizeof line, "[Section %05d]\r\n", section)));
        for (int parameter = 0; parameter < 20; ++parameter)
            text.append(line, static_cast<std::size_t>(std::snprintf(line, sizeof line, "Parameter%02d=value %05d of %02d\r\n",
                                                                     parameter, section * 7 % 10'000, parameter)));
        text += "\r\n";
    }
    return text;
}

struct Files {
    std::wstring ours = L"ini_bench_ours.ini";
    std::string plain = "ini_bench_plain.ini";
    ~Files()
    {
        DeleteFileW(ours.c_str());
        DeleteFileA(plain.c_str());
    }
};

ini::Held<ini::Section> load(const std::wstring& path)
{
    auto root = ini::Section::create();
    files::TextInput file{path};
    ini::read(*root, [&] { return file.next(); }, false);
    return root;
}

void save(const ini::Section& root, const std::wstring& path)
{
    files::TextOutput file{path};
    ini::write(root, [&](std::wstring_view text) { file.write(text); });
    file.commit();
}

/// The parts of loading and saving that touch no file.
std::size_t composed(const ini::Section& root)
{
    std::size_t size = 0;
    ini::write(root, [&](std::wstring_view text) { size += text.size(); });
    return size;
}

void loading_and_saving()
{
    const Files paths;
    const std::string text = sample();
    files::write_whole(paths.ours, text);
    files::write_whole(L"ini_bench_plain.ini", text);
    const double megabytes = static_cast<double>(text.size()) / 1e6;
    const std::wstring wide = automation::decode(text);

    Best read, load_all, compose, save_all, move_bytes, plain_load, keeping_load, plain_save, release, plain_release;
    for (int round = 0; round < rounds; ++round) {
        move_bytes.take([&] { files::write_whole(paths.ours, text); });
        {
            const auto root = ini::Section::create();
            read.take([&] { ini::read(*root, wide, false); });
        }
        ini::Held<ini::Section> root;
        load_all.take([&] { root = load(paths.ours); });
        compose.take([&] { composed(*root); });
        save_all.take([&] { save(*root, paths.ours); });
        release.take([&] { root = nullptr; });

        plain_ini::File plain;
        plain_load.take([&] { plain = plain_ini::load(paths.plain); });
        plain.clear();
        keeping_load.take([&] { plain = plain_ini::load_keeping_section(paths.plain); });
        plain_save.take([&] { plain_ini::save(plain, paths.plain); });
        plain_release.take([&] { plain.clear(); });
    }

    std::printf("INI file of %.1f MB, 10,000 sections with 20 parameters each\n", megabytes);
    std::printf("  load  %6.0f MB/s, %4.1f times as fast as the plain parser, %.1f times as one that keeps hold of the section\n",
                megabytes / load_all.seconds(), plain_load.seconds() / load_all.seconds(),
                keeping_load.seconds() / load_all.seconds());
    std::printf("  save  %6.0f MB/s, %4.1f times as fast as the plain parser, %.1f times as the plain writer\n",
                megabytes / save_all.seconds(), plain_load.seconds() / save_all.seconds(), plain_save.seconds() / save_all.seconds());
    std::printf("  both together and releasing the tree: %.1f times as fast as the plain way\n",
                (plain_load.seconds() + plain_save.seconds() + plain_release.seconds()) /
                    (load_all.seconds() + save_all.seconds() + release.seconds()));
    std::printf("  building the tree is %.0f %% of loading, composing the text %.0f %% of saving\n",
                100 * read.seconds() / load_all.seconds(), 100 * compose.seconds() / save_all.seconds());
    std::printf("  saving takes %.2f times what writing the same bytes safely takes\n", save_all.seconds() / move_bytes.seconds());
}

/// A list of that many sections with the object that stands for it, and its keys.
struct List {
    explicit List(unsigned count)
    {
        for (unsigned i = 0; i < count; ++i)
            keys.emplace_back(std::wstring_view{L"Section number " + std::to_wstring(i)});
        for (const auto& key : keys)
            sections->add(automation::view(key.bstrVal));
    }

    /// The time of finding this many of them, `stride` apart; an object comes and goes each time.
    void find(Best& best, unsigned calls, unsigned stride) const
    {
        _qvIniSections* const list = object->face<_qvIniSections>();
        best.take([&] {
            unsigned place = 0;
            for (unsigned call = 0; call < calls; ++call) {
                place = (place + stride) % static_cast<unsigned>(keys.size());
                _qvIniSection* found = nullptr;
                list->get_Item(keys[place], &found);
                found->Release();
            }
        });
    }

    ini::Held<ini::Sections> sections = ini::Sections::create();
    std::vector<automation::Variant> keys;
    automation::Ref<qvIniSections> object = automation::make<qvIniSections>(*sections);
};

void finding()
{
    constexpr unsigned calls = 300'000;
    const List few{10}, many{100'000};
    Best few_in_order, many_in_order, few_at_random, many_at_random;
    for (int round = 0; round < rounds; ++round) {
        few.find(few_in_order, calls, 1);
        many.find(many_in_order, calls, 1);
        few.find(few_at_random, calls, 61'813);
        many.find(many_at_random, calls, 61'813);
    }
    std::printf("Item by key on 100,000 items: %.2f times what it costs on 10, in order; %.2f times at random\n",
                many_in_order.seconds() / few_in_order.seconds(), many_at_random.seconds() / few_at_random.seconds());
}

} // namespace

int main()
{
    loading_and_saving();
    finding();
}
