#include "FakeRuntimeFixture.h"

#include <string>

TEST_F(FakeRuntimeTest, GivesModifiedUtf8) {
    const jstring text = NewText(std::u16string(u"a\0\u00fc\u20ac\U0001f600", 6));

    const char* const bytes = env->GetStringUTFChars(text, nullptr);

    EXPECT_STREQ(bytes, "a\xc0\x80\xc3\xbc\xe2\x82\xac\xed\xa0\xbd\xed\xb8\x80");
    EXPECT_EQ(env->GetStringUTFLength(text), 14);
    env->ReleaseStringUTFChars(text, bytes);
}

TEST_F(FakeRuntimeTest, TakesModifiedUtf8) {
    const jstring text = env->NewStringUTF("a\xc0\x80\xc3\xbc\xe2\x82\xac\xed\xa0\xbd\xed\xb8\x80\xf0\x9f\x98\x80");

    const jchar* const units = env->GetStringChars(text, nullptr);

    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(units), 8),
              std::u16string(u"a\0\u00fc\u20ac\U0001f600\U0001f600", 8));
    EXPECT_EQ(env->GetStringLength(text), 8);
    env->ReleaseStringChars(text, units);
}

TEST_F(FakeRuntimeTest, GivesACopyOfTheUnitsClosedByAZero) {
    const jstring text = NewText(u"abc");
    jboolean isCopy = JNI_FALSE;

    const jchar* const units = env->GetStringChars(text, &isCopy);

    EXPECT_EQ(isCopy, JNI_TRUE);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(units), 4), std::u16string(u"abc\0", 4));
    env->ReleaseStringChars(text, units);
}

TEST_F(FakeRuntimeTest, CountsPinnedStrings) {
    const jstring text = NewText(u"abc");
    const jchar* const units = env->GetStringChars(text, nullptr);
    const char* const bytes = env->GetStringUTFChars(text, nullptr);
    EXPECT_EQ(runtime.GetPinnedStrings(), 2);

    env->ReleaseStringChars(text, units);
    env->ReleaseStringUTFChars(text, bytes);

    EXPECT_EQ(runtime.GetPinnedStrings(), 0);
    EXPECT_EQ(Misuses(), Texts{});
}

TEST_F(FakeRuntimeTest, ReportsTheReleaseOfCharactersThatAreNotPinned) {
    const jstring text = NewText(u"abc");
    const char* const bytes = env->GetStringUTFChars(text, nullptr);
    env->ReleaseStringUTFChars(text, bytes);

    env->ReleaseStringUTFChars(text, bytes);
    env->ReleaseStringChars(text, nullptr);

    EXPECT_EQ(Misuses(), (Texts{"ReleaseStringUTFChars: characters that are not pinned",
                                "ReleaseStringChars: characters that are not pinned"}));
}

TEST_F(FakeRuntimeTest, ReportsTheReleaseOfCharactersOfAnotherString) {
    const char* const bytes = env->GetStringUTFChars(NewText(u"abc"), nullptr);

    env->ReleaseStringUTFChars(NewText(u"abc"), bytes);

    EXPECT_EQ(Misuses(), Texts{"ReleaseStringUTFChars: characters of another string"});
    EXPECT_EQ(runtime.GetPinnedStrings(), 1);
}

TEST_F(FakeRuntimeTest, ReportsCharactersReleasedByTheOtherFunction) {
    const jstring text = NewText(u"abc");
    const jchar* const units = env->GetStringChars(text, nullptr);

    env->ReleaseStringUTFChars(text, reinterpret_cast<const char*>(units));

    EXPECT_EQ(Misuses(), Texts{"ReleaseStringUTFChars: characters of the other encoding"});
    EXPECT_EQ(runtime.GetPinnedStrings(), 1);
}
