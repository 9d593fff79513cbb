#include "server/class_table.h"

#include "datafiles/qvFile_Nif.h"
#include "datafiles/qvFile_qvb.h"
#include "files/qvFile.h"
#include "server/qvAPI.h"
#include "server/qvCommon.h"
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

std::span<automation::ClassFactory> class_table() noexcept
{
    using automation::factory_of;
    constinit static automation::ClassFactory table[]{
        factory_of<qvAPI>(),
        factory_of<qvBitmap>(),
        factory_of<qvCommon>(),
        factory_of<qvFile>(),
        factory_of<qvFile_Nif>(),
        factory_of<qvFile_qvb>(),
        factory_of<qvForm>(),
        factory_of<qvIniFile>(),
        factory_of<qvMath>(),
        factory_of<qvPathDialog>(),
        factory_of<qvPrinter>(),
        factory_of<qvSave>(),
        factory_of<qvScreen>(),
        factory_of<qvSharedMemory>(),
        factory_of<qvSyno>(),
        factory_of<qvSystemColors>(),
        factory_of<qvSystemMetrics>(),
        factory_of<qvToolTip>(),
        factory_of<qvWindowProc>(),
    };
    return table;
}
