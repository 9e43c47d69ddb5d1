#include "KqStream.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <fstream>
#include <sstream>
#include <tuple>

using isl::iostreams::filtering_stream;
using isl::iostreams::kq::is_kq_format;

namespace {

void writeGzip(const std::string &path, const std::string &content) {
  gzFile out = gzopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  if (!content.empty()) {
    ASSERT_EQ(gzwrite(out, content.data(), static_cast<unsigned>(content.size())),
              static_cast<int>(content.size()));
  }
  ASSERT_EQ(gzclose(out), Z_OK);
}

std::string readAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

std::vector<std::string> lines(std::istream &in) {
  std::vector<std::string> out;
  std::string line;
  while (std::getline(in, line))
    out.push_back(line);
  return out;
}

// Big enough to cross the decoder's buffers several times, with an empty
// line, a CR and a last line without a new line.
std::string sampleText() {
  std::string text = "<?xml version=\"1.0\"?>\n<board>\n\n";
  for (int i = 0; i < 20000; ++i)
    text += "  <pin index=\"" + std::to_string(i) + "\" loc=\"A" + std::to_string(i) + "\"/>\r\n";
  text += "</board>";
  return text;
}

} // namespace

TEST(KqStream, ReadsLineByLineLikeThePlainFile) {
  test::ScratchDir dir;
  std::string text = sampleText();
  dir.write("plain.xml", text);
  writeGzip(dir.file("packed.xml"), text);

  std::ifstream plain(dir.file("plain.xml"));
  filtering_stream packed(dir.file("packed.xml"));
  ASSERT_TRUE(packed.isOpen());
  ASSERT_TRUE(packed.good());
  // Compared whole, not printed: twenty thousand lines.
  EXPECT_TRUE(lines(packed) == lines(plain));
  EXPECT_TRUE(packed.eof());
  EXPECT_FALSE(packed.bad());
  EXPECT_TRUE(packed.getError().empty());
}

TEST(KqStream, FormatIsToldByTheFirstTwoBytes) {
  test::ScratchDir dir;
  dir.write("plain.xml", "<board/>");
  writeGzip(dir.file("packed.xml"), "<board/>");
  dir.write("empty", "");
  dir.write("one", "\x1f");
  dir.write("magic-only", "\x1f\x8b");
  EXPECT_FALSE(is_kq_format(dir.file("plain.xml")));
  EXPECT_TRUE(is_kq_format(dir.file("packed.xml")));
  EXPECT_FALSE(is_kq_format(dir.file("empty")));
  EXPECT_FALSE(is_kq_format(dir.file("one")));
  EXPECT_TRUE(is_kq_format(dir.file("magic-only")));
  EXPECT_FALSE(is_kq_format(dir.file("missing")));
  EXPECT_FALSE(is_kq_format(dir.path()));
  EXPECT_FALSE(is_kq_format(""));

  // An empty packed file is packed, and has no lines.
  writeGzip(dir.file("empty.gz"), "");
  ASSERT_TRUE(is_kq_format(dir.file("empty.gz")));
  filtering_stream in(dir.file("empty.gz"));
  EXPECT_TRUE(in.isOpen());
  EXPECT_TRUE(lines(in).empty());
  EXPECT_FALSE(in.bad());
}

TEST(KqStream, UnopenableFileFailsAtOnceAndOnlyAskedForThrows) {
  test::ScratchDir dir;
  filtering_stream in(dir.file("missing.gz"));
  EXPECT_FALSE(in.isOpen());
  EXPECT_TRUE(in.fail());
  std::string line;
  EXPECT_FALSE(std::getline(in, line));

  // A directory may open, but it yields nothing and the stream goes bad.
  filtering_stream folder(dir.path());
  EXPECT_FALSE(std::getline(folder, line));
  EXPECT_TRUE(folder.fail());

  // Damage throws only when the stream is asked to.
  dir.write("not-gzip", "plain text\n");
  filtering_stream throwing(dir.file("not-gzip"));
  throwing.exceptions(std::ios::badbit);
  EXPECT_ANY_THROW(std::getline(throwing, line));
}

TEST(KqStream, DamagedFilesEndTheStreamWithoutCrashing) {
  test::ScratchDir dir;
  std::string text = sampleText();
  writeGzip(dir.file("good.gz"), text);
  std::string packed = readAll(dir.file("good.gz"));
  ASSERT_GT(packed.size(), 100u);

  std::string flipped = packed;
  for (std::size_t i = packed.size() / 3; i < packed.size() / 3 + 64; ++i)
    flipped[i] = static_cast<char>(~flipped[i]);
  std::string badCrc = packed;
  badCrc[badCrc.size() - 6] = static_cast<char>(~badCrc[badCrc.size() - 6]);

  // The name of each case, its bytes, and the reason it must be given (any,
  // for flipped bytes: they may still decode, and then the CRC tells).
  const std::tuple<const char *, std::string, const char *> cases[] = {
      {"truncated", packed.substr(0, packed.size() / 2), "the packed stream is truncated"},
      {"no-footer", packed.substr(0, packed.size() - 4), "the packed stream is truncated"},
      {"header-only", packed.substr(0, 10), "the packed stream is truncated"},
      {"magic-only", packed.substr(0, 2), "the packed stream is truncated"},
      {"flipped", flipped, ""},
      {"bad-crc", badCrc, "bad CRC: the unpacked data is damaged"},
      {"not-gzip", "<board/>\n", "it is not gzip data"},
      {"trailing-text", packed + "tail", "data after the packed stream is not gzip"},
  };
  std::vector<std::string> all;
  {
    std::istringstream whole(text);
    all = lines(whole);
  }
  for (const auto &[name, bytes, reason] : cases) {
    SCOPED_TRACE(name);
    dir.write(name, bytes);
    filtering_stream in(dir.file(name));
    ASSERT_TRUE(in.isOpen());
    std::vector<std::string> got = lines(in);
    EXPECT_TRUE(in.bad());
    EXPECT_FALSE(in.getError().empty());
    EXPECT_EQ(in.getError().rfind(reason, 0), 0u) << in.getError();
    // Whatever came out before the damage is the real beginning.
    ASSERT_LE(got.size(), all.size());
    if (!got.empty() && std::string(name) != "flipped") {
      EXPECT_EQ(got.front(), all.front());
    }
  }
}

// Two members one after the other are one file, as a file packed in pieces.
TEST(KqStream, MembersFollowingEachOtherAreOneText) {
  test::ScratchDir dir;
  writeGzip(dir.file("a.gz"), "<board>\n");
  writeGzip(dir.file("b.gz"), "</board>\n");
  dir.write("both.gz", readAll(dir.file("a.gz")) + readAll(dir.file("b.gz")));
  filtering_stream in(dir.file("both.gz"));
  EXPECT_EQ(lines(in), (std::vector<std::string>{"<board>", "</board>"}));
  EXPECT_FALSE(in.bad());
}
