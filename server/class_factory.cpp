#include "server/class_factory.h"

#include "runtime/module.h"

#include <new>

namespace tarn {

namespace {

class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ControlClass &cls) : class_(cls) {}

    STDMETHODIMP QueryInterface(REFIID riid, void **ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (riid != IID_IUnknown && riid != IID_IClassFactory) return E_NOINTERFACE;
        *ppv = static_cast<IClassFactory *>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return InterlockedIncrement(&refs_); }
    STDMETHODIMP_(ULONG) Release() override
    {
        LONG r = InterlockedDecrement(&refs_);
        if (r == 0) delete this;
        return r;
    }
    STDMETHODIMP CreateInstance(IUnknown *outer, REFIID riid, void **ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        try {
            return class_.create(riid, ppv);
        } catch (const std::bad_alloc &) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }
    STDMETHODIMP LockServer(BOOL lock) override
    {
        module::lock_server(lock != FALSE);
        return S_OK;
    }

private:
    module::ObjectCount count_;
    LONG refs_ = 1;
    const ControlClass &class_;
};

} // namespace

IClassFactory *NewClassFactory(const ControlClass &cls) { return new (std::nothrow) ClassFactory(cls); }

} // namespace tarn
