// Small helpers shared by the property tables: registering a read-only
// property from one accessor, typed by what the accessor returns; the
// constant "class" property; and the hint that is set only while schema 2 is
// enabled.
#ifndef BOARDLIB_HBOSCRIPTEDSUPPORT_H
#define BOARDLIB_HBOSCRIPTEDSUPPORT_H

#include "HBOBoardUtils.h"
#include "HCPProperty.h"

#include <functional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace HBOScripted {

using tclany = zeb::tcltasks::tclany;

/// The record of pointer type \p T, registered first when needed.
template <typename T> HCPProperty::ObjectInfo &registerClass() {
  HCPProperty::registerObjectType<T *>();
  return *HCPProperty::getObjectInfo(typeid(T *));
}

/// The value a getter \p F gives for an object of class \p T: what the
/// property's attribute type follows from.
template <typename T, typename F>
using ValueOf = std::decay_t<std::invoke_result_t<const F &, const T &>>;

/// A read-only property whose value is read(object); \p read is an accessor
/// of \p T (&T::getName) or a function of a const T&. The property's type
/// is that of the value (see HATAttrTypeOf): a bool is a boolean, an integer
/// an integer, a text a string, a vector of texts or a collection a list.
/// Where scripts know a property as a text, the reader converts the model's
/// value to text itself ("true"/"false", a number as digits).
template <typename T, typename F>
HCPProperty::Spec &addProperty(HCPProperty::ObjectInfo &info, const std::string &name, F read) {
  HCPProperty::Spec &spec = info.createSpec(name);
  spec.setGetFcn(
      [read](Tcl_Interp *interp, const tclany &handle, const std::string &, HATAttrAny &result) {
        T *object = HCPProperty::Types::any2native<T *>::get(handle);
        if (!object)
          return false;
        HCPProperty::Utils::saveResult(interp, std::invoke(read, std::as_const(*object)), result);
        return true;
      });
  spec.getAttrSpec().setAttrTypeOf<ValueOf<T, F>>();
  spec.getAttrSpec().setReadOnly(true);
  return spec;
}

/// The "class" property: a constant. Its getter checks the handle's type
/// but never touches the object, so the registry can ask a class its name
/// without an object.
template <typename T>
HCPProperty::Spec &addClassProperty(HCPProperty::ObjectInfo &info, const char *className) {
  using Value = std::string;
  HCPProperty::Spec &spec = info.createSpec("class");
  spec.setGetFcn([className](Tcl_Interp *interp, const tclany &handle, const std::string &,
                             HATAttrAny &result) {
    if (handle.object && !HCPProperty::Types::any2native<T *>::get(handle))
      return false;
    HCPProperty::Utils::saveResult(interp, Value(className), result);
    return true;
  });
  spec.getAttrSpec().setAttrTypeOf<Value>();
  spec.getAttrSpec().setReadOnly(true);
  return spec;
}

/// Gives \p spec its deprecation hint, only while schema 2 is enabled.
inline void setHint(HCPProperty::Spec &spec, const std::string &hint) {
  if (HBOBoardUtils::isV2SchemaEnabled())
    spec.getAttrSpec().m_hint = hint;
}

/// The dynamic-property record "_default_": \p read answers one name (false
/// when the object has no such property), \p list gives all of them with
/// their values. Its own attribute type is left as it is: a dynamic property
/// shows the type of its value, or the one the attribute-spec function gives.
/// Returned so that a class can add an attribute-spec function.
inline HCPProperty::Spec &addDynamic(HCPProperty::ObjectInfo &info, HCPProperty::GetFcn read,
                                     HCPProperty::GetDefaultFcn list, bool visible) {
  HCPProperty::Spec &dynamic = info.createSpec("_default_");
  dynamic.setGetFcn(std::move(read));
  dynamic.setGetDefaultFcn(std::move(list));
  dynamic.getAttrSpec().setReadOnly(true);
  dynamic.getAttrSpec().setVisible(visible);
  return dynamic;
}

/// The rest of \p name after \p tag; the tag is compared exactly.
inline bool afterTag(const std::string &name, const char *tag, std::string &rest) {
  const std::size_t length = std::char_traits<char>::length(tag);
  if (name.compare(0, length, tag) != 0)
    return false;
  rest = name.substr(length);
  return true;
}

/// An enablement expression, "{J1 true} {J2 false}", is the Tcl form of the
/// list of its terms; the terms as a list, so that Python sees the same.
inline std::vector<std::string> expressionTerms(const std::string &expression) {
  return HBOBoardUtils::parseTclList(expression);
}

/// A delay as the model keeps it, in its shortest text ("0.3").
inline std::string delayText(float delay) {
  std::ostringstream out;
  out << delay;
  return out.str();
}

/// The names of objects, for list properties built from records.
template <typename Seq, typename F> std::vector<std::string> namesOf(const Seq &seq, F name) {
  std::vector<std::string> out;
  for (const auto &item : seq)
    if (item)
      out.push_back(std::invoke(name, *item));
  return out;
}

} // namespace HBOScripted

#endif
