// The parts of the catalog site that its pages rest on: page file names
// made from board names, escaping, and whole-file writes.
#include "SiteHtml.h"
#include "SiteOutput.h"
#include "SitePageNames.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <sys/stat.h>

using boardtool::SiteHtml;
using boardtool::SiteOutput;
using boardtool::SitePageNames;

namespace {

const HBOBoard *fakeBoard(std::size_t n) { return reinterpret_cast<const HBOBoard *>(n * 16); }

bool safeFileName(const std::string &name) {
  if (name.empty() || name[0] == '.' || name.find("..") != std::string::npos)
    return false;
  for (char c : name)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_' && c != '.')
      return false;
  return true;
}

std::string slurp(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

} // namespace

TEST(SitePageNames, NamesFromAnyBoardNameAreSafeAndUnique) {
  const std::vector<std::string> names = {
      "kestrel-boards:sample_kit:1.0",
      "acme:odd/name:1.0",
      "acme:odd:name:1.0", // the same stem as the one before
      "ACME:ODD/NAME:1.0", // the same but for case
      "acme_odd_name_1.0", // what the first of them becomes
      "..",
      "../../etc/passwd",
      "a..b",
      "name.",
      "",
      "<script>alert(1)</script>",
      "\xC3\xA9t\xC3\xA9", // UTF-8
      std::string(400, 'x'),
      "index", // no clash with the index, which is one folder up
  };
  SitePageNames pages;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string page = pages.assign(fakeBoard(i + 1), names[i]);
    EXPECT_TRUE(safeFileName(page)) << "'" << names[i] << "' gave '" << page << "'";
    EXPECT_LE(page.size(), 255u);
    std::string lower = page;
    for (char &c : lower)
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_TRUE(seen.insert(lower).second) << "'" << page << "' given twice";
  }
  EXPECT_EQ("kestrel-boards_sample_kit_1.0.html", pages.pageOf(fakeBoard(1)));
  EXPECT_EQ("acme_odd_name_1.0.html", pages.pageOf(fakeBoard(2)));
  EXPECT_EQ("acme_odd_name_1.0-2.html", pages.pageOf(fakeBoard(3)));
  // A board keeps its page; one never named has none.
  EXPECT_EQ("acme_odd_name_1.0.html", pages.assign(fakeBoard(2), "other"));
  EXPECT_EQ("", pages.pageOf(fakeBoard(999)));
  EXPECT_EQ(names.size(), pages.size());
}

TEST(SiteHtml, BoardTextsStayText) {
  EXPECT_EQ("&lt;script&gt;alert(1)&lt;/script&gt;", SiteHtml::escape("<script>alert(1)</script>"));
  EXPECT_EQ("&quot;&gt;&lt;img src=x onerror=alert(1)&gt;",
            SiteHtml::escape("\"><img src=x onerror=alert(1)>"));
  EXPECT_EQ("a &amp; b &#39;c&#39;", SiteHtml::escape("a & b 'c'"));
  EXPECT_EQ("<a href=\"p&quot;.html\">&lt;b&gt;</a>", SiteHtml::link("p\".html", "<b>"));
  // Only web addresses become links.
  EXPECT_EQ("javascript:alert(1)", SiteHtml::externalLink("javascript:alert(1)"));
  EXPECT_EQ(" JavaScript:x", SiteHtml::externalLink(" JavaScript:x"));
  EXPECT_EQ("<a href=\"HTTPS://x.org/?a=1&amp;b=2\" rel=\"noreferrer\">"
            "HTTPS://x.org/?a=1&amp;b=2</a>",
            SiteHtml::externalLink("HTTPS://x.org/?a=1&b=2"));
}

TEST(SiteOutput, WritesWholeFilesAndNamesWhatItCannotWrite) {
  test::ScratchDir scratch;
  const SiteOutput site(scratch.file("out/site"));
  ASSERT_TRUE(site.makeFolder(""));
  ASSERT_TRUE(site.makeFolder("boards"));
  ASSERT_TRUE(site.write("boards/a.html", "first"));
  ASSERT_TRUE(site.write("boards/a.html", "second"));
  EXPECT_EQ("second", slurp(site.path("boards/a.html")));
  // No temporary file is left beside it.
  const auto files = std::filesystem::directory_iterator(site.path("boards"));
  EXPECT_EQ(1, std::distance(begin(files), end(files)));

  test::MessageRecorder messages;
  EXPECT_FALSE(site.write("no_such_folder/b.html", "x"));
  ASSERT_EQ((std::vector<std::string>{"49-220"}), messages.ids());
  EXPECT_TRUE(messages.mentions(site.path("no_such_folder/b.html")));

  // A folder where a file stands cannot be made.
  scratch.write("plain", "text");
  EXPECT_FALSE(SiteOutput(scratch.file("plain")).makeFolder(""));
  EXPECT_FALSE(SiteOutput(scratch.file("plain")).makeFolder("boards"));
  EXPECT_EQ(2u, messages.count("49-221"));
  EXPECT_TRUE(messages.mentions(scratch.file("plain")));
}
