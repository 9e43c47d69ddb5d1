#include "HBOBoardCatalogEvents.h"

#include "HBOBoardCReposMgr.h"

namespace {

int onContentStoreEvent(const HUTGuiEvent::Event &event) {
  // Only the finished change matters: before it, the files are still the
  // old ones.
  if (!event.isPostEvent())
    return 0;
  // The reference taken here is kept: a repository that content changes
  // reach is meant to stay.
  return HBOBoardCReposMgr::getGlobal()->refreshBoards();
}

} // namespace

HBOBoardCReposMgrBazaarEventHandler::HBOBoardCReposMgrBazaarEventHandler() {
  const int types[] = {HUTGuiEvent::ContentStoreInstall, HUTGuiEvent::ContentStoreUninstall,
                       HUTGuiEvent::ContentStoreUpdate};
  for (int type : types)
    m_connections.push_back(
        HUTGuiEventBroker::instance().addListener(type, "", "", &onContentStoreEvent));
}

HBOBoardCReposMgrBazaarEventHandler::~HBOBoardCReposMgrBazaarEventHandler() { disconnectAll(); }

void HBOBoardCReposMgrBazaarEventHandler::disconnectAll() {
  for (HUTGuiEvent::Connection &connection : m_connections)
    if (connection.connected())
      connection.disconnect();
}
