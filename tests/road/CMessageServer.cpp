#include "CMessageServer.h"

#include "Road.h"

namespace {

std::wstring Widen(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

CMessageServer::Words Join(CMessageServer::Words words, const CMessageServer::Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

}  // namespace

CMessageServer::CMessageServer(std::string name, Way way, const Words& options, const Words& key)
    : m_name(std::move(name)) {
    if (way == Way::eTls) {
        m_certificate = MakeCertificate(m_name, key);
        m_tlsOptions = {"--tls", m_name + ".p12", "--password", "secret"};
    }
    Start("0", options);
}

void CMessageServer::Start(const std::string& port, const Words& options) {
    const std::string said = Road::Order(Join(Join({"start", m_name, "--port", port}, m_tlsOptions), options));
    m_url = Widen(said.substr(0, said.find('\n')));
}

void CMessageServer::StartAgain(const Words& options) {
    const std::size_t port = m_url.rfind(L':') + 1;
    const std::wstring digits = m_url.substr(port, m_url.find(L'/', port) - port);
    Start(std::string(digits.begin(), digits.end()), options);
}

void CMessageServer::Stop() const {
    Road::Order({"stop", m_name});
}

void CMessageServer::Kill() const {
    Road::Order({"kill", m_name});
}

std::string CMessageServer::Record() const {
    return Road::ReadText(Road::File(m_name + ".json"));
}

std::wstring MakeCertificate(const std::string& name, const CMessageServer::Words& key) {
    Road::Order(Join({"key", name}, key));
    return Widen(Road::ReadText(Road::File(name + ".pem")));
}
