// The property listing of every object of the sample board, hidden and
// dynamic properties included, compared whole with its golden file in
// tests/data/golden: each property's name in listing order, its type,
// whether it is read-only, hidden or dynamic, its hint, and its value with
// the kind of the value. Pins are many and alike: two stand for them. With
// the schema 2 switch off, one object of each class of the part. Run with
// BOARDLIB_UPDATE_GOLDEN=1 to write the files anew after a deliberate
// change, and read the diff before committing.
#include "HBOBoardBusNet.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "SampleBoard.h"

#include <set>
#include <sstream>

namespace {

using test::tclany;

const char *const kKinds[] = {"empty", "bool", "int", "string", "list"};

// Hidden: listed only when hidden properties are asked for.
void list(std::ostream &out, const tclany &object) {
  out << HCPProperty::getClassName(object) << " " << HCPProperty::getObjectName(object) << "\n";
  std::set<std::string> visible;
  for (const HCPProperty::PropertyRow &row : HCPProperty::listProperties(nullptr, object, false))
    visible.insert(row.name);
  for (const HCPProperty::PropertyRow &row : HCPProperty::listProperties(nullptr, object, true)) {
    const HATAttrSpec &spec = row.spec;
    out << "  " << row.name << " type=" << spec.getAttrType() << (spec.isReadOnly() ? " ro" : " rw")
        << (visible.count(row.name) ? "" : " hidden") << (row.dynamic ? " dynamic" : "")
        << (spec.m_hint.empty() ? "" : " hint=" + spec.m_hint);
    if (row.hasValue)
      out << " = " << row.value.toString() << " (" << kKinds[static_cast<int>(row.value.getKind())]
          << ")";
    out << "\n";
  }
}

template <typename T> void listAll(std::ostream &out, const std::vector<T *> &objects) {
  for (T *object : objects)
    list(out, tclany::of(object));
}

class PropertyListing : public test::SampleBoard {
protected:
  /// Every object, or with \p full false one of each class of the board's
  /// part and the board itself.
  std::string listing(bool full) const {
    std::ostringstream out;
    list(out, tclany::of(board.get()));
    if (!full) {
      HBOBusIf *reset = comp("part0")->getBusIfByName("reset");
      for (const tclany &object : {tclany::of(comp("part0")), tclany::of(reset),
                                   tclany::of(reset->getPortMaps().begin()->second),
                                   tclany::of(comp("part0")->getPins().at("led0"))})
        list(out, object);
      return out.str();
    }
    for (const auto &entry : board->getBoardComponents()) {
      HBOBoardComponent *component = entry.second;
      list(out, tclany::of(component));
      std::vector<HBOBusIf *> interfaces;
      component->getInterfacesVec(interfaces);
      for (HBOBusIf *busIf : interfaces) {
        list(out, tclany::of(busIf));
        for (const auto &port : busIf->getPortMaps())
          list(out, tclany::of(port.second));
        std::vector<HBOBusIfPreference *> preferences;
        busIf->getPreferences(preferences);
        listAll(out, preferences);
      }
      std::vector<HBOComponentMode *> modes;
      component->getComponentModes(modes);
      for (HBOComponentMode *mode : modes) {
        list(out, tclany::of(mode));
        std::vector<HBOBusIfPreference *> preferences;
        mode->getPreferredIps(preferences);
        listAll(out, preferences);
      }
    }
    for (const char *pin : {"sys_clk_p", "led0"})
      list(out, tclany::of(comp("part0")->getPins().at(pin)));
    for (HBOBoardBus *bus : board->getBuses()) {
      list(out, tclany::of(bus));
      listAll(out, bus->getBoardBusNets());
    }
    listAll(out, board->getJumpers());
    listAll(out, board->getParameters());
    for (const auto *map : {&board->getIpPresets(), &board->getIpAssociatedInterfaces()})
      for (const auto &entry : *map)
        listAll(out, entry.second);
    return out.str();
  }
};

TEST_F(PropertyListing, MatchesItsGoldenFile) {
  test::expectGolden("properties.txt", listing(true));
}

TEST_F(PropertyListing, WithoutSchemaTwoMatchesItsGoldenFile) {
  test::ParamScope off("board.enableSchemaV2", "false");
  HBOScriptedClasses::reregisterAll();
  test::expectGolden("properties_without_schema_2.txt", listing(false));
}

} // namespace
