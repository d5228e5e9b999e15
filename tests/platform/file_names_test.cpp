#include "platform/file_names.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/raises.h"
#include "support/temp_folder.h"

namespace orv::platform {
namespace {

class FileNamesTest : public testing::Test {
 protected:
  std::wstring Make(std::wstring_view file) const {
    const std::wstring name = folder_.Name(file);
    test::WriteBytes(name, "x");
    return name;
  }

  /// Expects that asking for one name leads to the file made under the other. Where the file system
  /// ignores letter case itself, no other spelling than the one asked for is needed.
  static void ExpectFound(const std::wstring& asked, const std::wstring& made) {
    const std::wstring found = ExistingSpelling(asked);
#ifdef _WIN32
    EXPECT_EQ(found, asked);
#else
    EXPECT_EQ(found, made);
#endif
    ASSERT_TRUE(IdentityOf(made).has_value());
    EXPECT_EQ(IdentityOf(found), IdentityOf(made));
  }

  test::TempFolder folder_;
};

TEST_F(FileNamesTest, NativeNamesAreUtf8) {
  EXPECT_EQ(NativeName(L"a\u0416\u20AC\U0001F600"), "a\xD0\x96\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_RAISES(53, NativeName(std::wstring(L"a\0b", 3)));
}

TEST_F(FileNamesTest, ANameThatExistsAsSpelledIsItself) {
  Make(L"table.orv");
  const std::wstring other = Make(L"TABLE.orv");
  EXPECT_EQ(ExistingSpelling(other), other);
}

TEST_F(FileNamesTest, LetterCaseIsIgnoredWhenNoNameMatchesAsSpelled) {
  const std::wstring made = Make(L"Table.Orv");
  ExpectFound(folder_.Name(L"tABLE.oRV"), made);
}

TEST_F(FileNamesTest, LetterCaseIsIgnoredInFoldersToo) {
  std::filesystem::create_directories(folder_.path() / "Sub" / "Deep");
  const std::wstring made = Make(L"Sub/Deep/T");
  ExpectFound(folder_.Name(L"sUB/dEEP/t"), made);
}

TEST_F(FileNamesTest, CyrillicLettersFoldToo) {
  const std::wstring made = Make(L"\u0413\u043E\u0440\u043E\u0434\u0430 \u0401.dbf");
  ExpectFound(folder_.Name(L"\u0433\u041E\u0420\u041E\u0414\u0410 \u0451.DBF"), made);
}

TEST_F(FileNamesTest, NamesOutsideTheCodePageAreFound) {
  const std::wstring made = Make(L"\u6570\u636E.ORV");
  ExpectFound(folder_.Name(L"\u6570\u636E.orv"), made);
  EXPECT_TRUE(FileExists(made));
}

TEST_F(FileNamesTest, ANameWithoutAnyMatchIsItself) {
  const std::wstring missing = folder_.Name(L"missing/file");
  EXPECT_EQ(ExistingSpelling(missing), missing);
  EXPECT_FALSE(FileExists(missing));
  EXPECT_EQ(IdentityOf(missing), std::nullopt);
}

TEST_F(FileNamesTest, AFolderWithAnUnreadableNameInItDoesNotDisturb) {
  test::WriteBytes(folder_.Name(L"placeholder"), "x");
  std::filesystem::rename(folder_.path() / "placeholder", folder_.path() / "\xFF\xFE.orv");
  const std::wstring made = Make(L"Real.orv");
  ExpectFound(folder_.Name(L"real.ORV"), made);
}

TEST_F(FileNamesTest, IdentityTellsFilesApartAndLinksTogether) {
  const std::wstring a = Make(L"a");
  const std::wstring b = Make(L"b");
  std::filesystem::create_hard_link(folder_.path() / "a", folder_.path() / "link");
  ASSERT_TRUE(IdentityOf(a).has_value());
  EXPECT_NE(IdentityOf(a), IdentityOf(b));
  EXPECT_EQ(IdentityOf(a), IdentityOf(folder_.Name(L"link")));
}

TEST_F(FileNamesTest, DeletingRemovesTheFileOrSaysWhyNot) {
  const std::wstring made = Make(L"a");
  DeleteFile(made);
  EXPECT_FALSE(FileExists(made));
  EXPECT_RAISES(53, DeleteFile(made));
}

}  // namespace
}  // namespace orv::platform
