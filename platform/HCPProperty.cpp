#include "HCPProperty.h"

#include "HSTStringUtils.h"
#include "HUTConvert.h"
#include "NativeCache.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

namespace {

using tclany = zeb::tcltasks::tclany;

struct Registry {
  std::mutex mutex;
  // Keyed by the type's run-time name: type_info objects of one type may
  // differ between shared objects, their names do not.
  std::map<std::string, std::unique_ptr<HCPProperty::ObjectInfo>> classes;
};

Registry &registry() {
  static Registry r;
  return r;
}

thread_local std::string t_castError;
thread_local int t_castErrorDepth = 0;

HCPProperty::Utils::PyResultHook &pyHook() {
  static HCPProperty::Utils::PyResultHook hook;
  return hook;
}

bool isDefaultName(const std::string &name) { return name == "_default_"; }

int typeOfValue(const HATAttrAny &value) {
  switch (value.getKind()) {
  case HATAttrAny::Kind::Bool:
    return HATAttrSpec::Bool;
  case HATAttrAny::Kind::Int:
    return HATAttrSpec::Int;
  case HATAttrAny::Kind::List:
    return HATAttrSpec::StringList;
  default:
    return HATAttrSpec::String;
  }
}

} // namespace

bool HCPProperty::LaunchMode::m_isPyMode = false;

HCPProperty::Setter::~Setter() = default;
std::string HCPProperty::Setter::getDescription() const { return "set property"; }
bool HCPProperty::Setter::isUndoable() const { return true; }

// ---- ObjectInfo ----

HCPProperty::Spec &HCPProperty::ObjectInfo::createSpec(const std::string &name) {
  for (auto &spec : m_specs)
    if (spec->getName() == name)
      return *spec;
  m_specs.push_back(std::make_unique<Spec>(name));
  return *m_specs.back();
}

bool HCPProperty::ObjectInfo::deleteSpec(const std::string &name) {
  auto it = std::find_if(m_specs.begin(), m_specs.end(),
                         [&](const std::unique_ptr<Spec> &s) { return s->getName() == name; });
  if (it == m_specs.end())
    return false;
  m_specs.erase(it);
  return true;
}

const HCPProperty::Spec *HCPProperty::ObjectInfo::findSpec(const std::string &name) const {
  if (isDefaultName(name))
    return nullptr;
  // Names ignore case, so a visible property wins over a hidden spelling of
  // it (a pin's deprecated "IOSTANDARD" beside "iostandard"): a user typing
  // what list_property shows is not told it is deprecated.
  for (bool visible : {true, false}) {
    for (const auto &spec : m_specs)
      if (spec->getAttrSpec().isVisible() == visible && spec->getName() == name)
        return spec.get();
    for (const auto &spec : m_specs)
      if (spec->getAttrSpec().isVisible() == visible && !isDefaultName(spec->getName()) &&
          HSTStringUtils::iequals(spec->getName(), name))
        return spec.get();
  }
  return nullptr;
}

const HCPProperty::Spec *HCPProperty::ObjectInfo::getDefaultSpec() const {
  for (const auto &spec : m_specs)
    if (isDefaultName(spec->getName()))
      return spec.get();
  return nullptr;
}

std::vector<const HCPProperty::Spec *> HCPProperty::ObjectInfo::getSpecs() const {
  std::vector<const Spec *> out;
  out.reserve(m_specs.size());
  for (const auto &spec : m_specs)
    out.push_back(spec.get());
  return out;
}

// ---- registry ----

HCPProperty::ObjectInfo &HCPProperty::registerType(const std::type_info &type) {
  Registry &r = registry();
  std::lock_guard<std::mutex> lock(r.mutex);
  auto &slot = r.classes[type.name()];
  if (!slot)
    slot = std::make_unique<ObjectInfo>(type);
  return *slot;
}

HCPProperty::ObjectInfo *HCPProperty::getObjectInfo(const std::type_info &type) {
  Registry &r = registry();
  std::lock_guard<std::mutex> lock(r.mutex);
  auto it = r.classes.find(type.name());
  return it == r.classes.end() ? nullptr : it->second.get();
}

void HCPProperty::clearRegistry() {
  Registry &r = registry();
  std::lock_guard<std::mutex> lock(r.mutex);
  r.classes.clear();
}

const HCPProperty::ObjectInfo &HCPProperty::infoOf(const tclany &object) {
  if (object.empty())
    throw Error("The object no longer exists: its board was unloaded or the repositories were "
                "refreshed. Get it again with the get_board* commands.");
  const ObjectInfo *info = getObjectInfo(*object.type);
  if (!info)
    throw Error(std::string("Objects of type '") + object.typeName() + "' have no properties.");
  return *info;
}

std::string HCPProperty::describe(const tclany &object) {
  std::string cls = getClassName(object);
  return (cls.empty() ? std::string("object") : cls) + " '" + getObjectName(object) + "'";
}

// ---- casts ----

void HCPProperty::Types::detail::castError(const tclany &handle, const std::type_info &expected) {
  if (t_castErrorDepth > 0) {
    t_castError = "The object is not of the expected class.";
    return;
  }
  ++t_castErrorDepth;
  std::string wanted = getClassName(expected);
  if (wanted.empty())
    wanted = expected.name();
  if (handle.empty())
    t_castError = "Expected a " + wanted + " object, but got an empty or stale handle.";
  else
    t_castError =
        "Expected a " + wanted + " object, but " + describe(handle) + " is of another class.";
  --t_castErrorDepth;
}

bool HCPProperty::Types::detail::takeCastError(std::string &text) {
  if (t_castError.empty())
    return false;
  text.swap(t_castError);
  t_castError.clear();
  return true;
}

// ---- property access ----

namespace {

bool callGetter(const HCPProperty::GetFcn &fn, Tcl_Interp *interp, const tclany &object,
                const std::string &name, HATAttrAny &out) {
  std::string ignored;
  HCPProperty::Types::detail::takeCastError(ignored);
  out.clear();
  bool ok = fn(interp, object, name, out);
  std::string error;
  if (HCPProperty::Types::detail::takeCastError(error))
    throw HCPProperty::Error(error);
  return ok;
}

} // namespace

bool HCPProperty::getProperty(Tcl_Interp *interp, const tclany &object, const std::string &name,
                              HATAttrAny &out) {
  const ObjectInfo &info = infoOf(object);
  out.clear();
  if (const Spec *spec = info.findSpec(name)) {
    if (!spec->getGetFcn())
      return false;
    return callGetter(spec->getGetFcn(), interp, object, spec->getName(), out);
  }
  const Spec *dynamic = info.getDefaultSpec();
  if (dynamic && dynamic->getGetFcn()) {
    // The name goes to the class as written: the tags of dynamic names
    // ("PARAM.", "PORT.") are case-sensitive, so "param.x" is not "PARAM.x".
    if (callGetter(dynamic->getGetFcn(), interp, object, name, out))
      return true;
    // A dotted name is a dynamic property that this object lacks (a
    // parameter it does not have, say): no value, but no error either.
    if (name.find('.') != std::string::npos)
      return false;
    if (dynamic->getGetDefaultFcn()) {
      DynamicList listed;
      dynamic->getGetDefaultFcn()(nullptr, object, listed);
      for (const auto &entry : listed)
        if (HSTStringUtils::iequals(entry.first, name))
          return false;
    }
  }
  throw Error("No property '" + name + "' on " + describe(object) + ".");
}

bool HCPProperty::findPropertySpec(const tclany &object, const std::string &name, HATAttrSpec &spec,
                                   std::string &canonicalName, bool &dynamic) {
  const ObjectInfo &info = infoOf(object);
  if (const Spec *found = info.findSpec(name)) {
    spec = found->getAttrSpec();
    canonicalName = found->getName();
    dynamic = false;
    return true;
  }
  const Spec *def = info.getDefaultSpec();
  if (!def)
    return false;
  dynamic = true;
  canonicalName = name;
  spec = HATAttrSpec();
  spec.setReadOnly(true);
  if (def->getGetDefaultAttrSpecFcn())
    return def->getGetDefaultAttrSpecFcn()(object, name, spec);
  return true;
}

std::vector<HCPProperty::PropertyRow>
HCPProperty::listProperties(Tcl_Interp *interp, const tclany &object, bool includeHidden) {
  const ObjectInfo &info = infoOf(object);
  std::vector<PropertyRow> rows;
  std::vector<std::string> seen; // the upper-case name of each row, in row order
  auto listed = [&seen](const std::string &name) {
    std::string upper = HSTStringUtils::toUpper(name);
    if (std::find(seen.begin(), seen.end(), upper) != seen.end())
      return true;
    seen.push_back(std::move(upper));
    return false;
  };
  const Spec *dynamic = nullptr;
  for (const Spec *spec : info.getSpecs()) {
    if (isDefaultName(spec->getName())) {
      dynamic = spec;
      continue;
    }
    if (!includeHidden && !spec->getAttrSpec().isVisible())
      continue;
    if (listed(spec->getName()))
      continue;
    PropertyRow row;
    row.name = spec->getName();
    row.spec = spec->getAttrSpec();
    if (spec->getGetFcn())
      row.hasValue = callGetter(spec->getGetFcn(), interp, object, spec->getName(), row.value);
    rows.push_back(std::move(row));
  }
  if (dynamic && dynamic->getGetDefaultFcn() &&
      (includeHidden || dynamic->getAttrSpec().isVisible())) {
    DynamicList entries;
    dynamic->getGetDefaultFcn()(interp, object, entries);
    for (auto &entry : entries) {
      if (listed(entry.first))
        continue;
      PropertyRow row;
      row.name = entry.first;
      row.dynamic = true;
      row.spec.setAttrType(typeOfValue(entry.second));
      row.spec.setReadOnly(true);
      if (dynamic->getGetDefaultAttrSpecFcn())
        dynamic->getGetDefaultAttrSpecFcn()(object, entry.first, row.spec);
      row.value = std::move(entry.second);
      row.hasValue = true;
      rows.push_back(std::move(row));
    }
  }
  if (info.getSortProperties()) {
    // seen[i] is the upper-case name of rows[i]: sort by it without making
    // it again for every comparison.
    std::vector<std::size_t> order(rows.size());
    for (std::size_t i = 0; i < order.size(); ++i)
      order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&seen](std::size_t a, std::size_t b) { return seen[a] < seen[b]; });
    std::vector<PropertyRow> sorted;
    sorted.reserve(rows.size());
    for (std::size_t i : order)
      sorted.push_back(std::move(rows[i]));
    rows.swap(sorted);
  }
  return rows;
}

void HCPProperty::setProperty(Tcl_Interp *interp, const std::string &name, const HATAttr &value,
                              const std::vector<tclany> &objects) {
  if (objects.empty())
    throw Error("No objects were given to set property '" + name + "' on.");
  // Check everything first, so that a refused change leaves every object
  // as it was.
  struct Group {
    const Spec *spec;
    zeb::tcltasks::tcl_collection objects;
    std::vector<const void *> targets;
  };
  std::vector<Group> groups;
  for (const tclany &object : objects) {
    const ObjectInfo &info = infoOf(object);
    const Spec *spec = info.findSpec(name);
    if (!spec)
      throw Error("No property '" + name + "' on " + describe(object) + ".");
    if (spec->getAttrSpec().isReadOnly() || !spec->getSetterFcn())
      throw Error("Property '" + spec->getName() + "' of " + describe(object) + " is read-only.");
    std::string text = value.toString();
    if (spec->getAttrSpec().getAttrType() == HATAttrSpec::Bool) {
      bool parsed = false;
      if (!HUTConvert::stringToBoolean(text, parsed, false))
        throw Error("Property '" + spec->getName() +
                    "' takes a boolean (true or false, 1 or 0), not '" + text + "'.");
    } else if (spec->getAttrSpec().getAttrType() == HATAttrSpec::Int) {
      errno = 0;
      char *end = nullptr;
      std::strtoll(text.c_str(), &end, 10);
      if (text.empty() || errno != 0 || *end != '\0')
        throw Error("Property '" + spec->getName() + "' takes an integer, not '" + text + "'.");
    }
    auto it =
        std::find_if(groups.begin(), groups.end(), [&](const Group &g) { return g.spec == spec; });
    if (it == groups.end()) {
      groups.push_back(Group{spec, {}, {}});
      it = groups.end() - 1;
    }
    it->objects.append(object);
    it->targets.push_back(object.object);
  }
  for (Group &group : groups) {
    std::unique_ptr<Setter> setter = group.spec->getSetterFcn()();
    if (!setter)
      throw Error("Property '" + group.spec->getName() + "' cannot be set.");
    if (setter->set(interp, &group.objects, value) != 0)
      throw Error("Setting property '" + group.spec->getName() + "' failed.");
    setter->notify();
    if (setter->isUndoable())
      UndoHistory::push(std::move(setter), group.targets);
  }
}

std::string HCPProperty::getObjectName(const tclany &object) {
  if (object.empty())
    return std::string();
  const ObjectInfo *info = getObjectInfo(*object.type);
  if (!info)
    return std::string();
  const Spec *spec = info->findSpec("name");
  const GetFcn *get = info->getNameFcn() ? &info->getNameFcn()
                      : spec             ? &spec->getGetFcn()
                                         : nullptr;
  if (!get || !*get)
    return std::string();
  HATAttrAny value;
  (*get)(nullptr, object, "name", value);
  std::string ignored;
  Types::detail::takeCastError(ignored);
  return value.toString();
}

std::string HCPProperty::getClassName(const tclany &object) {
  return object.type ? getClassName(*object.type) : std::string();
}

std::string HCPProperty::getClassName(const std::type_info &type) {
  const ObjectInfo *info = getObjectInfo(type);
  const Spec *spec = info ? info->findSpec("class") : nullptr;
  if (!spec || !spec->getGetFcn())
    return std::string();
  // The class getter answers a constant and never looks at the object.
  HATAttrAny value;
  spec->getGetFcn()(nullptr, tclany(type, nullptr), "class", value);
  std::string ignored;
  Types::detail::takeCastError(ignored);
  return value.toString();
}

// ---- results ----

void HCPProperty::Utils::setPyResultHook(PyResultHook hook) { pyHook() = std::move(hook); }

void HCPProperty::Utils::deliverPyResult(const HATAttrAny &value) {
  if (pyHook())
    pyHook()(value);
}

// ---- undo history ----

namespace {

struct History {
  struct Entry {
    std::unique_ptr<HCPProperty::Setter> setter;
    std::vector<const void *> targets;
  };
  std::mutex mutex;
  std::vector<Entry> undo;
  std::vector<Entry> redo;
  std::unordered_multiset<const void *> targets;
  std::atomic<bool> nonEmpty{false};

  void count(const Entry &entry, bool add) {
    for (const void *t : entry.targets) {
      if (add)
        targets.insert(t);
      else
        targets.erase(targets.find(t));
    }
    nonEmpty = !targets.empty() || !undo.empty() || !redo.empty();
  }
};

History &history() {
  static History h;
  return h;
}

} // namespace

void HCPProperty::UndoHistory::push(std::unique_ptr<Setter> setter,
                                    const std::vector<const void *> &targets) {
  History &h = history();
  std::vector<History::Entry> dropped; // destroyed after the lock is left
  std::lock_guard<std::mutex> lock(h.mutex);
  for (auto &entry : h.redo)
    h.count(entry, false);
  dropped.swap(h.redo);
  h.undo.push_back(History::Entry{std::move(setter), targets});
  h.count(h.undo.back(), true);
}

namespace {

bool step(std::vector<History::Entry> &from, std::vector<History::Entry> &to, bool undo,
          std::string &what) {
  History &h = history();
  History::Entry entry;
  {
    std::lock_guard<std::mutex> lock(h.mutex);
    if (from.empty())
      return false;
    entry = std::move(from.back());
    from.pop_back();
  }
  what = entry.setter->getDescription();
  if (undo)
    entry.setter->undo();
  else
    entry.setter->redo();
  entry.setter->notify();
  std::lock_guard<std::mutex> lock(h.mutex);
  to.push_back(std::move(entry));
  return true;
}

} // namespace

bool HCPProperty::UndoHistory::undo(std::string &what) {
  History &h = history();
  return step(h.undo, h.redo, true, what);
}

bool HCPProperty::UndoHistory::redo(std::string &what) {
  History &h = history();
  return step(h.redo, h.undo, false, what);
}

std::size_t HCPProperty::UndoHistory::undoCount() {
  std::lock_guard<std::mutex> lock(history().mutex);
  return history().undo.size();
}

std::size_t HCPProperty::UndoHistory::redoCount() {
  std::lock_guard<std::mutex> lock(history().mutex);
  return history().redo.size();
}

void HCPProperty::UndoHistory::clear() {
  History &h = history();
  std::vector<History::Entry> undo, redo;
  std::lock_guard<std::mutex> lock(h.mutex);
  undo.swap(h.undo);
  redo.swap(h.redo);
  h.targets.clear();
  h.nonEmpty = false;
}

void HCPProperty::UndoHistory::objectGone(const void *object) {
  History &h = history();
  if (!h.nonEmpty.load(std::memory_order_relaxed))
    return;
  std::vector<History::Entry> dropped;
  std::lock_guard<std::mutex> lock(h.mutex);
  if (h.targets.find(object) == h.targets.end())
    return;
  for (auto *stack : {&h.undo, &h.redo}) {
    for (auto it = stack->begin(); it != stack->end();) {
      if (std::find(it->targets.begin(), it->targets.end(), object) != it->targets.end()) {
        h.count(*it, false);
        dropped.push_back(std::move(*it));
        it = stack->erase(it);
      } else {
        ++it;
      }
    }
  }
}

void zeb::detail::objectGone(const void *object) { HCPProperty::UndoHistory::objectGone(object); }
