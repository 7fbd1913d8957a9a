#pragma once

/// What an installer leaves in the registry for the product that the command line names, as the command line's further
/// options say: --product=NAME --jre=FOLDER --classes=FOLDER --folder=FOLDER.
class CInstallation {
public:
    /// Writes the product's values.
    /// @return whether each option was given and each value is written
    [[nodiscard]] bool Install();
    /// Removes all that is registered under the product's name.
    /// @return whether it was there and is gone
    [[nodiscard]] bool Remove() const;

private:
    wchar_t m_product[64] = {};
};
