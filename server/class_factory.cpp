#include "server/class_factory.h"

#include "runtime/com_object.h"
#include "runtime/module.h"

#include <new>

namespace tarn {

namespace {

class ClassFactory final : public ComObject<IClassFactory> {
public:
    explicit ClassFactory(HRESULT (*create)(REFIID, void **)) : create_(create) {}

    STDMETHODIMP CreateInstance(IUnknown *outer, REFIID riid, void **ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        try {
            return create_(riid, ppv);
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
    HRESULT (*create_)(REFIID, void **);
};

} // namespace

IClassFactory *NewClassFactory(HRESULT (*create)(REFIID, void **)) { return new (std::nothrow) ClassFactory(create); }

} // namespace tarn
