// The list of scripted classes and their one-call registration.
#ifndef BOARDLIB_HBOSCRIPTEDCLASSES_H
#define BOARDLIB_HBOSCRIPTEDCLASSES_H

#include <string>
#include <typeinfo>
#include <vector>

class HBOBoard;
class HBOBoardComponent;
class HBOBusIf;
class HBOModelPort;
class HBOPinProps;
class HBOBoardBus;
class HBOBoardBusNet;
class HBOComponentMode;
class HBOParameter;
class HBOJumper;
class HBOIpPreset;
class HBOBusIfPreference;

/// One scripted class: the structure that registers it (also the name of
/// its Python type) and its native pointer type.
struct HBOScriptedClass {
  const char *structName;
  const std::type_info *type;
};

class HBOScriptedClasses {
public:
  /// Every scripted class, boards first and then down the object graph.
  static const std::vector<HBOScriptedClass> &all();
  static const HBOScriptedClass *find(const std::type_info &type);
  /// Calls init of every class, then initV2Props where a class has one
  /// when "board.enableSchemaV2" is true. Only the first call registers;
  /// later calls change nothing. Returns whether the V2 properties are on.
  static bool registerAll();
  /// Registers again from scratch, as a process that changed
  /// "board.enableSchemaV2" would (for tests).
  static bool reregisterAll();
};

/// Calls visit(static_cast<T *>(nullptr)) for each scripted class T, in the
/// order of HBOScriptedClasses::all(). Code that needs each class at compile
/// time (the typed caches of the interpreters) walks the classes with it.
template <typename Visit> void forEachScriptedType(Visit &&visit) {
  visit(static_cast<HBOBoard *>(nullptr));
  visit(static_cast<HBOBoardComponent *>(nullptr));
  visit(static_cast<HBOBusIf *>(nullptr));
  visit(static_cast<HBOModelPort *>(nullptr));
  visit(static_cast<HBOPinProps *>(nullptr));
  visit(static_cast<HBOBoardBus *>(nullptr));
  visit(static_cast<HBOBoardBusNet *>(nullptr));
  visit(static_cast<HBOComponentMode *>(nullptr));
  visit(static_cast<HBOParameter *>(nullptr));
  visit(static_cast<HBOJumper *>(nullptr));
  visit(static_cast<HBOIpPreset *>(nullptr));
  visit(static_cast<HBOBusIfPreference *>(nullptr));
}

#endif
