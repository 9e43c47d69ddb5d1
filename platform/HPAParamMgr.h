// The parameter manager: named, typed settings of the process. Parameters
// are registered by the code that reads them and can be set from the command
// line, the environment (BOARDLIB_PARAMS) and scripts. Thread-safe.
#ifndef BOARDLIB_PLATFORM_HPAPARAMMGR_H
#define BOARDLIB_PLATFORM_HPAPARAMMGR_H

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

class HPAParam {
public:
  enum Kind { Bool, Int, String };

  HPAParam(std::string name, Kind kind, std::string description, std::string defaultValue);

  const std::string &getName() const { return m_name; }
  Kind getKind() const { return m_kind; }
  const char *getKindName() const;
  const std::string &getDescription() const { return m_description; }
  const std::string &getDefault() const { return m_default; }
  bool isHidden() const { return m_hidden; }

  /// The value in its canonical text ("true"/"false" for booleans).
  std::string getValueAsString() const;
  bool getValueAsBool() const;
  long long getValueAsInt() const;

private:
  friend class HPAParamMgr;
  void setValue_(const std::string &value);

  std::string m_name;
  Kind m_kind;
  std::string m_description;
  std::string m_default;
  std::string m_value;
  bool m_hidden = false;
};

class HPAParamMgr {
public:
  /// The one manager of the process.
  static HPAParamMgr &getParamMgr();

  void registerBoolParam(const std::string &name, const std::string &description, bool def);
  void registerIntParam(const std::string &name, const std::string &description, long long def);
  void registerStringParam(const std::string &name, const std::string &description,
                           const std::string &def);
  void setHidden(const std::string &name, bool hidden);

  /// The parameter, or null. The pointer stays valid for the process.
  const HPAParam *findParam(const std::string &name) const;
  bool paramExists(const std::string &name) const;

  /// Values of an existing parameter; an unknown name gives false, 0 or "".
  bool getValueAsBool(const std::string &name) const;
  long long getValueAsInt(const std::string &name) const;
  std::string getValueAsString(const std::string &name) const;

  /// Sets a parameter from text. Returns false, with \p error filled, for an
  /// unknown name or a value that its kind does not accept.
  bool setValue(const std::string &name, const std::string &value, std::string *error = nullptr);
  /// Restores the registered default.
  bool resetValue(const std::string &name);

  /// Applies "name=value" pairs separated by ';' or new lines, as the
  /// environment variable BOARDLIB_PARAMS holds them. Bad entries are
  /// reported through \p errors and skipped.
  void applySettings(const std::string &settings, std::vector<std::string> *errors);

  /// All parameters in name order.
  std::vector<const HPAParam *> listParams() const;

private:
  HPAParamMgr();
  HPAParam *find_(const std::string &name) const;
  void register_(HPAParam::Kind kind, const std::string &name, const std::string &description,
                 const std::string &def);

  mutable std::mutex m_mutex;
  std::unordered_map<std::string, HPAParam *> m_params; // never freed: pointers are handed out
};

#endif
