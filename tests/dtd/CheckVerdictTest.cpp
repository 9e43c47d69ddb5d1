// A check and a read of the same file come to the same verdict: packed files
// and other encodings are validated as the read decodes them, and a hostile
// nesting ends the validation at once instead of taking time that grows
// with its depth.
#include "DtdTestSupport.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"

#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filtering_stream.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

using test::boardText;
using test::findingCount;
using test::kSchemaDir;
using test::MessageRecorder;
using test::ScratchDir;

namespace {

std::string gzipOf(const std::string &text) {
  std::ostringstream packed;
  {
    boost::iostreams::filtering_ostream out;
    out.push(boost::iostreams::gzip_compressor());
    out.push(packed);
    out << text;
  }
  return packed.str();
}

// UTF-16 with a byte order mark, as an editor writes it; the text is ASCII.
std::string utf16Of(const std::string &text, bool littleEndian) {
  std::string out = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
  for (char c : text) {
    out += littleEndian ? c : '\0';
    out += littleEndian ? '\0' : c;
  }
  return out;
}

bool readVerdict(const std::string &file) {
  HBOBoard board;
  return HBOParser().parseFile(file, &board);
}

bool checkVerdict(const std::string &file) {
  HBOBoard board;
  return HBOBoardParser().parseFile(file, &board, true, kSchemaDir, nullptr);
}

} // namespace

TEST(CheckVerdict, PackedAndUtf16FilesAreCheckedAsTheyAreRead) {
  ScratchDir dir;
  const std::string good = boardText("");
  // The unknown element stands on line 4 whatever the form of the file.
  const std::string bad = boardText("  <gadget/>\n");
  struct Form {
    const char *name;
    std::string (*encode)(const std::string &);
  };
  const Form forms[] = {
      {"packed", [](const std::string &t) { return gzipOf(t); }},
      {"utf16le", [](const std::string &t) { return utf16Of(t, true); }},
      {"utf16be", [](const std::string &t) { return utf16Of(t, false); }},
  };
  for (const Form &form : forms) {
    SCOPED_TRACE(form.name);
    MessageRecorder msgs;
    const std::string goodFile =
        dir.write(std::string(form.name) + "/good/board.xml", form.encode(good));
    EXPECT_TRUE(readVerdict(goodFile));
    EXPECT_TRUE(checkVerdict(goodFile));
    EXPECT_EQ(0u, findingCount(msgs));

    const std::string badFile =
        dir.write(std::string(form.name) + "/bad/board.xml", form.encode(bad));
    EXPECT_FALSE(checkVerdict(badFile));
    const ComMsgRecord *finding = msgs.find("49-105");
    ASSERT_NE(nullptr, finding);
    EXPECT_EQ(badFile, finding->placeFile);
    EXPECT_EQ(4u, finding->placeLine);
    EXPECT_EQ(0u, msgs.count("49-162"));
  }
}

TEST(CheckVerdict, ADamagedPackedFileIsToldAsSuch) {
  ScratchDir dir;
  std::string packed = gzipOf(boardText(""));
  packed.resize(packed.size() / 2);
  const std::string file = dir.write("board.xml", packed);
  MessageRecorder msgs;
  EXPECT_FALSE(checkVerdict(file));
  // The reason that a read gives, not that no root element was found.
  ASSERT_EQ(1u, msgs.count("49-180"));
  EXPECT_EQ(file, msgs.find("49-180")->placeFile);
  EXPECT_EQ(0u, msgs.count("49-162"));
}

TEST(CheckVerdict, DeepNestingEndsTheValidationAtOnce) {
  ScratchDir dir;
  const int depth = 200000;
  std::string body;
  for (int i = 0; i < depth; ++i)
    body += "<description>";
  for (int i = 0; i < depth; ++i)
    body += "</description>";
  const std::string file = dir.write("board.xml", boardText(body + "\n"));
  MessageRecorder msgs;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(checkVerdict(file));
  const auto took = std::chrono::steady_clock::now() - start;
  // Quadratic in the depth, this took tens of seconds.
  EXPECT_LT(took, std::chrono::seconds(3));
  EXPECT_TRUE(msgs.mentions("nest more than 1000 levels"));
  EXPECT_EQ(1u, msgs.count("49-105"));
}
