// The registry on classes of the test's own, so that it is checked apart
// from the board tables: registration, dynamic names, and handles it must
// refuse. Listings, kinds of values and undo are checked on the board
// classes (PropertyListingTest, JumperValueTest).
#include "HCPProperty.h"

#include <gtest/gtest.h>

namespace {

using tclany = zeb::tcltasks::tclany;

struct Lamp {
  std::string name;
};
struct Switch {
  std::string name;
};

template <typename T> void addName(HCPProperty::ObjectInfo &info, const char *className) {
  // The class property answers without an object, as the registry asks it.
  info.createSpec("class").setGetFcn(
      [className](Tcl_Interp *, const tclany &, const std::string &, HATAttrAny &out) {
        out.setString(className);
        return true;
      });
  HCPProperty::Spec &spec = info.createSpec("name");
  spec.setGetFcn([](Tcl_Interp *interp, const tclany &h, const std::string &, HATAttrAny &out) {
    T *object = HCPProperty::Types::any2native<T *>::get(h);
    if (!object)
      return false;
    HCPProperty::Utils::saveResult(interp, object->name, out);
    return true;
  });
  spec.getAttrSpec().setAttrType(HATAttrSpec::String);
}

class PropertyRegistry : public ::testing::Test {
protected:
  void SetUp() override {
    HCPProperty::registerObjectType<Lamp *>();
    HCPProperty::ObjectInfo &lamp = *HCPProperty::getObjectInfo(typeid(Lamp *));
    addName<Lamp>(lamp, "lamp");
    HCPProperty::Spec &dyn = lamp.createSpec("_default_");
    dyn.setGetFcn([](Tcl_Interp *, const tclany &, const std::string &name, HATAttrAny &out) {
      if (name.rfind("TAG.", 0) != 0)
        return false;
      out.setString(name.substr(4));
      return true;
    });
    HCPProperty::registerObjectType<Switch *>();
    addName<Switch>(*HCPProperty::getObjectInfo(typeid(Switch *)), "switch");
  }
  void TearDown() override { HCPProperty::clearRegistry(); }
};

TEST_F(PropertyRegistry, RegistrationIsIdempotentAndSpecsAreShared) {
  HCPProperty::ObjectInfo *before = HCPProperty::getObjectInfo(typeid(Lamp *));
  HCPProperty::registerObjectType<Lamp *>();
  EXPECT_EQ(before, HCPProperty::getObjectInfo(typeid(Lamp *)));
  EXPECT_EQ(&before->createSpec("name"), before->findSpec("name"));
  EXPECT_EQ(before->findSpec("NAME"), before->findSpec("name")) << "case is ignored on look-up";
  EXPECT_EQ(nullptr, before->findSpec("_DEFAULT_")) << "the dynamic record is no property";
  EXPECT_TRUE(before->deleteSpec("name"));
  EXPECT_FALSE(before->deleteSpec("name"));
  EXPECT_EQ(nullptr, HCPProperty::getObjectInfo(typeid(int *)));
}

TEST_F(PropertyRegistry, DynamicNamesAnswerOrStaySilentButUnknownNamesFail) {
  Lamp lamp{"l1"};
  HATAttrAny v;
  EXPECT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "TAG.red", v));
  EXPECT_EQ("red", v.toString());
  EXPECT_FALSE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "tag.red", v))
      << "the tag is compared as the class writes it";
  EXPECT_FALSE(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "OTHER.x", v));
  EXPECT_TRUE(v.isEmpty());
  EXPECT_THROW(HCPProperty::getProperty(nullptr, tclany::of(&lamp), "colour", v),
               HCPProperty::Error);
}

TEST_F(PropertyRegistry, HandlesOfAnotherClassOrStaleOnesAreRefusedWithATextNotACrash) {
  Switch sw{"s1"};
  HATAttrAny v;
  // A lamp getter asked about a switch reports a cast error.
  const HCPProperty::Spec *spec = HCPProperty::getObjectInfo(typeid(Lamp *))->findSpec("name");
  EXPECT_FALSE(spec->getGetFcn()(nullptr, tclany::of(&sw), "name", v));
  std::string error;
  ASSERT_TRUE(HCPProperty::Types::detail::takeCastError(error));
  EXPECT_NE(std::string::npos, error.find("lamp")) << error;
  EXPECT_NE(std::string::npos, error.find("switch 's1'")) << error;
  EXPECT_THROW(HCPProperty::getProperty(nullptr, tclany(), "name", v), HCPProperty::Error);
  int notRegistered = 0;
  EXPECT_THROW(HCPProperty::getProperty(nullptr, tclany::of(&notRegistered), "name", v),
               HCPProperty::Error);
}

} // namespace
