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

#include <string>
#include <vector>

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
// Kernel handles the process holds (counted one by one where the platform will not say).
long ProcessHandles();
// Bytes in use in all the process's heaps (HeapWalk); -1 when the heaps cannot be walked.
long long ProcessHeapBytes();

// All the counts above, taken when it is made. changes() names each count that differs now
// ("DLL GDI objects: 12 -> 13"), so a test checks in one line that repeated work gave
// everything back. The DLL's counts must match exactly; the process's GDI count may grow by a
// few objects the system makes for itself. Process counts the platform cannot give are left out.
class ResourceSnapshot {
public:
    ResourceSnapshot();
    bool installed() const { return dll_.installed(); }
    std::vector<std::string> changes() const;

private:
    DllResourceCounter dll_;
    long gdi_, dcs_, process_gdi_, windows_;
};

} // namespace tarn::test
