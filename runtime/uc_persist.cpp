// UserControl's persistence: the three forms a container may use (property bag, stream,
// storage) all run the control's one ReadProperties and WriteProperties routine.
#include "foundation/trap.h"
#include "runtime/guarded.h"
#include "runtime/prop_codec.h"
#include "runtime/user_control.h"

namespace tarn {

namespace {
constexpr wchar_t kStorageStream[] = L"Contents";
}

void UserControl::init_new()
{
    step([&] { InitProperties(); });
    initialized_ = true;
    dirty_ = false;
    run_resize();
}

void UserControl::load_from_bag(PropertyBag &bag)
{
    step([&] { ReadProperties(bag); });
    initialized_ = true;
    dirty_ = false;
    run_resize();
}

STDMETHODIMP UserControl::GetClassID(CLSID *clsid)
{
    if (!clsid) return E_POINTER;
    *clsid = *class_.clsid;
    return S_OK;
}

STDMETHODIMP UserControl::IsDirty() { return dirty_ ? S_OK : S_FALSE; }

STDMETHODIMP UserControl::InitNew()
{
    if (initialized_) return E_UNEXPECTED;
    return guarded([&] {
        init_new();
        return S_OK;
    });
}

STDMETHODIMP UserControl::Load(IStream *stream)
{
    if (!stream) return E_POINTER;
    if (initialized_) return E_UNEXPECTED;
    return guarded([&] {
        // Whatever the stream holds, the control comes up: what could not be read takes its
        // default, as a missing key does.
        PropImage image;
        MemoryPropertyBag bag;
        if (ReadPropImage(stream, image)) {
            BagOfImage(image, bag);
            if (size_.cx == 0 && size_.cy == 0 && image.extent_cx > 0 && image.extent_cy > 0) {
                SIZEL extent{image.extent_cx, image.extent_cy};
                SetExtent(DVASPECT_CONTENT, &extent);
            }
        }
        load_from_bag(bag);
        return S_OK;
    });
}

STDMETHODIMP UserControl::Save(IStream *stream, BOOL clear_dirty)
{
    if (!stream) return E_POINTER;
    return guarded([&] {
        MemoryPropertyBag bag;
        step([&] { WriteProperties(bag); });
        PropImage image = ImageOfBag(bag);
        SIZEL extent{};
        GetExtent(DVASPECT_CONTENT, &extent);
        image.extent_cx = extent.cx;
        image.extent_cy = extent.cy;
        HRESULT hr = WritePropImage(stream, image); // a failing medium is the host's to know
        if (SUCCEEDED(hr) && clear_dirty) dirty_ = false;
        return hr;
    });
}

STDMETHODIMP UserControl::GetSizeMax(ULARGE_INTEGER *size)
{
    if (!size) return E_POINTER;
    return guarded([&] {
        MemoryPropertyBag bag;
        step([&] { WriteProperties(bag); });
        size->QuadPart = EncodePropImage(ImageOfBag(bag)).size();
        return S_OK;
    });
}

STDMETHODIMP UserControl::Load(IPropertyBag *bag, IErrorLog *log)
{
    if (!bag) return E_POINTER;
    if (initialized_) return E_UNEXPECTED;
    return guarded([&] {
        HostPropertyBag host(bag, log);
        load_from_bag(host);
        return S_OK;
    });
}

STDMETHODIMP UserControl::Save(IPropertyBag *bag, BOOL clear_dirty, BOOL)
{
    if (!bag) return E_POINTER;
    return guarded([&] {
        HostPropertyBag host(bag, nullptr);
        step([&] { WriteProperties(host); });
        if (clear_dirty) dirty_ = false;
        return S_OK;
    });
}

STDMETHODIMP UserControl::InitNew(IStorage *storage)
{
    if (!storage) return E_POINTER;
    return InitNew();
}

STDMETHODIMP UserControl::Load(IStorage *storage)
{
    if (!storage) return E_POINTER;
    if (initialized_) return E_UNEXPECTED;
    return guarded([&] {
        ComPtr<IStream> stream;
        if (SUCCEEDED(storage->OpenStream(kStorageStream, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.put()))) {
            return Load(stream.get());
        }
        MemoryPropertyBag empty;
        load_from_bag(empty);
        return S_OK;
    });
}

STDMETHODIMP UserControl::Save(IStorage *storage, BOOL)
{
    if (!storage) return E_POINTER;
    return guarded([&]() -> HRESULT {
        ComPtr<IStream> stream;
        HRESULT hr = storage->CreateStream(kStorageStream, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0,
                                           stream.put());
        if (FAILED(hr)) return hr;
        return Save(stream.get(), TRUE);
    });
}

STDMETHODIMP UserControl::SaveCompleted(IStorage *) { return S_OK; }
STDMETHODIMP UserControl::HandsOffStorage() { return S_OK; }

} // namespace tarn
