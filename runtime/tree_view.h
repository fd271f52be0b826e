// TreeView: the tree constituent (the tree-view common control) with an image list. Nodes are
// reached by their handle, by a key (unique among the nodes that have one, found whatever its
// case) or by their index (from 1, the order the nodes were added, later ones moving down when
// one goes). Each node has an image and, optionally, an image it shows while expanded (image
// numbers from 1 into the image list; 0 none).
//
//   on_expand(node)          before a node opens, by the user or through SetExpanded; a handler
//                            may add and remove the node's children
//   on_node_click(node)      a left click on a node's label or image
//   on_right_click()         the right mouse button released over the tree
//   on_select(node, by_key)  the selection moved to `node` (by the keys when `by_key`)
//   on_shown(node)           a node that is watched (WatchShown) is drawn: it is on screen now
#pragma once
#include <windows.h>
#include <commctrl.h>

#include <climits>
#include <memory>
#include <unordered_map>
#include <vector>

#include "runtime/windowed_constituent.h"

namespace tarn {

class TreeView final : public WindowedConstituent {
public:
    using Node = HTREEITEM;

    TreeView(std::wstring name, float left, float top, float width, float height);
    ~TreeView() override;

    // The image list the images are numbered in; the tree owns it from now on.
    void SetImageList(HIMAGELIST images);

    // Adds a node at the end of `parent`'s children (top level for null). A key that another
    // node has already is refused; an empty key is no key.
    Node Add(Node parent, const std::wstring &key, const std::wstring &text, int image = 0);
    // Removes a node and everything below it.
    void Remove(Node node);
    void Clear();
    int32_t Count() const;

    Node Find(const std::wstring &key) const;
    Node ByIndex(int32_t index) const;
    int32_t Index(Node node) const;
    std::wstring Key(Node node) const;
    std::wstring Text(Node node) const;
    void SetText(Node node, const std::wstring &text);
    void SetImage(Node node, int image);
    void SetExpandedImage(Node node, int image);

    Node Parent(Node node) const;
    Node FirstChild(Node node) const; // the first top-level node for null
    Node Next(Node node) const;
    int32_t ChildCount(Node node) const;
    // Whether the tree shows an expand button beside the node.
    bool HasButton(Node node) const;
    // A node with no key and no text (a placeholder).
    bool IsBlank(Node node) const;
    // Whether the tree shows an expand button for a node without children (or none for one
    // with children).
    void ChildrenKnown(Node node, bool any);
    // Whether on_shown tells when the node is drawn.
    void WatchShown(Node node, bool watch);

    bool Expanded(Node node) const;
    // Opening a node runs on_expand first, as the user's click does (unless `run_handler` is
    // false: a control showing again what it already loaded).
    void SetExpanded(Node node, bool expanded, bool run_handler = true);
    Node Selected() const;
    void Select(Node node);
    // The texts from the top-level node down to `node`, joined by `separator`.
    std::wstring FullPath(Node node, const std::wstring &separator = L"\\") const;
    // The node at a point of the tree's client area (pixels) when the point is on its label or image.
    Node NodeAt(POINT client) const;

    // Many changes without a repaint between them; the tree paints once at the end.
    void BeginUpdate();
    void EndUpdate();

    std::function<void(Node)> on_expand, on_node_click;
    std::function<void(Node, bool by_key)> on_select;
    std::function<void()> on_right_click;
    std::function<void(Node)> on_shown;

protected:
    bool on_notify(NMHDR *header, LRESULT &result) override;

private:
    struct Record {
        std::wstring key;
        int image = 0, expanded_image = 0;
        int32_t index = 0; // position in nodes_
        Node node = nullptr;
        bool watched = false; // on_shown when drawn
        bool blank = false;   // no key and no text
        int8_t children = -1; // the button as ChildrenKnown last set it; -1 as the tree has it
        int shown_image = 0;  // the image the tree shows now
    };
    Record *record(Node node) const;
    void show_image(Node node);
    void set_children(Node node, int children);
    void forget(Node node);
    // Drops removed nodes from the index order and numbers the rest again.
    void compact() const;
    static std::wstring fold(const std::wstring &key);
    // A message of the tree's own (TVM_*).
    LRESULT send(UINT msg, WPARAM wp, LPARAM lp) const;

    mutable std::vector<std::unique_ptr<Record>> nodes_; // in index order (compacted when asked)
    std::unordered_map<std::wstring, Record *> keys_;
    // Nodes are found here rather than by asking the tree, which looks an item up by walking
    // all of them on some platforms.
    std::unordered_map<Node, Record *> by_node_;
    WNDPROC tree_proc_ = nullptr;
    HIMAGELIST images_ = nullptr;
    int update_depth_ = 0;
    int32_t watched_count_ = 0;
    mutable int32_t stale_from_ = INT32_MAX; // the first index that may be out of date
    bool expanding_by_code_ = false;
};

} // namespace tarn
