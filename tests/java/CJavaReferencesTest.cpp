#include <new>

#include "CAllocationFault.h"
#include "CFakeJvmTest.h"
#include "CJavaGlobalRef.h"
#include "CJavaLocalRef.h"
#include "RunOnNewThread.h"

namespace {

using Names = std::vector<std::string>;

class CJavaReferencesTest : public CFakeJvmTest {
protected:
    CJavaLocalRef<jstring> MakeLocal() { return {Env(), Env()->NewStringUTF("text")}; }
};

TEST_F(CJavaReferencesTest, ALocalReferenceIsDeletedOnce) {
    {
        CJavaLocalRef<jstring> first = MakeLocal();
        const CJavaLocalRef<jstring> second(std::move(first));
        EXPECT_TRUE(second);
    }

    EXPECT_EQ(Calls(), (Names{"NewStringUTF", "DeleteLocalRef"}));
}

TEST_F(CJavaReferencesTest, AssigningDeletesTheLocalReferenceThatWasHeld) {
    CJavaLocalRef<jstring> reference = MakeLocal();

    reference = MakeLocal();

    EXPECT_EQ(Calls(), (Names{"NewStringUTF", "NewStringUTF", "DeleteLocalRef"}));
}

TEST_F(CJavaReferencesTest, ADetachedLocalReferenceIsTheCallers) {
    jstring reference = nullptr;
    { reference = MakeLocal().Detach(); }
    EXPECT_EQ(Fake().GetLocalReferences(), 1);

    Env()->DeleteLocalRef(reference);
}

TEST_F(CJavaReferencesTest, ANullLocalReferenceIsNotDeleted) {
    { const CJavaLocalRef<jobject> none(Env(), nullptr); }

    EXPECT_EQ(Calls(), Names{});
}

TEST_F(CJavaReferencesTest, ASharedLocalReferenceIsDeletedWithItsLastOwner) {
    SharedLocalRef first = AdoptSharedLocalRef(Env(), Env()->NewStringUTF("text"));
    SharedLocalRef second = first;
    first.reset();
    EXPECT_EQ(Fake().GetLocalReferences(), 1);

    second.reset();

    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(CJavaReferencesTest, ASharedLocalReferenceThatCannotBeHeldInMemoryIsDeleted) {
    const jobject reference = Env()->NewStringUTF("text");
    const CAllocationFault fault(1);

    EXPECT_THROW(static_cast<void>(AdoptSharedLocalRef(Env(), reference)), std::bad_alloc);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(CJavaReferencesTest, AGlobalReferenceIsDeletedOnce) {
    {
        CJavaGlobalRef<jstring> first(VM(), Env(), MakeLocal());
        CJavaGlobalRef<jstring> second(std::move(first));
        first = std::move(second);
        EXPECT_TRUE(first);
    }

    EXPECT_EQ(Fake().GetCallCount("DeleteGlobalRef"), 1);
}

TEST_F(CJavaReferencesTest, AGlobalReferenceThatCannotBeHadIsEmpty) {
    Fake().Fail("NewGlobalRef", 1, 1, FakeFaultMode::eWithoutException);
    { EXPECT_FALSE(CJavaGlobalRef<jstring>(VM(), Env(), MakeLocal())); }

    EXPECT_EQ(Fake().GetCallCount("DeleteGlobalRef"), 0);
}

TEST_F(CJavaReferencesTest, AGlobalReferenceMayBeDroppedOnAnyAttachedThread) {
    auto reference = std::make_unique<CJavaGlobalRef<jstring>>(VM(), Env(), MakeLocal());

    RunOnNewThread([&] {
        ASSERT_EQ(VM().AttachCurrentThread(), 0);
        reference.reset();
        ASSERT_EQ(VM().DetachCurrentThread(), 0);
    });

    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
}

TEST_F(CJavaReferencesTest, AGlobalReferenceDroppedWithoutAMachineFallsSilently) {
    CJavaGlobalRef<jstring> reference(VM(), Env(), MakeLocal());
    VM().Shutdown(false);
    ForgetCalls();

    { const CJavaGlobalRef<jstring> dropped(std::move(reference)); }

    EXPECT_EQ(Calls(), Names{});
}

}  // namespace
