#include "save/identity_library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

namespace {

// Loads a stand-in library by its full path; the code's dlopen by name then finds it.
class IdentityLibraryTest : public testing::Test {
protected:
  void SetUp() override { resetIdentityLibrary(); }
  void TearDown() override {
    resetIdentityLibrary();
    if (handle_ != nullptr) dlclose(handle_);
  }
  void load(const char *path) {
    handle_ = dlopen(path, RTLD_NOW);
    ASSERT_NE(handle_, nullptr) << dlerror();
  }
  int stubCalls() { return *static_cast<int *>(dlsym(handle_, "lumo_stub_calls")); }
  void *handle_ = nullptr;
};

TEST_F(IdentityLibraryTest, KnownSidNamesAnExistingUser) {
  load(TROVAN_LUMO_STUB);
  testing::internal::CaptureStderr();
  EXPECT_TRUE(sidNamesExistingUser("S-1-5-21-1-2-3-1104"));
  EXPECT_TRUE(sidNamesExistingUser("S-1-5-21-1-2-3-500"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(stubCalls(), 4);
}

TEST_F(IdentityLibraryTest, SidWithoutUserIsNotExisting) {
  load(TROVAN_LUMO_STUB);
  EXPECT_FALSE(sidNamesExistingUser("S-1-5-21-1-2-3-9999"));
  EXPECT_EQ(stubCalls(), 2);
}

TEST_F(IdentityLibraryTest, TextThatDoesNotConvertIsNotExistingAndSkipsTheLookup) {
  load(TROVAN_LUMO_STUB);
  EXPECT_FALSE(sidNamesExistingUser("Smith"));
  EXPECT_EQ(stubCalls(), 1);
}

TEST_F(IdentityLibraryTest, MissingLibraryIsReportedOnceAndEverySidCounts) {
  if (void *found = dlopen(kIdentityLibraryName, RTLD_NOW); found != nullptr) {
    dlclose(found);
    GTEST_SKIP() << "an identity library is installed on this machine";
  }
  testing::internal::CaptureStderr();
  EXPECT_TRUE(sidNamesExistingUser("S-1-5-21-1-2-3-9999"));
  EXPECT_TRUE(sidNamesExistingUser("Smith"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Unable to load the identity library liblumo.so.0: liblumo.so.0: cannot open shared "
            "object file: No such file or directory\n");
}

TEST_F(IdentityLibraryTest, LibraryWithoutEntryPointsCountsAsMissing) {
  load(TROVAN_LUMO_EMPTY);
  testing::internal::CaptureStderr();
  EXPECT_TRUE(sidNamesExistingUser("S-1-5-21-1-2-3-9999"));
  EXPECT_TRUE(sidNamesExistingUser("S-1-5-21-1-2-3-9998"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            std::string("Unable to load the identity library liblumo.so.0: ") + TROVAN_LUMO_EMPTY +
                ": undefined symbol: lumolib_string_to_sid\n");
}

TEST_F(IdentityLibraryTest, ResetTriesTheLibraryAgain) {
  if (void *found = dlopen(kIdentityLibraryName, RTLD_NOW); found != nullptr) {
    dlclose(found);
    GTEST_SKIP() << "an identity library is installed on this machine";
  }
  testing::internal::CaptureStderr();
  EXPECT_TRUE(sidNamesExistingUser("S-1-5-21-1-2-3-9999"));
  testing::internal::GetCapturedStderr();
  resetIdentityLibrary();
  load(TROVAN_LUMO_STUB);
  EXPECT_FALSE(sidNamesExistingUser("S-1-5-21-1-2-3-9999"));
}

}  // namespace
