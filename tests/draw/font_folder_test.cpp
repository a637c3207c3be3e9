#include "draw/font_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

// MagickCore has read the variable by the time that it is put back, or reads it as it was.
class FontFolder : public testing::Test {
 protected:
  void SetUp() override {
    const char* value = std::getenv(kVariable);
    m_wasSet = value != nullptr;
    if (m_wasSet) m_before = value;
    unsetenv(kVariable);
  }
  void TearDown() override {
    if (m_wasSet) {
      setenv(kVariable, m_before.c_str(), 1);
    } else {
      unsetenv(kVariable);
    }
  }
  static std::string value() {
    const char* text = std::getenv(kVariable);
    return text != nullptr ? text : "(none)";
  }

  static constexpr const char* kVariable = "MAGICK_CONFIGURE_PATH";

 private:
  bool m_wasSet = false;
  std::string m_before;
};

TEST_F(FontFolder, IsFoundFromTheProgram) {
  ASSERT_TRUE(AddFontFolder());
  EXPECT_TRUE(std::filesystem::path(value()).is_absolute());
  EXPECT_TRUE(std::filesystem::is_regular_file(value() + "/type.xml"));
}

TEST_F(FontFolder, StandsBeforeTheUsersOwn) {
  ASSERT_TRUE(AddFontFolder());
  const std::string own = value();
  setenv(kVariable, "/users/one:/users/two", 1);
  ASSERT_TRUE(AddFontFolder());
  EXPECT_EQ(value(), own + ":/users/one:/users/two");
}

TEST_F(FontFolder, IsAddedOnce) {
  ASSERT_TRUE(AddFontFolder());
  const std::string own = value();
  ASSERT_TRUE(AddFontFolder());
  EXPECT_EQ(value(), own);
  setenv(kVariable, (own + ":/users").c_str(), 1);
  ASSERT_TRUE(AddFontFolder());
  EXPECT_EQ(value(), own + ":/users");
}

TEST_F(FontFolder, ReplacesAnEmptyValue) {
  setenv(kVariable, "", 1);
  ASSERT_TRUE(AddFontFolder());
  EXPECT_TRUE(std::filesystem::is_regular_file(value() + "/type.xml"));
}

}  // namespace
