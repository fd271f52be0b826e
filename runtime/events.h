// Event arguments for raising a control's events to every advised sink. Arguments are listed
// in declaration order; by-reference arguments see what the host's handlers left in them.
//
//   raise(kMouseDown, EventArgs().val(button).val(shift).val(x).val(y));
//   raise(kKeyPress, EventArgs().ref(key_ascii));          // a handler may change key_ascii
#pragma once
#include <oaidl.h>

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "runtime/com.h"

namespace tarn {

class EventArgs {
public:
    EventArgs() = default;
    EventArgs(const EventArgs &) = delete;
    EventArgs &operator=(const EventArgs &) = delete;
    EventArgs(EventArgs &&) = default;
    ~EventArgs();

    EventArgs &val(int16_t v);
    EventArgs &val(int32_t v);
    EventArgs &val(int64_t v);
    EventArgs &val(float v);
    EventArgs &val(double v);
    EventArgs &val(bool v);
    EventArgs &val(const std::wstring &v);
    EventArgs &ref(int16_t &v);
    EventArgs &ref(int32_t &v);
    EventArgs &ref(int64_t &v);
    EventArgs &ref(float &v);
    EventArgs &ref(bool &v);
    EventArgs &ref(std::wstring &v);

    // The arguments in declaration order, as a C++ listener sees them (by-reference ones
    // point at the raiser's variables).
    size_t count() const { return args_.size(); }
    VARIANT &at(size_t index) { return args_.at(index); }

    // The DISPPARAMS (arguments right to left, as Invoke takes them).
    DISPPARAMS params();
    // After the sinks ran: copies by-reference values that need a conversion back.
    void copy_back();

private:
    VARIANT &add();
    std::vector<VARIANT> args_; // declaration order
    std::vector<VARIANT> reversed_;
    std::deque<VARIANT_BOOL> bools_;
    std::deque<BSTR> strings_;
    std::vector<std::pair<VARIANT_BOOL *, bool *>> bool_refs_;
    std::vector<std::pair<BSTR *, std::wstring *>> string_refs_;
};

} // namespace tarn
