// The few functions that Highway's headers leave to its library. That library is not linked: it measures the clock of
// the processor as it is loaded, which costs every process 3 ms before its first line.

#include <hwy/highway.h>
#include <hwy/targets.h>

#include <atomic>

namespace hwy {

namespace {

#if HWY_ARCH_X86 && (defined(__GNUC__) || defined(__clang__))

bool supportsSSE4() {
    return __builtin_cpu_supports("sse4.1") && __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("pclmul") &&
           __builtin_cpu_supports("aes");
}

bool supportsAVX2() {
    return __builtin_cpu_supports("avx") && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
           __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("f16c");
}

bool supportsAVX3() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
           __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw");
}

/// The instruction sets for which Highway compiles, each with all that it takes for granted in them. The
/// specialised ones above AVX3 are never compiled here.
int64_t detectedTargets() {
    int64_t targets = HWY_ENABLED_BASELINE;
    if (!__builtin_cpu_supports("ssse3"))
        return targets;
    targets |= HWY_SSSE3;
    if (!supportsSSE4())
        return targets;
    targets |= HWY_SSE4;
    if (!supportsAVX2())
        return targets;
    targets |= HWY_AVX2;
    return supportsAVX3() ? targets | HWY_AVX3 : targets;
}

#else

/// What the compiler was told to presume. Other processors' further instruction sets are left unused.
int64_t detectedTargets() {
    return HWY_ENABLED_BASELINE;
}

#endif

/// What a test wants to be supported; 0 outside of tests.
std::atomic<int64_t> targetsForTest{0};

} // namespace

int64_t SupportedTargets() {
    static const int64_t detected = detectedTargets();
    const int64_t wanted = targetsForTest.load();
    return wanted == 0 ? detected : wanted;
}

void SetSupportedTargetsForTest(int64_t targets) {
    targetsForTest.store(targets);
    // Found out anew at the next call.
    GetChosenTarget().DeInit();
}

ChosenTarget& GetChosenTarget() {
    static ChosenTarget chosen;
    return chosen;
}

} // namespace hwy
