// The message manager: every message of the library goes out through here,
// to the installed sink (standard error by default). Thread-safe.
#ifndef BOARDLIB_PLATFORM_COMMSGMGR_H
#define BOARDLIB_PLATFORM_COMMSGMGR_H

#include "ComMsgMgrInstance.h"

#include <string>
#include <vector>

/// One delivered message, as tools and tests see it.
struct ComMsgRecord {
  unsigned severity = 0;    ///< ComMsg::MsgMask value, or a debug mask
  std::string severityName; ///< "INFO", "WARNING", "CRITICAL WARNING", "ERROR", "DEBUG"
  std::string category;     ///< "board", or a debug scope for debug messages
  std::string id;           ///< such as "49-56"; empty for debug messages
  std::string key;          ///< such as "@49-56@%s%s"
  std::vector<std::string> args;
  std::string text;            ///< the filled-in text
  std::string line;            ///< the full printed line
  std::string placeFile;       ///< the file a finding lies in, or empty
  unsigned long placeLine = 0; ///< its 1-based line, 0 when unknown
  ComMsg::Impact impact = ComMsg::Unrated;
};

/// Receives delivered messages. Called under the manager's lock, one message
/// at a time, so an implementation needs no locking of its own.
class ComMsgSink {
public:
  virtual ~ComMsgSink() = default;
  virtual void receive(const ComMsgRecord &record) = 0;
};

class ComMsgMgr {
public:
  /// Debug masks of scoped messages.
  enum DebugMask : unsigned {
    Debug1 = 0x1000001,
    Debug2 = 0x1000002,
    Debug3 = 0x1000003,
    Debug4 = 0x1000004,
    Debug5 = 0x1000005,
  };

  /// Delivers a prepared message, unless its id has reached its limit.
  static void sendMessage(const ComMsgMgrInstance &msg);

  /// Builds and delivers a message in one call: sendMsg("board", Warning, "@49-36@%s", file).
  template <typename... Args>
  static void sendMsg(const std::string &category, unsigned severity, const std::string &key,
                      const Args &...args) {
    ComMsgMgrInstance msg(category, severity, key);
    (msg.arg(args), ...);
    sendMessage(msg);
  }

  /// A debug message, printf-style, delivered only while \p scope is on.
  static void sendScopedMsg(unsigned mask, const std::string &scope, const char *format, ...)
      __attribute__((format(printf, 3, 4)));
  /// Whether debug output of \p scope is switched on. Scopes come from the
  /// environment variable BOARDLIB_DEBUG (comma-separated, "all" for every
  /// scope) and from enableScope.
  static bool hasScope(const std::string &scope);
  static void enableScope(const std::string &scope, bool on = true);

  /// After \p limit messages of id \p id (such as "49-69"), further ones are
  /// dropped; a negative limit removes the limit.
  static void setMsgLimit(const std::string &id, int limit);
  /// How many messages of \p id were dropped by their limit.
  static unsigned getSuppressedCount(const std::string &id);

  /// Installs the process-wide sink; null restores standard error.
  static void setSink(ComMsgSink *sink);
  /// Number of messages of a severity delivered since the last reset.
  static unsigned getCount(unsigned severity);
  static void resetCounts();

  /// "INFO", "WARNING", "CRITICAL WARNING", "ERROR", or "DEBUG".
  static const char *severityName(unsigned severity);
};

/// While alive, captures every message sent from the constructing thread
/// instead of delivering it. Used to keep the messages of a worker with its
/// result, so they can be sent later in a fixed order.
class ComMsgCapture {
public:
  ComMsgCapture();
  ~ComMsgCapture();
  ComMsgCapture(const ComMsgCapture &) = delete;
  ComMsgCapture &operator=(const ComMsgCapture &) = delete;

  const std::vector<ComMsgMgrInstance> &messages() const { return m_messages; }
  std::vector<ComMsgMgrInstance> take();
  /// Sends the captured messages now, on the sink in force, and forgets them.
  void replay();

private:
  friend class ComMsgMgr;
  std::vector<ComMsgMgrInstance> m_messages;
  ComMsgCapture *m_previous;
};

#endif
