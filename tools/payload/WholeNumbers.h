// Arithmetic of the makers: waves and noise in whole numbers, equal on every machine.
#pragma once

#include <cstdint>

namespace payload {

// sin(2 pi nPhase / 65536) in units of 1/32767, by Bhaskara's approximation (off by less than 0.2 %, which no one hears
// or sees, and exact in whole numbers).
constexpr int Sine(std::uint32_t nPhase)
{
    const std::int64_t x = nPhase & 0x7FFF; // half a wave
    const std::int64_t nProduct = x * (0x8000 - x);
    const auto nHalf = static_cast<int>(4 * nProduct * 32767 / (5LL * 0x8000 * 0x8000 / 4 - nProduct));
    return nPhase & 0x8000 ? -nHalf : nHalf;
}
static_assert(Sine(0) == 0 && Sine(0x4000) == 32767 && Sine(0xC000) == -32767);

// A sequence that looks like chance and is the same every time.
class Noise {
public:
    explicit Noise(std::uint32_t nSeed) : m_nState(nSeed * 2654435761U + 1) {}

    // From 0 to nBelow - 1.
    int Next(int nBelow)
    {
        m_nState = m_nState * 1664525U + 1013904223U;
        return static_cast<int>((static_cast<std::uint64_t>(m_nState) * static_cast<std::uint64_t>(nBelow)) >> 32);
    }

private:
    std::uint32_t m_nState;
};

} // namespace payload
