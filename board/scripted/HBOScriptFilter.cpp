#include "HBOScriptFilter.h"

#include "HCPProperty.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"

#include <cctype>
#include <vector>

// A chain of && or || is one node with all its terms, so that a long flat
// chain costs no depth; only parentheses and ! nest, and they are bounded.
struct HBOScriptFilter::Node {
  enum Kind { And, Or, Not, Compare, Truth } kind;
  std::string op;
  std::string property;
  std::string value;
  std::vector<std::unique_ptr<Node>> terms;
};

namespace {

using Node = HBOScriptFilter::Node;

// Every ( and ! is one level of the parser's and the evaluator's recursion:
// far above what anyone writes, far below what overflows a thread's stack.
constexpr int kMaxDepth = 256;
// Longer expressions are cut in messages.
constexpr std::size_t kQuotedLength = 80;

class Parser {
public:
  explicit Parser(const std::string &text) : m_text(text) {}

  std::unique_ptr<Node> parse() {
    skip();
    if (atEnd())
      fail("the filter is empty");
    auto node = parseOr();
    skip();
    if (!atEnd())
      fail("unexpected '" + m_text.substr(m_pos, 12) + "'");
    return node;
  }

private:
  [[noreturn]] void fail(const std::string &what) const {
    std::string quoted =
        m_text.size() > kQuotedLength ? m_text.substr(0, kQuotedLength) + "..." : m_text;
    throw HCPProperty::Error("Bad filter expression \"" + quoted + "\" at character " +
                             std::to_string(m_pos + 1) + ": " + what + ".");
  }
  void enter() {
    if (++m_depth > kMaxDepth)
      fail("the filter is too deep, it nests more than " + std::to_string(kMaxDepth) +
           " parentheses and ! operators");
  }
  bool atEnd() const { return m_pos >= m_text.size(); }
  void skip() {
    while (!atEnd() && std::isspace(static_cast<unsigned char>(m_text[m_pos])))
      ++m_pos;
  }
  bool take(const char *token) {
    skip();
    std::size_t n = std::char_traits<char>::length(token);
    if (m_text.compare(m_pos, n, token) == 0) {
      m_pos += n;
      return true;
    }
    return false;
  }

  std::unique_ptr<Node> parseOr() { return parseChain(Node::Or, "||", &Parser::parseAnd); }
  std::unique_ptr<Node> parseAnd() { return parseChain(Node::And, "&&", &Parser::parseUnary); }

  // Terms parsed by \p term and joined by \p op: one node of \p kind for
  // all of them, or the term itself when it stands alone.
  std::unique_ptr<Node> parseChain(Node::Kind kind, const char *op,
                                   std::unique_ptr<Node> (Parser::*term)()) {
    auto first = (this->*term)();
    if (!take(op))
      return first;
    auto node = std::make_unique<Node>();
    node->kind = kind;
    node->terms.push_back(std::move(first));
    do
      node->terms.push_back((this->*term)());
    while (take(op));
    return node;
  }

  std::unique_ptr<Node> parseUnary() {
    skip();
    if (m_pos + 1 < m_text.size() && m_text[m_pos] == '!' && m_text[m_pos + 1] != '=' &&
        m_text[m_pos + 1] != '~') {
      enter();
      ++m_pos;
      auto node = std::make_unique<Node>();
      node->kind = Node::Not;
      node->terms.push_back(parseUnary());
      --m_depth;
      return node;
    }
    if (!atEnd() && m_text[m_pos] == '(') {
      enter();
      ++m_pos;
      auto inner = parseOr();
      if (!take(")"))
        fail("missing ')'");
      --m_depth;
      return inner;
    }
    return parseComparison();
  }

  std::string word() {
    skip();
    std::size_t start = m_pos;
    while (!atEnd()) {
      char c = m_text[m_pos];
      if (std::isspace(static_cast<unsigned char>(c)) || c == '(' || c == ')' || c == '=' ||
          c == '!' || c == '<' || c == '>' || c == '"' || c == '&' || c == '|')
        break;
      ++m_pos;
    }
    return m_text.substr(start, m_pos - start);
  }

  std::string value() {
    skip();
    if (!atEnd() && (m_text[m_pos] == '"' || m_text[m_pos] == '{')) {
      char close = m_text[m_pos] == '"' ? '"' : '}';
      std::size_t start = ++m_pos;
      std::string out;
      while (!atEnd() && m_text[m_pos] != close) {
        if (m_text[m_pos] == '\\' && close == '"' && m_pos + 1 < m_text.size())
          ++m_pos;
        out += m_text[m_pos++];
      }
      if (atEnd()) {
        m_pos = start - 1;
        fail("unterminated quoted value");
      }
      ++m_pos;
      return out;
    }
    std::size_t start = m_pos;
    while (!atEnd()) {
      char c = m_text[m_pos];
      if (std::isspace(static_cast<unsigned char>(c)) || c == ')' ||
          m_text.compare(m_pos, 2, "&&") == 0 || m_text.compare(m_pos, 2, "||") == 0)
        break;
      ++m_pos;
    }
    if (m_pos == start)
      fail("a value is missing");
    return m_text.substr(start, m_pos - start);
  }

  std::unique_ptr<Node> parseComparison() {
    std::string property = word();
    if (property.empty())
      fail(atEnd() ? "a property name is missing at the end" : "a property name is expected");
    auto node = std::make_unique<Node>();
    node->property = property;
    static const char *const ops[] = {"==", "!=", "=~", "!~", "<=", ">=", "<", ">"};
    for (const char *op : ops) {
      if (take(op)) {
        node->kind = Node::Compare;
        node->op = op;
        node->value = value();
        return node;
      }
    }
    skip();
    if (!atEnd() && m_text[m_pos] != ')' && m_text.compare(m_pos, 2, "&&") != 0 &&
        m_text.compare(m_pos, 2, "||") != 0)
      fail("an operator (==, !=, =~, !~, <, <=, >, >=) is expected after '" + property + "'");
    node->kind = Node::Truth;
    return node;
  }

  const std::string &m_text;
  std::size_t m_pos = 0;
  int m_depth = 0;
};

bool asNumber(const std::string &text, double &out) {
  return !text.empty() && HUTConvert::stringToDouble(text, out);
}

bool evaluate(const Node &node, const HBOScriptFilter::PropertyReader &read, bool nocase) {
  switch (node.kind) {
  case Node::And:
    for (const auto &term : node.terms)
      if (!evaluate(*term, read, nocase))
        return false;
    return true;
  case Node::Or:
    for (const auto &term : node.terms)
      if (evaluate(*term, read, nocase))
        return true;
    return false;
  case Node::Not:
    return !evaluate(*node.terms.front(), read, nocase);
  case Node::Truth: {
    bool value = false;
    return HUTConvert::stringToBoolean(read(node.property), value, false) && value;
  }
  case Node::Compare:
    break;
  }
  std::string actual = read(node.property);
  const std::string &op = node.op;
  if (op == "==" || op == "!=") {
    bool equal = nocase ? HSTStringUtils::iequals(actual, node.value) : actual == node.value;
    // Booleans compare by meaning: "1" equals "true".
    bool a = false, b = false;
    if (!equal && HUTConvert::stringToBoolean(actual, a, false) &&
        HUTConvert::stringToBoolean(node.value, b, false))
      equal = a == b;
    return op == "==" ? equal : !equal;
  }
  if (op == "=~" || op == "!~") {
    bool match = HBOScriptFilter::globMatch(node.value, actual, nocase);
    return op == "=~" ? match : !match;
  }
  double x = 0, y = 0;
  if (!asNumber(actual, x) || !asNumber(node.value, y))
    return false;
  if (op == "<")
    return x < y;
  if (op == "<=")
    return x <= y;
  if (op == ">")
    return x > y;
  return x >= y;
}

char fold(char c, bool nocase) {
  return nocase ? static_cast<char>(std::tolower(static_cast<unsigned char>(c))) : c;
}

} // namespace

HBOScriptFilter::HBOScriptFilter(const std::string &expression, bool nocase)
    : m_root(Parser(expression).parse()), m_nocase(nocase) {}

HBOScriptFilter::~HBOScriptFilter() = default;

bool HBOScriptFilter::matches(const PropertyReader &read) const {
  return evaluate(*m_root, read, m_nocase);
}

bool HBOScriptFilter::globMatch(const std::string &pattern, const std::string &text, bool nocase) {
  // Iterative matcher with one backtrack point for the latest '*'.
  std::size_t p = 0, t = 0, starP = std::string::npos, starT = 0;
  while (t < text.size()) {
    if (p < pattern.size()) {
      char pc = pattern[p];
      if (pc == '*') {
        starP = p++;
        starT = t;
        continue;
      }
      if (pc == '?') {
        ++p;
        ++t;
        continue;
      }
      if (pc == '[') {
        std::size_t q = p + 1;
        bool matched = false;
        char c = fold(text[t], nocase);
        while (q < pattern.size() && pattern[q] != ']') {
          char lo = fold(pattern[q], nocase), hi = lo;
          if (q + 2 < pattern.size() && pattern[q + 1] == '-' && pattern[q + 2] != ']') {
            hi = fold(pattern[q + 2], nocase);
            q += 2;
          }
          if ((lo <= c && c <= hi) || (hi <= c && c <= lo))
            matched = true;
          ++q;
        }
        if (matched && q < pattern.size()) {
          p = q + 1;
          ++t;
          continue;
        }
      } else {
        std::size_t width = 1;
        if (pc == '\\' && p + 1 < pattern.size()) {
          pc = pattern[p + 1];
          width = 2;
        }
        if (fold(pc, nocase) == fold(text[t], nocase)) {
          p += width;
          ++t;
          continue;
        }
      }
    }
    if (starP == std::string::npos)
      return false;
    p = starP + 1;
    t = ++starT;
  }
  while (p < pattern.size() && pattern[p] == '*')
    ++p;
  return p == pattern.size();
}
