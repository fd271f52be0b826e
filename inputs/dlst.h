// dlst (TarnControls.dlst): the drives and folders of the machine as a tree, reporting the
// folder the user picks in FullPath. Folders load when first opened: until then a node carries
// one empty placeholder child so that it shows an expand button; a folder with sub-folders or
// files gets one, an empty folder does not. The tree shows every drive, or one root folder
// under a text of the host's choosing, and FullPath still reports real paths.
//
// Loading runs off the user-interface thread (FolderLoader): the tree waits for a folder only a
// moment; a drive that is slow, absent or not ready fills in (or ends empty) when it answers,
// and Expand is raised then. A big folder shows its sub-folders at once, each with an expand
// button, and learns in the background which of them are empty (their placeholders and
// buttons go), the ones on screen first.
#pragma once
#include <map>
#include <unordered_map>

#include "inputs/folder_loader.h"
#include "runtime/control_impl.h"
#include "runtime/tree_view.h"
#include "tarnctls_h.h"

namespace tarn {

class dlst final : public ControlImpl<dlst, Idlst> {
public:
    static const ControlClass Class;
    dlst();

    // Idlst
    STDMETHODIMP get_FullPath(BSTR *value) override;
    STDMETHODIMP put_FullPath(BSTR value) override;
    STDMETHODIMP get_strROOT(BSTR *value) override;
    STDMETHODIMP put_strROOT(BSTR value) override;
    STDMETHODIMP get_strROOTTEMP(BSTR *value) override;
    STDMETHODIMP put_strROOTTEMP(BSTR value) override;
    STDMETHODIMP BuildDriveList(VARIANT root, VARIANT root_text) override;
    STDMETHODIMP ExpandPath(BSTR *path) override;
    STDMETHODIMP NodeExpand(long index) override;
    STDMETHODIMP NodeContract(long index) override;
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_FullPath(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_FullPath(value); }

protected:
    void Initialize() override;
    void Resize() override;
    void Terminate() override;
    // The tree inside has its own outline object; the control groups it.
    long AccessibleRole() override { return ROLE_SYSTEM_GROUPING; }

private:
    using Node = TreeView::Node;
    // A folder being loaded by a job.
    struct Load {
        std::wstring key;
        bool filled = false;         // all its children are in the tree
        bool raise_expand = false;   // Expand is owed when they arrive
        bool listed = false;         // the names are taken (in `folders`), maybe not all added
        bool reopen = false;         // the node was open when its children started coming in
        size_t added = 0;            // how many of `folders` are in the tree
        std::vector<FolderLoader::Folder> folders;
        std::vector<Node> children;  // in the job's order
        std::vector<int8_t> applied; // the probe results already shown
    };
    // A sub-folder whose expand button waits for its probe.
    struct Unknown {
        int job = 0;
        size_t index = 0;
        bool hurried = false;
    };

    void build(const std::wstring &root, const std::wstring &root_text);
    void on_expand(Node node);
    void start_load(Node node, bool raise_expand);
    // Shows what a job has found; true when the folder's children went in now.
    bool apply(int job);
    // Adds the next batch of a folder's children; true when they are all in.
    bool fill(Node node, int job, Load &load);
    void apply_labels();
    void on_news(int job);
    void expand_levels();
    Node find(const std::wstring &key) const;
    std::wstring path_of(Node node) const;
    void picked(Node node);
    void hurry(Node node);
    void forget_loads();
    static bool is_placeholder(const TreeView &tree, Node node);

    TreeView tvwDirectory;
    FolderLoader loader_;
    std::wstring full_path_, root_, root_text_;
    std::map<int, Load> loads_;
    std::unordered_map<Node, Unknown> unknown_;
    int labels_job_ = 0;
    std::vector<std::wstring> drive_keys_; // in the labels job's order
    // An ExpandPath waiting for a level that is still loading.
    std::vector<std::wstring> levels_;
    size_t next_level_ = 0;
    int level_job_ = 0;
};

} // namespace tarn
