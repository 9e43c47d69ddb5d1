#include "BoardPyTypes.h"

#include "HBOScriptCommands.h"
#include "HBOScriptedClasses.h"
#include "HCPProperty.h"
#include "NativeCache.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

namespace BoardPy {

const char *const kCapsuleName = "nativeObjPtr";
PyObject *g_boardError = nullptr;

namespace {

std::atomic<bool> g_finalized{false};

/// What the generic slots need to know of a type.
struct TypeEntry {
  const HBOScriptedClass *cls = nullptr;
  PyTypeObject *pyType = nullptr;
  PyObject *(*wrap)(void *native) = nullptr;
};

std::vector<TypeEntry> &entries() {
  static std::vector<TypeEntry> table;
  return table;
}

const TypeEntry *entryOfPyType(PyTypeObject *type) {
  for (const TypeEntry &e : entries())
    if (e.pyType == type)
      return &e;
  return nullptr;
}

const TypeEntry *entryOfNative(const std::type_info &type) {
  for (const TypeEntry &e : entries())
    if (*e.cls->type == type || std::strcmp(e.cls->type->name(), type.name()) == 0)
      return &e;
  return nullptr;
}

const char *structNameOf(PyObject *self) {
  const TypeEntry *e = entryOfPyType(Py_TYPE(self));
  return e ? e->cls->structName : Py_TYPE(self)->tp_name;
}

PyObject *raiseDead(PyObject *self) {
  PyErr_Format(g_boardError,
               "The %s object no longer exists: its board was unloaded or the repository was "
               "refreshed. Get the object again.",
               structNameOf(self));
  return nullptr;
}

Object *live(PyObject *self) {
  Object *o = reinterpret_cast<Object *>(self);
  if (!o->alive) {
    raiseDead(self);
    return nullptr;
  }
  return o;
}

/// Reads one property of \p o as get_property does ("" when it has none).
PyObject *readProperty(Object *o, const std::string &name, bool quiet) {
  HATAttrAny value;
  bool found = false;
  if (!call(
          [&] { found = commands().getProperty(name, tclany(*o->type, o->native), value, quiet); }))
    return nullptr;
  if (!found)
    return toStr(std::string());
  return toPython(value);
}

// ---- slots shared by every board type ----

PyObject *repr(PyObject *self) {
  Object *o = reinterpret_cast<Object *>(self);
  if (!o->alive)
    return PyUnicode_FromFormat("<%s (no longer exists)>", structNameOf(self));
  std::string name;
  if (!call([&] { name = HCPProperty::getObjectName(tclany(*o->type, o->native)); }))
    return nullptr;
  // Some classes (preferences) have no name property.
  std::string text = std::string("<") + structNameOf(self) + (name.empty() ? "" : " ") + name + ">";
  return toStr(text);
}

PyObject *str(PyObject *self) {
  Object *o = live(self);
  if (!o)
    return nullptr;
  std::string name;
  if (!call([&] { name = HCPProperty::getObjectName(tclany(*o->type, o->native)); }))
    return nullptr;
  return toStr(name);
}

Py_hash_t hash(PyObject *self) {
  Object *o = reinterpret_cast<Object *>(self);
  Py_hash_t h = static_cast<Py_hash_t>(reinterpret_cast<std::uintptr_t>(o->native) >> 4) ^
                static_cast<Py_hash_t>(reinterpret_cast<std::uintptr_t>(Py_TYPE(self)) >> 4);
  return h == -1 ? -2 : h;
}

PyObject *richcompare(PyObject *self, PyObject *other, int op) {
  if ((op != Py_EQ && op != Py_NE) || !isBoardObject(other))
    Py_RETURN_NOTIMPLEMENTED;
  Object *a = reinterpret_cast<Object *>(self);
  Object *b = reinterpret_cast<Object *>(other);
  // A dead object equals only itself: a new object may have taken its
  // address.
  bool equal = self == other ||
               (a->alive && b->alive && Py_TYPE(self) == Py_TYPE(other) && a->native == b->native);
  if ((op == Py_EQ) == equal)
    Py_RETURN_TRUE;
  Py_RETURN_FALSE;
}

PyObject *methodGetProperty(PyObject *self, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"name", "quiet", nullptr};
  const char *name = nullptr;
  int quiet = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "s|p:get_property", const_cast<char **>(kwlist),
                                   &name, &quiet))
    return nullptr;
  Object *o = live(self);
  if (!o)
    return nullptr;
  return readProperty(o, name, quiet != 0);
}

PyObject *methodListProperty(PyObject *self, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"all", nullptr};
  int all = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|p:list_property", const_cast<char **>(kwlist),
                                   &all))
    return nullptr;
  Object *o = live(self);
  if (!o)
    return nullptr;
  std::vector<std::string> names;
  if (!call([&] { names = commands().listProperty(tclany(*o->type, o->native), all != 0); }))
    return nullptr;
  PyObject *list = PyList_New(static_cast<Py_ssize_t>(names.size()));
  if (!list)
    return nullptr;
  for (std::size_t i = 0; i < names.size(); ++i) {
    PyObject *item = toStr(names[i]);
    if (!item) {
      Py_DECREF(list);
      return nullptr;
    }
    PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), item);
  }
  return list;
}

PyObject *methodCapsule(PyObject *self, PyObject *) {
  Object *o = live(self);
  if (!o)
    return nullptr;
  PyObject *capsule = PyCapsule_New(o->native, kCapsuleName, nullptr);
  if (capsule && PyCapsule_SetContext(capsule, const_cast<std::type_info *>(o->type)) < 0) {
    Py_DECREF(capsule);
    return nullptr;
  }
  return capsule;
}

PyObject *getName(PyObject *self, void *) {
  Object *o = live(self);
  if (!o)
    return nullptr;
  return readProperty(o, "name", false);
}

PyObject *getAlive(PyObject *self, void *) {
  return PyBool_FromLong(reinterpret_cast<Object *>(self)->alive);
}

PyMethodDef g_methods[] = {
    {"get_property", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(methodGetProperty)),
     METH_VARARGS | METH_KEYWORDS,
     "get_property(name, quiet=False): the value of one property; names ignore case."},
    {"list_property",
     reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(methodListProperty)),
     METH_VARARGS | METH_KEYWORDS,
     "list_property(all=False): the property names in upper case; hidden ones only with all."},
    {"_capsule", methodCapsule, METH_NOARGS,
     "The native pointer in a capsule named \"nativeObjPtr\", as the type's constructor takes it."},
    {nullptr, nullptr, 0, nullptr}};

PyGetSetDef g_getset[] = {
    {"name", getName, nullptr, "The object's name property.", nullptr},
    {"is_valid", getAlive, nullptr, "False once the native object is gone.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};

} // namespace

/// One scripted class of pointer type T*: its Python type and the slots
/// that need the class at compile time (the cache is per class).
template <typename T> struct PyTypes {
  using Cache = zeb::pyinfra::py_native_cache<T *>;
  static PyTypeObject *m_pyTypeObj;

  /// Makes the object exactly as a script constructor call would: the
  /// type called with () and {"nativeObjPtr": capsule}.
  static PyObject *wrap(void *native) {
    if (!native)
      Py_RETURN_NONE;
    if (void *cached = Cache::lookup(static_cast<T *>(native))) {
      PyObject *object = static_cast<PyObject *>(cached);
      Py_INCREF(object);
      return object;
    }
    PyObject *capsule = PyCapsule_New(native, kCapsuleName, nullptr);
    if (!capsule)
      return nullptr;
    if (PyCapsule_SetContext(capsule, const_cast<std::type_info *>(&typeid(T *))) < 0) {
      Py_DECREF(capsule);
      return nullptr;
    }
    PyObject *args = Py_BuildValue("()");
    PyObject *kwargs = Py_BuildValue("{s:O}", kCapsuleName, capsule);
    Py_DECREF(capsule);
    PyObject *object = nullptr;
    if (args && kwargs)
      object = PyObject_Call(reinterpret_cast<PyObject *>(m_pyTypeObj), args, kwargs);
    Py_XDECREF(args);
    Py_XDECREF(kwargs);
    return object;
  }

  /// The native pointer of the "nativeObjPtr" capsule, checked against the
  /// class; null with TypeError set.
  static T *nativeOf(PyObject *args, PyObject *kwargs) {
    static const char *kwlist[] = {kCapsuleName, nullptr};
    PyObject *capsule = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|$O", const_cast<char **>(kwlist), &capsule))
      return nullptr;
    if (!capsule || !PyCapsule_IsValid(capsule, kCapsuleName)) {
      PyErr_Format(PyExc_TypeError,
                   "%s objects come from the board commands; the constructor takes only a "
                   "capsule named \"%s\".",
                   m_pyTypeObj->tp_name, kCapsuleName);
      return nullptr;
    }
    void *pointer = PyCapsule_GetPointer(capsule, kCapsuleName);
    if (!pointer)
      return nullptr;
    // A capsule without context is taken as one of this class.
    const std::type_info *type = static_cast<const std::type_info *>(PyCapsule_GetContext(capsule));
    if (PyErr_Occurred())
      return nullptr;
    if (!type)
      type = &typeid(T *);
    std::string ignored;
    HCPProperty::Types::detail::takeCastError(ignored);
    T *native = nullptr;
    if (!call([&] { native = HCPProperty::Types::any2native<T *>::get(tclany(*type, pointer)); }))
      return nullptr;
    std::string error;
    if (HCPProperty::Types::detail::takeCastError(error) || !native) {
      PyErr_SetString(PyExc_TypeError, error.empty()
                                           ? "The capsule holds an object of another class."
                                           : error.c_str());
      return nullptr;
    }
    return native;
  }

  /// One Python object per native object: a capsule of an object that has
  /// one already gives that one back.
  static PyObject *tpNew(PyTypeObject *type, PyObject *args, PyObject *kwargs) {
    T *native = nativeOf(args, kwargs);
    if (!native)
      return nullptr;
    if (void *cached = Cache::lookup(native)) {
      PyObject *object = static_cast<PyObject *>(cached);
      Py_INCREF(object);
      return object;
    }
    PyObject *self = type->tp_alloc(type, 0);
    if (!self)
      return nullptr;
    Object *o = reinterpret_cast<Object *>(self);
    o->type = &typeid(T *);
    o->native = native;
    o->alive = 1;
    Cache::insert(native, self);
    return self;
  }

  /// The checks were made by tpNew; init only refuses a call that tpNew
  /// would refuse too, so that __init__ called again cannot re-point it.
  static int tpInit(PyObject *self, PyObject *args, PyObject *kwargs) {
    T *native = nativeOf(args, kwargs);
    if (!native)
      return -1;
    if (native != reinterpret_cast<Object *>(self)->native) {
      PyErr_SetString(PyExc_TypeError,
                      "A board object cannot be re-pointed to another native object.");
      return -1;
    }
    return 0;
  }

  static void tpDealloc(PyObject *self) {
    Object *o = reinterpret_cast<Object *>(self);
    // Only the cache entry that is this object goes: a dead object's entry
    // is gone already, and its address may be cached for a newer object.
    if (o->alive && o->native && Cache::lookup(static_cast<T *>(o->native)) == self)
      Cache::forget(static_cast<T *>(o->native));
    PyTypeObject *type = Py_TYPE(self);
    type->tp_free(self);
    Py_DECREF(type);
  }

  /// Runs inside the native destructor, possibly after Python finalized:
  /// it only clears a flag, with no reference counting.
  static void invalidate(void *handle) {
    if (handle && !g_finalized.load())
      static_cast<Object *>(handle)->alive = 0;
  }

  static bool create(PyObject *module, const HBOScriptedClass &cls) {
    std::string qualified = std::string("boardlib.") + cls.structName;
    static std::string s_name; // PyType_Spec keeps the pointer
    s_name = qualified;
    // Python copies the text of the doc slot.
    const std::string doc =
        std::string("A ") + cls.structName +
        " object of the board model, as the board commands return it: its properties through "
        "get_property and list_property. It goes stale (is_valid False) when the board it "
        "belongs to is dropped.";
    PyType_Slot slots[] = {{Py_tp_doc, const_cast<char *>(doc.c_str())},
                           {Py_tp_new, reinterpret_cast<void *>(tpNew)},
                           {Py_tp_init, reinterpret_cast<void *>(tpInit)},
                           {Py_tp_dealloc, reinterpret_cast<void *>(tpDealloc)},
                           {Py_tp_repr, reinterpret_cast<void *>(repr)},
                           {Py_tp_str, reinterpret_cast<void *>(str)},
                           {Py_tp_hash, reinterpret_cast<void *>(hash)},
                           {Py_tp_richcompare, reinterpret_cast<void *>(richcompare)},
                           {Py_tp_methods, g_methods},
                           {Py_tp_getset, g_getset},
                           {0, nullptr}};
    PyType_Spec spec = {s_name.c_str(), static_cast<int>(sizeof(Object)), 0, Py_TPFLAGS_DEFAULT,
                        slots};
    PyObject *type = PyType_FromSpec(&spec);
    if (!type)
      return false;
    m_pyTypeObj = reinterpret_cast<PyTypeObject *>(type);
    if (PyModule_AddObjectRef(module, cls.structName, type) < 0)
      return false;
    Cache::table().setInvalidator(&PyTypes<T>::invalidate);
    TypeEntry entry;
    entry.cls = &cls;
    entry.pyType = m_pyTypeObj;
    entry.wrap = &PyTypes<T>::wrap;
    entries().push_back(entry);
    return true;
  }
};

template <typename T> PyTypeObject *PyTypes<T>::m_pyTypeObj = nullptr;

void setFinalized() { g_finalized = true; }

bool createTypes(PyObject *module) {
  bool ok = true;
  forEachScriptedType([&](auto *tag) {
    using T = std::remove_pointer_t<decltype(tag)>;
    if (!ok)
      return;
    const HBOScriptedClass *cls = HBOScriptedClasses::find(typeid(T *));
    if (!cls) {
      PyErr_Format(PyExc_ImportError, "boardlib has no scripted class for the type %s",
                   typeid(T *).name());
      ok = false;
      return;
    }
    ok = PyTypes<T>::create(module, *cls);
  });
  return ok;
}

PyObject *wrap(const tclany &handle) {
  if (handle.empty())
    Py_RETURN_NONE;
  const TypeEntry *entry = entryOfNative(*handle.type);
  if (!entry) {
    PyErr_Format(g_boardError, "objects of type %s have no Python type", handle.typeName());
    return nullptr;
  }
  return entry->wrap(handle.object);
}

bool isBoardObject(PyObject *object) { return entryOfPyType(Py_TYPE(object)) != nullptr; }

bool toHandle(PyObject *object, tclany &out) {
  if (!isBoardObject(object)) {
    PyErr_Format(PyExc_TypeError, "expected a board object, not %.200s", Py_TYPE(object)->tp_name);
    return false;
  }
  Object *o = live(object);
  if (!o)
    return false;
  out = tclany(*o->type, o->native);
  return true;
}

PyObject *toStr(const std::string &text) {
  return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
}

PyObject *toPython(const HATAttrAny &value) {
  switch (value.getKind()) {
  case HATAttrAny::Kind::Empty:
    Py_RETURN_NONE;
  case HATAttrAny::Kind::Bool:
    return PyBool_FromLong(value.getBool());
  case HATAttrAny::Kind::Int:
    return PyLong_FromLongLong(value.getInt());
  case HATAttrAny::Kind::String:
    return toStr(value.getString());
  case HATAttrAny::Kind::List:
    break;
  }
  const zeb::tcltasks::tcl_collection &list = value.getList();
  PyObject *out = PyList_New(0);
  if (!out)
    return nullptr;
  auto append = [out](PyObject *item) {
    if (!item || PyList_Append(out, item) < 0) {
      Py_XDECREF(item);
      return false;
    }
    Py_DECREF(item);
    return true;
  };
  for (const std::string &text : list.strings())
    if (!append(toStr(text))) {
      Py_DECREF(out);
      return nullptr;
    }
  for (const tclany &handle : list.objects())
    if (!append(wrap(handle))) {
      Py_DECREF(out);
      return nullptr;
    }
  return out;
}

} // namespace BoardPy

void BoardPy::setBoardError(const HEXError &error) {
  PyObject *exception = PyObject_CallFunction(g_boardError, "s", error.what());
  if (!exception)
    return; // the Python error of the call stands
  PyObject *id = PyUnicode_FromString(error.getMessage().getId().c_str());
  if (id) {
    PyObject_SetAttrString(exception, "id", id);
    Py_DECREF(id);
  }
  PyErr_SetObject(g_boardError, exception);
  Py_DECREF(exception);
}
