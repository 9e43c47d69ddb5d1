// An on/off switch of a board. Its one state is the default value: setting
// the jumper overwrites it, and the old value is not kept anywhere.
#ifndef BOARDLIB_HBOJUMPER_H
#define BOARDLIB_HBOJUMPER_H

#include <string>

class HBOBoard;

class HBOJumper {
public:
  HBOJumper() = default;
  /// Drops the object from the script caches first.
  ~HBOJumper();
  /// A copy owned by \p owner whose name carries \p prefix; same state.
  HBOJumper(const HBOJumper &src, HBOBoard *owner, const std::string &prefix);
  HBOJumper(const HBOJumper &) = delete;
  HBOJumper &operator=(const HBOJumper &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  bool getDefaultValue() const { return m_defaultValue; }
  void setDefaultValue(bool value) { m_defaultValue = value; }
  HBOBoard *getOwner() const { return m_owner; }
  void setOwner(HBOBoard *owner) { m_owner = owner; }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }

  /// Overwrites the state; with \p save the owner board is then saved. The
  /// enablement is not run here: whoever changes a jumper asks the board.
  void setValue(bool value, bool save);

  /// One debug line on standard output, behind \p indent hyphens.
  void display(int indent) const;

private:
  std::string m_name;
  bool m_defaultValue = true;
  HBOBoard *m_owner = nullptr;
  std::string m_description;
};

#endif
