#pragma once

#include "automation/handle.h"
#include "automation/object.h"

#include <qvObjects_contract.h>

#include <span>
#include <string>

/// A text shared between processes, in a named block of memory: its length in characters, then as many bytes in the system's code
/// page, then as many bytes that mean nothing. Nothing keeps two that write at the same time apart.
///
/// A block that this process made can be opened until the process ends: its last handle would take the name with it. What was
/// mapped stays mapped as long.
class qvSharedMemory final : public automation::Object<qvSharedMemory, faces::qvSharedMemory> {
public:
    void Create(const BSTR& sName, const long& lSize) { open(automation::view(sName), lSize); }
    void CreateForString(const BSTR& sName, const BSTR& sString);
    std::wstring get_Str();
    void put_Str(const BSTR& s) { store(automation::view(s)); }
    long get_Size() { return size_; }
    void put_Size(long lSize) { size_ = lSize; }

private:
    void open(std::wstring_view name, long size);
    void store(std::wstring_view text);
    std::span<char> block() const;

    long size_ = 0;
    bool is_open_ = false;              ///< the mapping at least, though not its memory where there was no room for it
    automation::KernelHandle mapping_;  ///< of a block that was there; one of our own is not given back
    char* memory_ = nullptr;
};
