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

    /// From here on HKEY_LOCAL_MACHINE is, for this process alone, a key of the product's: what all products share
    /// there is no other process's.
    [[nodiscard]] bool EnterOwnMachine() const;
    [[nodiscard]] static bool LeaveOwnMachine();
    /// Writes a text below HKEY_LOCAL_MACHINE; the key is made.
    [[nodiscard]] static bool WriteMachineText(const wchar_t* key, const wchar_t* name, const wchar_t* text);

private:
    wchar_t m_product[64] = {};
};
