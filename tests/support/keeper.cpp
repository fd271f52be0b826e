// Keeps a prefix's desktop process alive while the tests run: one hidden window and a message
// loop until killed. Without it every GUI test process pays about a second to start it again.
// With a path argument it creates that file once the window exists, so the test script can
// wait until the desktop and Wine's services run (and hold none of the tests' output pipes).
#include <windows.h>

int wmain(int argc, wchar_t** argv)
{
    CreateWindowW(L"STATIC", L"tarn keeper", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    if (argc > 1) {
        HANDLE f = CreateFileW(argv[1], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        if (f != INVALID_HANDLE_VALUE) CloseHandle(f);
    }
    MSG m;
    while (GetMessageW(&m, nullptr, 0, 0) > 0) DispatchMessageW(&m);
    return 0;
}
