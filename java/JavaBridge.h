#pragma once

#include <memory>

#include "CBridgeLog.h"
#include "CJavaObject.h"
#include "CJavaVM.h"

/// The Java side of the bridge as it stands after its start: the machine with the classes of the binding table loaded,
/// the message client, and the factory of the Java side's own log, which lives as long as the bridge. Members end in
/// the reverse of their order: objects before their machine.
struct JavaBridge {
    std::shared_ptr<CJavaVM> vm;
    std::shared_ptr<CJavaObject> messageClient;
    std::shared_ptr<CJavaObject> loggerFactory;
};

/// Finds the Java runtime and the class path, starts the machine, sets up the Java side's log, which is optional, loads
/// the classes and makes the message client. The calling thread becomes the machine's creator thread.
/// Called under the owner's lock, at most once for a bridge. Everything goes to the log.
///
/// @param bridge empty before; after a failure it holds what was there by then, the machine first of all
/// @return S_OK or E_FAIL, whatever the cause
[[nodiscard]] HRESULT StartJavaBridge(const CBridgeLog& log, JavaBridge& bridge);

/// Has the message client dispose itself, releases the Java objects, and abandons the machine: it is left running,
/// since destroying it would wait for every thread that is attached. Called under the owner's lock.
void StopJavaBridge(JavaBridge& bridge) noexcept;

/// Lets go of everything without calling Java: for an owner that dies with its bridge still up.
void AbandonJavaBridge(JavaBridge& bridge) noexcept;
