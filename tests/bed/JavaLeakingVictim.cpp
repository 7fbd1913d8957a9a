// Leaves something of Java's behind. Every one of these tests has to fail, and to fail for nothing else.

#include "CJavaClass.h"
#include "CRealJvmTest.h"
#include "RunOnNewThread.h"

namespace {

class JavaLeakingVictim : public CRealJvmTest {};

TEST_F(JavaLeakingVictim, GlobalReference) {
    const jclass found = Env()->FindClass("java/lang/String");
    ASSERT_NE(Env()->NewGlobalRef(found), nullptr);
    Env()->DeleteLocalRef(found);
}

TEST_F(JavaLeakingVictim, AttachedThread) {
    RunOnNewThread([] { ASSERT_EQ(VM().AttachCurrentThread(), 0); });
}

TEST_F(JavaLeakingVictim, PendingException) {
    ASSERT_EQ(Env()->FindClass("telvar/test/Missing"), nullptr);
}

}  // namespace
