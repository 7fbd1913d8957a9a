// Calls Java without asking for an exception afterwards, which works and is not allowed.

#include "CRealJvmTest.h"

namespace {

class JniSinner : public CRealJvmTest {};

TEST_F(JniSinner, CallsAgainWithoutAskingForAnException) {
    const jclass found = Env()->FindClass("java/lang/String");
    const jmethodID toString = Env()->GetMethodID(found, "toString", "()Ljava/lang/String;");
    const jstring text = Env()->NewStringUTF("text");

    const jobject result = Env()->CallObjectMethod(text, toString);

    EXPECT_TRUE(Env()->IsSameObject(text, result));
    EXPECT_EQ(Env()->GetStringLength(text), 4);
    Env()->DeleteLocalRef(result);
    Env()->DeleteLocalRef(text);
    Env()->DeleteLocalRef(found);
}

}  // namespace
