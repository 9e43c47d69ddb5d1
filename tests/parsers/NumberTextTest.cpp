// The readers' number conversions must accept exactly what lexical_cast
// accepted before them, with the same values: board files in the field rely
// on it, and a delay that once failed a read must still fail it.
#include "HBOParseContext.h"

#include <boost/lexical_cast.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

template <typename T> bool castOk(const std::string &text, T &out) {
  try {
    out = boost::lexical_cast<T>(text);
    return true;
  } catch (const boost::bad_lexical_cast &) {
    return false;
  }
}

void expectSameFloat(const std::string &text) {
  float expected = 0.0f, actual = 0.0f;
  const bool expectedOk = castOk(text, expected);
  ASSERT_EQ(HBOParseContext::parseFloat(text, actual), expectedOk) << '"' << text << '"';
  if (!expectedOk)
    return;
  if (std::isnan(expected)) {
    EXPECT_TRUE(std::isnan(actual)) << text;
    EXPECT_EQ(std::signbit(actual), std::signbit(expected)) << text;
  } else {
    EXPECT_EQ(std::memcmp(&actual, &expected, sizeof(float)), 0)
        << '"' << text << "\" " << actual << " != " << expected;
  }
}

void expectSameInt(const std::string &text) {
  int expected = 0, actual = 0;
  const bool expectedOk = castOk(text, expected);
  ASSERT_EQ(HBOParseContext::parseInt(text, actual), expectedOk) << '"' << text << '"';
  if (expectedOk) {
    EXPECT_EQ(actual, expected) << text;
  }
}

const std::vector<std::string> kEdgeCases = {"",
                                             "0",
                                             "-0",
                                             "+0",
                                             "1",
                                             "+1",
                                             "-1",
                                             "0.25",
                                             ".5",
                                             "5.",
                                             ".",
                                             "-.5",
                                             "+.5",
                                             "1e3",
                                             "1E-3",
                                             "1e+3",
                                             "1e",
                                             "1E",
                                             "1e+",
                                             "1e-",
                                             "1.5e",
                                             "e5",
                                             ".e1",
                                             "1.2.3",
                                             "1e5e",
                                             "1-2",
                                             "+-1",
                                             "--1",
                                             "++1",
                                             "+",
                                             "-",
                                             " 1",
                                             "1 ",
                                             "\t1",
                                             "1\n",
                                             "0x10",
                                             "0X1p3",
                                             "1f",
                                             "1.0f",
                                             "1,5",
                                             "007",
                                             "00.100",
                                             "3.4028235e38",
                                             "3.5e38",
                                             "-3.5e38",
                                             "1e39",
                                             "1e-39",
                                             "1e-46",
                                             "1e-400",
                                             "123456789012345678901234567890",
                                             "0.000000000000000000000000000000000001",
                                             "2147483647",
                                             "2147483648",
                                             "-2147483648",
                                             "-2147483649",
                                             "4294967296",
                                             "99999999999",
                                             "inf",
                                             "INF",
                                             "-inf",
                                             "+Inf",
                                             "infinity",
                                             "-INFINITY",
                                             "infin",
                                             "infinityy",
                                             "in",
                                             "nan",
                                             "NaN",
                                             "-nan",
                                             "+NAN",
                                             "nan()",
                                             "nan(123)",
                                             "nan(x y)",
                                             "nan(",
                                             "nan)",
                                             "nan(1",
                                             "nanx",
                                             "na",
                                             " nan",
                                             "nan ",
                                             "inf ",
                                             "1 2",
                                             "1_000",
                                             "٣"};

} // namespace

TEST(NumberText, FloatsAsLexicalCastReadsThem) {
  for (const std::string &text : kEdgeCases)
    expectSameFloat(text);
  // Random texts of the characters that matter, for the combinations a list
  // misses.
  const char alphabet[] = "0123456789+-.eEinfaINFAty() x";
  std::mt19937 random(7);
  for (int n = 0; n < 40000; ++n) {
    std::string text(1 + random() % 9, ' ');
    for (char &c : text)
      c = alphabet[random() % (sizeof(alphabet) - 1)];
    expectSameFloat(text);
  }
}

TEST(NumberText, IntsAsLexicalCastReadsThem) {
  for (const std::string &text : kEdgeCases)
    expectSameInt(text);
  const char alphabet[] = "0123456789+- .e";
  std::mt19937 random(11);
  for (int n = 0; n < 20000; ++n) {
    std::string text(1 + random() % 12, ' ');
    for (char &c : text)
      c = alphabet[random() % (sizeof(alphabet) - 1)];
    expectSameInt(text);
  }
}
