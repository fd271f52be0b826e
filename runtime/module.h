// What the DLL keeps for the whole process: its instance handle, the count of live objects and
// server locks (DllCanUnloadNow), and the type library embedded in it.
#pragma once
#include <windows.h>
#include <oaidl.h>

namespace tarn::module {

void set_instance(HINSTANCE instance);
HINSTANCE instance();

// Every COM object the DLL hands out counts itself while it lives.
void object_created();
void object_destroyed();
LONG object_count();
void lock_server(bool lock);
LONG lock_count();

// The type library embedded in the DLL (resource TYPELIB 1), loaded once per process.
HRESULT type_library(ITypeLib **out);
// The type information of `guid`; for a dual interface, its interface (vtable) half, which is
// what ITypeInfo::Invoke needs.
HRESULT type_info(REFGUID guid, ITypeInfo **out);

// Counts one object for the lifetime of the member that holds it.
struct ObjectCount {
    ObjectCount() { object_created(); }
    ObjectCount(const ObjectCount &) { object_created(); }
    ~ObjectCount() { object_destroyed(); }
};

} // namespace tarn::module
