// Damaged saved forms: every creatable class of the registered type library saved, then loaded
// back from truncated and bit-flipped copies of its stream, and from a property bag that
// answers every key with a value of the wrong kind. The control must load what it can, draw,
// and still round-trip a property.
#include <gtest/gtest.h>

#include <windows.h>
#include <ocidl.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "host/container.h"
#include "runtime/com_object.h"
#include "support/control_test.h"
#include "support/hostile_values.h"
#include "support/registered_classes.h"

using namespace tarn;
using namespace tarn::host;
using namespace tarn::test;

namespace {

// A bag whose every answer is the next hostile value: each key the control asks for gets a
// value of another wrong kind.
class HostileBag final : public ComObject<IPropertyBag> {
public:
    static ComPtr<HostileBag> Create(int first)
    {
        auto *bag = new HostileBag();
        bag->next_ = first;
        return ComPtr<HostileBag>::attach(bag);
    }
    STDMETHODIMP Read(LPCOLESTR, VARIANT *value, IErrorLog *) override
    {
        if (!value) return E_POINTER;
        HostileValue made;
        VARIANT v;
        made.make(next_++ % HostileValue::kCount, v, static_cast<IPropertyBag *>(this)); // the bag as an object value
        // A bag hands out values, not references: what a reference points at is copied (a
        // reference to nothing is a read that failed). Other values are handed over as made.
        if (!(V_VT(&v) & VT_BYREF)) {
            *value = v;
            return S_OK;
        }
        return V_BYREF(&v) && SUCCEEDED(VariantCopyInd(value, &v)) ? S_OK : E_FAIL;
    }
    STDMETHODIMP Write(LPCOLESTR, VARIANT *) override { return S_OK; }

private:
    HostileBag() = default;
    int next_ = 0;
};

// Loads `bytes` into a new instance of the class, draws it, and checks a property round trip.
void load_damaged(Container &form, const RegisteredClass &cls, const std::vector<BYTE> &bytes, const char *what)
{
    if (std::getenv("TARN_SWEEP_LOG")) { // names each load before it is made, to find the one that faults
        std::fprintf(stderr, "%ls %s %zu:", cls.progid.c_str(), what, bytes.size());
        for (BYTE b : bytes) std::fprintf(stderr, " %02x", b);
        std::fprintf(stderr, "\n");
        std::fflush(stderr);
    }
    ComPtr<IStream> stream = stream_of(bytes);
    Hosted h(form, cls.progid, {10, 10, 210, 60}, Init::FromStream, stream.get());
    ASSERT_TRUE(h.ok()) << what;
    h.render(200, 50);
    RoundTrip trip = FindRoundTrip(h.dispatch(), cls);
    EXPECT_TRUE(StillUsable(h.dispatch(), cls, trip)) << what << ": the control is not usable";
}

} // namespace

TEST(DamagedSavedForms, TruncatedAndBitFlippedStreamsOfEveryClassLoadAndLeaveTheControlUsable)
{
    std::vector<RegisteredClass> classes = RegisteredClasses();
    ASSERT_GE(classes.size(), 9u);
    Container form;
    std::mt19937 random(11);
    int loads = 0;
    for (const RegisteredClass &cls : classes) {
        SCOPED_TRACE(narrow(cls.progid));
        std::vector<BYTE> saved;
        {
            Hosted h(form, cls.progid, {10, 10, 210, 60});
            ASSERT_TRUE(h.ok());
            saved = stream_bytes(h.save_stream().get());
        }
        ASSERT_GT(saved.size(), 20u);
        // Cut short at every length over the header and the first entries, then at a spread
        // of lengths through the rest.
        for (size_t n = 0; n < saved.size(); n += n < 64 ? 1 : 1 + saved.size() / 48, ++loads) {
            std::vector<BYTE> cut(saved.begin(), saved.begin() + static_cast<std::ptrdiff_t>(n));
            load_damaged(form, cls, cut, "truncated");
        }
        // One to four bits flipped anywhere.
        for (int i = 0; i < 60; ++i, ++loads) {
            std::vector<BYTE> flipped = saved;
            for (int k = 1 + static_cast<int>(random() % 4); k > 0; --k)
                flipped[random() % flipped.size()] ^= static_cast<BYTE>(1u << (random() % 8));
            load_damaged(form, cls, flipped, "bit-flipped");
        }
        // A bag answering every key with a value of the wrong kind, starting at each value.
        for (int first = 0; first < HostileValue::kCount; first += 7, ++loads) {
            ComPtr<HostileBag> bag = HostileBag::Create(first);
            Hosted h(form, cls.progid, {10, 10, 210, 60}, Init::FromBag, bag.get());
            ASSERT_TRUE(h.ok());
            h.render(200, 50);
            EXPECT_TRUE(StillUsable(h.dispatch(), cls, FindRoundTrip(h.dispatch(), cls))) << "hostile bag from " << first;
        }
    }
    std::printf("damaged saved forms: %d loads of %zu classes\n", loads, classes.size());
}
