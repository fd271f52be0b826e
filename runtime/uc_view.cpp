// UserControl as a view object: the control draws into any device context, windowed or not,
// through the same routine its window paints with.
#include "foundation/handles.h"
#include "foundation/trap.h"
#include "runtime/guarded.h"
#include "runtime/user_control.h"

namespace tarn {

STDMETHODIMP UserControl::Draw(DWORD aspect, LONG, void *, DVTARGETDEVICE *, HDC, HDC dc, LPCRECTL bounds, LPCRECTL,
                               BOOL(STDMETHODCALLTYPE *)(ULONG_PTR), ULONG_PTR)
{
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!dc || !bounds) return E_INVALIDARG;
    return guarded([&] {
        int bw = bounds->right - bounds->left, bh = bounds->bottom - bounds->top;
        if (bw <= 0 || bh <= 0) return S_OK;
        // A control never sized by its container takes the size it is drawn at.
        if (size_.cx == 0 && size_.cy == 0) set_size_px(bw, bh, true);
        step([&] { Paint(); });
        saved_dc keep(dc);
        IntersectClipRect(dc, bounds->left, bounds->top, bounds->right, bounds->bottom);
        POINT origin{bounds->left, bounds->top};
        LPtoDP(dc, &origin, 1);
        if (bw == size_.cx && bh == size_.cy) {
            SetMapMode(dc, MM_TEXT);
        } else if (size_.cx > 0 && size_.cy > 0) {
            // Drawn at another size (a print preview, a thumbnail): scale the picture to fit.
            SetMapMode(dc, MM_ANISOTROPIC);
            SetWindowExtEx(dc, size_.cx, size_.cy, nullptr);
            SetViewportExtEx(dc, bw, bh, nullptr);
        }
        SetWindowOrgEx(dc, 0, 0, nullptr);
        SetViewportOrgEx(dc, origin.x, origin.y, nullptr);
        render(dc);
        return S_OK;
    });
}

STDMETHODIMP UserControl::GetColorSet(DWORD, LONG, void *, DVTARGETDEVICE *, HDC, LOGPALETTE **colors)
{
    if (colors) *colors = nullptr;
    return S_FALSE;
}

STDMETHODIMP UserControl::Freeze(DWORD, LONG, void *, DWORD *cookie)
{
    if (cookie) *cookie = 0;
    return E_NOTIMPL;
}

STDMETHODIMP UserControl::Unfreeze(DWORD) { return E_NOTIMPL; }

STDMETHODIMP UserControl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink *sink)
{
    view_sink_ = sink;
    view_aspects_ = aspects;
    view_flags_ = flags;
    return S_OK;
}

STDMETHODIMP UserControl::GetAdvise(DWORD *aspects, DWORD *flags, IAdviseSink **sink)
{
    if (aspects) *aspects = view_aspects_;
    if (flags) *flags = view_flags_;
    if (sink) copy_out(view_sink_.get(), sink);
    return S_OK;
}

STDMETHODIMP UserControl::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE *, LPSIZEL size)
{
    return static_cast<IOleObject *>(this)->GetExtent(aspect, size);
}

} // namespace tarn
