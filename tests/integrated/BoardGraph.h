// Every object a board owns, found by walking its graph, for the tests
// that check that a copy shares none of them with its source.
#ifndef BOARDLIB_TESTS_BOARDGRAPH_H
#define BOARDLIB_TESTS_BOARDGRAPH_H

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPortMap.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace test {

/// The owned objects of a board. Each back pointer met on the way must
/// lead to the owner it was reached from; a failure names the object.
struct BoardGraph {
  std::set<const void *> objects;

  explicit BoardGraph(const HBOBoard &board) {
    add(&board);
    for (const HBOParameter *p : board.getParameters())
      add(p);
    for (const HBOImage *i : board.getImages())
      add(i);
    for (const HBOJumper *j : board.getJumpers()) {
      add(j);
      EXPECT_EQ(&board, j->getOwner()) << "jumper " << j->getName();
    }
    for (const HBOBoardBus *bus : board.getBuses()) {
      add(bus);
      EXPECT_EQ(&board, bus->getOwner()) << "connection " << bus->getName();
      for (const HBOBoardBusNet *net : bus->getBoardBusNets()) {
        add(net);
        EXPECT_EQ(bus, net->getOwner()) << "net " << net->getName();
      }
    }
    for (const HBOBoard::PresetMap *map :
         {&board.getIpPresets(), &board.getIpAssociatedInterfaces()})
      for (const auto &entry : *map)
        for (const HBOIpPreset *preset : entry.second) {
          add(preset);
          if (preset->getOwner()) {
            EXPECT_EQ(&board, preset->getOwner()) << "preset " << entry.first;
          }
        }
    for (const auto &entry : board.getBoardComponents())
      addComponent(board, *entry.second);
  }

  void addComponent(const HBOBoard &board, const HBOBoardComponent &component) {
    const std::string &name = component.getComponentName();
    add(&component);
    EXPECT_EQ(&board, component.getBoard()) << "component " << name;
    for (const HBOParameter *p : component.getParameters())
      add(p);
    for (const HBOImage *i : component.getImages())
      add(i);
    std::vector<HBOComponentMode *> modes;
    component.getComponentModes(modes);
    for (const HBOComponentMode *mode : modes) {
      add(mode);
      EXPECT_EQ(&component, mode->getOwnerComponent()) << "mode " << mode->getName();
      std::vector<HBOBusIfPreference *> preferences;
      mode->getPreferredIps(preferences);
      for (const HBOBusIfPreference *preference : preferences)
        add(preference);
    }
    std::vector<HBOBusIf *> interfaces;
    component.getInterfacesVec(interfaces);
    for (const HBOBusIf *intf : interfaces) {
      add(intf);
      EXPECT_EQ(&component, intf->getOwnerComponent()) << "interface " << intf->getName();
      std::vector<HBOParameter *> parameters;
      intf->getParameters(parameters);
      for (const HBOParameter *p : parameters)
        add(p);
      std::vector<HBOBusIfPreference *> preferences;
      intf->getPreferences(preferences);
      for (const HBOBusIfPreference *preference : preferences)
        add(preference);
      std::vector<HBOPortMap *> maps;
      intf->getPortMapSeq(maps);
      for (const HBOPortMap *map : maps)
        add(map);
      for (const auto &port : intf->getPortMaps()) {
        add(port.second);
        EXPECT_EQ(intf, port.second->getOwner()) << "port " << port.first;
      }
    }
    for (const auto &port : component.getModelPorts())
      add(port.second);
    for (const auto &pin : component.getPins()) {
      add(pin.second);
      if (pin.second->getOwner()) {
        EXPECT_EQ(&component, pin.second->getOwner()) << "pin " << pin.second->getName();
      }
    }
  }

  void add(const void *object) { objects.insert(object); }

  /// The objects of this graph that \p other holds too.
  std::size_t sharedWith(const BoardGraph &other) const {
    std::size_t shared = 0;
    for (const void *object : objects)
      shared += other.objects.count(object);
    return shared;
  }
};

} // namespace test

#endif
