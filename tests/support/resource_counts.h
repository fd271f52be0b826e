// Counting what the library holds of GDI and USER resources, to prove that repeated work
// leaves nothing behind.
//
// DllResourceCounter patches the import table of the loaded tarnctls.dll so that every GDI
// object, DC and window the DLL itself creates or deletes is counted; it works on every
// platform and architecture. ProcessGdiObjects() and ProcessWindows() count the whole
// process where the platform can say (GetGuiResources; under Wine the GDI handle table it
// maps for 64-bit programs); -1 when it cannot.
#pragma once
#include <windows.h>

namespace tarn::test {

class DllResourceCounter {
public:
    DllResourceCounter();  // installs the counting hooks (once per process)
    long gdi_objects() const; // created minus deleted by the DLL since the hooks went in
    long dcs() const;         // DCs obtained (GetDC, BeginPaint, CreateDC...) minus released
    long windows() const;     // windows created minus destroyed
    bool installed() const;
};

long ProcessGdiObjects();
long ProcessWindows();

} // namespace tarn::test
