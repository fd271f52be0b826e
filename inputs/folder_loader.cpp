#include "inputs/folder_loader.h"

#include <commctrl.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>

#include "foundation/modLIBTXT.h"
#include "foundation/trap.h"
#include "inputs/dlst_paths.h"
#include "runtime/module.h"

namespace tarn {

namespace {

constexpr UINT kNews = WM_APP + 0x51;
constexpr DWORD kProbeNewsMs = 30;
constexpr UINT_PTR kSubclassId = 0x464C4452; // "FLDR"

struct Event {
    HANDLE h = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ~Event()
    {
        if (h) CloseHandle(h);
    }
};

bool is_dots(const wchar_t *name) { return !wcscmp(name, L".") || !wcscmp(name, L".."); }
bool is_shown(const WIN32_FIND_DATAW &fd)
{
    return !is_dots(fd.cFileName) && !(fd.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
}

HANDLE find_first(const std::wstring &folder, WIN32_FIND_DATAW &fd, DWORD flags)
{
    std::wstring pattern = ExtendedPath(ChildKey(folder, L"*"));
    return FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &fd, FindExSearchNameMatch, nullptr, flags);
}

} // namespace

struct FolderLoader::Job {
    enum Kind { Folders, Volumes } kind = Folders;
    int id = 0;
    std::wstring folder;
    std::vector<std::wstring> roots;
    Hooks hooks;
    HWND notify = nullptr;
    module::ObjectCount count; // the DLL stays while a job's thread may still run in it
    std::atomic<bool> forgotten{false};
    Event listed, finished;

    mutable std::mutex m;
    Listing listing;
    std::vector<std::wstring> labels;
    std::deque<size_t> urgent;
    std::vector<std::pair<size_t, int8_t>> fresh; // probes not taken yet
    size_t cursor = 0;          // the next sub-folder to probe in order
    bool post_pending = false; // a news message is on its way
    DWORD last_post = 0;

    // Tells the UI thread there is news: at once for the names and the end, at most every
    // kProbeNewsMs for probes, so that the UI thread handles probes in batches.
    void post(bool probe = false)
    {
        {
            std::lock_guard<std::mutex> lock(m);
            if (post_pending || forgotten) return;
            if (probe && GetTickCount() - last_post < kProbeNewsMs) return;
            post_pending = true;
            last_post = GetTickCount();
        }
        if (!PostMessageW(notify, kNews, static_cast<WPARAM>(id), 0)) {
            std::lock_guard<std::mutex> lock(m);
            post_pending = false;
        }
    }

    // The next sub-folder to probe: an urgent one first; none left gives false.
    bool next(size_t &index)
    {
        std::lock_guard<std::mutex> lock(m);
        if (forgotten) return false;
        while (!urgent.empty()) {
            index = urgent.front();
            urgent.pop_front();
            if (index < listing.folders.size() && listing.folders[index].has_entries < 0) return true;
        }
        while (cursor < listing.folders.size() && listing.folders[cursor].has_entries >= 0) ++cursor;
        if (cursor >= listing.folders.size()) return false;
        index = cursor++;
        return true;
    }

    void work()
    {
        if (kind == Volumes) {
            for (size_t i = 0; i < roots.size() && !forgotten; ++i) {
                std::wstring label = read_step<std::wstring>([&] { return hooks.label(roots[i]); });
                {
                    std::lock_guard<std::mutex> lock(m);
                    labels[i] = std::move(label);
                }
                post();
            }
        } else {
            std::vector<std::wstring> names;
            bool ok = read_step<bool>([&] { return hooks.list(folder, names); });
            {
                std::lock_guard<std::mutex> lock(m);
                listing.listed = true;
                listing.readable = ok;
                listing.folders.reserve(names.size());
                for (std::wstring &n : names) listing.folders.push_back(Folder{std::move(n), -1});
            }
            SetEvent(listed.h);
            post();
            for (size_t i; next(i);) {
                std::wstring child;
                {
                    std::lock_guard<std::mutex> lock(m);
                    child = ChildKey(folder, listing.folders[i].name);
                }
                bool any = read_step<bool>([&] { return hooks.any_entry(child); });
                {
                    std::lock_guard<std::mutex> lock(m);
                    listing.folders[i].has_entries = any ? 1 : 0;
                    fresh.emplace_back(i, any ? 1 : 0);
                }
                post(true);
            }
        }
        {
            std::lock_guard<std::mutex> lock(m);
            listing.finished = true;
        }
        SetEvent(finished.h);
        post();
    }
};

// ---------------------------------------------------------------- the platform's enumeration

bool FolderLoader::ListFolders(const std::wstring &folder, std::vector<std::wstring> &names)
{
    WIN32_FIND_DATAW fd;
    HANDLE h = find_first(folder, fd, FIND_FIRST_EX_LARGE_FETCH);
    if (h == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND; // an empty drive root
    do {
        if ((fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && is_shown(fd)) names.emplace_back(fd.cFileName);
    } while (FindNextFileW(h, &fd));
    FindClose(h);
    std::sort(names.begin(), names.end(), ReaderLess);
    return true;
}

bool FolderLoader::AnyEntry(const std::wstring &folder)
{
    WIN32_FIND_DATAW fd;
    HANDLE h = find_first(folder, fd, 0);
    if (h == INVALID_HANDLE_VALUE) return false;
    bool any = false;
    do {
        any = is_shown(fd);
    } while (!any && FindNextFileW(h, &fd));
    FindClose(h);
    return any;
}

std::wstring FolderLoader::VolumeLabel(const std::wstring &root)
{
    UINT type = GetDriveTypeW(root.c_str());
    // A diskette or an optical drive would spin up (or wait for a disc): no label is read.
    if (type == DRIVE_REMOVABLE || type == DRIVE_CDROM || type == DRIVE_NO_ROOT_DIR) return {};
    wchar_t label[MAX_PATH + 1] = {};
    if (!GetVolumeInformationW(root.c_str(), label, MAX_PATH + 1, nullptr, nullptr, nullptr, nullptr, 0)) return {};
    return label;
}

// ---------------------------------------------------------------- the loader

FolderLoader::FolderLoader(std::function<void(int job)> on_news, Hooks hooks)
    : on_news_(std::move(on_news)), hooks_(std::move(hooks))
{
    if (!hooks_.list) hooks_.list = &FolderLoader::ListFolders;
    if (!hooks_.any_entry) hooks_.any_entry = &FolderLoader::AnyEntry;
    if (!hooks_.label) hooks_.label = &FolderLoader::VolumeLabel;
    notify_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, module::instance(), nullptr);
    if (notify_) SetWindowSubclass(notify_, &FolderLoader::notify_proc, kSubclassId, reinterpret_cast<DWORD_PTR>(this));
}

FolderLoader::~FolderLoader()
{
    ForgetAll();
    if (notify_) {
        RemoveWindowSubclass(notify_, &FolderLoader::notify_proc, kSubclassId);
        DestroyWindow(notify_);
    }
}

LRESULT CALLBACK FolderLoader::notify_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR, DWORD_PTR ref)
{
    if (msg != kNews) return DefSubclassProc(hwnd, msg, wp, lp);
    auto *self = reinterpret_cast<FolderLoader *>(ref);
    int id = static_cast<int>(wp);
    if (std::shared_ptr<Job> job = self->find(id)) {
        {
            std::lock_guard<std::mutex> lock(job->m);
            job->post_pending = false;
        }
        if (self->on_news_) step([&] { self->on_news_(id); });
    }
    return 0;
}

int FolderLoader::start(std::shared_ptr<Job> job)
{
    job->id = next_id_++;
    job->hooks = hooks_;
    job->notify = notify_;
    jobs_[job->id] = job;
    auto *held = new std::shared_ptr<Job>(job);
    HANDLE thread = CreateThread(nullptr, 0, &FolderLoader::run, held, 0, nullptr);
    if (!thread) {
        delete held;
        // No thread to be had: the job is done here, as the thread would have done it.
        job->work();
        return job->id;
    }
    CloseHandle(thread);
    return job->id;
}

DWORD WINAPI FolderLoader::run(void *param)
{
    // The DLL stays loaded until this thread is out of it.
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&FolderLoader::run), &self);
    {
        std::unique_ptr<std::shared_ptr<Job>> held(static_cast<std::shared_ptr<Job> *>(param));
        DWORD old_mode = 0;
        SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &old_mode); // no "insert a disk" box
        step([&] { (*held)->work(); });
    }
    if (self) FreeLibraryAndExitThread(self, 0);
    return 0;
}

int FolderLoader::List(const std::wstring &folder)
{
    auto job = std::make_shared<Job>();
    job->kind = Job::Folders;
    job->folder = folder;
    return start(std::move(job));
}

int FolderLoader::Labels(const std::vector<std::wstring> &roots)
{
    auto job = std::make_shared<Job>();
    job->kind = Job::Volumes;
    job->roots = roots;
    job->labels.resize(roots.size());
    return start(std::move(job));
}

std::shared_ptr<FolderLoader::Job> FolderLoader::find(int job) const
{
    auto it = jobs_.find(job);
    return it == jobs_.end() ? nullptr : it->second;
}

bool FolderLoader::WaitFinished(int job, DWORD ms)
{
    std::shared_ptr<Job> j = find(job);
    return j && WaitForSingleObject(j->finished.h, ms) == WAIT_OBJECT_0;
}

bool FolderLoader::WaitListed(int job, DWORD ms)
{
    std::shared_ptr<Job> j = find(job);
    return j && WaitForSingleObject(j->listed.h, ms) == WAIT_OBJECT_0;
}

bool FolderLoader::Take(int job, Listing &out) const
{
    std::shared_ptr<Job> j = find(job);
    if (!j) return false;
    std::lock_guard<std::mutex> lock(j->m);
    out = j->listing;
    return true;
}

bool FolderLoader::TakeProbes(int job, std::vector<std::pair<size_t, int8_t>> &probes, bool &finished, size_t most)
{
    std::shared_ptr<Job> j = find(job);
    if (!j) return false;
    bool more = false;
    {
        std::lock_guard<std::mutex> lock(j->m);
        probes.clear();
        if (j->fresh.size() <= most) {
            probes.swap(j->fresh);
        } else {
            probes.assign(j->fresh.begin(), j->fresh.begin() + static_cast<std::ptrdiff_t>(most));
            j->fresh.erase(j->fresh.begin(), j->fresh.begin() + static_cast<std::ptrdiff_t>(most));
            more = true;
        }
        finished = j->listing.finished && !more;
    }
    if (more) j->post(); // the rest in a message of its own, after what else is waiting
    return true;
}

bool FolderLoader::TakeLabels(int job, std::vector<std::wstring> &labels, bool &finished) const
{
    std::shared_ptr<Job> j = find(job);
    if (!j) return false;
    std::lock_guard<std::mutex> lock(j->m);
    labels = j->labels;
    finished = j->listing.finished;
    return true;
}

void FolderLoader::Urgent(int job, size_t index)
{
    if (std::shared_ptr<Job> j = find(job)) {
        std::lock_guard<std::mutex> lock(j->m);
        j->urgent.push_back(index);
    }
}

void FolderLoader::Nudge(int job)
{
    if (std::shared_ptr<Job> j = find(job)) j->post();
}

void FolderLoader::Forget(int job)
{
    auto it = jobs_.find(job);
    if (it == jobs_.end()) return;
    it->second->forgotten = true;
    jobs_.erase(it);
}

void FolderLoader::ForgetAll()
{
    for (auto &[id, job] : jobs_) job->forgotten = true;
    jobs_.clear();
}

} // namespace tarn
