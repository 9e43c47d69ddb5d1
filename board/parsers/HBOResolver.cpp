#include "HBOResolver.h"

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/util/XMLString.hpp>

HBOResolver::HBOResolver(const std::string &path) : m_path(path) {}

xercesc::InputSource *HBOResolver::resolveEntity(const XMLCh *const, const XMLCh *const) {
  m_used = true;
  XMLCh *path = xercesc::XMLString::transcode(m_path.c_str());
  xercesc::InputSource *source = new xercesc::LocalFileInputSource(path);
  xercesc::XMLString::release(&path);
  return source;
}
