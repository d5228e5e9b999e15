#include "exchange/extraction.h"

#include <gtest/gtest.h>

namespace orv::exchange {
namespace {

TEST(Extraction, KnowsTheThreeTypesByTheirExactNames) {
  EXPECT_EQ(KindOf("image"), ContentKind::kContent);
  EXPECT_EQ(KindOf("wave"), ContentKind::kContent);
  EXPECT_EQ(KindOf("file"), ContentKind::kFile);
  for (const char* other : {"", "string", "Image", "file ", "int"}) {
    EXPECT_EQ(KindOf(other), ContentKind::kText) << other;
  }
}

TEST(Extraction, TellsContentByItsFirstBytes) {
  const auto extensionOf = [](std::string_view data) {
    const Extract extract = ExtractOf(ContentKind::kContent, data);
    EXPECT_EQ(extract.data, data);
    return extract.extension;
  };
  EXPECT_EQ(extensionOf("123456JFIF and more"), "jpg");
  EXPECT_EQ(extensionOf("123456JFIF"), "jpg");
  EXPECT_EQ(extensionOf("12345JFIF."), "tmp");
  EXPECT_EQ(extensionOf("123456JFI"), "tmp");
  EXPECT_EQ(extensionOf("GIF89a"), "gif");
  EXPECT_EQ(extensionOf("GIF456JFIF"), "jpg");
  EXPECT_EQ(extensionOf("BM"), "bmp");
  EXPECT_EQ(extensionOf("RIFF"), "tmp");
  EXPECT_EQ(extensionOf("B"), "tmp");
  EXPECT_EQ(extensionOf(""), "tmp");
}

TEST(Extraction, TakesAFilesExtensionFromItsFront) {
  const Extract extract = ExtractOf(ContentKind::kFile, "\3docthe data");
  EXPECT_EQ(extract.extension, "doc");
  EXPECT_EQ(extract.data, "the data");
  const Extract bare = ExtractOf(ContentKind::kFile, std::string_view("\0data", 5));
  EXPECT_EQ(bare.extension, "");
  EXPECT_EQ(bare.data, "data");
}

TEST(Extraction, OfACellShorterThanItsExtensionTakesWhatThereIs) {
  const Extract cut = ExtractOf(ContentKind::kFile, "\377do");
  EXPECT_EQ(cut.extension, "do");
  EXPECT_EQ(cut.data, "");
  EXPECT_EQ(ExtractOf(ContentKind::kFile, "").extension, "");
}

TEST(Extraction, LeadsNowhereElse) {
  EXPECT_EQ(ExtractOf(ContentKind::kFile, "\13/../../x\\y:").extension, "_.._.._x_y_");
  EXPECT_EQ(ExtractOf(ContentKind::kFile, std::string_view("\3a\0\nz", 5)).extension, "a__");
}

TEST(Extraction, NamesFilesByTimeRecordAndField) {
  EXPECT_EQ(ExtractName(51234, 12, 3, "jpg"), "_1234-12x3.jpg");
  EXPECT_EQ(ExtractName(70005, 1, 1, "gif"), "_0005-1x1.gif");
  EXPECT_EQ(ExtractName(57, 2, 10, ""), "_57-2x10.");
}

}  // namespace
}  // namespace orv::exchange
