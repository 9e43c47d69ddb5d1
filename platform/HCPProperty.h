// The scripted-object registry: one record per native class, each holding
// the class's properties in the order they were registered. A property is a
// getter and an attribute spec (type, read-only, visible, hint); a writable
// property also has a factory of setters, whose work the undo history keeps.
// The class named "_default_" property, when a class has one, answers the
// names that no fixed property has (dynamic properties) and lists them.
//
// Getters take the interpreter (null when none), a handle, the asked name
// and the result. Values reach the interpreter through Utils::saveResult,
// which hands them to the hooks that the Tcl package and the Python module
// install, so this layer links neither interpreter.
#ifndef BOARDLIB_PLATFORM_HCPPROPERTY_H
#define BOARDLIB_PLATFORM_HCPPROPERTY_H

#include "HATAttrAny.h"
#include "HATAttrSpec.h"
#include "HTCTclUtils.h"
#include "TclAny.h"

#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

struct Tcl_Interp;

class HCPProperty {
public:
  using tclany = zeb::tcltasks::tclany;
  /// Reads one property of a handle into the result; false when the object
  /// has no value for that name.
  using GetFcn =
      std::function<bool(Tcl_Interp *, const tclany &, const std::string &, HATAttrAny &)>;
  /// The dynamic properties of an object, with their values, in listing order.
  using DynamicList = std::vector<std::pair<std::string, HATAttrAny>>;
  using GetDefaultFcn = std::function<bool(Tcl_Interp *, const tclany &, DynamicList &)>;
  /// The attribute spec of one dynamic property; false when there is none.
  using GetDefaultAttrSpecFcn =
      std::function<bool(const tclany &, const std::string &, HATAttrSpec &)>;
  class Setter;
  using SetterFcn = std::function<std::unique_ptr<Setter>()>;

  /// A property failure a script sees as an error: a bad handle, an unknown
  /// or read-only property, a value of the wrong type.
  class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
  };

  /// One property of a class.
  class Spec {
  public:
    explicit Spec(std::string name) : m_name(std::move(name)) {}
    const std::string &getName() const { return m_name; }
    void setGetFcn(GetFcn fn) { m_get = std::move(fn); }
    const GetFcn &getGetFcn() const { return m_get; }
    void setGetDefaultFcn(GetDefaultFcn fn) { m_getDefault = std::move(fn); }
    const GetDefaultFcn &getGetDefaultFcn() const { return m_getDefault; }
    void setGetDefaultAttrSpecFcn(GetDefaultAttrSpecFcn fn) { m_getDefaultSpec = std::move(fn); }
    const GetDefaultAttrSpecFcn &getGetDefaultAttrSpecFcn() const { return m_getDefaultSpec; }
    void setSetterFcn(SetterFcn fn) { m_setter = std::move(fn); }
    const SetterFcn &getSetterFcn() const { return m_setter; }
    HATAttrSpec &getAttrSpec() { return m_attr; }
    const HATAttrSpec &getAttrSpec() const { return m_attr; }

  private:
    std::string m_name;
    GetFcn m_get;
    GetDefaultFcn m_getDefault;
    GetDefaultAttrSpecFcn m_getDefaultSpec;
    SetterFcn m_setter;
    HATAttrSpec m_attr;
  };

  /// The adapter between a class's native pointers and handles.
  struct NativeAdapter {
    const std::type_info *type = nullptr;
    const std::type_info &getType() const { return *type; }
    tclany getAttrObj(void *object) const { return tclany(*type, object); }
  };

  /// The record of one class.
  class ObjectInfo {
  public:
    explicit ObjectInfo(const std::type_info &type) { m_adapter.type = &type; }
    const std::type_info &getType() const { return m_adapter.getType(); }
    const NativeAdapter &getAdapter() const { return m_adapter; }
    /// A new property, or the existing one of that exact name.
    Spec &createSpec(const std::string &name);
    /// Removes the property of that exact name; false when there is none.
    bool deleteSpec(const std::string &name);
    /// With false, listings keep the order of registration; with true (the
    /// default) they sort by name, ignoring case.
    void setSortProperties(bool sort) { m_sort = sort; }
    bool getSortProperties() const { return m_sort; }
    /// The property of that exact name, else the first one equal to it
    /// ignoring case; null when none. "_default_" is found only exactly.
    const Spec *findSpec(const std::string &name) const;
    /// The dynamic-property record, null when the class has none.
    const Spec *getDefaultSpec() const;
    /// The properties in registration order, "_default_" included.
    std::vector<const Spec *> getSpecs() const;
    /// How an object of a class without a "name" property is named where a
    /// script shows it; by default the "name" property.
    void setNameFcn(GetFcn fn) { m_nameFcn = std::move(fn); }
    const GetFcn &getNameFcn() const { return m_nameFcn; }

  private:
    NativeAdapter m_adapter;
    GetFcn m_nameFcn;
    std::vector<std::unique_ptr<Spec>> m_specs;
    bool m_sort = true;
  };

  /// One row of a property listing.
  struct PropertyRow {
    std::string name;
    HATAttrSpec spec;
    HATAttrAny value;
    bool hasValue = false;
    bool dynamic = false;
  };

  /// A writable property's change: set, undone and redone by the history.
  class Setter {
  public:
    virtual ~Setter();
    /// Applies \p value to \p objects (null for none); 0 on success.
    virtual int set(Tcl_Interp *interp, const zeb::tcltasks::tcl_collection *objects,
                    const HATAttr &value) = 0;
    /// A line for the undo history.
    virtual std::string getDescription() const;
    /// Whether undo and redo apply; a setter that changes nothing lasting
    /// says false and is not kept.
    virtual bool isUndoable() const;
    virtual void undo() = 0;
    virtual void redo() = 0;
    /// Told after set, undo or redo, for observers of the change.
    virtual void notify() = 0;
  };

  /// Registers the class of pointer type \p T; a second call changes nothing.
  template <typename T> static void registerObjectType() { registerType(typeid(T)); }
  static ObjectInfo &registerType(const std::type_info &type);
  /// The record of a class; null when it was never registered.
  static ObjectInfo *getObjectInfo(const std::type_info &type);
  /// Forgets every class (for a process that registers anew).
  static void clearRegistry();

  // Generic property access, as the property commands use it. Each throws
  // Error with a text for the script.

  /// Reads property \p name (ignoring case for fixed properties). False when
  /// a dynamic property has no value; an unknown fixed name throws.
  static bool getProperty(Tcl_Interp *interp, const tclany &object, const std::string &name,
                          HATAttrAny &out);
  /// The type, flags and hint of property \p name, and its registered name;
  /// false when there is none. \p dynamic tells which kind it is.
  static bool findPropertySpec(const tclany &object, const std::string &name, HATAttrSpec &spec,
                               std::string &canonicalName, bool &dynamic);
  /// The properties of \p object: the fixed ones, then (or sorted among
  /// them) the dynamic ones. Hidden ones only with \p includeHidden.
  static std::vector<PropertyRow> listProperties(Tcl_Interp *interp, const tclany &object,
                                                 bool includeHidden);
  /// Sets \p name to \p value on every object (all of one class), through
  /// the property's setter, and keeps the change in the undo history.
  static void setProperty(Tcl_Interp *interp, const std::string &name, const HATAttr &value,
                          const std::vector<tclany> &objects);
  /// The "name" property of an object; empty when it has none.
  static std::string getObjectName(const tclany &object);
  /// The "class" property of an object, or of the class of \p type.
  static std::string getClassName(const tclany &object);
  static std::string getClassName(const std::type_info &type);
  /// "board_jumper 'J1'": an object as messages name it.
  static std::string describe(const tclany &object);
  /// The record of a handle's class; throws Error for a null or stale
  /// handle, or one of an unregistered class.
  static const ObjectInfo &infoOf(const tclany &object);

  struct LaunchMode {
    /// True when the process runs under Python.
    static bool m_isPyMode;
  };

  struct Types {
    struct detail {
      /// Records that \p handle is not of \p expected; the error is taken
      /// by takeCastError and thrown by getProperty.
      static void castError(const tclany &handle, const std::type_info &expected);
      static bool takeCastError(std::string &text);
    };
    /// The native pointer behind a handle, or null after castError.
    template <typename T> struct any2native {
      static T get(const tclany &handle) {
        const char *name = handle.typeName();
        if (handle.type && name[0] != '*' &&
            (*handle.type == typeid(T) || std::strcmp(name, typeid(T).name()) == 0))
          return static_cast<T>(handle.object);
        detail::castError(handle, typeid(T));
        return nullptr;
      }
    };
  };

  struct Utils {
    /// Delivers a getter's value: into \p result, to the Tcl interpreter
    /// when there is one, else to Python when the process runs under it.
    template <typename V>
    static void saveResult(Tcl_Interp *interp, const V &value, HATAttrAny &result) {
      HATAttrUtils::setAny(result, value);
      if (interp)
        HTCTclUtils::setResult(interp, result);
      else if (LaunchMode::m_isPyMode)
        deliverPyResult(result);
    }
    using PyResultHook = std::function<void(const HATAttrAny &)>;
    static void setPyResultHook(PyResultHook hook);
    static void deliverPyResult(const HATAttrAny &value);
  };

  /// The history of property changes, for undo and redo. A change whose
  /// objects die (a board unloaded or refreshed) is dropped from it.
  class UndoHistory {
  public:
    static void push(std::unique_ptr<Setter> setter, const std::vector<const void *> &targets);
    /// Undoes the latest change; false when there is none. \p what is its
    /// description.
    static bool undo(std::string &what);
    static bool redo(std::string &what);
    static std::size_t undoCount();
    static std::size_t redoCount();
    static void clear();
    /// Drops every change that touches \p object, which is being destroyed.
    static void objectGone(const void *object);
  };
};

#endif
