// What the section readers of one read of a board file share: the board read
// into, the message queue that decides the result at the end, the flags of
// the read, and the records that checks of later sections consult.
#ifndef BOARDLIB_HBOPARSECONTEXT_H
#define BOARDLIB_HBOPARSECONTEXT_H

#include "ComMsgMgrInstance.h"
#include "HBOBoardComponent.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

class HBOBoard;

/// What a file says of one board interface, for callers that want to know
/// what a file uses without looking at the board.
struct HBOParsedInterface {
  std::unordered_set<std::string> logicalPorts;
  std::string type;
};

struct HBOParsedVLNVs {
  std::vector<HBOParsedInterface> interfaces;
  std::unordered_set<std::string> preferredIpVlnvs;
};

using HBODesignConstr = HBOBoardComponent::DesignConstr;
/// Queued messages in order; the flag is true for a message only told.
using HBOMessageQueue = std::vector<std::pair<ComMsgMgrInstance, bool>>;

class HBOParseContext {
public:
  /// Back to the state before a read, keeping the board and the strict flag,
  /// which the caller sets.
  void reset(bool validate, const std::string &schemaDir, HBOParsedVLNVs *parsed);

  /// Puts a message on the queue: with \p tellOnly false it fails the read.
  template <typename... Args>
  void queueMsg(bool tellOnly, unsigned severity, const std::string &key, const Args &...args) {
    ComMsgMgrInstance msg("board", severity, key);
    (msg.arg(args), ...);
    messages.emplace_back(std::move(msg), tellOnly);
  }
  /// The frequent finding "@49-69@%s%s": the board file and a composed text.
  void queueFinding(const std::string &text, bool tellOnly = false);
  void queueFinding(const std::string &file, const std::string &text, bool tellOnly);
  /// True when no queued message fails the read; with \p send every queued
  /// message is sent, in queue order.
  bool iterateMessages(bool send) const;

  /// A file named by board.xml, taken relative to the folder of board.xml
  /// whatever the working directory.
  std::string resolveBesideBoard_(const std::string &fileName) const;
  /// Whether the file that \p attribute of board.xml names lies inside the
  /// board's folder; if not, says so ("@49-181@", a warning) and the file
  /// must not be read: a board must not make the load read files of the
  /// system.
  bool isInsideBoardDir_(const char *attribute, const std::string &fileName) const;

  // The number conversions of every section: strict checks hold numbers to
  // their form, older schemas keep their old leniency.
  static bool isNonNegativeInteger(const std::string &value);
  int convert2NonNegativeInteger(const std::string &value, const std::string &what) const;
  int convert2NonNegativeInteger(const char *value, const std::string &what) const;
  /// An int read as the stream conversions read it: leading blanks, a sign,
  /// and the digits up to the first other character. Text with no number,
  /// or a number that an int cannot hold, raises the finding "@49-69@%s%s"
  /// naming \p what and the value.
  int convertInteger(std::string_view value, const std::string &what) const;
  /// The text of the finding of a number outside [\p lowest, \p highest],
  /// naming the attribute \p what and the value.
  static std::string outOfRangeText(const std::string &what, std::string_view value,
                                    long long lowest, long long highest);
  /// A whole decimal float, as the stream conversions read it: an optional
  /// sign, digits with a point and an exponent, or inf, infinity, nan and
  /// nan(...) in any case; no spaces around it, and nothing that overflows.
  /// False, with \p out untouched, for anything else.
  static bool parseFloat(std::string_view text, float &out);
  /// A whole decimal int with an optional sign and no spaces; false, with
  /// \p out untouched, for anything else and for what does not fit.
  static bool parseInt(std::string_view text, int &out);
  /// Whether \p a equals \p b ignoring ASCII case.
  static bool sameIgnoringCase(std::string_view a, std::string_view b);

  HBOBoard *board = nullptr;
  /// Every queued message is sent at the end of the read.
  bool sendMessages = false;
  /// Files are held to their DTDs.
  bool validate = false;
  bool strictChecks = false;
  /// Pin properties the board does not carry.
  std::unordered_set<std::string> portPropsToSkip;
  /// The caller's collector of what the file uses, or null.
  HBOParsedVLNVs *parsed = nullptr;
  /// Names of the interfaces read so far, for the checks of component modes.
  std::unordered_set<std::string> interfaceNames;
  /// Per of_component, "component:interface:port" of every port read so far.
  std::map<std::string, std::unordered_set<std::string>> portRecords;
  /// Where the DTDs are; empty for those of an installation.
  std::string schemaDir;
  HBOMessageQueue messages;

private:
  [[noreturn]] void raiseNotValid_(std::string_view value, const std::string &what) const;
  [[noreturn]] void raiseOutOfRange_(std::string_view value, const std::string &what,
                                     long long lowest) const;
};

#endif
