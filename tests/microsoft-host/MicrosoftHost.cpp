// A whole life with the library, as a host that Microsoft's compiler built leads it. Prints each thing that it expects
// and whether it is so; the exit code is the number of those that are not.

#include <windows.h>

#include <objbase.h>

#include "CAnswerListener.h"
#include "CRMICommManager.h"
#include "CRMIConfigLoader.h"
#include "DataType.h"
#include "CInstallation.h"
#include "NoRuntime.h"
#include "ServiceObjects.h"

namespace {

constexpr CLSID kServiceClassId = {0x2D6D321D, 0x3A1D, 0x4BB9, {0x91, 0x61, 0x21, 0x91, 0xD7, 0x01, 0x01, 0x1D}};

/// The stand-in for the message client answers start-ups with the text that the URL names.
constexpr wchar_t kUrl[] = L"rmi://first?onStartup=welcome";
constexpr wchar_t kAnswer[] = L"welcome";
constexpr wchar_t kToken[] = L"token";
constexpr wchar_t kOtherToken[] = L"other token";
constexpr wchar_t kCertificate[] = L"certificate";
constexpr unsigned __int64 kId = 0x8000000700000009;
/// What the library logs when it has pointed the message client at a server.
constexpr wchar_t kPointedAtUrl[] =
    L"Updated the message server URL in the Java client to rmi://first?onStartup=welcome.";
constexpr wchar_t kPointedAtEmptyUrl[] = L"Updated the message server URL in the Java client to .";
/// Where the loader looks for a server.
constexpr wchar_t kListKey[] = L"Software\\Orvane, Inc.\\Orvane Dorsel\\Node Manager";
constexpr wchar_t kListValue[] = L"Kelbrin Server URL";
constexpr wchar_t kServerKey[] = L"Software\\Server";
constexpr wchar_t kConfiguration[] = L"<agent><serverConfigRegistry>Software\\Server</serverConfigRegistry></agent>";
constexpr wchar_t kList[] = L"rmi://list|second|list's certificate";
constexpr wchar_t kServerUrl[] = L"rmi://server";
constexpr wchar_t kServerCertificate[] = L"server's certificate";
constexpr wchar_t kUniqueId[] = L"unique-7";
/// A kind of data without a name: accepted, and not sent.
constexpr unsigned char kUnnamedType = 11;

/// Everything that the library may hold on to.
struct Objects {
    CLogger logger;
    CPropertyBox identities;
    CSystemInfo systemInfo{identities};
    CServiceProvider services{logger, systemInfo};
    CClassObject classObject{services};
    CAnswerListener listener;
    CPropertyBox data;
};

/// Not a local object: the library gives up its last references while it is unloaded, and that is after main's end.
[[clang::require_constant_initialization]] Objects g_objects;

int g_failures = 0;

void Check(const char* expectation, bool isSo) {
    printf("%-72s %s\n", expectation, isSo ? "ok" : "FAILED");
    fflush(nullptr);  // what is in the buffer when a process crashes is lost
    g_failures += isSo ? 0 : 1;
}

void CheckResult(const char* call, HRESULT result) {
    if (result != S_OK) {
        printf("result %08lX: ", static_cast<unsigned long>(result));
    }
    Check(call, result == S_OK);
}

bool IsText(const wchar_t* text, const wchar_t* expected) {
    return text && lstrcmpW(text, expected) == 0;
}

VARIANT MakeConfiguration() {
    VARIANT configuration;
    configuration.vt = VT_BSTR;
    configuration.bstrVal = SysAllocString(kConfiguration);
    return configuration;
}

/// The server that the loader finds, with the configuration as a text.
void CheckServer(const wchar_t* url, const wchar_t* secondValue, const wchar_t* certificate) {
    VARIANT configuration = MakeConfiguration();
    wchar_t* given[3] = {};
    CheckResult("the loader finds a server",
                CRMIConfigLoader::GetServerInfo(configuration, &given[0], &given[1], &given[2]));
    Check("its URL is the first text", IsText(given[0], url));
    Check("the machine's id, or what stands for it, is the second", IsText(given[1], secondValue));
    Check("its certificate is the third", IsText(given[2], certificate));
    for (wchar_t* const text : given) {
        SysFreeString(text);
    }
    Check("the configuration is as it was",
          configuration.vt == VT_BSTR && IsText(configuration.bstrVal, kConfiguration));
    VariantClear(&configuration);
}

void CheckConfigContent() {
    VARIANT configuration = MakeConfiguration();
    VARIANT content;
    VariantInit(&content);
    CheckResult("the loader reads the configuration", CRMIConfigLoader::GetConfigContent(configuration, &content));
    Check("it names the server's key", content.vt == VT_BSTR && IsText(content.bstrVal, kServerKey));
    VariantClear(&content);
    VariantClear(&configuration);
}

void CheckConfigLoader(const CInstallation& installation) {
    Check("the process has a machine of its own", installation.EnterOwnMachine());
    CheckConfigContent();
    Check("a server's key is written",
          CInstallation::WriteMachineText(kServerKey, L"MessageServerURL", kServerUrl) &&
              CInstallation::WriteMachineText(kServerKey, L"AdapterCertificate", kServerCertificate));
    CheckServer(kServerUrl, kUniqueId, kServerCertificate);
    Check("that there was no list before was complained of", g_objects.logger.CountComplaints() == 1);
    Check("a list is written", CInstallation::WriteMachineText(kListKey, kListValue, kList));
    CheckServer(L"rmi://list", L"second", L"list's certificate");
    Check("the logger is the host's alone again", g_objects.logger.CountReferences() == 1);
    Check("so is the system information", g_objects.systemInfo.CountReferences() == 1);
    Check("the machine is all processes' again", CInstallation::LeaveOwnMachine());
}

void CheckInstance(CRMICommManager& manager) {
    Check("the manager is one object", &manager == &CRMICommManager::GetInstance());
}

void CheckRegistration(CRMICommManager& manager) {
    CheckResult("a callback is registered",
                manager.RegisterDataDumpCallback(kUrl, kToken, kCertificate, &g_objects.listener));
    Check("it is referenced once", g_objects.listener.CountReferences() == 2);
    CheckResult("it is registered again",
                manager.RegisterDataDumpCallback(kUrl, kToken, kCertificate, &g_objects.listener));
    Check("it is still referenced once", g_objects.listener.CountReferences() == 2);
}

void CheckStartup(CRMICommManager& manager) {
    CheckResult("a start-up starts Java and is sent",
                manager.DumpData<IUnknown>(kUrl, kToken, kCertificate, kId, eStartup, &g_objects.data));
    Check("the callback heard one answer", g_objects.listener.Count() == 1);
    Check("it was told what kind of item was answered, and how", g_objects.listener.HeardLast(eStartup, kAnswer));
    Check("the data is the host's alone again", g_objects.data.CountReferences() == 1);
    Check("so is the service object", g_objects.services.CountReferences() == 1);
    Check("so are the components' identities", g_objects.identities.CountReferences() == 1);
    Check("the library keeps the logger", g_objects.logger.CountReferences() == 2);
    Check("and the system information", g_objects.systemInfo.CountReferences() == 2);
    Check("the machine's state was read once", g_objects.systemInfo.CountRefreshes() == 1);
}

void CheckUnnamedType(CRMICommManager& manager) {
    const int infos = g_objects.logger.CountInfos();
    CheckResult("a kind without a name is accepted",
                manager.DumpData<IUnknown>(kUrl, kToken, kCertificate, kId, kUnnamedType, &g_objects.data));
    Check("nobody answered it", g_objects.listener.Count() == 1);
    Check("the message client was not pointed anywhere again", g_objects.logger.CountInfos() == infos);
    Check("the machine's state was read for it", g_objects.systemInfo.CountRefreshes() == 2);
}

void CheckSwitches(CRMICommManager& manager) {
    const int infos = g_objects.logger.CountInfos();
    CheckResult("an item with another token is accepted",
                manager.DumpData<IUnknown>(kUrl, kOtherToken, kCertificate, kId, kUnnamedType, nullptr));
    Check("the message client was pointed at the first URL again",
          g_objects.logger.CountInfos() == infos + 1 && lstrcmpW(g_objects.logger.GetLastInfo(), kPointedAtUrl) == 0);
    CheckResult("null texts count as empty ones",
                manager.DumpData<IUnknown>(nullptr, nullptr, nullptr, kId, kUnnamedType, nullptr));
    Check("the message client was pointed at the empty URL",
          lstrcmpW(g_objects.logger.GetLastInfo(), kPointedAtEmptyUrl) == 0);
    CheckResult("a start-up without data is sent, under another token than the callback's",
                manager.DumpData<IUnknown>(kUrl, kOtherToken, kCertificate, kId, eStartup, nullptr));
    Check("the message client was pointed at the first URL",
          lstrcmpW(g_objects.logger.GetLastInfo(), kPointedAtUrl) == 0);
    Check("the only callback there is heard the answer",
          g_objects.listener.Count() == 2 && g_objects.listener.HeardLast(eStartup, kAnswer));
}

void CheckEndOfRegistration(CRMICommManager& manager) {
    CheckResult("the callback's registration ends",
                manager.UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &g_objects.listener));
    Check("the callback is the host's alone again", g_objects.listener.CountReferences() == 1);
    CheckResult("ending it again changes nothing",
                manager.UnregisterDataDumpCallback(kUrl, kToken, kCertificate, &g_objects.listener));
    Check("the callback's references neither", g_objects.listener.CountReferences() == 1);
}

void UseTheLibrary() {
    CRMICommManager& manager = CRMICommManager::GetInstance();
    CheckInstance(manager);
    CheckRegistration(manager);
    CheckStartup(manager);
    CheckUnnamedType(manager);
    CheckSwitches(manager);
    CheckEndOfRegistration(manager);
}

}  // namespace

int RunHost() {
    CInstallation installation;
    Check("the product's values are in the registry", installation.Install());
    CheckResult("COM is initialised", CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    DWORD registration = 0;
    CheckResult("the service class is registered",
                CoRegisterClassObject(kServiceClassId, &g_objects.classObject, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                      &registration));

    CheckConfigLoader(installation);
    const int complaints = g_objects.logger.CountComplaints();
    UseTheLibrary();
    Check("nothing was complained of", g_objects.logger.CountComplaints() == complaints);

    CheckResult("the service class is revoked", CoRevokeClassObject(registration));
    Check("the class object is the host's alone again", g_objects.classObject.CountReferences() == 1);
    CoUninitialize();
    Check("the product's values are removed", installation.Remove());
    printf("%d failed\n", g_failures);
    return g_failures;
}
