// Tarn Controls in a C++ window through ATL's control container (AtlAxWin), with the button's
// Click event handled. Build with Visual C++ and ATL, tarnctls.dll registered:
//     cl /EHsc /DUNICODE atl_container.cpp
// The control is driven through its IDispatch by name (the names and DISPIDs are in docs/);
// #import "tarnctls.dll" gives early-bound smart pointers as well, but cannot spell the
// enumeration members whose names hold spaces ("Windows XP").
#include <atlbase.h>
#include <atlwin.h>
#include <atlhost.h>

// The button's event interface, IcbtnEvents; DISPID 1 is Click.
static const IID DIID_IcbtnEvents = {0x74978763, 0xA1AC, 0x485E, {0xB4, 0x17, 0x10, 0x33, 0xE4, 0x7C, 0xE7, 0xF2}};

CComModule _Module; // ATL's host code still looks for it

class MainWindow : public CWindowImpl<MainWindow, CWindow, CFrameWinTraits>,
                   public IDispEventSimpleImpl<1, MainWindow, &DIID_IcbtnEvents> {
public:
    DECLARE_WND_CLASS(L"TarnSample")
    BEGIN_MSG_MAP(MainWindow)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    END_MSG_MAP()
    BEGIN_SINK_MAP(MainWindow)
        SINK_ENTRY_INFO(1, DIID_IcbtnEvents, 1 /* Click */, OnClick, &click_info)
    END_SINK_MAP()

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &)
    {
        // The container window creates the control from its ProgID and activates it in place.
        host_.Create(m_hWnd, CRect(10, 10, 110, 40), L"TarnControls.cbtn", WS_CHILD | WS_VISIBLE | WS_TABSTOP);
        CComPtr<IUnknown> control;
        AtlAxGetControl(host_, &control);
        button_ = control;
        CComVariant caption(L"&Save"), look(11L), face(static_cast<long>(0x8000000F));
        button_.PutPropertyByName(L"CAPTION", &caption);  // Alt+S clicks it
        button_.PutPropertyByName(L"ButtonType", &look);  // Windows XP
        button_.PutPropertyByName(L"BACKCOLOR", &face);   // the system's button face
        DispEventAdvise(control);
        return 0;
    }
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &)
    {
        DispEventUnadvise(button_);
        PostQuitMessage(0);
        return 0;
    }
    void __stdcall OnClick() { MessageBoxW(L"Saved", L"Tarn Controls"); }

private:
    static _ATL_FUNC_INFO click_info;
    CAxWindow host_;
    CComDispatchDriver button_;
};
_ATL_FUNC_INFO MainWindow::click_info = {CC_STDCALL, VT_EMPTY, 0};

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int)
{
    CoInitialize(nullptr);
    AtlAxWinInit();
    {
        MainWindow window;
        window.Create(nullptr, CRect(100, 100, 400, 220), L"Tarn Controls");
        window.ShowWindow(SW_SHOWNORMAL);
        MSG msg;
        while (GetMessageW(&msg, nullptr, 0, 0)) {
            if (!IsDialogMessageW(window, &msg)) { // Tab and the access keys reach the control
                TranslateMessage(&msg);
                DispatchMessageW(&msg);
            }
        }
    }
    CoUninitialize();
    return 0;
}
