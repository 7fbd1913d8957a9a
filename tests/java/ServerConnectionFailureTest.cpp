#include "ServerConnectionFailure.h"

#include "CHresultException.h"
#include "CLeakCheckedTest.h"

namespace {

class ServerConnectionFailureTest : public CLeakCheckedTest {};

TEST_F(ServerConnectionFailureTest, EachMarkerShowsAnUnreachableServerWhereverItStands) {
    for (const wchar_t* const text : {
             L"rmiURLContext",
             L"java.rmi.ConnectException: Connection refused to host: 127.0.0.1",
             L"java.rmi.ConnectIOException: error during JRMP connection establishment",
             L"javax.net.ssl.SSLHandshakeException: java.security.cert.CertificateExpiredException: NotAfter",
             L"java.security.cert.CertPathValidatorException",
             L"x\r\n\tcom.sun.jndi.url.rmi.rmiURLContext.lookup(rmiURLContext.java:1)",
         }) {
        EXPECT_TRUE(IsServerConnectionFailure(text)) << text;
    }
}

TEST_F(ServerConnectionFailureTest, OtherTextsDoNot) {
    for (const wchar_t* const text : {
             L"",
             L"java.rmi.UnmarshalException: error unmarshalling return",
             L"java.rmi.NotBoundException: server",
             L"java.net.ConnectException: Connection refused",
             L"java.security.certificate",
             L"java.security.cert",
         }) {
        EXPECT_FALSE(IsServerConnectionFailure(text)) << text;
    }
}

TEST_F(ServerConnectionFailureTest, LetterCaseCounts) {
    for (const wchar_t* const text : {L"RmiURLContext", L"rmiUrlContext", L"java.rmi.connectException",
                                      L"JAVA.RMI.CONNECTIOEXCEPTION", L"java.security.Cert.CertificateException"}) {
        EXPECT_FALSE(IsServerConnectionFailure(text)) << text;
    }
}

TEST_F(ServerConnectionFailureTest, AMarkerIsSearchedUpToTheFirstZero) {
    EXPECT_FALSE(IsServerConnectionFailure(std::wstring(L"text\0rmiURLContext", 18)));
}

TEST_F(ServerConnectionFailureTest, AMissingStringManagerIsThrownAsAFailure) {
    try {
        static_cast<void>(IsServerConnectionFailure(L"rmiURLContext", nullptr));
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), E_FAIL);
    }
}

}  // namespace
