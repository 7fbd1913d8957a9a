#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <utility>

/// Prints what `describe()` says when the scope ends in a failed test. In place of SCOPED_TRACE, which makes its text
/// each time: for most cases that would be the dearest part.
template <typename Describe>
class CNoteOfFailure {
public:
    explicit CNoteOfFailure(Describe describe) : m_describe(std::move(describe)) {}
    ~CNoteOfFailure() {
        if (testing::Test::HasFailure()) {
            std::printf("of the case:\n%s\n", m_describe().c_str());
        }
    }

    CNoteOfFailure(const CNoteOfFailure&) = delete;
    CNoteOfFailure& operator=(const CNoteOfFailure&) = delete;

private:
    const Describe m_describe;
};
