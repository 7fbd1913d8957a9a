// Documents that would have the loader read files, connect somewhere, or eat up the machine.

#include <winsock2.h>

#include <cstdio>

#include "CConfigDocumentTest.h"
#include "ProcessMemory.h"

namespace {

constexpr char kSecret[] = "the file's own content";
constexpr wchar_t kWideSecret[] = L"the file's own content";

/// A file of the tests' temporary folder, for one test.
class CSecretFile {
public:
    CSecretFile() {
        wchar_t folder[MAX_PATH + 1];
        wchar_t path[MAX_PATH + 1];
        EXPECT_NE(GetTempPathW(MAX_PATH, folder), 0U);
        EXPECT_NE(GetTempFileNameW(folder, L"tel", 0, path), 0U);
        m_path = path;
        FILE* const file = _wfopen(path, L"wb");
        EXPECT_NE(file, nullptr);
        EXPECT_EQ(std::fwrite(kSecret, 1, sizeof kSecret - 1, file), sizeof kSecret - 1);
        EXPECT_EQ(std::fclose(file), 0);
    }
    ~CSecretFile() { DeleteFileW(m_path.c_str()); }

    CSecretFile(const CSecretFile&) = delete;
    CSecretFile& operator=(const CSecretFile&) = delete;

    [[nodiscard]] const std::wstring& GetPath() const noexcept { return m_path; }
    [[nodiscard]] std::wstring GetUrl() const {
        std::wstring url = L"file:///" + m_path;
        for (wchar_t& character : url) {
            character = character == L'\\' ? L'/' : character;
        }
        return url;
    }

private:
    std::wstring m_path;
};

/// A port of this machine that somebody might connect to.
class CListener {
public:
    CListener() {
        WSADATA data;
        EXPECT_EQ(WSAStartup(MAKEWORD(2, 2), &data), 0);
        m_socket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof m_address;
        EXPECT_EQ(bind(m_socket, AsAddress(), size), 0);
        EXPECT_EQ(listen(m_socket, 5), 0);
        EXPECT_EQ(getsockname(m_socket, AsAddress(), &size), 0);
        u_long isOn = 1;
        EXPECT_EQ(ioctlsocket(m_socket, static_cast<long>(FIONBIO), &isOn), 0);
    }
    ~CListener() {
        closesocket(m_socket);
        WSACleanup();
    }

    CListener(const CListener&) = delete;
    CListener& operator=(const CListener&) = delete;

    [[nodiscard]] std::wstring GetUrl() const {
        return L"http://127.0.0.1:" + std::to_wstring(ntohs(m_address.sin_port)) + L"/x";
    }

    /// Whether somebody has connected since the last question; also one who has gone again.
    [[nodiscard]] bool WasVisited() const {
        const SOCKET visitor = accept(m_socket, nullptr, nullptr);
        if (visitor == INVALID_SOCKET) {
            return false;
        }
        closesocket(visitor);
        return true;
    }

    /// Connects, as a document must not.
    void Visit() {
        const SOCKET visitor = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        EXPECT_EQ(connect(visitor, AsAddress(), sizeof m_address), 0);
        closesocket(visitor);
    }

private:
    sockaddr* AsAddress() { return reinterpret_cast<sockaddr*>(&m_address); }

    SOCKET m_socket = INVALID_SOCKET;
    sockaddr_in m_address{};
};

class HostileDocumentTest : public CConfigDocumentTest {};

/// Documents that point outside, each in another way.
std::vector<std::wstring> DocumentsPointingAt(const std::wstring& place) {
    const std::wstring element = L"<serverConfigRegistry>x&e;</serverConfigRegistry>";
    const std::wstring plain = L"<serverConfigRegistry>x</serverConfigRegistry>";
    return {
        L"<!DOCTYPE serverConfigRegistry [<!ENTITY e SYSTEM \"" + place + L"\">]>" + element,
        L"<!DOCTYPE serverConfigRegistry [<!ENTITY e PUBLIC \"p\" \"" + place + L"\">]>" + element,
        L"<!DOCTYPE serverConfigRegistry [<!ENTITY % e SYSTEM \"" + place + L"\"> %e;]>" + plain,
        L"<!DOCTYPE serverConfigRegistry SYSTEM \"" + place + L"\">" + plain,
        L"<!DOCTYPE serverConfigRegistry PUBLIC \"p\" \"" + place + L"\">" + plain,
        L"<a xmlns:i='http://www.w3.org/2001/XInclude'><i:include href='" + place + L"' parse='text'/>" + plain +
            L"</a>",
        L"<a xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:noNamespaceSchemaLocation='" + place + L"'>" +
            plain + L"</a>",
        L"<?xml-stylesheet type='text/xsl' href='" + place + L"'?>" + plain,
        L"<a xmlns='x-schema:" + place + L"'><serverConfigRegistry xmlns=''>x</serverConfigRegistry></a>",
    };
}

TEST_F(HostileDocumentTest, NoFilesContentEntersTheText) {
    const CSecretFile file;
    for (const std::wstring& place : {file.GetUrl(), file.GetPath()}) {
        for (const std::wstring& document : DocumentsPointingAt(place)) {
            EXPECT_EQ(ReadText(document).path.find(kWideSecret), std::wstring::npos)
                << testing::PrintToString(document);
        }
    }
}

TEST_F(HostileDocumentTest, WhetherAFileCanBeReadMakesNoDifference) {
    // Shared with nobody: whoever tried to read it would fail.
    const CSecretFile file;
    const HANDLE alone = CreateFileW(file.GetPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(alone, INVALID_HANDLE_VALUE);
    std::vector<ReadPath> locked;
    for (const std::wstring& document : DocumentsPointingAt(file.GetUrl())) {
        locked.push_back(ReadText(document));
    }
    CloseHandle(alone);

    std::vector<ReadPath> open;
    for (const std::wstring& document : DocumentsPointingAt(file.GetUrl())) {
        open.push_back(ReadText(document));
    }

    EXPECT_EQ(open, locked) << "it makes no difference whether the file can be read";
}

TEST_F(HostileDocumentTest, NobodyConnectsAnywhere) {
    CListener listener;
    for (const std::wstring& document : DocumentsPointingAt(listener.GetUrl())) {
        static_cast<void>(ReadText(document));

        EXPECT_FALSE(listener.WasVisited()) << testing::PrintToString(document);
    }

    listener.Visit();
    EXPECT_TRUE(listener.WasVisited()) << "the listener is deaf";
}

TEST_F(HostileDocumentTest, ADocumentTypeIsRefused) {
    EXPECT_EQ(ReadText(L"<!DOCTYPE serverConfigRegistry><serverConfigRegistry>x</serverConfigRegistry>"),
              ReadPath{E_FAIL});
    EXPECT_EQ(ReadText(L"<!DOCTYPE serverConfigRegistry [<!ENTITY e 'y'>]>"
                       L"<serverConfigRegistry>x&e;</serverConfigRegistry>"),
              ReadPath{E_FAIL});
}

TEST_F(HostileDocumentTest, AnEntityBombTakesNoMemory) {
    std::wstring document(L"<!DOCTYPE serverConfigRegistry [<!ENTITY e0 'xxxxxxxxxx'>");
    for (int i = 1; i < 10; ++i) {
        const std::wstring inner = L"&e" + std::to_wstring(i - 1) + L";";
        document += L"<!ENTITY e" + std::to_wstring(i) + L" '";
        for (int n = 0; n < 10; ++n) {
            document += inner;
        }
        document += L"'>";
    }
    document += L"]><serverConfigRegistry>&e9;</serverConfigRegistry>";
    EXPECT_EQ(ReadText(DocumentNaming(L"x")), (ReadPath{S_OK, L"x"})) << "and what the parser takes up once";
    const std::size_t before = CountPrivateMemory();

    EXPECT_EQ(ReadText(document), ReadPath{E_FAIL});

    EXPECT_LT(CountPrivateMemory(), before + 20'000'000);
}

TEST_F(HostileDocumentTest, ABombOfOneGreatEntityTakesNoMemory) {
    std::wstring document(L"<!DOCTYPE serverConfigRegistry [<!ENTITY e '" + std::wstring(100'000, L'x') +
                          L"'>]><serverConfigRegistry>");
    for (int i = 0; i < 10'000; ++i) {
        document += L"&e;";
    }
    document += L"</serverConfigRegistry>";
    EXPECT_EQ(ReadText(DocumentNaming(L"x")), (ReadPath{S_OK, L"x"})) << "and what the parser takes up once";
    const std::size_t before = CountPrivateMemory();

    EXPECT_EQ(ReadText(document), ReadPath{E_FAIL});

    EXPECT_LT(CountPrivateMemory(), before + 20'000'000);
}

TEST_F(HostileDocumentTest, AHostileDocumentLeavesTheOtherPlacesToTheLoader) {
    SetPolicyUrlForTheCommonReader(L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"cert");
    const CSecretFile file;

    EXPECT_EQ(Load(DocumentsPointingAt(file.GetUrl()).front()),
              (ServerInfo{S_OK, L"rmi://policy", kUniqueId, L"cert"}));
}

}  // namespace
