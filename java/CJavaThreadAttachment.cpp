#include "CJavaThreadAttachment.h"

#include <functional>

CJavaThreadAttachment MakeThreadAttachment(CJavaVM& vm) {
    if (vm.GetEnv() || vm.AttachCurrentThread() != JNI_OK) {
        return {};
    }
    return CJavaThreadAttachment(&vm, std::mem_fn(&CJavaVM::DetachCurrentThread));
}
