#include "JavaMethodBinding.h"

#include <gtest/gtest.h>

#include <limits>

#include "CJavaObject.h"
#include "CJavaString.h"
#include "JavaArgument.h"

namespace {

using JniSignature::Describes;

TEST(JavaMethodBindingTest, AMethodWithoutParametersIsDescribedByEmptyParentheses) {
    EXPECT_TRUE((Describes<void>("()V")));
    EXPECT_FALSE((Describes<void>("(I)V")));
    EXPECT_FALSE((Describes<void, jint>("()V")));
}

TEST(JavaMethodBindingTest, EachNumberTypeIsDescribedByItsOwnLetter) {
    EXPECT_TRUE((Describes<void, jint, jlong, jdouble, jboolean>("(IJDZ)V")));
    EXPECT_FALSE((Describes<void, jint>("(J)V")));
    EXPECT_FALSE((Describes<void, jlong>("(I)V")));
    EXPECT_FALSE((Describes<void, jlong>("(D)V")));
    EXPECT_FALSE((Describes<void, jboolean>("(I)V")));
}

TEST(JavaMethodBindingTest, AStringIsOnlyJavasOwn) {
    EXPECT_TRUE((Describes<jstring, jstring>("(Ljava/lang/String;)Ljava/lang/String;")));
    EXPECT_FALSE((Describes<void, jstring>("(Ljava/lang/Object;)V")));
}

TEST(JavaMethodBindingTest, AnObjectIsAnyClassOrArray) {
    EXPECT_TRUE((Describes<jobject, jobject, jobject>("(Ljava/util/Map;[I)[Ljava/lang/Object;")));
    EXPECT_FALSE((Describes<void, jobject>("(I)V")));
}

TEST(JavaMethodBindingTest, TheResultCounts) {
    EXPECT_FALSE((Describes<void>("()I")));
    EXPECT_FALSE((Describes<jstring>("()V")));
}

TEST(JavaMethodBindingTest, BrokenSignaturesDescribeNothing) {
    for (const char* const broken :
         {"", "V", "(", "(V", "(I", "(I)", "(L)V", "(Ljava/lang/String)V", "([)V", "()VV", "(X)V"}) {
        EXPECT_FALSE((Describes<void, jint>(broken))) << broken;
        EXPECT_FALSE((Describes<void, jobject>(broken))) << broken;
        EXPECT_FALSE((Describes<void>(broken))) << broken;
    }
}

TEST(JavaMethodBindingTest, ARowHoldsItsThreeTexts) {
    constexpr JavaMethod<void(jint)> row{"alias", "name", "(I)V"};

    EXPECT_STREQ(row.alias, "alias");
    EXPECT_STREQ(row.name, "name");
    EXPECT_STREQ(row.signature, "(I)V");
}

TEST(JavaMethodBindingTest, AConstructorsNameIsInit) {
    constexpr JavaConstructor<jint> row{"ctor(n)", "(I)V"};

    EXPECT_STREQ(row.alias, "ctor(n)");
    EXPECT_STREQ(row.name, "<init>");
}

TEST(JavaArgumentTest, NumbersPassWhereNothingIsLost) {
    using JavaArgument::IsLossless;

    EXPECT_TRUE((IsLossless<jint, int>()));
    EXPECT_TRUE((IsLossless<jint, long>()));
    EXPECT_TRUE((IsLossless<jint, short>()));
    EXPECT_TRUE((IsLossless<jint, unsigned short>()));
    EXPECT_TRUE((IsLossless<jlong, long long>()));
    EXPECT_TRUE((IsLossless<jlong, unsigned long>()));
    EXPECT_TRUE((IsLossless<jdouble, float>()));
    EXPECT_TRUE((IsLossless<jboolean, bool>()));
}

TEST(JavaArgumentTest, NumbersDoNotPassWhereSomethingMayBeLost) {
    using JavaArgument::IsLossless;

    EXPECT_FALSE((IsLossless<jint, long long>()));
    EXPECT_FALSE((IsLossless<jint, unsigned int>()));
    EXPECT_FALSE((IsLossless<jint, std::size_t>()));
    EXPECT_FALSE((IsLossless<jint, bool>()));
    EXPECT_FALSE((IsLossless<jint, double>()));
    EXPECT_FALSE((IsLossless<jlong, unsigned long long>()));
    EXPECT_FALSE((IsLossless<jlong, double>()));
    EXPECT_FALSE((IsLossless<jdouble, int>()));
    EXPECT_FALSE((IsLossless<jdouble, long double>()));
    EXPECT_FALSE((IsLossless<jboolean, int>()));
}

TEST(JavaArgumentTest, AnEmptyWrapperPointerIsJavasNull) {
    EXPECT_EQ(JavaArgument::Convert<jobject>::From(std::shared_ptr<CJavaObject>()), nullptr);
    EXPECT_EQ(JavaArgument::Convert<jstring>::From(std::shared_ptr<CJavaString>()), nullptr);
    EXPECT_EQ(JavaArgument::Convert<jstring>::From(nullptr), nullptr);
}

}  // namespace
