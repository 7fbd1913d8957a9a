#pragma once

#include <memory>
#include <string>

#include "CJavaObject.h"
#include "CJavaVM.h"

/// What the Java calls of one data item have in common; lives as long as the item is being sent.
struct JavaCallContext {
    std::shared_ptr<CJavaVM> vm;
    std::shared_ptr<CJavaObject> messageClient;
    std::wstring id;         ///< who sends: the machine, or the component that takes its place
    std::wstring authToken;  ///< a secret: never in a message
    std::wstring uniqueId;   ///< the virtual machine's id; a secret as well
};
