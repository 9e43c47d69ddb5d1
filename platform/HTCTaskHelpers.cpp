#include "HTCTaskHelpers.h"

namespace {

enum class Quoting {
  None,   // copied as it is
  Brace,  // wrapped in braces
  Escape, // every special character backslash-escaped
  Mask,   // as Escape, but braces are left alone
};

bool isTclSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Decides the quoting the way Tcl's list building does. Braces protect
// everything except unbalanced braces and a backslash at the very end or
// before a new line; those need escapes. When only "]" or '"' ask for
// quoting, Tcl prefers escapes that leave braces alone.
Quoting chooseQuoting(const std::string &s) {
  bool forbidNone = false;
  bool requireEscape = false;
  bool preferEscape = false;
  bool preferBrace = false;
  long nesting = 0;

  // A leading brace or quote would be read as the start of a quoted word.
  if (s[0] == '{' || s[0] == '"') {
    forbidNone = true;
    preferBrace = true;
  }
  const std::string::size_type n = s.size();
  for (std::string::size_type i = 0; i < n; ++i) {
    char c = s[i];
    switch (c) {
    case '{':
      ++nesting;
      break;
    case '}':
      if (--nesting < 0)
        requireEscape = true;
      break;
    case ']':
    case '"':
      forbidNone = true;
      preferEscape = true;
      break;
    case '[':
    case '$':
    case ';':
      forbidNone = true;
      preferBrace = true;
      break;
    case '\\':
      if (i + 1 == n) {
        requireEscape = true;
        break;
      }
      if (s[i + 1] == '\n') {
        requireEscape = true;
        ++i;
        break;
      }
      // An escaped brace or backslash counts as one character, not as
      // nesting.
      if (s[i + 1] == '{' || s[i + 1] == '}' || s[i + 1] == '\\')
        ++i;
      forbidNone = true;
      preferBrace = true;
      break;
    default:
      if (isTclSpace(c)) {
        forbidNone = true;
        preferBrace = true;
      }
      break;
    }
  }
  if (nesting != 0)
    requireEscape = true;

  if (requireEscape)
    return Quoting::Escape;
  if (forbidNone)
    return (preferEscape && !preferBrace) ? Quoting::Mask : Quoting::Brace;
  // A leading "#" would start a comment when the list is evaluated.
  if (s[0] == '#')
    return Quoting::Brace;
  return Quoting::None;
}

} // namespace

std::string HTCTaskHelpers::brace(const std::string &element) {
  if (element.empty())
    return "{}";
  Quoting quoting = chooseQuoting(element);

  std::string out;
  std::string::size_type start = 0;
  if (element[0] == '#') {
    if (quoting == Quoting::Escape) {
      out += "\\#";
      start = 1;
    } else {
      quoting = Quoting::Brace;
    }
  }
  if (quoting == Quoting::None)
    return element;
  if (quoting == Quoting::Brace)
    return "{" + element + "}";

  out.reserve(element.size() * 2);
  for (std::string::size_type i = start; i < element.size(); ++i) {
    char c = element[i];
    switch (c) {
    case ']':
    case '[':
    case '$':
    case ';':
    case ' ':
    case '\\':
    case '"':
      out += '\\';
      break;
    case '{':
    case '}':
      if (quoting == Quoting::Escape)
        out += '\\';
      break;
    case '\f':
      out += "\\f";
      continue;
    case '\n':
      out += "\\n";
      continue;
    case '\r':
      out += "\\r";
      continue;
    case '\t':
      out += "\\t";
      continue;
    case '\v':
      out += "\\v";
      continue;
    default:
      break;
    }
    out += c;
  }
  return out;
}
