#include "automation/safe_array.h"
#include "support/error_of.h"

#include <gtest/gtest.h>

#include <vector>

using automation::LockedArray;
using automation::Variant;

namespace {

/// An array that a client made by hand: its bounds, from the last dimension to the first, promise what they like.
class HandMade {
public:
    HandMade(std::vector<ULONG> counts, ULONG element_size, USHORT features = 0)
    {
        SafeArrayAllocDescriptor(static_cast<UINT>(counts.size()), &array_);
        for (std::size_t i = 0; i < counts.size(); ++i)
            array_->rgsabound[i] = {counts[i], 0};
        array_->cbElements = element_size;
        array_->fFeatures = static_cast<USHORT>(features | FADF_FIXEDSIZE);
        array_->pvData = bytes_;
    }
    ~HandMade()
    {
        EXPECT_EQ(array_->cLocks, 0u);
        array_->pvData = nullptr;
        SafeArrayDestroyDescriptor(array_);
    }
    HandMade(const HandMade&) = delete;
    HandMade& operator=(const HandMade&) = delete;

    SAFEARRAY* get() const { return array_; }
    VARIANT as(VARTYPE type) const
    {
        VARIANT value;
        value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        value.parray = array_;
        return value;
    }

private:
    SAFEARRAY* array_ = nullptr;
    std::byte bytes_[64]{};
};

/// The error of every way to look at an array: all of them say the same.
int error_of_reading(const HandMade& array, VARTYPE type)
{
    const int error = error_of([&] { automation::readable_array(array.as(type)); });
    EXPECT_EQ(error_of([&] { LockedArray<std::byte>{array.get()}; }), error);
    EXPECT_EQ(error_of([&] { Variant{array.as(type)}; }), error);
    EXPECT_EQ(error_of([&] { automation::array_of_type(array.get(), VT_VARIANT); }), error);
    return error;
}

Variant array_of(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds)
{
    return automation::new_array(type, bounds);
}

} // namespace

TEST(SafeArray, IsMadeAsLargeAsMemoryAllows)
{
    EXPECT_EQ(error_of([] { array_of(VT_R8, {{0x10000, 0}, {0x2000, 0}}); }), 7) << "2^32 bytes";
    EXPECT_EQ(error_of([] { array_of(VT_VARIANT, {{0x10000, 0}, {0x10001, 0}}); }), 7);
    EXPECT_EQ(error_of([] { array_of(VT_UI1, {{0x10001, 0}, {0x10000, 0}}); }), 7);
    EXPECT_EQ(error_of([] { automation::new_array(VT_R8, 0x20000001); }), 7);
    EXPECT_EQ(array_of(VT_UI1, {{0x4001, 0}, {0x4000, 0}}).parray->cDims, 2) << "a quarter of a gigabyte";
    EXPECT_EQ(LockedArray<double>{array_of(VT_R8, {{0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}, {0, 0}}).parray}.size(), 0u);
}

TEST(SafeArray, CanBeRedimensionedByClients)
{
    constexpr USHORT in_one_piece_with_its_descriptor = 0x2000; // FADF_CREATEVECTOR, which no header here names
    EXPECT_FALSE(automation::new_array(VT_VARIANT, 3).parray->fFeatures & in_one_piece_with_its_descriptor);
    EXPECT_EQ(automation::new_array(VT_BSTR, 0).parray->rgsabound[0].cElements, 0u);
}

TEST(SafeArray, ThatPromisesMoreThanMemoryIsNotRead)
{
    EXPECT_EQ(error_of_reading(HandMade{{0x10000, 0x10001}, 1}, VT_UI1), 7);
    EXPECT_EQ(error_of_reading(HandMade{{0x20000001}, 8}, VT_R8), 7);
    EXPECT_EQ(error_of_reading(HandMade{{0x10001, 0x10000, 0x10000}, 16, FADF_VARIANT}, VT_VARIANT), 7);

    Variant bytes = array_of(VT_UI1, {{1, 0}});
    SAFEARRAY& real = *bytes.parray;
    real.rgsabound[0].cElements = 0x20000001; // is not looked at, as it has to be converted
    EXPECT_EQ(error_of([&] { automation::array_of_type(&real, VT_R8); }), 7);
    real.rgsabound[0].cElements = 1;
}

TEST(SafeArray, WithoutMemoryHasNoElements)
{
    const HandMade list{{2}, 4}, none{{0}, 4}, undimensioned{{1}, 4};
    list.get()->pvData = none.get()->pvData = nullptr;
    EXPECT_EQ(error_of_reading(list, VT_I4), 9);
    EXPECT_EQ(LockedArray<long>{none.get()}.size(), 0u);
    undimensioned.get()->cDims = 0;
    EXPECT_EQ(error_of([&] { automation::readable_array(undimensioned.as(VT_I4)); }), 9);
    EXPECT_EQ(Variant{undimensioned.as(VT_I4)}.parray, nullptr);
    for (const VARTYPE type : {VT_I4, VT_VARIANT})
        EXPECT_EQ(automation::array_of_type(undimensioned.get(), type).parray, nullptr);
    undimensioned.get()->cDims = 1;
}

TEST(SafeArray, IsHeldAgainstItsLabel)
{
    const auto error = [](const SAFEARRAY* array, VARTYPE label) {
        VARIANT value;
        value.vt = static_cast<VARTYPE>(VT_ARRAY | label);
        value.parray = const_cast<SAFEARRAY*>(array);
        return error_of([&] { automation::readable_array(value); });
    };
    const Variant longs = automation::new_array(VT_I4, 2), objects = automation::new_array(VT_DISPATCH, 2);
    for (const VARTYPE label : {VT_BSTR, VT_R4, VT_UNKNOWN, VT_I2, VT_RECORD, VT_EMPTY})
        EXPECT_EQ(error(longs.parray, label), 13) << label;
    EXPECT_EQ(error(longs.parray, VT_I4) + error(longs.parray, VT_INT) + error(objects.parray, VT_UNKNOWN), 0);
    EXPECT_EQ(error(automation::new_array(VT_UNKNOWN, 2).parray, VT_DISPATCH), 13);
    EXPECT_EQ(error(automation::new_array(VT_DECIMAL, 2).parray, VT_VARIANT), 13);

    // What compiled programs lay out themselves knows only how its elements are let go, or nothing.
    const HandMade texts{{2}, sizeof(BSTR), FADF_BSTR}, unknown{{2}, 4};
    EXPECT_EQ(error(texts.get(), VT_I4), 13);
    EXPECT_EQ(error(texts.get(), VT_BSTR) + error(unknown.get(), VT_I4), 0);
    EXPECT_EQ(error(unknown.get(), VT_R8), 13);
    EXPECT_EQ(automation::array_of_type(texts.get(), VT_VARIANT).parray->rgsabound[0].cElements, 2u);
    EXPECT_EQ(error_of([&] { LockedArray<double>{longs.parray}; }), 13);
    EXPECT_EQ(longs.parray->cLocks, 0u);
}
