#include "datafiles/data_file.h"

#include "automation/error.h"

#include <algorithm>
#include <vector>

namespace {

/// The thread's open files, each at the place of its number; null where a number is free.
thread_local std::vector<DataFile*> open_files;

std::int32_t give_number(DataFile* file)
{
    auto free = std::ranges::find(open_files, nullptr);
    if (free == open_files.end())
        free = open_files.insert(free, nullptr);
    *free = file;
    return static_cast<std::int32_t>(free - open_files.begin()) + 1;
}

} // namespace

DataFile::DataFile(std::wstring_view path) : file_{path}, number_{give_number(this)} {}

DataFile::~DataFile()
{
    open_files[static_cast<std::size_t>(number_) - 1] = nullptr;
}

DataFile& DataFile::with_number(std::int32_t number)
{
    const bool known = number >= 1 && static_cast<std::size_t>(number) <= open_files.size();
    DataFile* const file = known ? open_files[static_cast<std::size_t>(number) - 1] : nullptr;
    if (!file)
        throw automation::Error{automation::Runtime::BadFileNumber};
    return *file;
}
