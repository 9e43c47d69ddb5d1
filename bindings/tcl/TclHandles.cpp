#include "TclHandles.h"

#include "HBOScriptedClasses.h"
#include "HCPProperty.h"
#include "NativeCache.h"

#include <atomic>
#include <cstring>
#include <mutex>
#include <set>
#include <stdexcept>

namespace {

using TclHandles::tclany;

// What every Tcl value of one native object points to. The cache holds one
// reference while the object lives, each Tcl value one more.
struct Record {
  explicit Record(const tclany &o) : object(o) {}
  tclany object;
  std::atomic<bool> alive{true};
  std::atomic<long> refs{0};
};

// Taken around a cache look-up together with its new reference, and by the
// invalidator: otherwise a dying object could drop the cache's reference,
// and free the record, between the look-up and the reference.
// Never destroyed: an object may die during the process's exit, after
// function-local statics are gone.
std::mutex &recordMutex() {
  static std::mutex *m = new std::mutex;
  return *m;
}

void releaseRecord(Record *record) {
  if (record->refs.fetch_sub(1) == 1)
    delete record;
}

Record *recordOf(Tcl_Obj *obj) { return static_cast<Record *>(obj->internalRep.twoPtrValue.ptr1); }

// One scripted class: its cache of records and its Tcl object type. The
// caches are typed templates, so the list is made by forEachScriptedType,
// and install checks it against HBOScriptedClasses::all().
struct ClassBinding {
  const std::type_info *type;
  zeb::detail::NativeCacheTable &(*table)();
  std::string typeName;
  Tcl_ObjType objType;
  bool made;
};

template <typename T> ClassBinding bindingOf() {
  return ClassBinding{&typeid(T), &zeb::tcltasks::native_cache<T>::table, std::string(),
                      Tcl_ObjType(), false};
}

// Never destroyed either: Tcl values may outlive static destruction, and
// their type pointers point here.
std::vector<ClassBinding> &bindings() {
  static std::vector<ClassBinding> *all = [] {
    auto *list = new std::vector<ClassBinding>;
    forEachScriptedType([list](auto *tag) { list->push_back(bindingOf<decltype(tag)>()); });
    return list;
  }();
  return *all;
}

// Type identity by name: type_info objects of one type may differ between
// shared objects, their names do not.
ClassBinding *findBinding(const std::type_info &type) {
  for (ClassBinding &b : bindings())
    if (b.type == &type || std::strcmp(b.type->name(), type.name()) == 0)
      return &b;
  return nullptr;
}

ClassBinding *bindingOfObj(Tcl_Obj *obj) {
  if (!obj->typePtr)
    return nullptr;
  for (ClassBinding &b : bindings())
    if (obj->typePtr == &b.objType)
      return &b;
  return nullptr;
}

std::string makeTypeName(const std::type_info &type) {
  const char *name = type.name();
  if (name[0] == '*')
    ++name;
  return std::string("ostra:") + name + "(tclcoll)";
}

void freeIntRep(Tcl_Obj *obj) {
  releaseRecord(recordOf(obj));
  obj->typePtr = nullptr;
}

void dupIntRep(Tcl_Obj *src, Tcl_Obj *dup) {
  Record *record = recordOf(src);
  ++record->refs;
  dup->internalRep.twoPtrValue.ptr1 = record;
  dup->internalRep.twoPtrValue.ptr2 = nullptr;
  dup->typePtr = src->typePtr;
}

// Handles are made with their string rep; this runs only when something
// dropped it. A dead object has no name to give.
void updateString(Tcl_Obj *obj) {
  Record *record = recordOf(obj);
  std::string name = record->alive ? HCPProperty::getObjectName(record->object) : std::string();
  obj->bytes = Tcl_Alloc(static_cast<unsigned>(name.size() + 1));
  std::memcpy(obj->bytes, name.c_str(), name.size() + 1);
  obj->length = static_cast<int>(name.size());
}

// A name alone does not identify a board object.
int setFromAny(Tcl_Interp *interp, Tcl_Obj *) {
  if (interp)
    Tcl_SetObjResult(interp,
                     Tcl_NewStringObj("Board objects cannot be made from text: pass objects "
                                      "returned by the get_board* commands.",
                                      -1));
  return TCL_ERROR;
}

const Tcl_ObjType &objTypeOf(ClassBinding &b) {
  static std::mutex mutex;
  std::lock_guard<std::mutex> lock(mutex);
  if (!b.made) {
    b.typeName = makeTypeName(*b.type);
    b.objType.name = b.typeName.c_str();
    b.objType.freeIntRepProc = &freeIntRep;
    b.objType.dupIntRepProc = &dupIntRep;
    b.objType.updateStringProc = &updateString;
    b.objType.setFromAnyProc = &setFromAny;
    b.made = true;
  }
  return b.objType;
}

// Runs in the dying object's destructor, maybe at process exit after every
// interpreter is gone: so it touches only the record, never Tcl.
void invalidate(void *handle) {
  Record *record = static_cast<Record *>(handle);
  std::lock_guard<std::mutex> lock(recordMutex());
  record->alive = false;
  releaseRecord(record);
}

std::string shortText(const char *text) {
  std::string s(text);
  if (s.size() > 60)
    s = s.substr(0, 57) + "...";
  return s;
}

void setError(Tcl_Interp *interp, const std::string &text) {
  if (interp)
    Tcl_SetObjResult(interp, Tcl_NewStringObj(text.c_str(), static_cast<int>(text.size())));
}

std::atomic<TclHandles::NameLookup> g_nameLookup{nullptr};

// Text instead of a handle: usually a handle whose internal form Tcl
// dropped, so its name is all that is left. The name stands for the object
// as long as exactly one live object carries it.
bool lookUpName(Tcl_Interp *interp, Tcl_Obj *obj, tclany &out) {
  int length = 0;
  const char *text = Tcl_GetStringFromObj(obj, &length);
  const std::string name(text, static_cast<std::size_t>(length));
  std::vector<tclany> found;
  if (TclHandles::NameLookup lookup = g_nameLookup.load()) {
    try {
      found = lookup(name);
    } catch (const std::exception &) {
      found.clear();
    }
  }
  if (found.size() == 1) {
    out = found.front();
    return true;
  }
  if (found.empty()) {
    setError(interp, "'" + shortText(text) +
                         "' is not a board object, and no board object has that name: pass "
                         "objects returned by the get_board* commands (get_boards, "
                         "get_board_components, ...).");
    return false;
  }
  std::string classes;
  std::set<std::string> seen;
  for (const tclany &object : found) {
    std::string cls = HCPProperty::getClassName(object);
    if (seen.insert(cls).second)
      classes += (classes.empty() ? "" : ", ") + cls;
  }
  setError(interp, "The name '" + shortText(text) + "' is ambiguous: " +
                       std::to_string(found.size()) + " board objects have it (" + classes +
                       "). Pass the object itself, as the get_board* commands return it.");
  return false;
}

} // namespace

void TclHandles::install() {
  static std::once_flag once;
  std::call_once(once, [] {
    // A class added to the scripted layer but not here would show its
    // objects as bare names that no command takes back: refuse to start.
    for (const HBOScriptedClass &c : HBOScriptedClasses::all())
      if (!findBinding(*c.type))
        throw std::logic_error(
            std::string("The Tcl package has no object type for the scripted class ") +
            c.structName + ".");
    for (ClassBinding &b : bindings())
      b.table().setInvalidator(&invalidate);
  });
}

Tcl_Obj *TclHandles::newHandleObj(const tclany &object) {
  std::string name = HCPProperty::getObjectName(object);
  Tcl_Obj *obj = Tcl_NewStringObj(name.c_str(), static_cast<int>(name.size()));
  ClassBinding *b = object.empty() ? nullptr : findBinding(*object.type);
  if (!b)
    return obj;
  const Tcl_ObjType &type = objTypeOf(*b);
  Record *record = nullptr;
  {
    std::lock_guard<std::mutex> lock(recordMutex());
    record = static_cast<Record *>(b->table().lookup(object.object));
    if (!record) {
      record = new Record(object);
      record->refs = 1; // the cache's
      b->table().insert(object.object, record);
    }
    ++record->refs;
  }
  obj->internalRep.twoPtrValue.ptr1 = record;
  obj->internalRep.twoPtrValue.ptr2 = nullptr;
  obj->typePtr = &type;
  return obj;
}

Tcl_Obj *TclHandles::toTclObj(const HATAttrAny &value) {
  switch (value.getKind()) {
  case HATAttrAny::Kind::Bool:
    return Tcl_NewBooleanObj(value.getBool() ? 1 : 0);
  case HATAttrAny::Kind::Int:
    return Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(value.getInt()));
  case HATAttrAny::Kind::String:
    return Tcl_NewStringObj(value.getString().c_str(), static_cast<int>(value.getString().size()));
  case HATAttrAny::Kind::List: {
    Tcl_Obj *list = Tcl_NewListObj(0, nullptr);
    const zeb::tcltasks::tcl_collection &items = value.getList();
    if (items.holdsObjects()) {
      for (const tclany &object : items.objects())
        Tcl_ListObjAppendElement(nullptr, list, newHandleObj(object));
    } else {
      for (const std::string &text : items.strings())
        Tcl_ListObjAppendElement(nullptr, list,
                                 Tcl_NewStringObj(text.c_str(), static_cast<int>(text.size())));
    }
    return list;
  }
  case HATAttrAny::Kind::Empty:
    break;
  }
  return Tcl_NewObj();
}

bool TclHandles::isHandle(Tcl_Obj *obj) { return bindingOfObj(obj) != nullptr; }

void TclHandles::setNameLookup(NameLookup lookup) { g_nameLookup = lookup; }

bool TclHandles::getHandle(Tcl_Interp *interp, Tcl_Obj *obj, tclany &out) {
  if (!bindingOfObj(obj))
    return lookUpName(interp, obj, out);
  Record *record = recordOf(obj);
  if (!record->alive) {
    setError(interp, "The board object '" + shortText(Tcl_GetString(obj)) +
                         "' no longer exists: its board was unloaded or the board repository was "
                         "refreshed. Get the object again with the get_board* commands.");
    return false;
  }
  out = record->object;
  return true;
}

bool TclHandles::getHandles(Tcl_Interp *interp, Tcl_Obj *obj, std::vector<tclany> &out) {
  out.clear();
  if (isHandle(obj)) {
    tclany object;
    if (!getHandle(interp, obj, object))
      return false;
    out.push_back(object);
    return true;
  }
  int count = 0;
  Tcl_Obj **items = nullptr;
  if (Tcl_ListObjGetElements(nullptr, obj, &count, &items) != TCL_OK) {
    // No list: the whole text may still be a name.
    tclany object;
    if (!getHandle(interp, obj, object))
      return false;
    out.push_back(object);
    return true;
  }
  for (int i = 0; i < count; ++i) {
    tclany object;
    if (!getHandle(interp, items[i], object))
      return false;
    out.push_back(object);
  }
  return true;
}
