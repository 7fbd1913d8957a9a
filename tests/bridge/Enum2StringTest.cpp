#include "Enum2String.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <string>

#include "CLeakCheckedTest.h"
#include "DataType.h"

namespace {

constexpr int kValues = 256;
constexpr const char* kNames[] = {
    "eUserSessionStart",
    "eUserSessionLogon",
    "eUserSessionLogoff",
    "eUserSessionRefresh",
    "eUserSessionReconnect",
    "eUserSessionDisconnect",
    "eUserSessionEnd",
    "eExtendedData",
    "eStartup",
    "eSample",
    "eTraceRoute",
};
constexpr char kMicrosofts[] =
    "class ATL::CStringT<wchar_t,class ATL::StrTraitATL<wchar_t,class ATL::ChTraitsCRT<wchar_t> > > __cdecl "
    "Enum2String<enum DataType,eUserSessionStart>(enum DataType)";
constexpr char kGccs[] = "CWideString Enum2String(Enum) [with Enum = DataType; Enum N = eSample]";

/// A text that lies at the very end of its memory: whoever reads on behind it breaks off with an access violation.
class CTextAtTheEdge {
public:
    explicit CTextAtTheEdge(std::string_view text) : m_length(text.size()) {
        if (!m_pages || !VirtualAlloc(m_pages, kPage, MEM_COMMIT, PAGE_READWRITE) || m_length > kPage) {
            throw std::runtime_error("no page for the text");
        }
        m_text = m_pages + kPage - m_length;
        std::memcpy(m_text, text.data(), m_length);
    }
    ~CTextAtTheEdge() { VirtualFree(m_pages, 0, MEM_RELEASE); }

    CTextAtTheEdge(const CTextAtTheEdge&) = delete;
    CTextAtTheEdge& operator=(const CTextAtTheEdge&) = delete;

    [[nodiscard]] std::string_view Get() const noexcept { return {m_text, m_length}; }

private:
    static constexpr std::size_t kPage = 0x1000;

    char* const m_pages = static_cast<char*>(VirtualAlloc(nullptr, 2 * kPage, MEM_RESERVE, PAGE_NOACCESS));
    const std::size_t m_length;
    char* m_text = nullptr;
};

class Enum2StringTest : public CLeakCheckedTest {
protected:
    static std::string Hexadecimal(int value) {
        std::string digits;
        for (int rest = value; rest != 0; rest /= 16) {
            digits.insert(digits.begin(), "0123456789abcdef"[rest % 16]);
        }
        return "0x" + digits;
    }
    static std::string NameOf(int value) {
        return value < static_cast<int>(std::size(kNames)) ? kNames[value] : Hexadecimal(value);
    }

    static std::string Narrow(const CWideString& text) {
        std::string narrow;
        for (const wchar_t c : text.GetView()) {
            narrow.push_back(static_cast<char>(c));
        }
        return narrow;
    }
    static std::string LookUp(int value) {
        return Narrow(Enum2String<DataType, eUserSessionStart>(static_cast<DataType>(value)));
    }
    /// What is cut out of a text behind which nothing can be read.
    static std::string Cut(const std::string& signature) {
        const CTextAtTheEdge text(signature);
        return Narrow(CutEnumeratorName(text.Get()));
    }

    static std::string Microsofts(const std::string& argument) {
        std::string text(kMicrosofts);
        return text.replace(text.find(kNames[0]), std::strlen(kNames[0]), argument);
    }
    static std::string Gccs(const std::string& argument) {
        std::string text(kGccs);
        return text.replace(text.find("eSample"), std::strlen("eSample"), argument);
    }
};

TEST_F(Enum2StringTest, EveryByteHasItsNameOrItsHexadecimalForm) {
    for (int value = 0; value < kValues; ++value) {
        EXPECT_EQ(LookUp(value), NameOf(value)) << value;
    }
}

TEST_F(Enum2StringTest, TheFormsAtTheBordersAreTheKnownOnes) {
    EXPECT_EQ(LookUp(0), "eUserSessionStart");
    EXPECT_EQ(LookUp(10), "eTraceRoute");
    EXPECT_EQ(LookUp(11), "0xb");
    EXPECT_EQ(LookUp(16), "0x10");
    EXPECT_EQ(LookUp(255), "0xff");
}

TEST_F(Enum2StringTest, AWalkMayBeginFurtherOn) {
    EXPECT_EQ((Narrow(Enum2String<DataType, eStartup>(eStartup))), "eStartup");
    EXPECT_EQ((Narrow(Enum2String<DataType, eStartup>(static_cast<DataType>(254)))), "0xfe");
}

TEST_F(Enum2StringTest, TheNameIsCutOutOfMicrosoftsSignature) {
    EXPECT_EQ(CutEnumeratorName("class ATL::CStringT<wchar_t,class ATL::StrTraitATL<wchar_t,class "
                                "ATL::ChTraitsCRT<wchar_t> > > __cdecl Enum2String<enum "
                                "DataType,eUserSessionStart>(enum DataType)")
                  .GetView(),
              L"eUserSessionStart");
    for (int value = 0; value < kValues; ++value) {
        EXPECT_EQ(Cut(Microsofts(NameOf(value))), NameOf(value)) << value;
    }
}

TEST_F(Enum2StringTest, MicrosoftsCastIsLeftOut) {
    for (int value = static_cast<int>(std::size(kNames)); value < kValues; ++value) {
        EXPECT_EQ(Cut(Microsofts("(enum DataType)" + Hexadecimal(value))), Hexadecimal(value)) << value;
    }
}

TEST_F(Enum2StringTest, TheNameIsCutOutOfGccsSignature) {
    for (const char* const name : kNames) {
        EXPECT_EQ(Cut(Gccs(name)), name);
    }
}

TEST_F(Enum2StringTest, GccsCastOfADecimalBecomesHexadecimal) {
    for (int value = static_cast<int>(std::size(kNames)); value < kValues; ++value) {
        EXPECT_EQ(Cut(Gccs("(DataType)" + std::to_string(value))), Hexadecimal(value)) << value;
    }
}

TEST_F(Enum2StringTest, ATextWithoutTheFunctionsNameGivesNone) {
    for (const char* const text : {"", "Enum2Strin", "enum2string<enum DataType,eSample>(enum DataType)",
                                   "CWideString Name(Enum) [with Enum = DataType; Enum N = eSample]", "<,eSample>"}) {
        EXPECT_EQ(Cut(text), "") << text;
    }
}

TEST_F(Enum2StringTest, MicrosoftsTextThatBreaksOffGivesWhatIsThereOfTheName) {
    const std::string whole(kMicrosofts);
    const std::string name(kNames[0]);
    const std::size_t beginning = whole.find(name);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string expected = length <= beginning ? "" : name.substr(0, length - beginning);

        EXPECT_EQ(Cut(whole.substr(0, length)), expected) << length;
    }
}

TEST_F(Enum2StringTest, GccsTextThatBreaksOffGivesNothingThatIsNotInIt) {
    const std::string whole(kGccs);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string text = whole.substr(0, length);

        EXPECT_NE(text.find(Cut(text)), std::string::npos) << length;
    }
    EXPECT_EQ(Cut(whole.substr(0, whole.size() - 1)), "eSample");
}

TEST_F(Enum2StringTest, TextsThatNoCompilerWritesAreCutAsFarAsTheyGo) {
    struct Case {
        const char* signature;
        const char* expected;
    };
    for (const Case& c :
         {Case{"Enum2String", ""}, Case{"Enum2String,", ""}, Case{"Enum2String<,>", ""}, Case{"Enum2String>,a", "a"},
          Case{"Enum2String[", ""}, Case{"Enum2String[]", ""}, Case{"Enum2String[N = ]", ""},
          Case{"Enum2String[N = (DataType)]", ""}, Case{"Enum2String[N = (DataType]", "(DataType"},
          Case{"Enum2String<a,(enum DataType)>", ""}, Case{"Enum2String<a,99999999999>", "99999999999"},
          Case{"Enum2String<a,-1>", "-1"}, Case{"Enum2String<a,b>Enum2String<c,d>", "b"}}) {
        EXPECT_EQ(Cut(c.signature), c.expected) << c.signature;
    }
}

}  // namespace
