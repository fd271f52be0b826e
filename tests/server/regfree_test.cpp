// Registration-free COM: a client with an application manifest naming the tarnctls assembly,
// with the DLL and the manifest that ships beside it in the client's own folder, creates a
// frame from that copy. The test copies this very program into a fresh folder as the client
// and runs the client part there; the object's code must come from the copy beside it.
#include <gtest/gtest.h>

#include <windows.h>

#include <fstream>
#include <string>

#include "runtime/com.h"

using namespace tarn;

namespace {

std::wstring exe_path()
{
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    return exe;
}

std::wstring dir_of(const std::wstring &path) { return path.substr(0, path.find_last_of(L'\\')); }

std::wstring module_of(const void *address)
{
    HMODULE m = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(address), &m);
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(m, path, MAX_PATH);
    return path;
}

} // namespace

TEST(SideBySide, AClientWithTheManifestCreatesAFrameFromTheCopyBesideIt)
{
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    const std::wstring dir = std::wstring(temp) + L"tarn-regfree-" + std::to_wstring(GetCurrentProcessId());
    const std::wstring bin = dir_of(exe_path());
    CreateDirectoryW(dir.c_str(), nullptr);
    ASSERT_TRUE(CopyFileW(exe_path().c_str(), (dir + L"\\client.exe").c_str(), FALSE));
    ASSERT_TRUE(CopyFileW((bin + L"\\tarnctls.dll").c_str(), (dir + L"\\tarnctls.dll").c_str(), FALSE));
    ASSERT_TRUE(CopyFileW((bin + L"\\tarnctls.manifest").c_str(), (dir + L"\\tarnctls.manifest").c_str(), FALSE));
    const char *arch = sizeof(void *) == 8 ? "amd64" : "x86";
    {
        std::ofstream m((dir + L"\\client.exe.manifest").c_str());
        m << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
          << "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
          << "  <assemblyIdentity type=\"win32\" name=\"tarn.client\" version=\"1.0.0.0\" processorArchitecture=\"" << arch
          << "\"/>\n"
          << "  <dependency><dependentAssembly>\n"
          << "    <assemblyIdentity type=\"win32\" name=\"tarnctls\" version=\"1.0.0.0\" processorArchitecture=\"" << arch
          << "\"/>\n"
          << "  </dependentAssembly></dependency>\n"
          << "</assembly>\n";
    }
    std::wstring cmd = L"\"" + dir + L"\\client.exe\" --gtest_also_run_disabled_tests "
                                     L"--gtest_filter=SideBySideClient.*";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    ASSERT_TRUE(CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, dir.c_str(), &si, &pi));
    WaitForSingleObject(pi.hProcess, 60000);
    DWORD rc = ~0u;
    GetExitCodeProcess(pi.hProcess, &rc);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    EXPECT_EQ(0u, rc) << "the client part failed (its output is above)";
}

// The client part, run only by the test above in the copied program.
TEST(SideBySideClient, DISABLED_CreatesAFrameFromTheDllBesideIt)
{
    CLSID clsid{};
    ASSERT_EQ(S_OK, CLSIDFromProgID(L"TarnControls.cframe", &clsid));
    ComPtr<IDispatch> frame;
    ASSERT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, frame.put_void()));
    const void *vtable = *reinterpret_cast<void *const *>(frame.get());
    EXPECT_EQ(dir_of(exe_path()) + L"\\tarnctls.dll", module_of(vtable));
    LPOLESTR name = const_cast<LPOLESTR>(L"CAPTION");
    DISPID id = 0;
    EXPECT_EQ(S_OK, frame->GetIDsOfNames(IID_NULL, &name, 1, 0, &id));
}
