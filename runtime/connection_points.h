// Connection points: the control's event source and its IPropertyNotifySink point, and the
// two enumerators the contract asks for.
#pragma once
#include <ocidl.h>
#include <olectl.h>

#include <vector>

#include "runtime/com.h"
#include "runtime/module.h"

namespace tarn {

// A connection point embedded in its control: its references are the control's, so the
// container stays alive while a client holds the point.
class ConnectionPoint final : public IConnectionPoint {
public:
    ConnectionPoint(IConnectionPointContainer *owner, const IID &iid, bool dispatch_fallback)
        : owner_(owner), iid_(iid), dispatch_fallback_(dispatch_fallback)
    {
    }
    ConnectionPoint(const ConnectionPoint &) = delete;
    ConnectionPoint &operator=(const ConnectionPoint &) = delete;

    const IID &iid() const { return iid_; }
    // The sinks as they are now; firing walks this copy, so a sink may Unadvise while called.
    std::vector<ComPtr<IUnknown>> sinks() const;
    bool empty() const { return sinks_.empty(); }
    void clear() { sinks_.clear(); }

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID riid, void **ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override { return owner_->AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return owner_->Release(); }
    // IConnectionPoint
    STDMETHODIMP GetConnectionInterface(IID *iid) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer **out) override;
    STDMETHODIMP Advise(IUnknown *sink, DWORD *cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections **out) override;

private:
    struct Sink {
        DWORD cookie;
        ComPtr<IUnknown> sink;
    };
    IConnectionPointContainer *owner_;
    IID iid_;
    bool dispatch_fallback_;
    DWORD next_cookie_ = 1;
    std::vector<Sink> sinks_;
};

IEnumConnectionPoints *NewConnectionPointEnumerator(IUnknown *owner, const std::vector<IConnectionPoint *> &points);
IEnumConnections *NewConnectionEnumerator(IUnknown *owner, const std::vector<CONNECTDATA> &connections);

} // namespace tarn
