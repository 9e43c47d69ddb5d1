#include "SiteOutput.h"

#include "ComMsgMgr.h"
#include "HUTFileUtils.h"

#include <boost/filesystem.hpp>

namespace boardtool {

std::string SiteOutput::path(const std::string &relative) const {
  return relative.empty() ? m_dir : (boost::filesystem::path(m_dir) / relative).string();
}

bool SiteOutput::makeFolder(const std::string &relative) const {
  const std::string folder = path(relative);
  boost::system::error_code ec;
  boost::filesystem::create_directories(folder, ec);
  if (!ec && !boost::filesystem::is_directory(folder, ec))
    ec = boost::system::errc::make_error_code(boost::system::errc::not_a_directory);
  if (ec) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-221@%s%s", folder, ec.message());
    return false;
  }
  return true;
}

bool SiteOutput::write(const std::string &relative, const std::string &content) const {
  const std::string target = path(relative);
  std::string error;
  if (!HUTFileUtils::replaceFile(target, content, &error)) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-220@%s%s", target, error);
    return false;
  }
  return true;
}

} // namespace boardtool
