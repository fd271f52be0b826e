// The IUnknown of the library's small heap COM objects (class factories, sinks, enumerators,
// the accessible object) and of the test container's: a reference count that starts at 1 for
// the creator, deletion when it reaches 0, and QueryInterface over the listed interfaces, the
// first of which also answers IUnknown. An object that answers more (a base interface, an
// interface known only at run time) says so in query_more.
#pragma once
#include <windows.h>
#include <unknwn.h>

namespace tarn {

template <class First, class... Rest> class ComObject : public First, public Rest... {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void **ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (riid == IID_IUnknown || riid == __uuidof(First)) *ppv = static_cast<First *>(this);
        else (void)((riid == __uuidof(Rest) && (*ppv = static_cast<Rest *>(this))) || ...);
        if (!*ppv) *ppv = query_more(riid);
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    STDMETHODIMP_(ULONG) Release() override
    {
        LONG r = InterlockedDecrement(&refs_);
        if (r == 0) delete this;
        return static_cast<ULONG>(r);
    }

protected:
    ComObject() = default;
    virtual ~ComObject() = default;
    // The interface pointer for an IID the list does not name, or nullptr.
    virtual void *query_more(REFIID) { return nullptr; }

private:
    LONG refs_ = 1;
};

} // namespace tarn
