#include "fuzz/Targets.h"

#ifndef KLIPRA_FUZZ_TARGET
#define KLIPRA_FUZZ_TARGET FuzzParser // for tools that look at this file on its own
#endif

// libFuzzer's entry to the target that this is compiled for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    KLIPRA_FUZZ_TARGET(FuzzInput(data, size));
    return 0;
}
