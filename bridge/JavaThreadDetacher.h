#pragma once

#include <memory>

#include "CJavaThreadAttachment.h"
#include "CJavaVM.h"

/// Lies in the slot of a thread that was attached to Java and detaches it when the thread ends. The wrapper outlives
/// the machine that it has given up: a thread that ends after that finds none and calls nothing.
struct JavaThreadDetacher {
    std::shared_ptr<CJavaVM> vm;
    CJavaThreadAttachment attachment;  // after the machine, so that it goes before
};
