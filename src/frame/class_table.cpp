#include "frame/class_table.h"

#include "datafiles/qvFile_Nif.h"
#include "datafiles/qvFile_qvb.h"
#include "files/qvFile.h"
#include "frame/qvAPI.h"
#include "frame/qvCommon.h"
#include "ini/qvIniFile.h"
#include "ini/qvSave.h"
#include "numeric/qvMath.h"
#include "numeric/qvSyno.h"
#include "system/qvSharedMemory.h"
#include "ui/qvBitmap.h"
#include "ui/qvForm.h"
#include "ui/qvPathDialog.h"
#include "ui/qvPrinter.h"
#include "ui/qvScreen.h"
#include "ui/qvSystemColors.h"
#include "ui/qvSystemMetrics.h"
#include "ui/qvToolTip.h"
#include "ui/qvWindowProc.h"

std::span<const automation::Creator> class_table() noexcept
{
    using automation::creator_of;
    static const automation::Creator table[]{
        creator_of<qvAPI>(),
        creator_of<qvBitmap>(),
        creator_of<qvCommon>(),
        creator_of<qvFile>(),
        creator_of<qvFile_Nif>(),
        creator_of<qvFile_qvb>(),
        creator_of<qvForm>(),
        creator_of<qvIniFile>(),
        creator_of<qvMath>(),
        creator_of<qvPathDialog>(),
        creator_of<qvPrinter>(),
        creator_of<qvSave>(),
        creator_of<qvScreen>(),
        creator_of<qvSharedMemory>(),
        creator_of<qvSyno>(),
        creator_of<qvSystemColors>(),
        creator_of<qvSystemMetrics>(),
        creator_of<qvToolTip>(),
        creator_of<qvWindowProc>(),
    };
    return table;
}
