#pragma once

// The random draws of the spin: a uniform single-precision value in [0, 1), and a reseed that
// the spin asks for at the start of every tick. The window reseeds from the clock; tests and
// the command line use a fixed seed, so that a spin can be replayed.

#include <cstdint>
#include <random>

class SpinRandom {
public:
    virtual ~SpinRandom() = default;
    virtual void reseed() = 0;
    virtual float next() = 0;

protected:
    // 24 random bits make every float in [0, 1) that is a multiple of 2^-24, never 1.
    static float toUnit(uint32_t bits) { return static_cast<float>(bits >> 8) * 0x1p-24f; }
};

// Reseeds from the high-resolution clock in each tick.
class ClockSpinRandom : public SpinRandom {
public:
    void reseed() override;
    float next() override { return toUnit(static_cast<uint32_t>(m_engine())); }

private:
    std::mt19937 m_engine;
};

// One sequence from a seed; the reseed of a tick keeps to it.
class SeededSpinRandom : public SpinRandom {
public:
    explicit SeededSpinRandom(uint32_t seed) : m_engine(seed) {}
    void reseed() override {}
    float next() override { return toUnit(static_cast<uint32_t>(m_engine())); }

private:
    std::mt19937 m_engine;
};
