#include "HATAttrAny.h"

#include "HCPProperty.h"
#include "HTCTaskHelpers.h"

void HATAttrAny::clear() { *this = HATAttrAny(); }

void HATAttrAny::setBool(bool value) {
  clear();
  m_kind = Kind::Bool;
  m_bool = value;
}

void HATAttrAny::setInt(std::int64_t value) {
  clear();
  m_kind = Kind::Int;
  m_int = value;
}

void HATAttrAny::setString(std::string value) {
  clear();
  m_kind = Kind::String;
  m_string = std::move(value);
}

void HATAttrAny::setList(zeb::tcltasks::tcl_collection list) {
  clear();
  m_kind = Kind::List;
  m_list = std::move(list);
}

std::string HATAttrAny::toString() const {
  switch (m_kind) {
  case Kind::Empty:
    return std::string();
  case Kind::Bool:
    return m_bool ? "1" : "0";
  case Kind::Int:
    return std::to_string(m_int);
  case Kind::String:
    return m_string;
  case Kind::List:
    break;
  }
  std::string out;
  auto add = [&out](const std::string &element) {
    if (!out.empty())
      out += ' ';
    out += HTCTaskHelpers::brace(element);
  };
  for (const std::string &text : m_list.strings())
    add(text);
  for (const zeb::tcltasks::tclany &object : m_list.objects())
    add(HCPProperty::getObjectName(object));
  return out;
}

bool HATAttrAny::operator==(const HATAttrAny &other) const {
  if (m_kind != other.m_kind)
    return false;
  switch (m_kind) {
  case Kind::Empty:
    return true;
  case Kind::Bool:
    return m_bool == other.m_bool;
  case Kind::Int:
    return m_int == other.m_int;
  case Kind::String:
    return m_string == other.m_string;
  case Kind::List:
    return m_list.strings() == other.m_list.strings() && m_list.objects() == other.m_list.objects();
  }
  return false;
}

namespace HATAttrUtils {
void setAny(HATAttrAny &result, bool value) { result.setBool(value); }
void setAny(HATAttrAny &result, int value) { result.setInt(value); }
void setAny(HATAttrAny &result, long value) { result.setInt(value); }
void setAny(HATAttrAny &result, long long value) { result.setInt(value); }
void setAny(HATAttrAny &result, unsigned value) { result.setInt(value); }
void setAny(HATAttrAny &result, unsigned long value) {
  result.setInt(static_cast<std::int64_t>(value));
}
void setAny(HATAttrAny &result, const std::string &value) { result.setString(value); }
void setAny(HATAttrAny &result, const char *value) { result.setString(value ? value : ""); }
void setAny(HATAttrAny &result, const std::vector<std::string> &value) {
  zeb::tcltasks::tcl_collection list;
  for (const std::string &text : value)
    list.append(text);
  result.setList(std::move(list));
}
void setAny(HATAttrAny &result, const zeb::tcltasks::tcl_collection &value) {
  result.setList(value);
}
void setAny(HATAttrAny &result, const HATAttrAny &value) { result = value; }
} // namespace HATAttrUtils
