#include "inputs/dlst.h"

#include <algorithm>

#include "foundation/strings.h"
#include "inputs/dlst_images.h"
#include "inputs/dlst_paths.h"
#include "runtime/optional_args.h"

namespace tarn {

const ControlClass dlst::Class = {
    L"dlst",
    L"Tarn Controls directory tree",
    &CLSID_dlst,
    &IID_Idlst,
    &DIID_IdlstEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST,
    &dlst::Create,
    false, // lists the machine's drives and folders: never safe for an untrusted script
};

namespace {

// The events in declaration order.
namespace ev {
constexpr DISPID Expand = 1, Click = 2, ClickRight = 3;
}

// How long the user-interface thread waits for a folder or the drive labels before it lets
// them come in later.
constexpr DWORD kWaitMs = 150;
// The most probe results shown in one go: the user-interface thread is back to its messages
// in between.
constexpr size_t kProbesAtOnce = 500;
// The most sub-folders added in one go: a folder of thousands fills over several messages, so
// the form answers meanwhile; Expand comes with the last batch.
constexpr size_t kChildrenAtOnce = 1000;

} // namespace

dlst::dlst()
    : tvwDirectory(L"tvwDirectory", 0, 0, 2400, 3000), loader_([this](int job) { on_news(job); })
{
    add_constituent(tvwDirectory);
    SetFocusConstituent(&tvwDirectory);
    tvwDirectory.on_expand = [this](Node node) { on_expand(node); };
    tvwDirectory.on_node_click = [this](Node node) { picked(node); };
    tvwDirectory.on_select = [this](Node node, bool by_key) {
        if (by_key) picked(node);
    };
    tvwDirectory.on_right_click = [this] {
        if (Node selected = tvwDirectory.Selected()) step([&] { full_path_ = path_of(selected); });
        raise(ev::ClickRight);
    };
    tvwDirectory.on_shown = [this](Node node) { hurry(node); };
    // While a folder loads in the background the pointer says so.
    tvwDirectory.cursor = [this]() -> HCURSOR {
        for (const auto &[job, load] : loads_)
            if (!load.filled) return LoadCursorW(nullptr, IDC_APPSTARTING);
        return nullptr;
    };
}

void dlst::Initialize()
{
    SetDesignSize(2400, 3000);
    SetBackColor(syscolor::Window);
    step([&] { tvwDirectory.SetImageList(MakeDirectoryImages()); });
}

void dlst::Terminate() { forget_loads(); }

void dlst::Resize()
{
    step([&] { tvwDirectory.Move(0, 0, ScaleWidth(), ScaleHeight()); });
}

// ---------------------------------------------------------------- building and loading

bool dlst::is_placeholder(const TreeView &tree, Node node) { return tree.IsBlank(node); }

dlst::Node dlst::find(const std::wstring &key) const
{
    if (Node node = tvwDirectory.Find(key)) return node;
    // A root given with a closing "\" (or without one) is found either way.
    if (!key.empty() && key.back() == L'\\') return tvwDirectory.Find(key.substr(0, key.size() - 1));
    return tvwDirectory.Find(key + L'\\');
}

void dlst::forget_loads()
{
    loader_.ForgetAll();
    loads_.clear();
    unknown_.clear();
    labels_job_ = 0;
    levels_.clear();
    next_level_ = 0;
    level_job_ = 0;
}

void dlst::build(const std::wstring &root, const std::wstring &root_text)
{
    forget_loads();
    drive_keys_.clear();
    tvwDirectory.Clear();
    std::wstring last;
    if (!root.empty()) {
        Node node = tvwDirectory.Add(nullptr, root, root_text, kImageFolder);
        tvwDirectory.SetExpandedImage(node, kImageOpenFolder);
        tvwDirectory.Add(node, L"", L"");
    } else {
        std::wstring drives(static_cast<size_t>(GetLogicalDriveStringsW(0, nullptr)) + 1, L'\0');
        drives.resize(GetLogicalDriveStringsW(static_cast<DWORD>(drives.size()), drives.data()));
        std::vector<std::wstring> roots;
        for (size_t at = 0; at < drives.size() && drives[at];) {
            std::wstring entry = DriveEntry(drives[at], L"");
            at = drives.find(L'\0', at) + 1;
            std::wstring path = DriveRootOf(entry);
            step([&] {
                Node node = tvwDirectory.Add(nullptr, path.substr(0, 2), entry, DriveImage(path));
                tvwDirectory.Add(node, L"", L"");
                drive_keys_.push_back(path.substr(0, 2));
                roots.push_back(path);
            });
            last = path;
        }
        // The labels may take a drive's time: what is not read within a moment comes later.
        labels_job_ = loader_.Labels(roots);
        loader_.WaitFinished(labels_job_, kWaitMs);
        apply_labels();
    }
    root_ = root;
    full_path_ = root.empty() ? last : root;
    root_text_ = root_text;
}

void dlst::apply_labels()
{
    std::vector<std::wstring> labels;
    bool finished = false;
    if (!loader_.TakeLabels(labels_job_, labels, finished)) return;
    for (size_t i = 0; i < labels.size() && i < drive_keys_.size(); ++i) {
        if (labels[i].empty()) continue;
        if (Node node = tvwDirectory.Find(drive_keys_[i]))
            step([&] { tvwDirectory.SetText(node, DriveEntry(drive_keys_[i][0], labels[i])); });
    }
    if (finished) {
        loader_.Forget(labels_job_);
        labels_job_ = 0;
    }
}

void dlst::on_expand(Node node)
{
    const std::wstring key = tvwDirectory.Key(node);
    for (const auto &[job, load] : loads_)
        if (!load.filled && load.key == key) return; // already on its way: Expand comes with it
    // A sub-folder opened before its probe came back is listed now: the probe no longer counts.
    if (unknown_.erase(node)) step([&] { tvwDirectory.WatchShown(node, false); });
    if (is_placeholder(tvwDirectory, tvwDirectory.FirstChild(node))) {
        start_load(node, true);
        return;
    }
    full_path_ = path_of(node);
    raise(ev::Expand);
}

void dlst::start_load(Node node, bool raise_expand)
{
    HCURSOR old = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    const std::wstring key = tvwDirectory.Key(node);
    int job = loader_.List(key);
    loads_[job].key = key;
    const DWORD start = GetTickCount();
    if (!loader_.WaitFinished(job, kWaitMs)) {
        DWORD spent = GetTickCount() - start;
        loader_.WaitListed(job, spent < kWaitMs ? kWaitMs - spent : 0);
    }
    bool filled = apply(job);
    SetCursor(old);
    if (filled) {
        step([&] { full_path_ = path_of(node); });
        if (raise_expand) raise(ev::Expand);
    } else if (auto it = loads_.find(job); it != loads_.end()) {
        it->second.raise_expand = raise_expand;
    }
}

bool dlst::apply(int job)
{
    auto it = loads_.find(job);
    if (it == loads_.end()) return false;
    Load &load = it->second;
    Node node = find(load.key);
    if (!node) {
        loader_.Forget(job);
        loads_.erase(it);
        return false;
    }
    bool filled_now = false, finished = false;
    if (!load.filled && !load.listed) {
        FolderLoader::Listing found;
        if (loader_.Take(job, found) && found.listed) {
            load.folders = std::move(found.folders);
            load.listed = true;
        }
    }
    if (!load.filled && load.listed) {
        tvwDirectory.BeginUpdate();
        const bool all = fill(node, job, load);
        tvwDirectory.EndUpdate();
        if (!all) {
            loader_.Nudge(job); // the rest after the messages waiting meanwhile
            return false;
        }
        load.folders = {};
        load.filled = filled_now = true;
    }
    std::vector<std::pair<size_t, int8_t>> probes;
    if (load.filled && loader_.TakeProbes(job, probes, finished, kProbesAtOnce) && !probes.empty()) {
        // A batch of buttons settles; the tree repaints once for them all.
        tvwDirectory.BeginUpdate();
        for (const auto &[i, probe] : probes) {
            if (i >= load.applied.size() || load.applied[i] >= 0) continue;
            load.applied[i] = probe;
            Node child = load.children[i];
            if (!child || !unknown_.erase(child)) continue;
            step([&] {
                tvwDirectory.WatchShown(child, false);
                // It has its placeholder already; an empty one loses it, and its button.
                if (probe == 1) return;
                Node first = tvwDirectory.FirstChild(child);
                if (is_placeholder(tvwDirectory, first)) tvwDirectory.Remove(first);
                if (tvwDirectory.HasButton(child)) tvwDirectory.ChildrenKnown(child, false);
            });
        }
        tvwDirectory.EndUpdate();
    }
    if (finished) {
        loader_.Forget(job);
        loads_.erase(it);
    }
    return filled_now;
}

bool dlst::fill(Node node, int job, Load &load)
{
    // The placeholder goes; the sub-folders come in, each with a placeholder (and so an expand
    // button) when it holds anything, or until its probe is back; a sub-folder still waiting
    // for its probe is probed first once it is on screen.
    const size_t n = load.folders.size(), from = load.added, to = std::min(n, from + kChildrenAtOnce);
    // Children added under an open node make the tree measure all it shows once per child:
    // the node opens again when they are all in.
    const bool open = tvwDirectory.Expanded(node);
    if (from == 0) {
        Node first = tvwDirectory.FirstChild(node);
        if (is_placeholder(tvwDirectory, first)) step([&] { tvwDirectory.Remove(first); });
        load.children.assign(n, nullptr);
        load.applied.assign(n, -1);
        load.reopen = false;
    }
    load.reopen = load.reopen || open; // also when the user opened it between two batches
    if (open) step([&] { tvwDirectory.SetExpanded(node, false); });
    for (size_t i = from; i < to; ++i) {
        const FolderLoader::Folder &f = load.folders[i];
        step([&] {
            Node child = tvwDirectory.Add(node, ChildKey(load.key, f.name), f.name, kImageFolder);
            load.children[i] = child;
            load.applied[i] = f.has_entries;
            if (f.has_entries != 0) {
                tvwDirectory.Add(child, L"", L"");
                tvwDirectory.SetExpandedImage(child, kImageOpenFolder);
            }
            if (f.has_entries < 0) {
                tvwDirectory.WatchShown(child, true);
                unknown_[child] = Unknown{job, i, false};
            }
        });
    }
    load.added = to;
    if (to < n) return false;
    if (!tvwDirectory.FirstChild(node)) step([&] { tvwDirectory.ChildrenKnown(node, false); });
    else if (load.reopen) step([&] { tvwDirectory.SetExpanded(node, true, false); });
    return true;
}

void dlst::on_news(int job)
{
    if (job == labels_job_) {
        apply_labels();
        return;
    }
    auto it = loads_.find(job);
    if (it == loads_.end()) return;
    const bool owed = it->second.raise_expand;
    const std::wstring key = it->second.key;
    if (!apply(job)) return;
    if (owed) {
        if (Node node = find(key)) step([&] { full_path_ = path_of(node); });
        raise(ev::Expand);
    }
    if (job == level_job_) {
        level_job_ = 0;
        expand_levels();
    }
}

void dlst::hurry(Node node)
{
    // On screen before its probe came back: probed next.
    auto it = unknown_.find(node);
    if (it == unknown_.end() || it->second.hurried) return;
    loader_.Urgent(it->second.job, it->second.index);
    it->second.hurried = true;
}

// ---------------------------------------------------------------- paths and picking

std::wstring dlst::path_of(Node node) const
{
    std::vector<std::wstring> texts;
    Node top = node;
    for (Node n = node; n; n = tvwDirectory.Parent(n)) {
        texts.insert(texts.begin(), tvwDirectory.Text(n));
        top = n;
    }
    return NodeRealPath(texts, root_.empty() ? tvwDirectory.Key(top) : std::wstring(), root_text_, root_);
}

void dlst::picked(Node node)
{
    step([&] { full_path_ = path_of(node); });
    raise(ev::Click);
}

void dlst::expand_levels()
{
    while (next_level_ < levels_.size()) {
        Node node = find(levels_[next_level_++]);
        if (!node) continue; // not in the tree: passed over
        step([&] { tvwDirectory.Select(node); });
        step([&] { tvwDirectory.SetExpanded(node, true); });
        const std::wstring key = tvwDirectory.Key(node);
        for (const auto &[job, load] : loads_) {
            if (!load.filled && load.key == key) {
                level_job_ = job; // the rest of the way when this level is in
                return;
            }
        }
    }
    levels_.clear();
    next_level_ = 0;
    raise(ev::Click);
}

// ---------------------------------------------------------------- properties and methods

STDMETHODIMP dlst::get_FullPath(BSTR *v) { return get_string(v, [&] { return full_path_; }); }
STDMETHODIMP dlst::put_FullPath(BSTR v)
{
    return put_value(L"FullPath", [&] { full_path_ = from_bstr(v); });
}
STDMETHODIMP dlst::get_strROOT(BSTR *v) { return get_string(v, [&] { return root_; }); }
STDMETHODIMP dlst::put_strROOT(BSTR v)
{
    return put_value(L"strROOT", [&] { root_ = from_bstr(v); });
}
STDMETHODIMP dlst::get_strROOTTEMP(BSTR *v) { return get_string(v, [&] { return root_text_; }); }
STDMETHODIMP dlst::put_strROOTTEMP(BSTR v)
{
    return put_value(L"strROOTTEMP", [&] { root_text_ = from_bstr(v); });
}

STDMETHODIMP dlst::get_hwnd(OLE_HANDLE *v)
{
    return get_value(v, [&] { return to_ole_handle(tvwDirectory.hWnd()); });
}

STDMETHODIMP dlst::BuildDriveList(VARIANT root, VARIANT root_text)
{
    step([&] { build(OptionalString(root).value_or(L""), OptionalString(root_text).value_or(L"")); });
    return S_OK;
}

STDMETHODIMP dlst::ExpandPath(BSTR *path)
{
    step([&] {
        std::wstring p = path ? from_bstr(*path) : std::wstring();
        if (Trim(p).empty()) {
            raise(ev::Click);
            return;
        }
        if (p.back() != L'\\') {
            // The caller's variable gets the "\" too, as it was passed by reference.
            p += L'\\';
            if (BSTR longer = to_bstr(p)) {
                SysFreeString(*path);
                *path = longer;
            }
        }
        levels_ = ExpandPathLevels(p);
        next_level_ = 0;
        level_job_ = 0;
        expand_levels();
    });
    return S_OK;
}

STDMETHODIMP dlst::NodeExpand(long index)
{
    step([&] {
        if (Node node = tvwDirectory.ByIndex(index)) tvwDirectory.SetExpanded(node, true);
    });
    return S_OK;
}

STDMETHODIMP dlst::NodeContract(long index)
{
    step([&] {
        if (Node node = tvwDirectory.ByIndex(index)) tvwDirectory.SetExpanded(node, false);
    });
    return S_OK;
}

} // namespace tarn
