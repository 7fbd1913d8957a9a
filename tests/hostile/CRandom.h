#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

/// Numbers that look like chance and are the same for a seed on every machine and with every compiler, which the
/// standard library's distributions do not promise. The generator is the one known as splitmix64: any seed is a good
/// one.
class CRandom {
public:
    explicit CRandom(std::uint64_t seed) noexcept : m_state(seed) {}

    [[nodiscard]] std::uint64_t Next() noexcept {
        m_state += kStep;
        return Mix(m_state);
    }

    /// From 0 to `limit` - 1; `limit` is not 0.
    [[nodiscard]] std::size_t Below(std::size_t limit) noexcept { return static_cast<std::size_t>(Next() % limit); }
    /// From `least` to `most`, both included.
    [[nodiscard]] std::size_t Between(std::size_t least, std::size_t most) noexcept {
        return least + Below(most - least + 1);
    }
    /// True once in `times`, on the average.
    [[nodiscard]] bool OneIn(std::size_t times) noexcept { return Below(times) == 0; }
    /// A length up to `longest`: as a rule a few, sometimes dozens, once in two hundred times any.
    [[nodiscard]] std::size_t Length(std::size_t longest) noexcept {
        const std::size_t most = OneIn(200) ? longest : OneIn(4) ? 80 : 10;
        return Below((most < longest ? most : longest) + 1);
    }
    /// One element of an array or container that has some.
    template <typename Choices>
    [[nodiscard]] const auto& Pick(const Choices& choices) noexcept {
        return *(std::begin(choices) + static_cast<std::ptrdiff_t>(Below(std::size(choices))));
    }

    /// Spreads every bit of `value` over all of the result.
    [[nodiscard]] static std::uint64_t Mix(std::uint64_t value) noexcept {
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
        return value ^ (value >> 31);
    }

private:
    static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15U;

    std::uint64_t m_state;
};
