// FolderLoader: the directory tree's drive and folder enumeration, run off the user-interface
// thread so that a slow or absent drive never freezes the form. A job lists a folder's
// sub-folders (sorted as a user reads them, hidden and system ones left out), then probes each
// of them for any entry (a folder or a file), the visible ones first when asked; or it reads the
// volume labels of drives. The UI thread waits for a job only as long as it chooses, and takes
// whatever the job has found so far; news after that arrives as a call of `on_news(job)` from
// the UI thread's message loop.
//
// The listing and probing functions can be replaced (a test's slow drive); by default they use
// the platform's FindFirstFileExW on the long ("\\?\") form of each path.
#pragma once
#include <windows.h>

#include <cstdint>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tarn {

class FolderLoader {
public:
    struct Hooks {
        // The sub-folders of `folder`; false when it cannot be read.
        std::function<bool(const std::wstring &folder, std::vector<std::wstring> &names)> list;
        // Whether `folder` holds anything a user sees.
        std::function<bool(const std::wstring &folder)> any_entry;
        // The label of the volume at `root` ("C:\"), "" when it has none or cannot be read.
        std::function<std::wstring(const std::wstring &root)> label;
    };
    struct Folder {
        std::wstring name;
        int8_t has_entries = -1; // -1 not probed yet, 0 empty (or unreadable), 1 not empty
    };
    // What a folder job has found.
    struct Listing {
        bool listed = false;   // the names are in
        bool readable = false; // the folder could be read
        bool finished = false; // every name is probed
        std::vector<Folder> folders;
    };

    explicit FolderLoader(std::function<void(int job)> on_news, Hooks hooks = {});
    ~FolderLoader();
    FolderLoader(const FolderLoader &) = delete;
    FolderLoader &operator=(const FolderLoader &) = delete;

    // Starts listing `folder` (a path as the tree keys it); the job's number.
    int List(const std::wstring &folder);
    // Starts reading the labels of the drives at these roots ("C:\").
    int Labels(const std::vector<std::wstring> &roots);

    // Waits up to `ms` for the job to finish (true), handling no messages meanwhile.
    bool WaitFinished(int job, DWORD ms);
    // Waits up to `ms` for a folder job's names (true when they are in).
    bool WaitListed(int job, DWORD ms);

    // A folder job's findings; false for a job that is not (or no longer) there.
    bool Take(int job, Listing &out) const;
    // Up to `most` of the probes that came back since the last call (the sub-folder's place and
    // the result), and whether the job is finished with nothing left to take; false for an
    // unknown job. When some are left, news comes again.
    bool TakeProbes(int job, std::vector<std::pair<size_t, int8_t>> &probes, bool &finished, size_t most = SIZE_MAX);
    // A label job's labels, one per root ("" until read); false for an unknown job.
    bool TakeLabels(int job, std::vector<std::wstring> &labels, bool &finished) const;
    // Probes the sub-folder at `index` of a folder job before the others.
    void Urgent(int job, size_t index);
    // Asks for news of the job again (a user-interface thread that took only part of what
    // it found comes back for the rest after the messages waiting meanwhile).
    void Nudge(int job);
    // Forgets a job (its thread ends by itself once the platform call it waits on returns).
    void Forget(int job);
    void ForgetAll();

    // The default functions (the platform's enumeration).
    static bool ListFolders(const std::wstring &folder, std::vector<std::wstring> &names);
    static bool AnyEntry(const std::wstring &folder);
    static std::wstring VolumeLabel(const std::wstring &root);

private:
    struct Job;
    static DWORD WINAPI run(void *job);
    static LRESULT CALLBACK notify_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id, DWORD_PTR ref);
    int start(std::shared_ptr<Job> job);
    std::shared_ptr<Job> find(int job) const;

    std::function<void(int)> on_news_;
    Hooks hooks_;
    HWND notify_ = nullptr; // a message-only window of the UI thread
    std::map<int, std::shared_ptr<Job>> jobs_;
    int next_id_ = 1;
};

} // namespace tarn
