// The events around a change of the board catalog, and the holder of the
// repository's listeners on the content-store service. Whoever keeps
// pointers to catalog boards listens to the pre event to let go of them and
// to the post event to look them up again.
#ifndef BOARDLIB_HBOBOARDCATALOGEVENTS_H
#define BOARDLIB_HBOBOARDCATALOGEVENTS_H

#include "HUTGuiEvent.h"

#include <vector>

class HBOBoardCReposMgr;

/// Fired before the catalog's user boards are thrown away.
class HBOBoardCatalogModifyPreEvent
    : public HUTGuiEvent::detail::gui_native_event<HBOBoardCReposMgr *> {
public:
  explicit HBOBoardCatalogModifyPreEvent(HBOBoardCReposMgr *repo) : gui_native_event(repo) {}
  int getType() const override { return HUTGuiEvent::BoardCatalogModify; }
  bool isPreEvent() const override { return true; }
};

/// Fired once the catalog has been rebuilt, or has given up trying.
class HBOBoardCatalogModifyPostEvent
    : public HUTGuiEvent::detail::gui_native_event<HBOBoardCReposMgr *> {
public:
  explicit HBOBoardCatalogModifyPostEvent(HBOBoardCReposMgr *repo) : gui_native_event(repo) {}
  int getType() const override { return HUTGuiEvent::BoardCatalogModify; }
  bool isPostEvent() const override { return true; }
};

/// Refreshes the repository after each change of installed content, and
/// owns the handles of those listeners.
class HBOBoardCReposMgrBazaarEventHandler {
public:
  /// Adds one listener for each content-store event type.
  HBOBoardCReposMgrBazaarEventHandler();
  /// Disconnects what is still connected.
  ~HBOBoardCReposMgrBazaarEventHandler();
  HBOBoardCReposMgrBazaarEventHandler(const HBOBoardCReposMgrBazaarEventHandler &) = delete;
  HBOBoardCReposMgrBazaarEventHandler &
  operator=(const HBOBoardCReposMgrBazaarEventHandler &) = delete;

  /// Disconnects every listener; a second call does nothing.
  void disconnectAll();
  const std::vector<HUTGuiEvent::Connection> &getConnections() const { return m_connections; }

private:
  std::vector<HUTGuiEvent::Connection> m_connections;
};

#endif
