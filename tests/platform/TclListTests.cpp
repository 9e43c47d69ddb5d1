#include "HTCTaskHelpers.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::string toHex(const std::string &s) {
  static const char digits[] = "0123456789abcdef";
  std::string out;
  for (unsigned char c : s) {
    out += digits[c >> 4];
    out += digits[c & 0xF];
  }
  return out;
}

std::string fromHex(const std::string &hex) {
  std::string out;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    out += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  return out;
}

// Asks the real Tcl how it quotes each text as the one element of a list.
// Texts travel as hex so that no byte is lost on the way. Empty when tclsh
// cannot be run.
std::vector<std::string> tclQuote(const std::vector<std::string> &texts) {
  test::ScratchDir dir;
  std::string input;
  for (const std::string &t : texts)
    input += toHex(t) + "\n";
  dir.write("in.txt", input);
  dir.write("quote.tcl", "set f [open [lindex $argv 0]]\n"
                         "while {[gets $f hex] >= 0} {\n"
                         "  set s [encoding convertfrom iso8859-1 [binary decode hex $hex]]\n"
                         "  puts [binary encode hex [encoding convertto iso8859-1 [list $s]]]\n"
                         "}\n");
  bool ok = false;
  std::vector<std::string> out = test::outputLines(
      "tclsh8.6 " + dir.file("quote.tcl") + " " + dir.file("in.txt") + " 2>/dev/null", ok);
  if (!ok || out.size() != texts.size())
    return {};
  for (std::string &line : out)
    line = fromHex(line);
  return out;
}

} // namespace

TEST(TclBrace, QuotesExactlyAsTclDoes) {
  std::vector<std::string> texts = {
      "",
      "a",
      "a b",
      " ",
      "\t",
      "\n",
      "a\nb",
      "{",
      "}",
      "{}",
      "}{",
      "{a}",
      "{a",
      "a}",
      "a{b}c",
      "{a b}",
      "[",
      "]",
      "a]",
      "a[b]",
      "$x",
      "a$",
      ";",
      "a;b",
      "\"",
      "\"a\"",
      "a\"b",
      "#",
      "#a",
      "a#",
      "#{",
      "#}",
      "#]",
      "# a",
      "\\",
      "a\\",
      "\\a",
      "\\{",
      "\\}",
      "\\\\",
      "a\\\nb",
      "\\\n",
      "{\\}",
      "\\{a",
      "a\\}",
      "x\\ y",
      "\f\v\r",
      "]{}",
      "a]{",
      "]\"{}",
      "\"{",
      "\xC3\xA4 \xE2\x82\xAC",
      "\xff",
      std::string("a\0b", 3),
      "{{}}",
      "}}{{",
      "{ }",
      "a}{b",
      "quarnel-ip:interface:diff_clock_rtl:1.0",
      "{a true}} {b false}",
  };
  // Random texts over the characters that matter.
  const std::string alphabet = "ab {}[]$;\\\"#\t\n\r\f\v";
  std::mt19937 rng(2024);
  for (int i = 0; i < 3000; ++i) {
    std::string t;
    int len = static_cast<int>(rng() % 8);
    for (int k = 0; k < len; ++k)
      t += alphabet[rng() % alphabet.size()];
    texts.push_back(t);
  }
  std::vector<std::string> expected = tclQuote(texts);
  if (expected.empty())
    GTEST_SKIP() << "tclsh8.6 is not available";
  int mismatches = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    std::string got = HTCTaskHelpers::brace(texts[i]);
    if (got != expected[i] && ++mismatches <= 10)
      ADD_FAILURE() << "text [" << texts[i] << "]: ours [" << got << "], Tcl's [" << expected[i]
                    << "]";
  }
  EXPECT_EQ(mismatches, 0);
}
