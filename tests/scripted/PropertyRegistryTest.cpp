// The registry on classes of the test's own, so that it is checked apart
// from the board tables.
#include "HCPProperty.h"
#include "NativeCache.h"

#include <gtest/gtest.h>

namespace {

using tclany = zeb::tcltasks::tclany;

struct Lamp {
  explicit Lamp(std::string n, bool o = false, std::vector<std::string> t = {})
      : name(std::move(n)), on(o), tags(std::move(t)) {}
  std::string name;
  bool on;
  std::vector<std::string> tags;
};
struct Switch {
  std::string name;
};

// A setter as a writable property has one: remembers old values for undo.
class LampSetter : public HCPProperty::Setter {
public:
  int set(Tcl_Interp *, const zeb::tcltasks::tcl_collection *objects, const HATAttr &value) override {
    m_value = value.toString() == "1" || value.toString() == "true";
    for (const tclany &h : objects->objects()) {
      Lamp *lamp = static_cast<Lamp *>(h.object);
      m_old.push_back(lamp->on);
      m_lamps.push_back(lamp);
    }
    redo();
    return 0;
  }
  void undo() override {
    for (std::size_t i = 0; i < m_lamps.size(); ++i)
      m_lamps[i]->on = m_old[i];
  }
  void redo() override {
    for (Lamp *lamp : m_lamps)
      lamp->on = m_value;
  }
  void notify() override {}

private:
  bool m_value = false;
  std::vector<bool> m_old;
  std::vector<Lamp *> m_lamps;
};

template <typename T, typename F> void addReader(HCPProperty::ObjectInfo &info, const char *name, int type, F read) {
  HCPProperty::Spec &spec = info.createSpec(name);
  spec.setGetFcn([read](Tcl_Interp *interp, const tclany &h, const std::string &, HATAttrAny &result) {
    T *object = HCPProperty::Types::any2native<T *>::get(h);
    if (!object)
      return false;
    HCPProperty::Utils::saveResult(interp, read(*object), result);
    return true;
  });
  spec.getAttrSpec().setAttrType(type);
}

// The class property answers without an object, as the registry asks it.
void addClass(HCPProperty::ObjectInfo &info, const char *name) {
  info.createSpec("class").setGetFcn([name](Tcl_Interp *, const tclany &, const std::string &, HATAttrAny &out) {
    out.setString(name);
    return true;
  });
}

class PropertyRegistry : public ::testing::Test {
protected:
  void SetUp() override {
    HCPProperty::UndoHistory::clear();
    HCPProperty::registerObjectType<Lamp *>();
    HCPProperty::ObjectInfo &lamp = *HCPProperty::getObjectInfo(typeid(Lamp *));
    addClass(lamp, "lamp");
    addReader<Lamp>(lamp, "name", 3, [](const Lamp &l) { return l.name; });
    addReader<Lamp>(lamp, "tags", 6, [](const Lamp &l) { return l.tags; });
    addReader<Lamp>(lamp, "Brightness", 1, [](const Lamp &) { return 7; });
    addReader<Lamp>(lamp, "secret", 3, [](const Lamp &) { return std::string("s"); });
    lamp.createSpec("secret").getAttrSpec().setVisible(false);
    addReader<Lamp>(lamp, "on", 0, [](const Lamp &l) { return l.on; });
    HCPProperty::Spec &on = lamp.createSpec("on");
    on.getAttrSpec().setReadOnly(false);
    on.setSetterFcn([] { return std::unique_ptr<HCPProperty::Setter>(new LampSetter); });
    HCPProperty::Spec &dyn = lamp.createSpec("_default_");
    dyn.setGetFcn([](Tcl_Interp *, const tclany &, const std::string &name, HATAttrAny &out) {
      if (name.rfind("TAG.", 0) != 0)
        return false;
      out.setString(name.substr(4));
      return true;
    });
    dyn.setGetDefaultFcn([](Tcl_Interp *, const tclany &, HCPProperty::DynamicList &out) {
      out.emplace_back("TAG.a", HATAttrAny(std::string("a")));
      return true;
    });

    HCPProperty::registerObjectType<Switch *>();
    HCPProperty::ObjectInfo &sw = *HCPProperty::getObjectInfo(typeid(Switch *));
    sw.setSortProperties(false);
    addClass(sw, "switch");
    addReader<Switch>(sw, "name", 3, [](const Switch &s) { return s.name; });
    addReader<Switch>(sw, "zeta", 3, [](const Switch &) { return std::string("z"); });
    addReader<Switch>(sw, "alpha", 3, [](const Switch &) { return std::string("a"); });
  }
  void TearDown() override {
    HCPProperty::UndoHistory::clear();
    HCPProperty::clearRegistry();
  }

  static std::vector<std::string> names(const tclany &h, bool hidden) {
    std::vector<std::string> out;
    for (const auto &row : HCPProperty::listProperties(nullptr, h, hidden))
      out.push_back(row.name);
    return out;
  }
};

TEST_F(PropertyRegistry, RegistrationIsIdempotentAndSpecsAreShared) {
  HCPProperty::ObjectInfo *before = HCPProperty::getObjectInfo(typeid(Lamp *));
  HCPProperty::registerObjectType<Lamp *>();
  EXPECT_EQ(before, HCPProperty::getObjectInfo(typeid(Lamp *)));
  EXPECT_EQ(&before->createSpec("name"), before->findSpec("name"));
  EXPECT_EQ(before->findSpec("NAME"), before->findSpec("name")) << "case is ignored on look-up";
  EXPECT_EQ(nullptr, before->findSpec("_DEFAULT_")) << "the dynamic record is no property";
  EXPECT_TRUE(before->deleteSpec("tags"));
  EXPECT_FALSE(before->deleteSpec("tags"));
  EXPECT_EQ(nullptr, HCPProperty::getObjectInfo(typeid(int *)));
}

TEST_F(PropertyRegistry, ListingSortsUnlessToldNotToAndHidesHiddenOnes) {
  Lamp lamp{"l1", false, {"x", "y z"}};
  Switch sw{"s1"};
  EXPECT_EQ((std::vector<std::string>{"Brightness", "class", "name", "on", "TAG.a", "tags"}),
            names(tclany::of(&lamp), false));
  EXPECT_EQ((std::vector<std::string>{"Brightness", "class", "name", "on", "secret", "TAG.a", "tags"}),
            names(tclany::of(&lamp), true));
  EXPECT_EQ((std::vector<std::string>{"class", "name", "zeta", "alpha"}), names(tclany::of(&sw), false));
}

TEST_F(PropertyRegistry, ValuesKeepTheirKindsAndPrintAsTclDoes) {
  Lamp lamp{"l1", true, {"x", "y z", ""}};
  HATAttrAny v;
  ASSERT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "TAGS", v));
  EXPECT_EQ("x {y z} {}", v.toString());
  ASSERT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "on", v));
  EXPECT_EQ(HATAttrAny::Kind::Bool, v.getKind());
  EXPECT_EQ("1", v.toString());
  ASSERT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "brightness", v));
  EXPECT_EQ(7, v.getInt());
}

TEST_F(PropertyRegistry, DynamicNamesAnswerOrStaySilentButUnknownNamesFail) {
  Lamp lamp{"l1"};
  HATAttrAny v;
  EXPECT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "TAG.red", v));
  EXPECT_EQ("red", v.toString());
  EXPECT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "tag.red", v)) << "tag ignores case";
  EXPECT_FALSE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "OTHER.x", v));
  EXPECT_TRUE(v.isEmpty());
  EXPECT_THROW(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "colour", v), HCPProperty::Error);
}

TEST_F(PropertyRegistry, HandlesOfAnotherClassOrStaleOnesAreRefusedWithATextNotACrash) {
  Switch sw{"s1"};
  tclany wrong = tclany::of(&sw);
  HATAttrAny v;
  // A lamp getter asked about a switch reports a cast error.
  const HCPProperty::Spec *spec = HCPProperty::getObjectInfo(typeid(Lamp *))->findSpec("name");
  EXPECT_FALSE(spec->getGetFcn()(nullptr, wrong, "name", v));
  std::string error;
  ASSERT_TRUE(HCPProperty::Types::detail::takeCastError(error));
  EXPECT_NE(std::string::npos, error.find("lamp")) << error;
  EXPECT_NE(std::string::npos, error.find("switch 's1'")) << error;
  EXPECT_THROW(HCPProperty::getProperty(nullptr, tclany(), "name", v), HCPProperty::Error);
  int notRegistered = 0;
  EXPECT_THROW(HCPProperty::getProperty(nullptr, tclany::of(&notRegistered), "name", v), HCPProperty::Error);
}

TEST_F(PropertyRegistry, SetterChangesAreCheckedFirstAndCanBeUndoneAndRedone) {
  Lamp a{"a", false}, b{"b", true};
  Switch sw{"s"};
  std::vector<tclany> both = {tclany::of(&a), tclany::of(&b)};
  EXPECT_THROW(HCPProperty::setProperty(nullptr, "on", HATAttr(std::string("maybe")), both), HCPProperty::Error);
  EXPECT_THROW(HCPProperty::setProperty(nullptr, "name", HATAttr(std::string("x")), both), HCPProperty::Error);
  // One bad object refuses the whole change.
  EXPECT_THROW(HCPProperty::setProperty(nullptr, "on", HATAttr(std::string("1")), {tclany::of(&a), tclany::of(&sw)}),
               HCPProperty::Error);
  EXPECT_FALSE(a.on);
  EXPECT_EQ(0u, HCPProperty::UndoHistory::undoCount());

  HCPProperty::setProperty(nullptr, "ON", HATAttr(std::string("true")), both);
  EXPECT_TRUE(a.on && b.on);
  std::string what;
  ASSERT_TRUE(HCPProperty::UndoHistory::undo(what));
  EXPECT_FALSE(a.on);
  EXPECT_TRUE(b.on) << "each object gets its own earlier value back";
  ASSERT_TRUE(HCPProperty::UndoHistory::redo(what));
  EXPECT_TRUE(a.on);
  EXPECT_FALSE(HCPProperty::UndoHistory::redo(what));
}

TEST_F(PropertyRegistry, ChangesToADestroyedObjectLeaveTheHistory) {
  Lamp keep{"keep"};
  {
    Lamp gone{"gone"};
    HCPProperty::setProperty(nullptr, "on", HATAttr(std::string("1")), {tclany::of(&gone)});
    HCPProperty::setProperty(nullptr, "on", HATAttr(std::string("1")), {tclany::of(&keep)});
    EXPECT_EQ(2u, HCPProperty::UndoHistory::undoCount());
    zeb::tcltasks::native_cache<Lamp *>::remove(&gone); // what a scripted destructor does
  }
  EXPECT_EQ(1u, HCPProperty::UndoHistory::undoCount());
  std::string what;
  EXPECT_TRUE(HCPProperty::UndoHistory::undo(what));
  EXPECT_FALSE(keep.on);
  EXPECT_FALSE(HCPProperty::UndoHistory::undo(what));
}

} // namespace
