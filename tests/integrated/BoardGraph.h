// Every object a board owns, found by walking its graph, for the tests
// that check that a copy shares none of them with its source. Each back
// pointer met on the way must lead to the owner it was reached from.
#ifndef BOARDLIB_TESTS_BOARDGRAPH_H
#define BOARDLIB_TESTS_BOARDGRAPH_H

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

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace test {

struct BoardGraph {
  std::set<const void *> objects;

  explicit BoardGraph(const HBOBoard &board) {
    objects.insert(&board);
    addAll(board.getParameters());
    addAll(board.getImages());
    for (const HBOJumper *j : board.getJumpers())
      expectOwned(j, j->getOwner(), &board);
    for (const HBOBoardBus *bus : board.getBuses()) {
      expectOwned(bus, bus->getOwner(), &board);
      for (const HBOBoardBusNet *net : bus->getBoardBusNets())
        expectOwned(net, net->getOwner(), bus);
    }
    for (const HBOBoard::PresetMap *map :
         {&board.getIpPresets(), &board.getIpAssociatedInterfaces()})
      for (const auto &entry : *map)
        for (const HBOIpPreset *preset : entry.second) // a preset read from a file has no owner
          expectOwned(preset, preset->getOwner() ? preset->getOwner() : &board, &board);
    for (const auto &entry : board.getBoardComponents())
      addComponent(board, *entry.second);
  }

  void addComponent(const HBOBoard &board, const HBOBoardComponent &component) {
    expectOwned(&component, component.getBoard(), &board);
    addAll(component.getParameters());
    addAll(component.getImages());
    std::vector<HBOComponentMode *> modes;
    std::vector<HBOBusIfPreference *> preferences;
    component.getComponentModes(modes);
    for (const HBOComponentMode *mode : modes) {
      expectOwned(mode, mode->getOwnerComponent(), &component);
      mode->getPreferredIps(preferences);
      addAll(preferences);
    }
    std::vector<HBOBusIf *> interfaces;
    component.getInterfacesVec(interfaces);
    for (const HBOBusIf *intf : interfaces) {
      expectOwned(intf, intf->getOwnerComponent(), &component);
      std::vector<HBOParameter *> parameters;
      std::vector<HBOPortMap *> maps;
      intf->getParameters(parameters);
      intf->getPreferences(preferences);
      intf->getPortMapSeq(maps);
      addAll(parameters);
      addAll(preferences);
      addAll(maps);
      for (const auto &port : intf->getPortMaps())
        expectOwned(port.second, port.second->getOwner(), intf);
    }
    for (const auto &port : component.getModelPorts())
      objects.insert(port.second);
    for (const auto &pin : component.getPins()) // a pin of a pin file has no owner
      expectOwned(pin.second, pin.second->getOwner() ? pin.second->getOwner() : &component,
                  &component);
  }

  template <typename T> void addAll(const std::vector<T *> &items) {
    objects.insert(items.begin(), items.end());
  }
  void expectOwned(const void *object, const void *owner, const void *expected) {
    objects.insert(object);
    EXPECT_EQ(expected, owner) << "an object's owner is another graph's";
  }

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
