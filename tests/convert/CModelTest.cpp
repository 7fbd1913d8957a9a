#include "CModelTest.h"

#include <stdexcept>

#include "CJavaLocalFrame.h"

namespace {

constexpr char kModelText[] = "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/ModelText";

/// To be called after each of the fixture's own calls that may throw.
void Check(JNIEnv* env) {
    if (env->ExceptionCheck()) {
        env->ExceptionDescribe();
        env->ExceptionClear();
        throw std::runtime_error("the model cannot be told");
    }
}

/// Of ASCII characters.
std::string ReadLine(JNIEnv* env, jstring line) {
    const jsize length = env->GetStringLength(line);
    std::string text(static_cast<std::size_t>(env->GetStringUTFLength(line)), '\0');
    env->GetStringUTFRegion(line, 0, length, text.data());
    Check(env);
    return text;
}

}  // namespace

void CModelTest::SetUpTestSuite() {
    StartWith(TestPaths::kRecordingClientArchive);
    LoadDataModel();
    static_cast<void>(TellText(L"\t"));  // what Java loads and keeps for it counts as there from the start
}

std::string CModelTest::TellSample(const std::shared_ptr<CJavaObject>& sample) {
    return Tell("sample", "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/Sample;)Ljava/lang/String;", sample);
}

std::string CModelTest::TellMetric(const std::shared_ptr<CJavaObject>& metric) {
    return Tell("metric", "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/Metric;)Ljava/lang/String;", metric);
}

std::string CModelTest::TellSession(const std::shared_ptr<CJavaObject>& session) {
    return Tell("session", "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/UserSession;)Ljava/lang/String;",
                session);
}

std::string CModelTest::TellDesktop(const std::shared_ptr<CJavaObject>& desktop) {
    return Tell("desktop", "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopInformation;)Ljava/lang/String;",
                desktop);
}

std::string CModelTest::TellNetworkInterface(const std::shared_ptr<CJavaObject>& networkInterface) {
    return Tell("networkInterface",
                "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/NetworkInterface;)Ljava/lang/String;",
                networkInterface);
}

std::string CModelTest::TellMap(const std::shared_ptr<CJavaObject>& map) {
    return Tell("sortedTexts", "(Ljava/util/Map;)Ljava/lang/String;", map);
}

std::string CModelTest::TellText(const std::wstring& text) {
    JNIEnv* const env = Env();
    const CJavaLocalFrame frame(env);
    const jstring string =
        env->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.length()));
    Check(env);
    return TellReference("text", "(Ljava/lang/String;)Ljava/lang/String;", string);
}

std::string CModelTest::Tell(const char* method, const char* signature, const std::shared_ptr<CJavaObject>& object) {
    EXPECT_EQ(TakeException(), L"none");
    return object ? TellReference(method, signature, object->GetReference()) : "null";
}

std::string CModelTest::TellReference(const char* method, const char* signature, jobject reference) {
    JNIEnv* const env = Env();
    const CJavaLocalFrame frame(env);
    const jclass modelText = env->FindClass(kModelText);
    Check(env);
    const jmethodID tell = env->GetStaticMethodID(modelText, method, signature);
    Check(env);
    const auto line = static_cast<jstring>(env->CallStaticObjectMethod(modelText, tell, reference));
    Check(env);
    return ReadLine(env, line);
}
