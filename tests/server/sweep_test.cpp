// The hostile host: every member of every creatable class of the registered type library called
// through IDispatch with arguments no well-behaved host would pass (wrong types, empty and null
// values, null objects, arrays, by-reference values, null and 1 MB strings, NaN, infinities,
// extreme integers, too few and too many arguments, stray named arguments, wrong call kinds),
// on a control sited and in place, on one without a site, and on one after Close. Nothing may
// crash or throw into the host, and each control must still do a plain property round trip.
//
// Safe to run: the process works in a temporary folder while it sweeps (a file name given to
// a member lands there), and no value the sweep passes is the handle of a window (a member
// that hooks the window whose number it is given hooks nothing).
#include <gtest/gtest.h>

#include <windows.h>
#include <ocidl.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "host/container.h"
#include "runtime/com.h"
#include "support/control_test.h"
#include "support/hostile_values.h"
#include "support/registered_classes.h"

using namespace tarn;
using namespace tarn::host;
using namespace tarn::test;

namespace {

// Whether a value, read as a number, is the handle of a window: such a value is not passed (a
// member given a window's number may hook or change that window).
bool names_a_window(const VARIANT &v)
{
    if ((V_VT(&v) & VT_BYREF) || (V_VT(&v) & VT_ARRAY)) return false; // never read as a number here
    VARIANT n;
    VariantInit(&n);
    bool window = SUCCEEDED(VariantChangeType(&n, const_cast<VARIANT *>(&v), 0, VT_I8)) && V_I8(&n) != 0 &&
                  IsWindow(reinterpret_cast<HWND>(static_cast<INT_PTR>(V_I8(&n))));
    VariantClear(&n);
    return window;
}

ULONG references(IUnknown *object)
{
    object->AddRef();
    return object->Release();
}

struct Counts {
    long calls = 0, escaped = 0, kept = 0; // a fault ends the process: the run itself is that check
};

// One call: `count` arguments all made from table entry `value`, with the given named ids and
// flags. Failures are fine; a fault or an exception escaping into the host is the finding.
void call(IDispatch *d, IUnknown *self, DISPID id, WORD flags, int value, UINT count, std::vector<DISPID> named,
          bool want_result, Counts &counts)
{
    ULONG refs = references(self);
    std::vector<HostileValue> store(count);
    std::vector<VARIANT> args(count);
    for (UINT a = 0; a < count; ++a) {
        store[a].make(value, args[a], self);
        if (names_a_window(args[a])) {
            VariantClear(&args[a]);
            V_VT(&args[a]) = VT_I4, V_I4(&args[a]) = 0;
        }
    }
    DISPPARAMS dp{count ? args.data() : nullptr, named.empty() ? nullptr : named.data(), count,
                  static_cast<UINT>(named.size())};
    if (std::getenv("TARN_SWEEP_LOG")) { // names each call before it is made, to find the one that faults
        std::fprintf(stderr, "member %ld flags %u value %d args %u named %zu\n", static_cast<long>(id), flags, value,
                     count, named.size());
        std::fflush(stderr);
    }
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO excep{};
    UINT arg_err = 0;
    ++counts.calls;
    try {
        d->Invoke(id, IID_NULL, 0, flags, &dp, want_result ? &result : nullptr, &excep, &arg_err);
    } catch (...) {
        ++counts.escaped;
    }
    VariantClear(&result);
    SysFreeString(excep.bstrSource);
    SysFreeString(excep.bstrDescription);
    SysFreeString(excep.bstrHelpFile);
    for (VARIANT &a : args) {
        if (!(V_VT(&a) & VT_BYREF)) VariantClear(&a);
    }
    store.clear();
    if (references(self) != refs) {
        ++counts.kept;
        std::fprintf(stderr, "a reference to the control was kept: member %ld, call kind %u, value %ls, %u arguments\n",
                     static_cast<long>(id), flags, HostileValue::name(value), count);
    }
}

WORD flags_of(INVOKEKIND k)
{
    switch (k) {
    case INVOKE_PROPERTYGET: return DISPATCH_PROPERTYGET;
    case INVOKE_PROPERTYPUT: return DISPATCH_PROPERTYPUT;
    case INVOKE_PROPERTYPUTREF: return DISPATCH_PROPERTYPUTREF;
    default: return DISPATCH_METHOD;
    }
}

// Every hostile call for one member. The table of values goes through the member's arguments
// whole on the first object of a class and in a rotating third on the others, so every value
// meets every member while the run stays short; the shapes (counts, names, kinds) always run.
void sweep_member(IDispatch *d, IUnknown *self, const RegisteredMember &m, bool whole_table, int rotation,
                  Counts &counts)
{
    WORD flags = flags_of(m.kind);
    bool put = m.kind == INVOKE_PROPERTYPUT || m.kind == INVOKE_PROPERTYPUTREF;
    std::vector<DISPID> value_name;
    if (put) value_name.push_back(DISPID_PROPERTYPUT);
    UINT n = static_cast<UINT>(m.inputs.size());
    for (int v = 0; v < HostileValue::kCount; ++v)
        if (whole_table || v % 3 == rotation % 3)
            call(d, self, m.id, flags, v, n, value_name, true, counts);
    // Too few and too many arguments (a get with surplus arguments among them), with and
    // without room for a result.
    for (UINT count : {0u, n ? n - 1 : 0u, n + 1, n + 3})
        for (bool with_result : {true, false})
            call(d, self, m.id, flags, 22, count, put && count ? value_name : std::vector<DISPID>{}, with_result, counts);
    // Named arguments the member does not have, twice the same name, more names than arguments.
    call(d, self, m.id, flags, 23, n + 1, {static_cast<DISPID>(n + 5)}, true, counts);
    call(d, self, m.id, flags, 23, 2, {0, 0}, true, counts);
    call(d, self, m.id, flags, 23, 1, {DISPID_PROPERTYPUT, -7}, true, counts);
    call(d, self, m.id, flags, 23, 1, {-7}, true, counts);
    if (!put) call(d, self, m.id, flags, 23, n + 1, {DISPID_PROPERTYPUT}, true, counts);
    // The wrong kind of call, and none at all.
    for (WORD other : {WORD(DISPATCH_METHOD), WORD(DISPATCH_PROPERTYGET), WORD(DISPATCH_PROPERTYPUT),
                       WORD(DISPATCH_PROPERTYPUTREF), WORD(DISPATCH_METHOD | DISPATCH_PROPERTYGET), WORD(0), WORD(0xFFFF)})
        if (other != flags)
            call(d, self, m.id, other, 10, other & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF) ? n + 1 : n,
                 other & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF) ? std::vector<DISPID>{DISPID_PROPERTYPUT}
                                                                          : std::vector<DISPID>{},
                 true, counts);
}

void sweep_unknown_members(IDispatch *d, IUnknown *self, Counts &counts)
{
    for (DISPID id : {DISPID(-1), DISPID(0x7FFFFFFF), DISPID(DISPID_VALUE), DISPID(DISPID_NEWENUM)})
        for (WORD flags : {WORD(DISPATCH_METHOD), WORD(DISPATCH_PROPERTYGET), WORD(DISPATCH_PROPERTYPUT)})
            call(d, self, id, flags, 9, 1, {}, true, counts);
    // A dispatch call for another interface, and arrays that are not there.
    VARIANT r;
    VariantInit(&r);
    DISPPARAMS bad{nullptr, nullptr, 3, 0};
    d->Invoke(1, IID_IUnknown, 0, DISPATCH_METHOD, &bad, &r, nullptr, nullptr);
    d->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &bad, &r, nullptr, nullptr);
    d->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, &r, nullptr, nullptr);
    DISPPARAMS names_missing{nullptr, nullptr, 0, 2};
    d->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYPUT, &names_missing, nullptr, nullptr, nullptr);
    VariantClear(&r);
    counts.calls += 4;
}

// A temporary folder the process works in while it sweeps.
class InTempFolder {
public:
    InTempFolder()
    {
        GetCurrentDirectoryW(MAX_PATH, before_);
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        folder_ = std::wstring(temp) + L"tarn-sweep-" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
        SetCurrentDirectoryW(folder_.c_str());
    }
    ~InTempFolder()
    {
        SetCurrentDirectoryW(before_);
        WIN32_FIND_DATAW f;
        HANDLE h = FindFirstFileW((folder_ + L"\\*").c_str(), &f);
        if (h != INVALID_HANDLE_VALUE) {
            do DeleteFileW((folder_ + L"\\" + f.cFileName).c_str());
            while (FindNextFileW(h, &f));
            FindClose(h);
        }
        RemoveDirectoryW(folder_.c_str());
    }

private:
    wchar_t before_[MAX_PATH] = {};
    std::wstring folder_;
};

enum class Mode { InPlace, NoSite, Closed };
const char *mode_name(Mode m) { return m == Mode::InPlace ? "in place" : m == Mode::NoSite ? "without a site" : "after Close"; }

} // namespace

TEST(HostileHostSweep, EveryMemberOfEveryClassSurvivesHostileArgumentsAndTheControlStaysUsable)
{
    auto start = std::chrono::steady_clock::now();
    std::vector<RegisteredClass> classes = RegisteredClasses();
    ASSERT_GE(classes.size(), 9u);
    InTempFolder temp;
    Counts counts;
    size_t members = 0;
    for (const RegisteredClass &cls : classes) {
        members += cls.members.size();
        SCOPED_TRACE(narrow(cls.progid));
        int rotation = 0;
        for (Mode mode : {Mode::InPlace, Mode::NoSite, Mode::Closed}) {
            SCOPED_TRACE(mode_name(mode));
            Container form;
            std::unique_ptr<Hosted> hosted;
            ComPtr<IUnknown> bare;
            ComPtr<IDispatch> d;
            if (mode == Mode::NoSite) {
                ASSERT_EQ(S_OK, CoCreateInstance(cls.clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, bare.put_void()));
                if (auto init = bare.as<IPersistStreamInit>(IID_IPersistStreamInit)) init->InitNew();
                d = bare.as<IDispatch>(IID_IDispatch);
            } else {
                hosted = std::make_unique<Hosted>(form, cls.progid, RECT{10, 10, 210, 60});
                ASSERT_TRUE(hosted->ok());
                hosted->activate();
                if (mode == Mode::Closed) hosted->as<IOleObject>(IID_IOleObject)->Close(OLECLOSE_NOSAVE);
                d = ComPtr<IDispatch>(hosted->dispatch());
            }
            ASSERT_TRUE(d);
            IUnknown *self = hosted ? hosted->unknown() : bare.get();
            RoundTrip trip = FindRoundTrip(d.get(), cls);
            ASSERT_TRUE(trip.id != DISPID_UNKNOWN || ReadWriteProperties(cls).empty()) << "no property to check the control with";

            for (const RegisteredMember &m : cls.members) {
                SCOPED_TRACE(narrow(m.name));
                if (std::getenv("TARN_SWEEP_LOG")) std::fprintf(stderr, "%s %s\n", narrow(cls.progid).c_str(), narrow(m.name).c_str());
                long escaped = counts.escaped, kept = counts.kept;
                sweep_member(d.get(), self, m, mode == Mode::InPlace, rotation++, counts);
                EXPECT_EQ(escaped, counts.escaped) << "an exception reached the host";
                EXPECT_EQ(kept, counts.kept) << "calls left references to the control behind";
                pump();
            }
            sweep_unknown_members(d.get(), self, counts);
            pump();
            EXPECT_TRUE(StillUsable(d.get(), cls, trip)) << narrow(trip.name) << " no longer round-trips";
            d.reset();
            if (hosted) {
                EXPECT_EQ(0u, hosted->close()) << "the control outlived its container";
            }
        }
    }
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("sweep: %zu classes, %zu members, %ld calls in %.1f s\n", classes.size(), members, counts.calls,
                seconds);
    EXPECT_EQ(0, counts.escaped);
    EXPECT_LT(200u, members); // the type library was read (a separator may have no members of its own)
}

TEST(HostileHostSweep, AnObjectPropertyReadWithSurplusArgumentsAnswersWithoutHarm)
{
    // The property holds no object: the dispatcher would call the default member of nothing.
    Container form;
    Hosted b(form, L"TarnControls.cbtn", {10, 10, 110, 35});
    ASSERT_TRUE(b.ok());
    for (const wchar_t *name : {L"Picture", L"MouseIcon", L"PictureDisabled"}) {
        for (int extra : {1, 2}) {
            std::vector<Variant> args(static_cast<size_t>(extra), I4(1));
            Variant got = b.get(name, args);
            EXPECT_EQ(DISP_E_BADPARAMCOUNT, b.last_result()) << narrow(name);
            EXPECT_EQ(VT_EMPTY, V_VT(got.get()));
        }
        b.get(name);
        EXPECT_EQ(S_OK, b.last_result()) << narrow(name);
    }
}
