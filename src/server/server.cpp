#include "automation/registration.h"
#include "server/class_table.h"

#include <qvObjects_contract.h>

// The entry points of an in-process server.

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object)
{
    return automation::get_class_object(class_table(), id, iid, object);
}

STDAPI DllCanUnloadNow()
{
    return automation::module::held() == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer()
{
    return automation::register_server(qvObjects_library);
}

STDAPI DllUnregisterServer()
{
    return automation::unregister_server(qvObjects_library);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*)
{
    if (reason == DLL_PROCESS_ATTACH)
        return automation::module::attach();
    if (reason == DLL_THREAD_DETACH)
        automation::ThreadState::forget();
    return TRUE;
}
