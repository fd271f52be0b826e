#include "runtime/tree_view.h"

#include <algorithm>
#include <climits>
#include <stdexcept>

#include "foundation/trap.h"

namespace tarn {

namespace {

const wchar_t *tree_class()
{
    static const bool registered = [] {
        INITCOMMONCONTROLSEX icc{sizeof icc, ICC_TREEVIEW_CLASSES};
        return InitCommonControlsEx(&icc) != FALSE;
    }();
    (void)registered;
    return WC_TREEVIEWW;
}

constexpr int kNoImage = -1;
int image_index(int image) { return image > 0 ? image - 1 : kNoImage; }

} // namespace

TreeView::TreeView(std::wstring name, float left, float top, float width, float height)
    : WindowedConstituent(std::move(name), tree_class(),
                          WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                              TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP,
                          WS_EX_CLIENTEDGE, left, top, width, height)
{
    if (hwnd_) tree_proc_ = reinterpret_cast<WNDPROC>(GetClassLongPtrW(hwnd_, GCLP_WNDPROC));
}

LRESULT TreeView::send(UINT msg, WPARAM wp, LPARAM lp) const
{
    // The tree's own messages go straight to its procedure: through the input subclass every
    // message costs a look-up of the window's subclass chain, which adding thousands of nodes
    // one message after another would pay each time.
    if (tree_proc_) return CallWindowProcW(tree_proc_, hwnd_, msg, wp, lp);
    return SendMessageW(hwnd_, msg, wp, lp);
}

TreeView::~TreeView()
{
    // The window goes with the base; its items must not point at records any more.
    if (hwnd_) {
        send(TVM_SETIMAGELIST, TVSIL_NORMAL, 0);
        send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    }
    if (images_) ImageList_Destroy(images_);
}

void TreeView::SetImageList(HIMAGELIST images)
{
    if (hwnd_) send(TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(images));
    if (images_ && images_ != images) ImageList_Destroy(images_);
    images_ = images;
}

std::wstring TreeView::fold(const std::wstring &key)
{
    std::wstring folded = key;
    if (!folded.empty()) CharUpperBuffW(folded.data(), static_cast<DWORD>(folded.size()));
    return folded;
}

TreeView::Record *TreeView::record(Node node) const
{
    auto it = node ? by_node_.find(node) : by_node_.end();
    return it == by_node_.end() ? nullptr : it->second;
}

bool TreeView::IsBlank(Node node) const
{
    Record *r = record(node);
    return r && r->blank;
}

TreeView::Node TreeView::Add(Node parent, const std::wstring &key, const std::wstring &text, int image)
{
    if (!hwnd_) throw std::runtime_error("no window");
    if (parent && !record(parent)) throw std::invalid_argument("no such node");
    std::wstring folded = fold(key);
    if (!key.empty() && keys_.count(folded)) throw std::invalid_argument("key not unique");
    auto rec = std::make_unique<Record>();
    rec->key = key;
    rec->image = rec->shown_image = image;
    rec->blank = key.empty() && text.empty();
    TVINSERTSTRUCTW ins{};
    ins.hParent = parent ? parent : TVI_ROOT;
    ins.hInsertAfter = TVI_LAST;
    ins.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    ins.item.pszText = const_cast<LPWSTR>(text.c_str());
    ins.item.iImage = ins.item.iSelectedImage = image_index(image);
    ins.item.lParam = reinterpret_cast<LPARAM>(rec.get());
    auto node = reinterpret_cast<Node>(send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&ins)));
    if (!node) throw std::runtime_error("the tree refused the node");
    rec->node = node;
    compact();
    rec->index = static_cast<int32_t>(nodes_.size());
    if (!key.empty()) keys_.emplace(std::move(folded), rec.get());
    by_node_.emplace(node, rec.get());
    nodes_.push_back(std::move(rec));
    // A node said to have no children shows its button again once it has one.
    if (Record *p = record(parent); p && p->children == 0) set_children(parent, 1);
    return node;
}

void TreeView::Remove(Node node)
{
    Record *top = record(node);
    if (!top) throw std::invalid_argument("no such node");
    // Everything below goes with it.
    std::vector<Node> pending{node};
    int32_t first = top->index;
    while (!pending.empty()) {
        Node n = pending.back();
        pending.pop_back();
        if (Record *r = record(n)) {
            forget(n);
            first = std::min(first, r->index);
        }
        for (Node c = FirstChild(n); c; c = Next(c)) pending.push_back(c);
    }
    send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(node));
    // The indexes after it move down when next asked for: removing many nodes in a row
    // compacts the list once.
    stale_from_ = std::min(stale_from_, first);
}

void TreeView::compact() const
{
    if (stale_from_ >= static_cast<int32_t>(nodes_.size())) return;
    nodes_.erase(std::remove_if(nodes_.begin() + stale_from_, nodes_.end(), [](const auto &r) { return !r->node; }),
                 nodes_.end());
    for (size_t i = static_cast<size_t>(stale_from_); i < nodes_.size(); ++i) nodes_[i]->index = static_cast<int32_t>(i);
    stale_from_ = INT32_MAX;
}

void TreeView::forget(Node node)
{
    Record *r = record(node);
    if (!r) return;
    if (!r->key.empty()) keys_.erase(fold(r->key));
    if (r->watched) --watched_count_;
    by_node_.erase(node);
    r->node = nullptr;
}

void TreeView::Clear()
{
    if (hwnd_) send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    keys_.clear();
    by_node_.clear();
    nodes_.clear();
    stale_from_ = INT32_MAX;
    watched_count_ = 0;
}

TreeView::Node TreeView::Find(const std::wstring &key) const
{
    if (key.empty()) return nullptr;
    auto it = keys_.find(fold(key));
    return it == keys_.end() ? nullptr : it->second->node;
}

int32_t TreeView::Count() const
{
    compact();
    return static_cast<int32_t>(nodes_.size());
}

TreeView::Node TreeView::ByIndex(int32_t index) const
{
    if (index < 1 || index > Count()) return nullptr;
    return nodes_[static_cast<size_t>(index - 1)]->node;
}

int32_t TreeView::Index(Node node) const
{
    compact();
    Record *r = record(node);
    return r ? r->index + 1 : 0;
}

std::wstring TreeView::Key(Node node) const
{
    Record *r = record(node);
    return r ? r->key : std::wstring();
}

std::wstring TreeView::Text(Node node) const
{
    if (!hwnd_ || !node) return {};
    for (size_t size = 300;; size *= 4) {
        std::wstring text(size, L'\0');
        TVITEMW item{};
        item.mask = TVIF_TEXT | TVIF_HANDLE;
        item.hItem = node;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(size);
        if (!send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return {};
        size_t n = wcsnlen(text.c_str(), size);
        if (n + 1 < size || size > 100000) return text.substr(0, n);
    }
}

void TreeView::SetText(Node node, const std::wstring &text)
{
    if (!record(node)) throw std::invalid_argument("no such node");
    TVITEMW item{};
    item.mask = TVIF_TEXT | TVIF_HANDLE;
    item.hItem = node;
    item.pszText = const_cast<LPWSTR>(text.c_str());
    send(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void TreeView::SetImage(Node node, int image)
{
    Record *r = record(node);
    if (!r) throw std::invalid_argument("no such node");
    r->image = image;
    show_image(node);
}

void TreeView::SetExpandedImage(Node node, int image)
{
    Record *r = record(node);
    if (!r) throw std::invalid_argument("no such node");
    r->expanded_image = image;
    show_image(node);
}

void TreeView::show_image(Node node)
{
    Record *r = record(node);
    if (!r) return;
    int image = (r->expanded_image > 0 && Expanded(node)) ? r->expanded_image : r->image;
    if (image == r->shown_image) return;
    r->shown_image = image;
    TVITEMW item{};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_HANDLE;
    item.hItem = node;
    item.iImage = item.iSelectedImage = image_index(image);
    send(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

TreeView::Node TreeView::Parent(Node node) const
{
    return hwnd_ && node ? reinterpret_cast<Node>(send(TVM_GETNEXTITEM, TVGN_PARENT, reinterpret_cast<LPARAM>(node)))
                         : nullptr;
}

TreeView::Node TreeView::FirstChild(Node node) const
{
    if (!hwnd_) return nullptr;
    if (!node) return reinterpret_cast<Node>(send(TVM_GETNEXTITEM, TVGN_ROOT, 0));
    return reinterpret_cast<Node>(send(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(node)));
}

TreeView::Node TreeView::Next(Node node) const
{
    return hwnd_ && node ? reinterpret_cast<Node>(send(TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(node)))
                         : nullptr;
}

int32_t TreeView::ChildCount(Node node) const
{
    int32_t n = 0;
    for (Node c = FirstChild(node); c; c = Next(c)) ++n;
    return n;
}

bool TreeView::HasButton(Node node) const
{
    if (!record(node)) return false;
    TVITEMW item{};
    item.mask = TVIF_CHILDREN | TVIF_HANDLE;
    item.hItem = node;
    send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item.cChildren != 0;
}

void TreeView::set_children(Node node, int children)
{
    if (Record *r = record(node)) r->children = static_cast<int8_t>(children);
    TVITEMW item{};
    item.mask = TVIF_CHILDREN | TVIF_HANDLE;
    item.hItem = node;
    item.cChildren = children;
    send(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void TreeView::ChildrenKnown(Node node, bool any)
{
    if (!record(node)) throw std::invalid_argument("no such node");
    set_children(node, any ? 1 : 0);
}

void TreeView::WatchShown(Node node, bool watch)
{
    Record *r = record(node);
    if (!r) throw std::invalid_argument("no such node");
    if (r->watched != watch) watched_count_ += watch ? 1 : -1;
    r->watched = watch;
}

bool TreeView::Expanded(Node node) const
{
    if (!hwnd_ || !node) return false;
    return (send(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(node), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

void TreeView::SetExpanded(Node node, bool expanded, bool run_handler)
{
    if (!record(node)) throw std::invalid_argument("no such node");
    if (expanded == Expanded(node)) return;
    if (expanded && !FirstChild(node) && !HasButton(node)) return; // nothing to open, as for a click
    if (expanded && run_handler && on_expand) fire([&] { on_expand(node); });
    if (!record(node)) return; // the handler removed it
    expanding_by_code_ = true;
    send(TVM_EXPAND, expanded ? TVE_EXPAND : TVE_COLLAPSE, reinterpret_cast<LPARAM>(node));
    expanding_by_code_ = false;
    show_image(node);
}

TreeView::Node TreeView::Selected() const
{
    return hwnd_ ? reinterpret_cast<Node>(send(TVM_GETNEXTITEM, TVGN_CARET, 0)) : nullptr;
}

void TreeView::Select(Node node)
{
    if (node && !record(node)) throw std::invalid_argument("no such node");
    if (hwnd_) send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node));
}

std::wstring TreeView::FullPath(Node node, const std::wstring &separator) const
{
    std::vector<std::wstring> texts;
    for (Node n = node; n; n = Parent(n)) texts.push_back(Text(n));
    std::wstring path;
    for (auto it = texts.rbegin(); it != texts.rend(); ++it) {
        if (it != texts.rbegin()) path += separator;
        path += *it;
    }
    return path;
}

TreeView::Node TreeView::NodeAt(POINT client) const
{
    if (!hwnd_) return nullptr;
    TVHITTESTINFO hit{};
    hit.pt = client;
    auto node = reinterpret_cast<Node>(send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    return (hit.flags & (TVHT_ONITEMICON | TVHT_ONITEMLABEL)) ? node : nullptr;
}

void TreeView::BeginUpdate()
{
    if (update_depth_++ == 0 && hwnd_) send(WM_SETREDRAW, FALSE, 0);
}

void TreeView::EndUpdate()
{
    if (update_depth_ == 0 || --update_depth_ > 0 || !hwnd_) return;
    send(WM_SETREDRAW, TRUE, 0);
    InvalidateRect(hwnd_, nullptr, TRUE);
}

bool TreeView::on_notify(NMHDR *header, LRESULT &result)
{
    result = 0;
    switch (header->code) {
    case TVN_ITEMEXPANDINGW:
    case TVN_ITEMEXPANDINGA: {
        const auto *tv = reinterpret_cast<const NMTREEVIEWW *>(header);
        if ((tv->action & TVE_EXPAND) && !expanding_by_code_ && on_expand) {
            Node node = tv->itemNew.hItem;
            fire([&] { on_expand(node); });
        }
        return true;
    }
    case TVN_ITEMEXPANDEDW:
    case TVN_ITEMEXPANDEDA:
        show_image(reinterpret_cast<const NMTREEVIEWW *>(header)->itemNew.hItem);
        return true;
    case TVN_SELCHANGEDW:
    case TVN_SELCHANGEDA: {
        const auto *tv = reinterpret_cast<const NMTREEVIEWW *>(header);
        Node node = tv->itemNew.hItem;
        bool by_key = tv->action == TVC_BYKEYBOARD;
        if (on_select) fire([&] { on_select(node, by_key); });
        return true;
    }
    case NM_CUSTOMDRAW: {
        // Only to learn which watched nodes are on screen; the tree draws them.
        auto *draw = reinterpret_cast<NMTVCUSTOMDRAW *>(header);
        if (draw->nmcd.dwDrawStage == CDDS_PREPAINT) {
            result = watched_count_ > 0 && on_shown ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
        } else if (draw->nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
            auto node = reinterpret_cast<Node>(draw->nmcd.dwItemSpec);
            Record *r = record(node);
            if (r && r->watched && on_shown) step([&] { on_shown(node); });
            result = CDRF_DODEFAULT;
        }
        return true;
    }
    case NM_CLICK: {
        DWORD pos = GetMessagePos();
        POINT p{static_cast<short>(LOWORD(pos)), static_cast<short>(HIWORD(pos))};
        ScreenToClient(hwnd_, &p);
        if (Node node = NodeAt(p); node && on_node_click) fire([&] { on_node_click(node); });
        return true;
    }
    case NM_RCLICK:
        fire(on_right_click);
        return true;
    default:
        return false;
    }
}

} // namespace tarn
