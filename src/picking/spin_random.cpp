#include "picking/spin_random.h"

#include <chrono>

void ClockSpinRandom::reseed() {
    const auto now = std::chrono::high_resolution_clock::now().time_since_epoch().count();
    m_engine.seed(static_cast<uint32_t>(now ^ (now >> 32)));
}
