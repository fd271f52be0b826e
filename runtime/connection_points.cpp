#include "runtime/connection_points.h"

#include <new>

#include "runtime/com_object.h"

namespace tarn {

std::vector<ComPtr<IUnknown>> ConnectionPoint::sinks() const
{
    std::vector<ComPtr<IUnknown>> out;
    out.reserve(sinks_.size());
    for (const Sink &s : sinks_) out.push_back(s.sink);
    return out;
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID riid, void **ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    if (riid == IID_IUnknown || riid == IID_IConnectionPoint) *ppv = static_cast<IConnectionPoint *>(this);
    else return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID *iid)
{
    if (!iid) return E_POINTER;
    *iid = iid_;
    return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer **out)
{
    return copy_out(owner_, out);
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown *sink, DWORD *cookie)
{
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (!sink) return E_POINTER;
    try {
        ComPtr<IUnknown> held;
        if (FAILED(sink->QueryInterface(iid_, held.put_void())) || !held) {
            // An event sink may implement only IDispatch for a dispinterface.
            if (!dispatch_fallback_ || FAILED(sink->QueryInterface(IID_IDispatch, held.put_void())) || !held)
                return CONNECT_E_CANNOTCONNECT;
        }
        sinks_.push_back({next_cookie_, held});
        *cookie = next_cookie_++;
        return S_OK;
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie)
{
    for (auto it = sinks_.begin(); it != sinks_.end(); ++it)
        if (it->cookie == cookie) {
            ComPtr<IUnknown> keep = it->sink; // released after the list is consistent again
            sinks_.erase(it);
            return S_OK;
        }
    return CONNECT_E_NOCONNECTION;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections **out)
{
    if (!out) return E_POINTER;
    *out = nullptr;
    try {
        std::vector<CONNECTDATA> data;
        for (const Sink &s : sinks_) data.push_back({s.sink.get(), s.cookie});
        *out = NewConnectionEnumerator(owner_, data);
        return *out ? S_OK : E_OUTOFMEMORY;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

namespace {

// One enumerator shape for both element kinds: it holds its own references to the elements
// and to the object they came from, and AddRefs every element it hands out.
template <class IEnum, class Item> class Enumerator final : public ComObject<IEnum> {
public:
    Enumerator(IUnknown *owner, std::vector<Item> items, ULONG pos) : owner_(owner), items_(std::move(items)), pos_(pos)
    {
        for (Item &i : items_) unknown_of(i)->AddRef();
    }
    ~Enumerator()
    {
        for (Item &i : items_) unknown_of(i)->Release();
    }

    STDMETHODIMP Next(ULONG count, Item *out, ULONG *fetched) override
    {
        if (fetched) *fetched = 0;
        if (!out || (count > 1 && !fetched)) return E_POINTER;
        ULONG n = 0;
        while (n < count && pos_ < items_.size()) {
            out[n] = items_[pos_++];
            unknown_of(out[n])->AddRef();
            ++n;
        }
        if (fetched) *fetched = n;
        return n == count ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG count) override
    {
        ULONG left = static_cast<ULONG>(items_.size()) - pos_;
        pos_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override
    {
        pos_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(IEnum **out) override
    {
        if (!out) return E_POINTER;
        *out = new (std::nothrow) Enumerator(owner_.get(), items_, pos_);
        return *out ? S_OK : E_OUTOFMEMORY;
    }

private:
    static IUnknown *unknown_of(IConnectionPoint *p) { return p; }
    static IUnknown *unknown_of(const CONNECTDATA &d) { return d.pUnk; }

    module::ObjectCount count_;
    ComPtr<IUnknown> owner_;
    std::vector<Item> items_;
    ULONG pos_;
};

} // namespace

IEnumConnectionPoints *NewConnectionPointEnumerator(IUnknown *owner, const std::vector<IConnectionPoint *> &points)
{
    return new (std::nothrow) Enumerator<IEnumConnectionPoints, IConnectionPoint *>(
        owner, points, 0);
}

IEnumConnections *NewConnectionEnumerator(IUnknown *owner, const std::vector<CONNECTDATA> &connections)
{
    return new (std::nothrow) Enumerator<IEnumConnections, CONNECTDATA>(owner, connections, 0);
}

} // namespace tarn
