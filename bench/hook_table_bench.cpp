// Benchmark of the hook table alone (native, Google Benchmark): one message dispatched through
// HookTable::Dispatch to the last window hooked, with 1 to 100,000 windows in the table, for a
// watched message (the owner answers) and one passed on to the saved procedure. The platform is
// a fake whose procedures do nothing, so the figures are the table's own cost.
#include <benchmark/benchmark.h>

#include <vector>

#include "foundation/hook_table.h"

using namespace tarn;

namespace {

class NullProcs final : public WindowProcs {
public:
    bool Hookable(WindowId) override { return true; }
    ProcAddress Get(WindowId w) override { return w + 1; }
    bool Set(WindowId, ProcAddress) override { return true; }
    HookResult Call(ProcAddress p, WindowId, std::uint32_t msg, std::uintptr_t, std::intptr_t) override
    {
        return static_cast<HookResult>(p + msg);
    }
};

class Owner final : public HookOwner {
public:
    void HookAddRef() override { ++refs; }
    void HookRelease() override { --refs; }
    bool HookWatches(std::uint32_t msg) override { return msg == 36; }
    HookResult HookMessage(std::uint32_t msg, std::uintptr_t wp, std::intptr_t) override
    {
        return static_cast<HookResult>(msg + wp);
    }
    void HookWindowGone() override {}
    long refs = 1;
};

void Dispatch(benchmark::State &state, std::uint32_t msg)
{
    NullProcs procs;
    Owner owner;
    HookTable table;
    const auto count = static_cast<WindowId>(state.range(0));
    // Handles spread as a system's are: not consecutive.
    for (WindowId i = 0; i < count; ++i) table.Hook(procs, 0x10000 + i * 0x2E, &owner, 0x5A5A);
    const WindowId last = 0x10000 + (count - 1) * 0x2E;
    for (auto _ : state) benchmark::DoNotOptimize(table.Dispatch(procs, last, msg, 1, 2));
    for (WindowId i = 0; i < count; ++i) table.Unhook(procs, 0x10000 + i * 0x2E);
}

void BM_DispatchWatched(benchmark::State &state) { Dispatch(state, 36); }
void BM_DispatchPassedOn(benchmark::State &state) { Dispatch(state, 15); }

BENCHMARK(BM_DispatchWatched)->Arg(1)->Arg(1000)->Arg(100000);
BENCHMARK(BM_DispatchPassedOn)->Arg(1)->Arg(1000)->Arg(100000);

} // namespace

BENCHMARK_MAIN();
