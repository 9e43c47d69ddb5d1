#include "HBOScriptFilter.h"
#include "HCPProperty.h"

#include <gtest/gtest.h>

#include <map>

namespace {

// Properties of an imaginary component, by upper-case name.
const std::map<std::string, std::string> kProps = {{"NAME", "usb_uart"},
                                                   {"TYPE", "chip"},
                                                   {"IS_ENABLED", "true"},
                                                   {"WIDTH", "16"},
                                                   {"DESCRIPTION", "USB to UART bridge"},
                                                   {"EMPTY", ""}};

bool eval(const std::string &expr, bool nocase = false) {
  HBOScriptFilter filter(expr, nocase);
  return filter.matches([](const std::string &name) {
    std::string upper;
    for (char c : name)
      upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    auto it = kProps.find(upper);
    return it == kProps.end() ? std::string() : it->second;
  });
}

TEST(ScriptFilter, OperatorsCombineAsScriptsExpect) {
  struct Case {
    const char *expr;
    bool expected;
  } cases[] = {
      {"NAME == usb_uart", true},
      {"name == \"usb_uart\"", true},
      {"NAME != usb_uart", false},
      {"NAME =~ *uart*", true},
      {"NAME !~ usb*", false},
      {"DESCRIPTION == \"USB to UART bridge\"", true},
      {"DESCRIPTION == {USB to UART bridge}", true},
      {"IS_ENABLED == 1", true},
      {"IS_ENABLED", true},
      {"!IS_ENABLED", false},
      {"WIDTH > 8 && WIDTH <= 16", true},
      {"WIDTH < 8", false},
      {"NAME > 3", false},
      {"EMPTY == \"\"", true},
      {"UNKNOWN == \"\"", true},
      {"TYPE == fpga || TYPE == chip", true},
      {"TYPE == fpga || TYPE == chip && IS_ENABLED == false", false},
      {"(TYPE == fpga || TYPE == chip) && !(IS_ENABLED == false)", true},
      {"TYPE==chip&&NAME=~usb*", true},
  };
  for (const Case &c : cases)
    EXPECT_EQ(c.expected, eval(c.expr)) << c.expr;
  EXPECT_FALSE(eval("NAME == USB_UART"));
  EXPECT_TRUE(eval("NAME == USB_UART", true));
}

TEST(ScriptFilter, BadExpressionsSayWhere) {
  for (const char *bad : {"", "NAME ==", "NAME usb", "(NAME == a", "NAME == a)", "NAME == \"open",
                          "&& NAME == a", "NAME == a ||"}) {
    try {
      HBOScriptFilter filter(bad);
      ADD_FAILURE() << "accepted: " << bad;
    } catch (const HCPProperty::Error &e) {
      EXPECT_NE(std::string::npos, std::string(e.what()).find("character")) << e.what();
    }
  }
}

std::string depthError(const std::string &expr) {
  try {
    HBOScriptFilter filter(expr);
  } catch (const HCPProperty::Error &e) {
    return e.what();
  }
  return "accepted";
}

// What a user writes drives the recursion: nesting is bounded, flat chains
// are not nesting at all, and a huge expression is not quoted whole.
TEST(ScriptFilter, NestingIsBoundedAndChainsAreFlat) {
  auto nested = [](int depth) {
    return std::string(depth, '(') + "NAME == usb_uart" + std::string(depth, ')');
  };
  EXPECT_TRUE(eval(nested(256)));
  EXPECT_TRUE(
      eval(std::string(128, '!') + std::string(128, '(') + "IS_ENABLED" + std::string(128, ')')));
  for (const std::string &deep :
       {nested(257), nested(20000), std::string(100000, '!') + "IS_ENABLED",
        std::string(129, '!') + std::string(128, '(') + "IS_ENABLED" + std::string(128, ')')}) {
    std::string error = depthError(deep);
    EXPECT_NE(std::string::npos, error.find("the filter is too deep")) << error.substr(0, 200);
    EXPECT_LT(error.size(), 300u);
  }

  std::string chain;
  for (int i = 0; i < 100000; ++i)
    chain += "NAME == x" + std::to_string(i) + (i % 2 ? " && TYPE == chip || " : " || ");
  EXPECT_TRUE(eval(chain + "NAME == usb_uart"));
  EXPECT_FALSE(eval(chain + "NAME == other"));
}

TEST(ScriptFilter, GlobsMatchAsTclStringMatch) {
  struct Case {
    const char *pattern, *text;
    bool expected;
  } cases[] = {
      {"*", "", true},          {"*", "abc", true},
      {"a*c", "abbbc", true},   {"a*c", "abcd", false},
      {"?b?", "abc", true},     {"[a-c]x", "bx", true},
      {"[a-c]x", "dx", false},  {"\\*", "*", true},
      {"\\*", "a", false},      {"*sample*", "kestrel-boards:sample_kit:1.0", true},
      {"*:*:*", "a:b:c", true}, {"a**b", "ab", true},
      {"", "", true},           {"", "a", false},
  };
  for (const Case &c : cases)
    EXPECT_EQ(c.expected, HBOScriptFilter::globMatch(c.pattern, c.text))
        << c.pattern << " ~ " << c.text;
  EXPECT_TRUE(HBOScriptFilter::globMatch("USB*", "usb_uart", true));
}

} // namespace
