// Helpers shared by the object model tests: a scratch directory, a message
// recorder, display capture and builders of the common records.
#ifndef BOARDLIB_MODELTESTUTIL_H
#define BOARDLIB_MODELTESTUTIL_H

#include "ComMsgMgr.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOModelPort.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace modeltest {

using Strings = std::vector<std::string>;

/// A fresh directory, removed with its contents at the end of the scope.
class ScratchDir {
public:
  ScratchDir()
      : m_path(boost::filesystem::temp_directory_path() /
               boost::filesystem::unique_path("model-test-%%%%-%%%%-%%%%")) {
    boost::filesystem::create_directories(m_path);
  }
  ~ScratchDir() {
    boost::system::error_code ec;
    boost::filesystem::remove_all(m_path, ec);
  }
  std::string path() const { return m_path.string(); }
  /// Writes \p text to \p name inside the directory; gives the full path.
  std::string write(const std::string &name, const std::string &text) const {
    const std::string full = (m_path / name).string();
    std::ofstream(full) << text;
    return full;
  }

private:
  boost::filesystem::path m_path;
};

/// Records every message delivered while it is alive.
class MessageRecorder : public ComMsgSink {
public:
  MessageRecorder() { ComMsgMgr::setSink(this); }
  ~MessageRecorder() override { ComMsgMgr::setSink(nullptr); }
  void receive(const ComMsgRecord &record) override { records.push_back(record); }
  Strings keys() const {
    Strings result;
    for (const ComMsgRecord &record : records)
      result.push_back(record.key);
    return result;
  }
  std::vector<ComMsgRecord> records;
};

/// What display() of \p object prints at \p indent.
template <typename T> std::string shown(const T &object, int indent) {
  testing::internal::CaptureStdout();
  object.display(indent);
  return testing::internal::GetCapturedStdout();
}

inline HBOBoardComponent *makeComponent(const std::string &name, const std::string &type,
                                        const std::string &subType = std::string()) {
  auto *component = new HBOBoardComponent();
  component->setComponentName(name);
  component->setName("acme:big:" + name + ":1.0");
  component->setType(type);
  component->setSubType(subType);
  return component;
}

inline HBOBusIf *makeBusIf(const std::string &name, const std::string &vendor = "v",
                           const std::string &library = "l", const std::string &type = "n",
                           const std::string &version = "1") {
  auto *busIf = new HBOBusIf();
  busIf->setName(name);
  busIf->setAbstractTypeVendor(vendor);
  busIf->setAbstractTypeLibrary(library);
  busIf->setAbstractTypeName(type);
  busIf->setAbstractTypeVersion(version);
  return busIf;
}

inline HBOModelPort *makePort(const std::string &name) {
  auto *port = new HBOModelPort();
  port->setName(name);
  return port;
}

/// A pin; index 0 is also what a pin without an index holds.
inline HBOPinProps *makePin(const std::string &name, int index = 0) {
  auto *pin = new HBOPinProps();
  pin->setName(name);
  pin->setPinIndex(index);
  return pin;
}

inline void addPortMap(HBOBusIf *busIf, const std::string &logical, const std::string &physical) {
  auto *portMap = new HBOPortMap();
  portMap->setLogicalPort(logical);
  portMap->setPhysicalPort(physical);
  busIf->populatePortMap(portMap);
}

} // namespace modeltest

#endif
