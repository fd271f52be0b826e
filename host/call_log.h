// What a hosted control did to its container, in order: calls on the site and frame, change
// notices and events. The log is strict, as good container test suites are: a site call the
// test did not declare (allow or expect) is kept as unexpected, and expected calls that never
// came are reported by check().
#pragma once
#include <oaidl.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "runtime/com.h"

namespace tarn::host {

struct EventRecord {
    std::wstring name;
    std::vector<Variant> args; // declaration order, references already followed
    // "MouseDown(1,0,15,30)": the name and the arguments, numbers without trailing zeros.
    std::wstring text() const;
};

class CallLog {
public:
    // A call the container answers without complaint from now on.
    void allow(const std::wstring &call) { allowed_.insert(call); }
    // A call that must come before the next check().
    void expect(const std::wstring &call)
    {
        allowed_.insert(call);
        expected_.insert(call);
    }
    void disallow(const std::wstring &call) { allowed_.erase(call); }

    // Called by the site and frame for every call they receive.
    void hit(const std::wstring &call);
    // Expected calls that did not come since the last check (and clears the expectations).
    std::vector<std::wstring> check();
    const std::vector<std::wstring> &unexpected() const { return unexpected_; }
    void clear_unexpected() { unexpected_.clear(); }

    const std::vector<std::wstring> &calls() const { return calls_; }
    void clear_calls() { calls_.clear(); }

    // Change notices: the exact keys (from the keyed sink) and the DISPIDs.
    std::vector<std::wstring> changes;
    std::vector<DISPID> changed_ids;
    std::vector<EventRecord> events;
    // Event names only, in order ("Click", "MouseUp"...).
    std::vector<std::wstring> event_names() const;
    // Event texts, in order ("MouseDown(1,0,15,30)").
    std::vector<std::wstring> event_texts() const;
    void clear_events() { events.clear(); }
    void clear_all();

    // Runs for each event before it is recorded; may change by-reference arguments.
    std::function<void(const std::wstring &name, DISPPARAMS *params)> on_event;

private:
    std::set<std::wstring> allowed_, expected_, seen_;
    std::vector<std::wstring> calls_, unexpected_;
};

} // namespace tarn::host
