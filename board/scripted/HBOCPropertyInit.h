// The scripted classes of the board model: one structure per class, whose
// init registers the class and its properties with the property registry.
// The embedding program (the Tcl package, the Python module, boardtool)
// calls init once per class before it shows any object, and initV2Props
// after it when "board.enableSchemaV2" is true; HBOScriptedClasses does
// both in one call.
#ifndef BOARDLIB_HBOCPROPERTYINIT_H
#define BOARDLIB_HBOCPROPERTYINIT_H

struct HBOCPropertyInit {
  struct board {
    static void init();
  };
  struct board_component {
    static void init();
    static void initV2Props();
  };
  struct board_part_interface {
    static void init();
    static void initV2Props();
  };
  struct board_interface_port {
    static void init();
  };
  struct board_part_pin {
    static void init();
    static void initV2Props();
  };
  struct board_bus {
    static void init();
  };
  struct board_bus_net {
    static void init();
  };
  struct board_component_mode {
    static void init();
  };
  struct board_parameter {
    static void init();
  };
  struct board_jumper {
    static void init();
  };
  struct board_ip_preset {
    static void init();
  };
  struct board_user_preference {
    static void init();
  };
};

#endif
