#include "HBOScriptedGraph.h"

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"

#include <algorithm>
#include <set>

namespace {

using tclany = zeb::tcltasks::tclany;

template <typename T> bool is(const tclany &h) { return h.type && *h.type == typeid(T *); }
template <typename T> T *as(const tclany &h) {
  return is<T>(h) ? static_cast<T *>(h.object) : nullptr;
}
template <typename T> void add(std::vector<tclany> &out, T *object) {
  if (object)
    out.push_back(tclany::of(object));
}
template <typename Seq> void addAll(std::vector<tclany> &out, const Seq &seq) {
  for (auto *object : seq)
    add(out, object);
}

void presetsOf(const HBOBoard &board, std::vector<tclany> &out) {
  std::set<const void *> seen;
  for (const auto *map : {&board.getIpPresets(), &board.getIpAssociatedInterfaces()})
    for (const auto &entry : *map)
      for (HBOIpPreset *preset : entry.second)
        if (preset && seen.insert(preset).second)
          add(out, preset);
}

void componentsOf(const HBOBoard &board, std::vector<tclany> &out) {
  for (const auto &entry : board.getBoardComponents())
    add(out, entry.second);
}

void interfacesOf(const HBOBoardComponent &component, std::vector<tclany> &out) {
  std::vector<HBOBusIf *> interfaces;
  component.getBusIfSeq(interfaces, true);
  addAll(out, interfaces);
}

// The classes a class's children come in, in the order a walk down the
// graph tries them: the first one that leads to the wanted class is taken,
// so a board reaches its pins through its components, not its ports.
std::vector<const std::type_info *> childClasses(const std::type_info &type) {
  if (type == typeid(HBOBoard *))
    return {&typeid(HBOBoardComponent *), &typeid(HBOBoardBus *), &typeid(HBOJumper *),
            &typeid(HBOParameter *), &typeid(HBOIpPreset *)};
  if (type == typeid(HBOBoardComponent *))
    return {&typeid(HBOBusIf *), &typeid(HBOPinProps *), &typeid(HBOComponentMode *),
            &typeid(HBOParameter *)};
  if (type == typeid(HBOBusIf *))
    return {&typeid(HBOModelPort *), &typeid(HBOPinProps *), &typeid(HBOIpPreset *),
            &typeid(HBOBusIfPreference *)};
  if (type == typeid(HBOModelPort *))
    return {&typeid(HBOPinProps *)};
  if (type == typeid(HBOBoardBus *))
    return {&typeid(HBOBoardBusNet *)};
  if (type == typeid(HBOComponentMode *))
    return {&typeid(HBOBusIfPreference *), &typeid(HBOBusIf *)};
  return {};
}

bool reachable(const std::type_info &from, const std::type_info &want, int depth = 0) {
  if (depth > 6)
    return false;
  for (const std::type_info *child : childClasses(from))
    if (*child == want || reachable(*child, want, depth + 1))
      return true;
  return false;
}

// The children of \p object of class \p want only.
void childrenOf(const tclany &object, const std::type_info &want, std::vector<tclany> &out) {
  std::vector<tclany> all;
  HBOScriptedGraph::children(object, all);
  for (const tclany &child : all)
    if (*child.type == want)
      out.push_back(child);
}

void down(const tclany &object, const std::type_info &want, std::vector<tclany> &out, int depth) {
  if (depth > 6)
    return;
  for (const std::type_info *child : childClasses(*object.type)) {
    if (*child == want) {
      childrenOf(object, want, out);
      return;
    }
  }
  for (const std::type_info *child : childClasses(*object.type)) {
    if (!reachable(*child, want))
      continue;
    std::vector<tclany> step;
    childrenOf(object, *child, step);
    for (const tclany &next : step)
      down(next, want, out, depth + 1);
    return;
  }
}

void up(const tclany &object, const std::type_info &want, const std::vector<HBOBoard *> &boards,
        std::vector<tclany> &out, int depth) {
  if (depth > 6)
    return;
  std::vector<tclany> parents;
  HBOScriptedGraph::owners(object, boards, parents);
  for (const tclany &parent : parents) {
    if (*parent.type == want)
      out.push_back(parent);
    else
      up(parent, want, boards, out, depth + 1);
  }
}

void dedupe(std::vector<tclany> &objects, std::size_t from) {
  std::set<const void *> seen;
  for (std::size_t i = 0; i < from; ++i)
    seen.insert(objects[i].object);
  std::size_t keep = from;
  for (std::size_t i = from; i < objects.size(); ++i)
    if (seen.insert(objects[i].object).second)
      objects[keep++] = objects[i];
  objects.resize(keep);
}

bool ancestorClass(const std::type_info &from, const std::type_info &want) {
  // Whether a walk up from \p from can meet \p want: \p from is reachable
  // down from \p want.
  return reachable(want, from);
}

} // namespace

void HBOScriptedGraph::children(const tclany &object, std::vector<tclany> &out) {
  if (object.empty())
    return;
  if (HBOBoard *board = as<HBOBoard>(object)) {
    componentsOf(*board, out);
    addAll(out, board->getBuses());
    addAll(out, board->getJumpers());
    addAll(out, board->getParameters());
    presetsOf(*board, out);
  } else if (HBOBoardComponent *component = as<HBOBoardComponent>(object)) {
    interfacesOf(*component, out);
    for (const auto &entry : component->getPins())
      add(out, entry.second);
    std::vector<HBOComponentMode *> modes;
    component->getComponentModes(modes);
    addAll(out, modes);
    addAll(out, component->getParameters());
  } else if (HBOBusIf *intf = as<HBOBusIf>(object)) {
    if (HBOBoardComponent *owner = intf->getOwnerComponent()) {
      std::vector<HBOModelPort *> ports;
      owner->getModelPortsByBusIf(ports, intf->getName());
      addAll(out, ports);
    }
    std::vector<HBOPinProps *> pins;
    intf->getPortMapPinPropsSeq(pins);
    addAll(out, pins);
    HBOBoardComponent *owner = intf->getOwnerComponent();
    if (owner && owner->getBoard() && !intf->getPresetProcName().empty()) {
      std::vector<tclany> presets;
      presetsOf(*owner->getBoard(), presets);
      for (const tclany &p : presets)
        if (static_cast<HBOIpPreset *>(p.object)->getPresetProcName() == intf->getPresetProcName())
          out.push_back(p);
    }
    std::vector<HBOBusIfPreference *> preferences;
    intf->getPreferences(preferences);
    addAll(out, preferences);
  } else if (HBOModelPort *port = as<HBOModelPort>(object)) {
    std::vector<HBOPinProps *> pins;
    port->getPins(pins);
    addAll(out, pins);
  } else if (HBOBoardBus *bus = as<HBOBoardBus>(object)) {
    addAll(out, bus->getBoardBusNets());
  } else if (HBOComponentMode *mode = as<HBOComponentMode>(object)) {
    std::vector<HBOBusIfPreference *> preferences;
    mode->getPreferredIps(preferences);
    addAll(out, preferences);
    if (HBOBoardComponent *owner = mode->getOwnerComponent()) {
      HBOComponentMode::InterfaceMap interfaces;
      mode->getInterfaces(interfaces);
      for (const auto &entry : interfaces)
        add(out, owner->getBusIfByName(entry.second.first));
    }
  }
  dedupe(out, 0);
}

void HBOScriptedGraph::owners(const tclany &object, const std::vector<HBOBoard *> &boards,
                              std::vector<tclany> &out) {
  if (object.empty())
    return;
  if (HBOBoardComponent *component = as<HBOBoardComponent>(object)) {
    add(out, component->getBoard());
  } else if (HBOBusIf *intf = as<HBOBusIf>(object)) {
    add(out, intf->getOwnerComponent());
  } else if (HBOModelPort *port = as<HBOModelPort>(object)) {
    add(out, port->getOwner());
  } else if (HBOPinProps *pin = as<HBOPinProps>(object)) {
    HBOBoardComponent *component = pin->getOwner();
    add(out, component);
    if (!component)
      return;
    // A pin names the interfaces it serves; its ports are those of the
    // component that list it.
    for (const auto &entry : pin->getIntfPortMap())
      add(out, component->getBusIfByName(entry.first));
    for (const auto &entry : component->getModelPorts()) {
      if (!entry.second)
        continue;
      std::vector<HBOPinProps *> pins;
      entry.second->getPins(pins);
      if (std::find(pins.begin(), pins.end(), pin) != pins.end())
        add(out, entry.second);
    }
  } else if (HBOBoardBus *bus = as<HBOBoardBus>(object)) {
    add(out, bus->getOwner());
  } else if (HBOBoardBusNet *net = as<HBOBoardBusNet>(object)) {
    add(out, net->getOwner());
  } else if (HBOComponentMode *mode = as<HBOComponentMode>(object)) {
    add(out, mode->getOwnerComponent());
  } else if (HBOJumper *jumper = as<HBOJumper>(object)) {
    add(out, jumper->getOwner());
  } else if (HBOIpPreset *preset = as<HBOIpPreset>(object)) {
    add(out, preset->getOwner());
  } else if (HBOBusIfPreference *preference = as<HBOBusIfPreference>(object)) {
    add(out, preference->getOwner());
  } else if (HBOParameter *parameter = as<HBOParameter>(object)) {
    // A parameter knows no owner: look for it on the boards and their
    // components.
    for (HBOBoard *board : boards) {
      if (!board)
        continue;
      const auto &own = board->getParameters();
      if (std::find(own.begin(), own.end(), parameter) != own.end()) {
        add(out, board);
        return;
      }
      for (const auto &entry : board->getBoardComponents()) {
        if (!entry.second)
          continue;
        const auto &params = entry.second->getParameters();
        if (std::find(params.begin(), params.end(), parameter) != params.end()) {
          add(out, entry.second);
          return;
        }
      }
    }
  }
}

bool HBOScriptedGraph::related(const tclany &from, const std::type_info &want,
                               const std::vector<HBOBoard *> &boards, std::vector<tclany> &out) {
  if (from.empty())
    return false;
  std::size_t start = out.size();
  if (*from.type == want) {
    out.push_back(from);
    return true;
  }
  bool downward = reachable(*from.type, want);
  bool upward = ancestorClass(*from.type, want);
  if (!downward && !upward)
    return false;
  if (downward)
    down(from, want, out, 0);
  if (upward && out.size() == start)
    up(from, want, boards, out, 0);
  dedupe(out, start);
  return true;
}
