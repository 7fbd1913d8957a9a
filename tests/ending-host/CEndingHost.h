#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "CHost.h"
#include "CInProcessClassObject.h"

/// The exit code of a host that found everything as it should be.
constexpr int kAllWell = 42;

/// What every scenario needs around the library: a COM host that the library finds, and an installation in the registry
/// for the product that the command line names. It lives to the process's end, as the library may hold on to its
/// objects as long.
class CEndingHost {
public:
    /// Throws std::runtime_error.
    explicit CEndingHost(const std::wstring& product);

    CEndingHost(const CEndingHost&) = delete;
    CEndingHost& operator=(const CEndingHost&) = delete;

    /// Prints what was expected if it is not so, and has the process end with another code than kAllWell.
    void Expect(bool isSo, const char* expectation);

    /// What the host has to end with.
    [[nodiscard]] int GetExitCode() const { return m_failed ? 1 : kAllWell; }

    /// Whether something was logged that ends like this.
    [[nodiscard]] bool HasLogged(const std::wstring& ending);

    /// Gives up what the host itself holds of its objects, and expects that nobody else holds any.
    void ExpectReleased();

private:
    CHost m_host;
    std::unique_ptr<CInProcessClassObject> m_registration;
    bool m_failed = false;
};
