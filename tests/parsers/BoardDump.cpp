#include "BoardDump.h"

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardCompMuxPosition.h"
#include "HBOBoardComponent.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBoardDataProps.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "HBOPowerRail.h"

#include <sstream>

namespace {

// Lines of "name: value", nested by two blanks per level.
class Writer {
public:
  template <typename T> void field(const std::string &name, const T &value) {
    m_out << std::string(m_depth * 2, ' ') << name << ":";
    std::ostringstream text;
    text << value;
    if (!text.str().empty())
      m_out << " " << text.str();
    m_out << "\n";
  }
  void list(const std::string &name, const std::vector<std::string> &values) {
    std::string text;
    for (const std::string &v : values)
      text += (text.empty() ? "[" : ", ") + (v.empty() ? "''" : v);
    field(name, text.empty() ? "[]" : text + "]");
  }
  // Any ordered map of texts: std::map or the model's flat maps.
  template <typename Map> void map(const std::string &name, const Map &values) {
    std::vector<std::string> entries;
    for (const auto &entry : values)
      entries.push_back(entry.first + "=" + entry.second);
    list(name, entries);
  }
  void flags(const std::string &name, const std::map<std::string, bool> &values) {
    std::vector<std::string> entries;
    for (const auto &entry : values)
      entries.push_back(entry.first + "=" + (entry.second ? "true" : "false"));
    list(name, entries);
  }
  // Opens a nested block.
  void begin(const std::string &name) {
    field(name, "");
    ++m_depth;
  }
  void end() { --m_depth; }
  std::string text() const { return m_out.str(); }

private:
  std::ostringstream m_out;
  int m_depth = 0;
};

std::string owner(const void *owner, const void *expected) {
  return owner == expected ? "this" : owner ? "other" : "none";
}

void dump(Writer &w, const HBOParameter *p) {
  w.field("parameter " + p->getName(), p->getValue() + " type=" + p->getValueType() +
                                           " min=" + p->getValueMin() + " max=" + p->getValueMax() +
                                           " read_only=" + p->getReadOnly());
}

void dump(Writer &w, const HBOImage *image) {
  w.field("image " + image->getName(),
          "resolution=" + image->getResolution() + " description=" + image->getDescription());
}

void dump(Writer &w, const HBOBusIfPreference *p, const HBOBoard &board) {
  w.field("preferred_ip " + p->getDefaultIpVlnv(),
          "order=" + std::to_string(p->getOrder()) + " name=" + p->getPrefName() +
              " version=" + p->getVersion() + " preset_file=" + p->getPresetFile() +
              " preset_proc=" + p->getPresetProc() + " owner=" + owner(p->getOwner(), &board));
}

void dump(Writer &w, const HBOPinProps *pin, const HBOBoardComponent *component) {
  w.begin("pin " + pin->getName());
  w.field("index", pin->getPinIndex());
  w.field("loc", pin->getPinLoc());
  w.field("owner", owner(pin->getOwner(), component));
  w.map("properties", pin->getPortProps());
  w.map("iobank", pin->getIOBankProperties());
  w.map("interface_ports", pin->getIntfPortMap());
  w.end();
}

void dump(Writer &w, HBOModelPort *port, const HBOBusIf *busIf) {
  int left = -1, right = -1, width = 0;
  bool vector = false;
  std::string dir, ownerName, logical;
  port->getPortVecLeft(left);
  port->getPortVecRight(right);
  port->getPortWidth(width);
  port->isPortOfTypeVec(vector);
  port->getPortDir(dir);
  port->getOwnerBusIf(ownerName);
  port->getBusIfLogicalPortName(logical);
  w.begin("port " + port->getName());
  w.field("shape", dir + " left=" + std::to_string(left) + " right=" + std::to_string(right) +
                       " width=" + std::to_string(width) + (vector ? " vector" : " scalar"));
  w.field("of", ownerName + "." + logical + " owner=" + owner(port->getOwner(), busIf));
  w.map("pin_map", port->getPinPortMap());
  w.end();
}

void dump(Writer &w, const HBOBusIf *busIf, const HBOBoard &board,
          const HBOBoardComponent *component) {
  std::string display, type;
  busIf->getDisplayName(display);
  busIf->getAbstractTypeVLNV(type, " ");
  w.begin("interface " + busIf->getName());
  w.field("display_name", display);
  w.field("type", type);
  w.field("mode", busIf->getInterfaceMode());
  w.field("of_component", busIf->getOfComponent());
  w.field("description", busIf->getDescription());
  w.field("preset", busIf->getPresetProcName() + " file=" + busIf->getPresetFile());
  w.field("owners", "board=" + owner(busIf->getParentBoard(), &board) +
                        " component=" + owner(busIf->getOwnerComponent(), component));
  w.field("is_enabled", busIf->getIsEnabled());
  w.flags("jumpers", busIf->getJumpers());
  w.flags("params", busIf->getParams());
  std::vector<HBOParameter *> parameters;
  busIf->getParameters(parameters);
  for (const HBOParameter *p : parameters)
    dump(w, p);
  std::vector<HBOBusIfPreference *> preferences;
  busIf->getPreferences(preferences);
  for (const HBOBusIfPreference *p : preferences)
    dump(w, p, board);
  if (busIf->getPreference())
    w.field("preferred", busIf->getPreference()->getDefaultIpVlnv());
  std::vector<HBOPortMap *> maps;
  busIf->getPortMapSeq(maps);
  for (const HBOPortMap *map : maps)
    w.field("port_map " + map->getLogicalPort(), map->getPhysicalPort());
  for (const auto &entry : busIf->getPortMaps())
    dump(w, entry.second, busIf);
  w.end();
}

void dump(Writer &w, const HBOComponentMode *mode, const HBOBoard &board) {
  w.begin("mode " + mode->getName());
  w.field("display_name", mode->getDisplayName());
  w.field("description", mode->getDescription());
  w.field("preset_proc", mode->getPresetProcName());
  w.field("enablement", mode->getEnablementDependency());
  w.field("is_enabled", mode->getIsEnabled());
  HBOComponentMode::InterfaceMap interfaces, required;
  mode->getInterfaces(interfaces);
  mode->getRequiredInterfaces(required);
  for (const auto &entry : interfaces)
    w.field("interface " + std::to_string(entry.first),
            entry.second.first + (entry.second.second ? " optional" : "") +
                (required.count(entry.first) ? " required" : ""));
  std::vector<HBOBusIfPreference *> preferences;
  mode->getPreferredIps(preferences);
  for (const HBOBusIfPreference *p : preferences)
    dump(w, p, board);
  w.end();
}

void dump(Writer &w, const HBOBoardComponent *c, const HBOBoard &board) {
  w.begin("component " + c->getComponentName());
  w.field("name", c->getName());
  w.field("display_name", c->getDisplayName());
  w.field("type", c->getType() + " sub_type=" + c->getSubType() + " part=" + c->getPartString());
  w.field("description", c->getDescription());
  w.field("long_description", c->getLongDesc());
  w.field("connected_to", c->getConnectedToLogicStr());
  w.field("pin_map_file", c->getPinMapFile());
  w.field("board", owner(c->getBoard(), &board));
  w.field("is_enabled", c->getIsEnabled());
  std::vector<std::string> parts;
  c->getAdditionalSupportedPartNames(parts, false);
  w.list("additional_parts", parts);
  std::map<std::string, std::string> jtag;
  c->getJtagPositions(jtag);
  w.map("jtag_positions", jtag);
  for (const HBOImage *image : c->getImages())
    dump(w, image);
  for (const HBOParameter *p : c->getParameters())
    dump(w, p);
  for (const auto &[vendor, boardName, version, connector] : c->getCompatibleConnectors())
    w.field("compatible_connector", vendor + ":" + boardName + ":" + version + " " + connector);
  std::vector<HBOBoardComponentDriver *> drivers;
  c->getDrivers(drivers);
  for (const HBOBoardComponentDriver *d : drivers) {
    w.begin("driver " + d->getDescription());
    w.list("os", d->getOs());
    w.list("platform", d->getPlatform());
    w.field("path", d->getDriverPath());
    w.map("files", d->getFiles());
    w.end();
  }
  std::map<int, HBOBoardCompMuxPosition *> positions;
  c->getIICPositions(positions);
  for (const auto &[id, position] : positions) {
    std::vector<std::string> addresses;
    for (const auto &[low, high] : position->getAddresses())
      addresses.push_back(low + "-" + high);
    w.list("mux_position " + std::to_string(id) + " " + position->getComponent(), addresses);
  }
  for (const HBOBoardComponent::DesignConstr &constr : c->getDesignConstrs()) {
    if (const auto *dci = std::get_if<HBOBoardComponent::DciCascadeConstr>(&constr)) {
      std::vector<std::string> slaves;
      for (int bank : dci->slaveBanks)
        slaves.push_back(std::to_string(bank));
      w.list("dci_cascade " + std::to_string(dci->masterBank), slaves);
    } else if (const auto *vref = std::get_if<HBOBoardComponent::InternalVrefConstr>(&constr)) {
      w.field("internal_vref " + std::to_string(vref->bank), vref->voltage);
    }
  }
  std::vector<std::string> ports;
  for (const auto &entry : c->getModelPorts())
    ports.push_back(entry.first);
  w.list("model_ports", ports);
  std::vector<HBOBusIf *> interfaces;
  c->getInterfacesVec(interfaces);
  for (const HBOBusIf *busIf : interfaces)
    dump(w, busIf, board, c);
  std::vector<HBOComponentMode *> modes;
  c->getComponentModes(modes);
  for (const HBOComponentMode *mode : modes)
    dump(w, mode, board);
  // By index, so that the order is that of the component's pin slots.
  std::map<int, std::vector<const HBOPinProps *>> byIndex;
  for (const auto &entry : c->getPins())
    byIndex[entry.second->getPinIndex()].push_back(entry.second);
  for (const auto &entry : byIndex)
    for (const HBOPinProps *pin : entry.second)
      dump(w, pin, c);
  w.end();
}

void dump(Writer &w, const HBOBoardBus *bus, const HBOBoard &board) {
  w.begin("connection " + bus->getName());
  w.field("name", bus->getConnectionName() + " owner=" + owner(bus->getOwner(), &board));
  w.field("component_1", bus->getComp1() + " " + std::to_string(bus->getStartIndexComp1()) + ".." +
                             std::to_string(bus->getStopIndexComp1()));
  w.field("component_2", bus->getComp2() + " " + std::to_string(bus->getStartIndexComp2()) + ".." +
                             std::to_string(bus->getStopIndexComp2()));
  std::ostringstream delays;
  delays << bus->getDelay() << " min=" << bus->getMinDelay() << " max=" << bus->getMaxDelay();
  w.field("delay", delays.str());
  w.field("enablement", bus->getEnablementDependency());
  w.field("is_enabled", bus->getIsEnabled());
  for (const HBOBoardBusNet *net : bus->getBoardBusNets()) {
    std::ostringstream text;
    text << net->getC1PinIndex() << "-" << net->getC2PinIndex() << " delay "
         << net->getTypicalDelay() << " min=" << net->getMinDelay() << " max=" << net->getMaxDelay()
         << " enablement=" << net->getEnablementDependency()
         << " is_enabled=" << net->getIsEnabled() << " owner=" << owner(net->getOwner(), bus);
    w.field("net " + net->getName(), text.str());
  }
  w.end();
}

void dump(Writer &w, const std::string &map, const HBOBoard::PresetMap &presets,
          const HBOBoard &board) {
  for (const auto &[key, records] : presets) {
    w.begin(map + " " + key);
    for (const HBOIpPreset *p : records) {
      w.begin("record " + p->getPresetName());
      w.field("proc", p->getPresetProcName());
      w.field("kind",
              std::string(p->isPreset() ? "preset" : "") + (p->isAssocIntf() ? "assoc_intf" : ""));
      w.field("ip", p->getVendor() + " " + p->getLibrary() + " " + p->getName() + " " +
                        p->getVersion() + " " + p->getIpInterface());
      w.field("value_type", p->getValueType());
      w.field("owner", owner(p->getOwner(), &board));
      w.map("params", p->getParamList());
      w.end();
    }
    w.end();
  }
}

} // namespace

std::string dumpBoard(const HBOBoard &board) {
  Writer w;
  w.field("name", board.getName());
  w.field("display_name", board.getDisplayName());
  w.field("description", board.getDescription());
  w.field("long_description", board.getLongDesc());
  w.field("spec_url", board.getSpecUrl());
  w.field("schema", board.getBoardSchemaVersion());
  w.field("file", board.getBoardFile());
  w.field("changelog", board.getChangeLogFilename());
  w.field("supports_ced", board.getSupportsCED());
  w.field("integrated", board.isIntegratedBoard());
  w.field("board_image", board.getBoardImage());
  w.field("board_revision", board.getBoardRevision());
  std::vector<std::string> revisions;
  board.getCompatibleBoardRevisionsAsVec(revisions);
  w.list("revisions", revisions);
  // Asked of failed reads too: a component that failed after it became the
  // board's part is gone, and the board must not point at it any more.
  w.field("active_part", board.getActivePartName());
  w.list("jtag_chains", board.getJtagChains());
  w.map("connected_boards", board.getConnectedBoards());
  w.map("connected_components", board.getConnectedComponents());
  for (const HBOImage *image : board.getImages())
    dump(w, image);
  for (const HBOParameter *p : board.getParameters())
    dump(w, p);
  for (const HBOJumper *j : board.getJumpers())
    w.field("jumper " + j->getName(), std::string(j->getDefaultValue() ? "true" : "false") +
                                          " owner=" + owner(j->getOwner(), &board) +
                                          " description=" + j->getDescription());
  for (const auto &entry : board.getBoardComponents())
    dump(w, entry.second, board);
  for (const HBOBoardBus *bus : board.getBuses())
    dump(w, bus, board);
  dump(w, "presets", board.getIpPresets(), board);
  dump(w, "associated", board.getIpAssociatedInterfaces(), board);
  for (const HBOPowerRail &rail : board.getPowerRails()) {
    std::vector<std::string> phases;
    for (const auto &[member, count] : rail.getMemberPhasesMap())
      phases.push_back(member + "=" + std::to_string(count));
    w.begin("power_rail " + rail.getName());
    w.field("phases", std::to_string(rail.getNumPhases()) + (rail.isDirect() ? " direct" : ""));
    w.list("members", rail.getMemberNames());
    w.list("supplies", rail.getSupplyNames());
    w.list("rails", rail.getRailNames());
    w.list("member_phases", phases);
    w.end();
  }
  std::string data = board.getBoardDataProps().asXmlStr(0);
  if (!data.empty())
    w.field("data_properties", "\n" + data);
  return w.text();
}
