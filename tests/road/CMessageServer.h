#pragma once

#include <string>
#include <vector>

/// Whether host and message server speak plainly or over TLS.
enum class Way { ePlain, eTls };

/// A message server on the build machine, in a process of its own from the constructor on, to the end of the run at the
/// latest. One thread at a time. Everything throws std::runtime_error where it does not go as it should.
class CMessageServer {
public:
    using Words = std::vector<std::string>;

    /// What keytool makes its key with, where no more is said.
    static Words ValidKey() { return {"-validity", "30"}; }

    /// @param name    of this run's own
    /// @param options the server's, beside those for `way`
    /// @param key     for TLS; see ValidKey
    explicit CMessageServer(std::string name, Way way = Way::ePlain, const Words& options = {},
                            const Words& key = ValidKey());

    CMessageServer(const CMessageServer&) = delete;
    CMessageServer& operator=(const CMessageServer&) = delete;

    /// As its user would.
    void Stop() const;
    /// On the spot.
    void Kill() const;
    /// Again, on the same port and with the same key; it goes on with its record.
    void StartAgain(const Words& options = {});

    // What a host is configured with.
    [[nodiscard]] const std::wstring& Url() const noexcept { return m_url; }
    /// Empty for a plain one.
    [[nodiscard]] const std::wstring& Certificate() const noexcept { return m_certificate; }

    /// What arrived so far: a line of JSON each.
    [[nodiscard]] std::string Record() const;

private:
    void Start(const std::string& port, const Words& options);

    const std::string m_name;
    Words m_tlsOptions;
    std::wstring m_certificate;
    std::wstring m_url;
};

/// Makes a key for the name. Its certificate as a host has it, a text.
std::wstring MakeCertificate(const std::string& name, const CMessageServer::Words& key = CMessageServer::ValidKey());
