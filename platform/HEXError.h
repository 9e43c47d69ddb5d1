// Exceptions of the platform. HEXAll is the root of them all; HEXError
// carries a prepared message, to be told by whoever catches it.
#ifndef BOARDLIB_PLATFORM_HEXERROR_H
#define BOARDLIB_PLATFORM_HEXERROR_H

#include "ComMsgMgrInstance.h"

#include <exception>
#include <string>

class HEXAll : public std::exception {
public:
  HEXAll() = default;
  explicit HEXAll(std::string what) : m_what(std::move(what)) {}
  const char *what() const noexcept override { return m_what.c_str(); }

protected:
  std::string m_what;
};

class HEXError : public HEXAll {
public:
  explicit HEXError(const ComMsgMgrInstance &msg);

  /// Builds the message and throws: HEXError::raise("board", ComMsg::Error, "@49-110@%s", file).
  template <typename... Args>
  [[noreturn]] static void raise(const std::string &category, unsigned severity,
                                 const std::string &key, const Args &...args) {
    ComMsgMgrInstance msg(category, severity, key);
    (msg.arg(args), ...);
    throw HEXError(msg);
  }

  const ComMsgMgrInstance &getMessage() const { return m_msg; }

private:
  ComMsgMgrInstance m_msg;
};

#endif
