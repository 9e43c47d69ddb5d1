// Filter expressions of the get_board* commands, such as
//   NAME =~ "*uart*" && (IS_ENABLED == true || TYPE != fpga)
// Operators: == != (text), =~ !~ (glob), < <= > >= (numbers), && || ! and
// parentheses; a property alone tests for a true value. Property names ignore
// case. Values are bare words or "quoted" texts.
#ifndef BOARDLIB_HBOSCRIPTFILTER_H
#define BOARDLIB_HBOSCRIPTFILTER_H

#include <functional>
#include <memory>
#include <string>

class HBOScriptFilter {
public:
  /// Gives the text of a property of the object under test.
  using PropertyReader = std::function<std::string(const std::string &name)>;

  /// Parses \p expression; throws HCPProperty::Error naming the position
  /// of a syntax error.
  explicit HBOScriptFilter(const std::string &expression, bool nocase = false);
  ~HBOScriptFilter();
  HBOScriptFilter(const HBOScriptFilter &) = delete;
  HBOScriptFilter &operator=(const HBOScriptFilter &) = delete;

  bool matches(const PropertyReader &read) const;

  /// Tcl's glob matching: * ? [a-z] and \ escapes.
  static bool globMatch(const std::string &pattern, const std::string &text, bool nocase = false);

  struct Node;

private:
  std::unique_ptr<Node> m_root;
  bool m_nocase;
};

#endif
