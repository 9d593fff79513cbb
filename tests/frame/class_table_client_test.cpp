#include "support/client.h"

#include <qvObjects.h>

using client::Object;

TEST(ClassTable, EveryCreatableClassIsMadeByItsProgrammaticIdentifier)
{
    client::Apartment apartment;
    for (const wchar_t* name : {L"qvScreen", L"qvPrinter", L"qvMath", L"qvForm", L"qvCommon", L"qvAPI", L"qvSyno", L"qvFile",
                                L"qvBitmap", L"qvSystemColors", L"qvSystemMetrics", L"qvSave", L"qvPathDialog", L"qvFile_qvb",
                                L"qvSharedMemory", L"qvWindowProc", L"qvToolTip", L"qvIniFile", L"qvFile_Nif"})
        EXPECT_TRUE(Object::create((std::wstring{L"qvObjects."} + name).c_str())) << "class " << std::string(name, name + wcslen(name));
}
