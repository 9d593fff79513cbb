#include "ini/ini_tree.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <random>
#include <string>
#include <vector>

using ini::Held;
using ini::Parameter;
using ini::Parameters;
using ini::Section;

namespace {

/// A list of this many other items; more than 32 have an index.
Held<Parameters> list_of(int count)
{
    auto list = Parameters::create();
    for (int i = 0; i < count; ++i)
        list->add(L"Item " + std::to_wstring(i));
    return list;
}

class NamedList : public testing::TestWithParam<int> {
protected:
    const Held<Parameters> list = list_of(GetParam());
};

INSTANTIATE_TEST_SUITE_P(ShortAndLong, NamedList, testing::Values(0, 5, 31, 32, 500));

} // namespace

TEST_P(NamedList, FindsInAnyCase)
{
    Parameter& added = list->add(L"Stra\u00dfe \u00c4\u20ac");
    EXPECT_EQ(&list->add(L"stra\u00dfe \u00e4\u20ac"), &added);
    EXPECT_EQ(list->find_name(L"STRA\u00dfE \u00c4\u20ac"), &added);
    EXPECT_EQ(list->find_key(L"strasse"), nullptr);
    EXPECT_EQ(list->count(), GetParam() + 1u);
    const Parameter& created = list->item(L"new");
    EXPECT_EQ(&created, list->last());
    EXPECT_EQ(list->find_key(L""), nullptr);
    list->add(L"");
    EXPECT_NE(list->find_key(L""), nullptr);
}

TEST_P(NamedList, ARenamedItemKeepsItsKeyUntilAnotherTakesIt)
{
    Parameter& former = list->add(L"a");
    former.rename(L"B");
    EXPECT_EQ(list->find_name(L"a"), nullptr);
    EXPECT_EQ(list->find_key(L"a"), &former);
    EXPECT_EQ(&list->item(L"b"), &former) << "no key, but the name";
    Parameter& taker = list->add(L"a");
    EXPECT_EQ(list->find_key(L"a"), &taker);
    list->remove(taker);
    EXPECT_EQ(list->find_key(L"a"), &former) << "the key goes back";
}

TEST_P(NamedList, ItemsOutliveTheirList)
{
    const Held kept{&list->add(L"kept")};
    kept->rename(L"renamed");
    list->remove(*kept);
    EXPECT_EQ(list->find_key(L"kept"), nullptr);
    kept->rename(L"again");
    EXPECT_EQ(kept->name(), L"again");

    auto other = list_of(GetParam());
    const Held left{&other->add(L"left")};
    other = nullptr;
    left->rename(L"alone");
    EXPECT_EQ(left->name(), L"alone");
    EXPECT_EQ(left->next(), nullptr);
}

TEST(IniTree, SubSectionsMayBeNothing)
{
    const auto section = Section::create();
    const Held sections{section->sections()};
    EXPECT_EQ(section->sections(), sections.get());
    section->set_sections(nullptr);
    EXPECT_EQ(section->sections(), nullptr);
    section->set_sections(sections);
    EXPECT_EQ(section->sections(), sections.get());

    const Held parameters{&section->parameters()};
    section->set_parameters(nullptr);
    EXPECT_NE(&section->parameters(), parameters.get());
}

/// Many random changes, held against the plainest list that could do the same.
TEST(IniTree, AListDoesWhatAPlainListDoes)
{
    struct Entry {
        Parameter* item;
        std::wstring key, name;
        bool has_key;
    };
    std::mt19937 random{1};
    const auto any = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };

    for (const std::size_t names : {6u, 40u, 400u}) {
        const auto list = Parameters::create();
        std::vector<Entry> plain;
        const auto by_name = [&](const std::wstring& name) {
            return std::find_if(plain.begin(), plain.end(), [&](const Entry& e) { return e.name == name; });
        };
        const auto by_key = [&](const std::wstring& key) {
            return std::find_if(plain.begin(), plain.end(), [&](const Entry& e) { return e.has_key && e.key == key; });
        };
        for (int step = 0; step < 20'000; ++step) {
            const std::wstring name = L"n" + std::to_wstring(any(names));
            const std::size_t place = plain.empty() ? 0 : any(plain.size()), choice = any(4);
            const auto named = by_name(name), keyed = by_key(name);
            ASSERT_EQ(list->find_name(name), named == plain.end() ? nullptr : named->item);
            ASSERT_EQ(list->find_key(name), keyed == plain.end() ? nullptr : keyed->item);
            ASSERT_EQ(list->count(), plain.size());
            if (choice < 2 || plain.empty()) {
                Parameter& item = list->add(name);
                ASSERT_TRUE(named == plain.end() || named->item == &item);
                if (named != plain.end())
                    continue;
                if (keyed != plain.end())
                    keyed->has_key = false;
                plain.push_back({&item, name, name, true});
            } else if (choice == 2) {
                plain[place].name = name;
                plain[place].item->rename(name);
            } else {
                const Entry removed = plain[place];
                ASSERT_EQ(list->at(place), removed.item);
                ASSERT_EQ(list->position_of(*removed.item), place);
                plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(place));
                list->remove(*removed.item);
                const auto former = std::find_if(plain.rbegin(), plain.rend(),
                                                 [&](const Entry& e) { return e.key == removed.key; });
                if (removed.has_key && former != plain.rend())
                    former->has_key = true; // the last one that had it gets it back
            }
        }
    }
}
