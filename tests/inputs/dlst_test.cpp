// The directory tree through the real DLL in the test container, on a folder tree the test
// makes itself: the drive nodes, lazy loading under the placeholder, the expand buttons, the
// paths a root shown under a text of its own reports, ExpandPath through levels that are not
// there, Unicode and long paths, a folder that goes before it is opened, clicks with real input,
// and bad input. The loader itself is driven with a slow drive of the test's own.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "inputs/dlst_paths.h"
#include "inputs/folder_loader.h"
#include "support/control_test.h"
#include "support/real_input.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.dlst";

// ---- the test's folders, made and removed through the long path form

bool make_dir(const std::wstring &path) { return CreateDirectoryW(ExtendedPath(path).c_str(), nullptr) != 0; }
void make_file(const std::wstring &path)
{
    HANDLE h = CreateFileW(ExtendedPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
}
void remove_tree(const std::wstring &path)
{
    WIN32_FIND_DATAW fd;
    HANDLE h = FindFirstFileW(ExtendedPath(path + L"\\*").c_str(), &fd);
    if (h != INVALID_HANDLE_VALUE) {
        do {
            std::wstring name = fd.cFileName, full = path + L"\\" + name;
            if (name == L"." || name == L"..") continue;
            SetFileAttributesW(ExtendedPath(full).c_str(), FILE_ATTRIBUTE_NORMAL);
            if (fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) remove_tree(full);
            else DeleteFileW(ExtendedPath(full).c_str());
        } while (FindNextFileW(h, &fd));
        FindClose(h);
    }
    RemoveDirectoryW(ExtendedPath(path).c_str());
}

const std::wstring kUnicode = L"\u00dcnic\u00f8de \u0416\u0436 \u4e2d\u6587";
// 6 levels of 50 characters: a deepest path well past 260 characters.
const std::wstring kLongPiece = std::wstring(L"long ") + std::wstring(45, L'x');
constexpr int kLongLevels = 6;

// The tree's window and what it shows, as a host (or a screen reader) sees it.
HWND tree_of(Hosted &h) { return reinterpret_cast<HWND>(static_cast<LONG_PTR>(as_integer(h.get(L"hwnd")))); }
HTREEITEM next(HWND t, HTREEITEM item, UINT how)
{
    return reinterpret_cast<HTREEITEM>(SendMessageW(t, TVM_GETNEXTITEM, how, reinterpret_cast<LPARAM>(item)));
}
std::wstring text(HWND t, HTREEITEM item)
{
    wchar_t buf[400] = {};
    TVITEMW it{};
    it.mask = TVIF_TEXT | TVIF_HANDLE;
    it.hItem = item;
    it.pszText = buf;
    it.cchTextMax = 400;
    SendMessageW(t, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&it));
    return buf;
}
TVITEMW info(HWND t, HTREEITEM item)
{
    TVITEMW it{};
    it.mask = TVIF_IMAGE | TVIF_CHILDREN | TVIF_STATE | TVIF_HANDLE;
    it.hItem = item;
    it.stateMask = TVIS_EXPANDED;
    SendMessageW(t, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&it));
    return it;
}
std::vector<HTREEITEM> children(HWND t, HTREEITEM parent)
{
    std::vector<HTREEITEM> out;
    for (HTREEITEM c = next(t, parent, parent ? TVGN_CHILD : TVGN_ROOT); c; c = next(t, c, TVGN_NEXT)) out.push_back(c);
    return out;
}
std::vector<std::wstring> child_texts(HWND t, HTREEITEM parent)
{
    std::vector<std::wstring> out;
    for (HTREEITEM c : children(t, parent)) out.push_back(text(t, c));
    return out;
}
HTREEITEM child_named(HWND t, HTREEITEM parent, const std::wstring &name)
{
    for (HTREEITEM c : children(t, parent))
        if (text(t, c) == name) return c;
    return nullptr;
}
// Whether the tree draws an expand button beside the item (asking the control when it deferred).
bool button(HWND t, HTREEITEM item) { return info(t, item).cChildren != 0; }
// Where an item's text is, in the tree's client area.
RECT item_rect(HWND t, HTREEITEM item)
{
    RECT r{};
    std::memcpy(&r, &item, sizeof item); // TVM_GETITEMRECT takes the item in the rectangle
    SendMessageW(t, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&r));
    return r;
}
bool is_placeholder_only(HWND t, HTREEITEM item)
{
    std::vector<HTREEITEM> c = children(t, item);
    return c.size() == 1 && text(t, c[0]).empty();
}

class DirectoryTreeTest : public ControlTest {
protected:
    void SetUp() override
    {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        root_ = std::wstring(temp) + L"tarn dlst " + std::to_wstring(GetCurrentProcessId());
        remove_tree(root_);
        make_dir(root_);
        for (const wchar_t *f : {L"Reports", L"Reports\\2024", L"Reports\\2025", L"Only files", L"Empty", L"archive",
                                 L"Hidden"})
            make_dir(root_ + L"\\" + f);
        make_file(root_ + L"\\Only files\\a.txt");
        make_file(root_ + L"\\top.txt");
        SetFileAttributesW(ExtendedPath(root_ + L"\\Hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
        make_dir(root_ + L"\\" + kUnicode);
        make_dir(root_ + L"\\" + kUnicode + L"\\\u00e9t\u00e9");
        std::wstring deep = root_;
        for (int i = 0; i < kLongLevels; ++i) make_dir(deep += L"\\" + kLongPiece);
        make_file(deep + L"\\deepest.txt");
        long_path_ = deep;
    }
    void TearDown() override
    {
        ControlTest::TearDown();
        remove_tree(root_);
    }
    Hosted &tree(bool active = false)
    {
        Hosted &h = place(kProgId, {10, 10, 310, 410});
        if (active) {
            EXPECT_EQ(S_OK, h.activate());
            allow_focus(h);
        }
        return h;
    }
    // The events since the last look, in one line, once there are at least `count` of them (a
    // folder that takes longer than the tree waits comes in through the message loop).
    static std::wstring events(Hosted &h, size_t count = 0)
    {
        pump_until([&] { return h.log().events.size() >= count; });
        std::wstring all;
        for (const std::wstring &e : h.log().event_names()) all += (all.empty() ? L"" : L" ") + e;
        h.log().clear_events();
        return all;
    }
    static std::wstring full_path(Hosted &h) { return as_string(h.get(L"FullPath")); }
    std::wstring root_, long_path_;
};

} // namespace

TEST_F(DirectoryTreeTest, DrivesAreKeyedByLetterWithTheirImagesAndAPlaceholderEach)
{
    Hosted &h = tree();
    h.call(L"BuildDriveList", {Str(L""), Str(L"")});
    HWND t = tree_of(h);
    wchar_t drives[256] = {};
    GetLogicalDriveStringsW(255, drives);
    std::vector<std::wstring> roots;
    for (const wchar_t *d = drives; *d; d += wcslen(d) + 1) roots.push_back(d);
    std::vector<HTREEITEM> nodes = children(t, nullptr);
    ASSERT_EQ(roots.size(), nodes.size());
    for (size_t i = 0; i < roots.size(); ++i) {
        const std::wstring root = roots[i], shown = text(t, nodes[i]);
        SCOPED_TRACE(narrow(root));
        // The drive list's text: the letter in lower case and a colon, a label after it.
        EXPECT_EQ(std::wstring(1, static_cast<wchar_t>(towlower(root[0]))) + L":", shown.substr(0, 2));
        const int image = root[0] == L'A' || root[0] == L'B' ? 1 : root[0] == L'D' ? 3 : 2;
        EXPECT_EQ(image - 1, info(t, nodes[i]).iImage);
        EXPECT_TRUE(is_placeholder_only(t, nodes[i]));
        // Keyed by letter and colon: ExpandPath finds it, in either case, and reports its root.
        h.log().clear_events();
        Variant path = Str(std::wstring(1, static_cast<wchar_t>(towlower(root[0]))) + L":");
        h.call(L"ExpandPath", {path});
        EXPECT_EQ(L"Expand Click", events(h, 2));
        EXPECT_EQ(nodes[i], next(t, nullptr, TVGN_CARET));
        EXPECT_EQ(root, full_path(h));
    }
    // Built again: the last drive's root is the path.
    h.call(L"BuildDriveList");
    EXPECT_EQ(roots.back(), full_path(h));
    EXPECT_EQ(L"", as_string(h.get(L"strROOT")));
}

TEST_F(DirectoryTreeTest, AFolderLoadsOnItsFirstExpandAndShowsButtonsOnlyWhereThereIsSomething)
{
    Hosted &h = tree();
    h.call(L"BuildDriveList", {Str(root_), Str(L"My data")});
    EXPECT_EQ(root_, full_path(h));
    EXPECT_EQ(L"My data", as_string(h.get(L"strROOTTEMP")));
    HWND t = tree_of(h);
    HTREEITEM top = next(t, nullptr, TVGN_ROOT);
    EXPECT_EQ(L"My data", text(t, top));
    EXPECT_TRUE(is_placeholder_only(t, top));
    EXPECT_TRUE(button(t, top));
    h.log().clear_events();
    h.call(L"NodeExpand", {I4(1)});
    EXPECT_EQ(L"Expand", events(h, 1));
    EXPECT_EQ(root_, full_path(h)); // the root's real path, not its text
    // Sorted without regard to case; hidden folders and files are not listed.
    EXPECT_EQ((std::vector<std::wstring>{L"archive", L"Empty", long_path_.substr(root_.size() + 1, kLongPiece.size()),
                                         L"Only files", L"Reports", kUnicode}),
              child_texts(t, top));
    EXPECT_TRUE(info(t, top).state & TVIS_EXPANDED);
    // (An empty folder shown before its probe is back loses its button when the probe comes.)
    pump_until([&] { return !button(t, child_named(t, top, L"Empty")); });
    // Sub-folders and files give a button (and a placeholder); an empty folder none.
    EXPECT_TRUE(button(t, child_named(t, top, L"Reports")));
    EXPECT_TRUE(is_placeholder_only(t, child_named(t, top, L"Reports")));
    EXPECT_TRUE(button(t, child_named(t, top, L"Only files")));
    EXPECT_FALSE(button(t, child_named(t, top, L"Empty")));
    EXPECT_TRUE(children(t, child_named(t, top, L"Empty")).empty());
    // Open, the folder shows its open image; closed and opened again it loads nothing more.
    EXPECT_EQ(4, info(t, top).iImage);
    h.call(L"NodeContract", {I4(1)});
    EXPECT_EQ(3, info(t, top).iImage);
    const size_t count = children(t, top).size();
    make_dir(root_ + L"\\Later");
    h.call(L"NodeExpand", {I4(1)});
    EXPECT_EQ(L"Expand", events(h, 1));
    EXPECT_EQ(count, children(t, top).size());
    // A folder with only files opens onto nothing, its placeholder gone.
    HTREEITEM files = child_named(t, top, L"Only files");
    TreeView_Expand(t, files, TVE_EXPAND); // as the user's click on its button
    EXPECT_EQ(L"Expand", events(h, 1));
    EXPECT_TRUE(children(t, files).empty());
    EXPECT_EQ(root_ + L"\\Only files", full_path(h));
}

TEST_F(DirectoryTreeTest, ExpandPathOpensEachLevelPassesOverMissingOnesAndReportsRealPaths)
{
    Hosted &h = tree();
    h.call(L"BuildDriveList", {Str(root_), Str(L"My data")});
    HWND t = tree_of(h);
    // The levels above the root are not in the tree, nor is "Nope": passed over silently.
    Variant path = Str(root_ + L"\\Nope\\..\\Reports\\2024");
    h.call(L"ExpandPath", {path});
    EXPECT_EQ(L"Expand Click", events(h, 2)); // only the root was there to open
    EXPECT_EQ(root_, full_path(h));
    h.log().clear_events();
    // Case does not matter; the caller's variable gets its closing "\".
    std::wstring upper = root_ + L"\\REPORTS\\2024";
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    V_VT(path.put()) = VT_BSTR | VT_BYREF;
    BSTR value = SysAllocString(upper.c_str());
    V_BSTRREF(path.get()) = &value;
    h.call(L"ExpandPath", {path});
    EXPECT_EQ(upper + L"\\", std::wstring(value));
    SysFreeString(value);
    EXPECT_EQ(L"Expand Click", events(h, 2)); // the root was open already; Reports opens; 2024 is empty
    EXPECT_EQ(root_ + L"\\Reports", full_path(h));
    HTREEITEM reports = child_named(t, next(t, nullptr, TVGN_ROOT), L"Reports");
    EXPECT_EQ(child_named(t, reports, L"2024"), next(t, nullptr, TVGN_CARET));
    // A blank path only clicks.
    h.call(L"ExpandPath", {Str(L"   ")});
    EXPECT_EQ(L"Click", events(h));
    // Unicode names and a path past 260 characters, level by level.
    h.call(L"ExpandPath", {Str(root_ + L"\\" + kUnicode)});
    EXPECT_EQ(L"Expand Click", events(h, 2));
    EXPECT_EQ(root_ + L"\\" + kUnicode, full_path(h));
    EXPECT_EQ(L"\u00e9t\u00e9", text(t, next(t, next(t, nullptr, TVGN_CARET), TVGN_CHILD)));
    ASSERT_GT(long_path_.size(), 300u);
    h.call(L"ExpandPath", {Str(long_path_)});
    std::wstring opened;
    for (int i = 0; i < kLongLevels; ++i) opened += L"Expand ";
    EXPECT_EQ(opened + L"Click", events(h, kLongLevels + 1));
    EXPECT_EQ(long_path_, full_path(h));
    HTREEITEM deepest = next(t, nullptr, TVGN_CARET);
    EXPECT_EQ(kLongPiece, text(t, deepest));
    EXPECT_TRUE(children(t, deepest).empty()); // its file gave it a placeholder, which its loading took
}

TEST_F(DirectoryTreeTest, AFolderThatCannotBeReadEndsItsLoadingAndLosesItsButton)
{
    Hosted &h = tree();
    h.call(L"BuildDriveList", {Str(root_), Str(L"My data")});
    h.call(L"NodeExpand", {I4(1)});
    events(h, 1);
    HWND t = tree_of(h);
    HTREEITEM reports = child_named(t, next(t, nullptr, TVGN_ROOT), L"Reports");
    ASSERT_TRUE(button(t, reports));
    remove_tree(root_ + L"\\Reports");
    h.log().clear_events();
    TreeView_Expand(t, reports, TVE_EXPAND);
    EXPECT_EQ(L"Expand", events(h, 1));
    EXPECT_TRUE(children(t, reports).empty());
    EXPECT_FALSE(button(t, reports));
    // A root that is no folder at all, and a drive that is not there.
    for (const std::wstring &gone : {root_ + L"\\nothing here", std::wstring(L"Q:\\")}) {
        h.call(L"BuildDriveList", {Str(gone), Str(L"Gone")});
        h.call(L"NodeExpand", {I4(1)});
        EXPECT_EQ(L"Expand", events(h, 1));
        EXPECT_TRUE(children(t, next(t, nullptr, TVGN_ROOT)).empty());
    }
}

TEST_F(DirectoryTreeTest, ABigFolderShowsAtOnceAndItsEmptySubFoldersLoseTheirButtonsAfterwards)
{
    // More sub-folders than the tree probes while it waits, and than it adds in one message:
    // they come in with buttons over two messages, Expand with the last, and the empty ones
    // lose their buttons as the probes come back.
    constexpr int kCount = 1200;
    const std::wstring big = root_ + L"\\big";
    make_dir(big);
    for (int i = 0; i < kCount; ++i) {
        wchar_t name[16];
        swprintf(name, 16, L"\\f%04d", i);
        make_dir(big + name);
        if (i % 2 == 0) make_dir(big + name + L"\\x");
    }
    Hosted &h = tree(true);
    h.call(L"BuildDriveList", {Str(big), Str(L"Big")});
    h.call(L"NodeExpand", {I4(1)});
    EXPECT_EQ(L"Expand", events(h, 1));
    HWND t = tree_of(h);
    HTREEITEM top = next(t, nullptr, TVGN_ROOT);
    std::vector<HTREEITEM> subs = children(t, top);
    ASSERT_EQ(static_cast<size_t>(kCount), subs.size());
    EXPECT_EQ(L"f1199", text(t, subs.back()));
    EXPECT_TRUE(info(t, top).state & TVIS_EXPANDED); // open again once they are all in
    ASSERT_TRUE(pump_until([&] { return !button(t, subs.back()); }, 30000));
    ASSERT_TRUE(pump_until([&] { return !button(t, subs[1]); }, 30000));
    for (int i = 0; i < kCount; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(i % 2 == 0, button(t, subs[static_cast<size_t>(i)]));
        EXPECT_EQ(i % 2 == 0, is_placeholder_only(t, subs[static_cast<size_t>(i)]));
    }
    // A sub-folder opened loads as any other, and NodeExpand finds nodes by their index still.
    h.call(L"ExpandPath", {Str(big + L"\\f0000")});
    EXPECT_EQ(L"Expand Click", events(h, 2));
    EXPECT_EQ((std::vector<std::wstring>{L"x"}), child_texts(t, subs[0]));
}

TEST_F(DirectoryTreeTest, BadInputIsPassedOver)
{
    Hosted &h = tree();
    h.call(L"BuildDriveList", {Str(root_), Str(L"R")});
    for (int32_t index : {0, -1, 99999, INT32_MIN}) {
        h.call(L"NodeExpand", {I4(index)});
        h.call(L"NodeContract", {I4(index)});
    }
    h.call(L"ExpandPath", {Str(std::wstring(100000, L'\\'))});
    h.call(L"ExpandPath", {Str(std::wstring(70000, L'a') + L"\\b")});
    h.call(L"BuildDriveList", {Variant::of_dispatch(h.dispatch()), I4(5)}); // not texts: skipped
    h.call(L"BuildDriveList", {Str(std::wstring(40000, L'x')), Str(L"long")});
    h.call(L"NodeExpand", {I4(1)});
    EXPECT_EQ(1u, children(tree_of(h), nullptr).size());
    EXPECT_EQ(S_OK, h.put(L"FullPath", Str(L"anything")));
    EXPECT_EQ(L"anything", full_path(h));
}

TEST_F(DirectoryTreeTest, RealClicksPickFoldersAndTheRightButtonReportsTheSelection)
{
    Hosted &h = tree(true);
    h.call(L"BuildDriveList", {Str(root_), Str(L"My data")});
    h.call(L"NodeExpand", {I4(1)});
    events(h, 1);
    HWND t = tree_of(h);
    HTREEITEM reports = child_named(t, next(t, nullptr, TVGN_ROOT), L"Reports");
    RECT r = item_rect(t, reports);
    ASSERT_GT(r.right, r.left);
    h.log().clear_events();
    real_click(t, {(r.left + r.right) / 2, (r.top + r.bottom) / 2});
    ASSERT_TRUE(pump_until([&] { return !h.log().events.empty(); }));
    EXPECT_EQ(L"Click", events(h));
    EXPECT_EQ(root_ + L"\\Reports", full_path(h));
    EXPECT_EQ(reports, next(t, nullptr, TVGN_CARET));
    // The keys move the selection and report it too.
    real_keys({VK_DOWN});
    ASSERT_TRUE(pump_until([&] { return !h.log().events.empty(); }));
    EXPECT_EQ(L"Click", events(h));
    EXPECT_EQ(root_ + L"\\" + kUnicode, full_path(h));
    // A right click over another folder reports the selected one.
    HTREEITEM archive = child_named(t, next(t, nullptr, TVGN_ROOT), L"archive");
    r = item_rect(t, archive);
    real_click(t, {(r.left + r.right) / 2, (r.top + r.bottom) / 2}, true);
    ASSERT_TRUE(pump_until([&] { return !h.log().events.empty(); }));
    EXPECT_EQ(L"ClickRight", events(h));
    EXPECT_EQ(root_ + L"\\" + kUnicode, full_path(h));
}

// ---------------------------------------------------------------- the loader, with a slow drive

TEST(FolderLoader, TheWaitIsBoundedAndASlowFolderArrivesAsNewsWithTheVisibleProbesFirst)
{
    HANDLE release = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::vector<std::wstring> probed;
    FolderLoader::Hooks hooks;
    hooks.list = [&](const std::wstring &, std::vector<std::wstring> &names) {
        WaitForSingleObject(release, 10000); // a drive that takes its time
        for (int i = 0; i < 50; ++i) names.push_back(L"f" + std::to_wstring(100 + i));
        return true;
    };
    HANDLE probing = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    hooks.any_entry = [&](const std::wstring &folder) {
        WaitForSingleObject(probing, 10000);
        probed.push_back(folder); // only the loader's thread writes
        return folder.back() == L'7';
    };
    std::vector<int> news;
    FolderLoader loader([&](int job) { news.push_back(job); }, hooks);
    int job = loader.List(L"X:\\slow");
    const DWORD start = GetTickCount();
    EXPECT_FALSE(loader.WaitListed(job, 50));
    EXPECT_LT(GetTickCount() - start, 2000u); // the UI thread is back within a moment
    FolderLoader::Listing found;
    ASSERT_TRUE(loader.Take(job, found));
    EXPECT_FALSE(found.listed);
    SetEvent(release);
    ASSERT_TRUE(loader.WaitListed(job, 10000));
    loader.Urgent(job, 42); // shown on screen: probed first
    SetEvent(probing);
    ASSERT_TRUE(loader.WaitFinished(job, 10000));
    // At most the probe already under way when it was asked for comes before it.
    ASSERT_EQ(50u, probed.size());
    EXPECT_NE(probed.begin() + 2, std::find(probed.begin(), probed.begin() + 2, L"X:\\slow\\f142"));
    ASSERT_TRUE(loader.Take(job, found));
    EXPECT_TRUE(found.finished);
    EXPECT_EQ(50u, found.folders.size());
    EXPECT_EQ(1, found.folders[7].has_entries); // f107
    EXPECT_EQ(0, found.folders[8].has_entries);
    std::vector<std::pair<size_t, int8_t>> probes;
    bool finished = false;
    ASSERT_TRUE(loader.TakeProbes(job, probes, finished));
    EXPECT_TRUE(finished);
    EXPECT_EQ(50u, probes.size()); // each once, in the order they came back
    EXPECT_FALSE(loader.TakeProbes(job + 1, probes, finished));    // The news reaches the UI thread through its message loop, coalesced.
    ASSERT_TRUE(pump_until([&] { return !news.empty(); }));
    EXPECT_TRUE(std::all_of(news.begin(), news.end(), [&](int j) { return j == job; }));
    loader.Forget(job);
    EXPECT_FALSE(loader.Take(job, found));
    CloseHandle(release);
    CloseHandle(probing);
}
