#pragma once

#include <windows.h>

#include <unknwn.h>

#include <memory>
#include <string>
#include <vector>

#include "CCallRecord.h"
#include "CHostActions.h"
#include "CHostLog.h"
#include "CHostReference.h"
#include "CHostServices.h"
#include "HostData.h"
#include "IActionExecutor.h"
#include "IHostLogger.h"
#include "IHostServiceProvider.h"
#include "IInstanceEnumerator.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"
#include "ISampleNode.h"
#include "ISessionCollection.h"
#include "ISystemInfo.h"
#include "IUserSessionInfo.h"

// The host's objects. Each function gives a new one with one reference; what it makes in its turn when it is asked
// (sessions, boxes, enumerators, nodes) goes to the same record. Objects answer on any thread; an enumerator's position
// is for one thread at a time.

using CRecordPointer = std::shared_ptr<CCallRecord>;

[[nodiscard]] CHostReference<IHostLogger> MakeLogger(CRecordPointer record, std::shared_ptr<CHostLog> log);
[[nodiscard]] CHostReference<ISystemInfo> MakeSystemInfo(CRecordPointer record, SystemData data);
[[nodiscard]] CHostReference<ISessionCollection> MakeSessionCollection(CRecordPointer record,
                                                                       std::vector<SessionData> sessions);
[[nodiscard]] CHostReference<IUserSessionInfo> MakeUserSession(CRecordPointer record, SessionData data);
[[nodiscard]] CHostReference<IPropertyBox> MakePropertyBox(CRecordPointer record, PropertyBoxData data);
/// In the record it is called `name`.
[[nodiscard]] CHostReference<INameValueEnumerator> MakeNameValueEnumerator(CRecordPointer record, std::string name,
                                                                           std::vector<NameValueData> items,
                                                                           WalkData walk = {});
/// Its nodes are named after `parentName`, and so is the enumerator itself: "Sample instances".
[[nodiscard]] CHostReference<IInstanceEnumerator> MakeInstanceEnumerator(CRecordPointer record, std::string parentName,
                                                                         std::vector<InstanceData> instances,
                                                                         WalkData walk = {});
[[nodiscard]] CHostReference<ISampleNode> MakeSampleNode(CRecordPointer record, SampleData data);
[[nodiscard]] CHostReference<IUnknown> MakeDataObject(CRecordPointer record, DataObjectData data);
[[nodiscard]] CHostReference<IActionExecutor> MakeActionExecutor(CRecordPointer record,
                                                                 std::shared_ptr<CHostActions> actions);
[[nodiscard]] CHostReference<IHostServiceProvider> MakeServiceProvider(CRecordPointer record,
                                                                       std::shared_ptr<CHostServices> services);
/// Creates a service provider per CreateInstance, under the name "Services"; its own is "Service class".
[[nodiscard]] CHostReference<IClassFactory> MakeServiceClassObject(CRecordPointer record,
                                                                   std::shared_ptr<CHostServices> services);
