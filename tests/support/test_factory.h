// A class factory for a control class of a test's own (a composite of constituents, a control
// that plays another's part), registered for the test suite's run so the container can place
// it by its CLSID.
//
//   static void SetUpTestSuite() { factory.register_class(CLSID_Mine); }
//   static void TearDownTestSuite() { factory.revoke(); }
#pragma once
#include <windows.h>

namespace tarn::test {

template <class Control> class TestFactory final : public IClassFactory {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void **ppv) override
    {
        *ppv = riid == IID_IUnknown || riid == IID_IClassFactory ? static_cast<IClassFactory *>(this) : nullptr;
        return *ppv ? S_OK : E_NOINTERFACE;
    }
    // A static object: the count is not kept.
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown *, REFIID riid, void **ppv) override { return Control::Create(riid, ppv); }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

    void register_class(REFCLSID clsid)
    {
        CoRegisterClassObject(clsid, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    void revoke() { CoRevokeClassObject(cookie_); }

private:
    DWORD cookie_ = 0;
};

} // namespace tarn::test
