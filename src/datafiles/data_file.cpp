#include "datafiles/data_file.h"

#include "automation/error.h"
#include "automation/thread_state.h"

namespace {

const automation::PerThread<DataFile*> open_files; // the first of them

} // namespace

DataFile::DataFile(std::wstring_view path, Opening opening) : file_{path, opening}
{
    DataFile** place = &open_files.here();
    for (; *place && (*place)->number_ == number_; place = &(*place)->next_)
        ++number_;
    next_ = *place;
    *place = this;
}

DataFile::~DataFile()
{
    DataFile** place = &open_files.here();
    while (*place != this)
        place = &(*place)->next_;
    *place = next_;
}

DataFile& DataFile::with_number(std::int32_t number)
{
    for (DataFile* file = open_files.get(); file; file = file->next_)
        if (file->number_ == number)
            return *file;
    throw automation::Error{automation::Runtime::BadFileNumber};
}
