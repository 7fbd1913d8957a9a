#pragma once

#include <string>

/// The registry keys of a host's installation, which the library reads when it starts: under the product that the
/// command line names, gone when this ends. Throws std::runtime_error.
class CInstallation {
public:
    CInstallation();
    ~CInstallation();

    CInstallation(const CInstallation&) = delete;
    CInstallation& operator=(const CInstallation&) = delete;

private:
    const std::wstring m_key;
};
