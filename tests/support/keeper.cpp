// Keeps Wine's desktop process alive while the tests run: one hidden window and a message
// loop until killed. Without it every GUI test process pays about a second to start it again.
#include <windows.h>

int main()
{
    CreateWindowW(L"STATIC", L"tarn keeper", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    MSG m;
    while (GetMessageW(&m, nullptr, 0, 0) > 0) DispatchMessageW(&m);
    return 0;
}
