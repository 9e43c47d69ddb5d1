"""Properties from Python: names and values per class, dynamic properties, the
jumper setter with undo and redo, and refused changes that change nothing."""
import unittest

import boardlib

SAMPLE = "kestrel-boards:sample_kit:1.0"
FALCON = "kestrel-boards:falcon_eval:1.0"


def board(name):
    return boardlib.get_boards(pattern=name)[0]


def jumper(board_name, name):
    return boardlib.get_board_jumpers(of_objects=board(board_name), pattern=name)[0]


def component(board_name, short_name):
    return boardlib.get_board_components(of_objects=board(board_name), pattern="*:%s:*" % short_name)[0]


class DoneWhenTest(unittest.TestCase):
    def test_sample_kit(self):
        components = boardlib.get_board_components(of_objects=boardlib.get_boards(pattern="*sample*"))
        self.assertEqual(boardlib.get_property("IS_ENABLED", components[0]), "true")

        j1 = jumper(SAMPLE, "J1")
        leds = component(SAMPLE, "led_2bits")
        self.assertEqual(boardlib.get_property("IS_ENABLED", leds), "true")
        boardlib.set_property("CURRENT_VALUE", False, [j1])
        self.assertEqual(boardlib.get_property("IS_ENABLED", leds), "false")
        self.assertIs(j1.get_property("CURRENT_VALUE"), False)
        self.assertIn("J1", boardlib.undo())
        self.assertEqual(boardlib.get_property("IS_ENABLED", leds), "true")
        self.assertIs(j1.get_property("CURRENT_VALUE"), True)


class NamesTest(unittest.TestCase):
    def test_names_per_class(self):
        sample = board(SAMPLE)
        self.assertEqual(sample.list_property(), [
            "BOARD_NAME", "CLASS", "COMPATIBLE_BOARD_REVISIONS", "DESCRIPTION", "DISPLAY_NAME", "FILE_NAME",
            "FILE_VERSION", "JTAG_CHAINS", "NAME", "REPOSITORY", "SPEC_URL", "SUPPORTS_CED", "VENDOR_NAME"])
        self.assertEqual(jumper(SAMPLE, "J1").list_property(), ["CLASS", "CURRENT_VALUE", "DESCRIPTION", "NAME"])
        self.assertEqual(boardlib.get_board_parameters(of_objects=sample)[0].list_property(),
                         ["CLASS", "NAME", "READ_ONLY", "SUPPORTED_VALUES", "VALUE", "VALUE_TYPE"])
        interfaces = boardlib.get_board_component_interfaces(of_objects=component(SAMPLE, "part0"))
        # Interfaces keep the order of registration, then their dynamic names.
        self.assertEqual(interfaces[0].list_property()[:4], ["NAME", "VLNV", "PRESET_FILE", "MODE"])
        preset = boardlib.get_board_ip_presets(of_objects=sample)[0]
        self.assertEqual(preset.list_property()[:7], ["CLASS", "NAME", "IP_NAME", "IP_VENDOR", "IP_LIBRARY",
                                                      "IP_VERSION", "IP_INTERFACE"])
        for obj in (sample, interfaces[0], preset):
            for name in obj.list_property(all=True):
                self.assertEqual(name, name.upper())

    def test_hidden_names_only_with_all(self):
        leds = component(SAMPLE, "led_2bits")
        self.assertNotIn("IS_ENABLED", leds.list_property())
        self.assertIn("IS_ENABLED", boardlib.list_property(leds, all=True))
        self.assertEqual(boardlib.list_property([leds]), leds.list_property())
        sample = board(SAMPLE)
        self.assertNotIn("PARAM.BOARD_GRADE", sample.list_property())
        self.assertIn("PARAM.BOARD_GRADE", sample.list_property(all=True))

    def test_report(self):
        report = boardlib.report_property(jumper(SAMPLE, "J2"))
        self.assertIsInstance(report, str)
        lines = report.splitlines()
        self.assertEqual(lines[0].split(), ["Property", "Type", "Read-only", "Value"])
        self.assertIn(["CURRENT_VALUE", "bool", "false", "0"], [line.split() for line in lines])


class ValuesTest(unittest.TestCase):
    def test_value_types(self):
        sample = board(SAMPLE)
        self.assertEqual(sample.get_property("NAME"), SAMPLE)
        self.assertEqual(boardlib.get_property("name", [sample]), SAMPLE)  # names ignore case
        self.assertEqual(sample.get_property("JTAG_CHAINS"), ["chain1"])
        self.assertIs(jumper(SAMPLE, "J1").get_property("CURRENT_VALUE"), True)
        self.assertIs(jumper(SAMPLE, "J2").get_property("CURRENT_VALUE"), False)
        modes = boardlib.get_board_component_modes(of_objects=component(SAMPLE, "led_2bits"))
        self.assertEqual(modes[0].get_property("INTERFACES"), ["led_2bits"])
        preference = boardlib.get_board_ip_preferences(
            of_objects=boardlib.get_board_component_interfaces(of_objects=component(SAMPLE, "part0")))[0]
        self.assertIsInstance(preference.get_property("ORDER"), int)
        self.assertEqual(component(SAMPLE, "part0").get_property("CLASS"), "board_component")

    def test_a_list_of_objects(self):
        presets = [p for p in boardlib.get_board_ip_presets(of_objects=board(FALCON))
                   if "BOARD_INTERFACES" in p.list_property(all=True)]
        self.assertTrue(presets)
        interfaces = presets[0].get_property("BOARD_INTERFACES")
        self.assertTrue(interfaces)
        for intf in interfaces:
            self.assertIsInstance(intf, boardlib.board_part_interface)
            self.assertIn(intf, boardlib.get_board_component_interfaces(
                of_objects=boardlib.get_board_components(of_objects=board(FALCON))))

    def test_dynamic_properties(self):
        sample = board(SAMPLE)
        self.assertEqual(sample.get_property("PARAM.board_grade"), "commercial")
        self.assertEqual(sample.get_property("param.board_grade"), "commercial")
        self.assertEqual(sample.get_property("PARAM.no_such_parameter"), "")
        part0 = component(SAMPLE, "part0")
        self.assertEqual(part0.get_property("PARAM.core_voltage"), "1.0")
        self.assertEqual(part0.get_property("JTAG_POSITION.chain1"), "0")
        led = boardlib.get_board_component_interfaces(of_objects=part0, pattern="led_2bits")[0]
        self.assertEqual(led.get_property("PORT.TRI_O"), "led_2bits_tri_o")
        self.assertEqual(led.get_property("PORT.NO_SUCH_PORT"), "")

    def test_unknown_property(self):
        sample = board(SAMPLE)
        with self.assertRaisesRegex(boardlib.BoardError, "bogus"):
            boardlib.get_property("bogus", sample)
        with self.assertRaises(boardlib.BoardError):
            sample.get_property("bogus")
        self.assertEqual(boardlib.get_property("bogus", sample, quiet=True), "")
        self.assertEqual(sample.get_property("bogus", quiet=True), "")
        with self.assertRaises(boardlib.BoardError):
            boardlib.get_property("NAME", boardlib.get_board_jumpers(of_objects=sample))


class JumperTest(unittest.TestCase):
    """falcon_eval: J14 false enables the USB UART connection, true disables it."""

    def state(self):
        return (boardlib.get_property("CURRENT_VALUE", self.j14),
                boardlib.get_property("IS_ENABLED", self.uart))

    def setUp(self):
        self.j14 = jumper(FALCON, "J14")
        self.uart = component(FALCON, "usb_uart")
        self.assertEqual(self.state(), (False, "true"))

    def test_set_undo_redo(self):
        for value in (True, "true", 1):
            with self.subTest(value=value):
                boardlib.set_property("CURRENT_VALUE", value, self.j14)
                self.assertEqual(self.state(), (True, "false"))
                boardlib.undo()
                self.assertEqual(self.state(), (False, "true"))
                boardlib.redo()
                self.assertEqual(self.state(), (True, "false"))
                boardlib.undo()
        self.assertEqual(self.state(), (False, "true"))

    def test_several_jumpers_undo_to_their_own_values(self):
        jumpers = boardlib.get_board_jumpers(of_objects=board(FALCON))
        before = [j.get_property("CURRENT_VALUE") for j in jumpers]
        self.assertEqual(before, [True, False, False])
        boardlib.set_property("current_value", "false", jumpers)
        self.assertEqual([j.get_property("CURRENT_VALUE") for j in jumpers], [False, False, False])
        boardlib.set_property("CURRENT_VALUE", True, jumpers)
        self.assertEqual(self.state(), (True, "false"))
        boardlib.undo()
        boardlib.undo()
        self.assertEqual([j.get_property("CURRENT_VALUE") for j in jumpers], before)

    def test_refused_changes_change_nothing(self):
        # A change that went through, so that undo shows what the history holds.
        boardlib.set_property("CURRENT_VALUE", True, self.j14)
        j12 = jumper(FALCON, "J12")
        refused = [
            lambda: boardlib.set_property("CURRENT_VALUE", "maybe", [j12, self.j14]),
            lambda: boardlib.set_property("CURRENT_VALUE", 2, self.j14),
            lambda: boardlib.set_property("NAME", "J99", self.j14),
            lambda: boardlib.set_property("NO_SUCH_PROPERTY", "true", self.j14),
            lambda: boardlib.set_property("CURRENT_VALUE", False, [self.j14, self.uart]),
            lambda: boardlib.set_property("CURRENT_VALUE", False, []),
        ]
        for call in refused:
            with self.assertRaises(boardlib.BoardError):
                call()
            self.assertEqual(self.state(), (True, "false"))
            self.assertIs(j12.get_property("CURRENT_VALUE"), True)
            self.assertEqual(self.j14.name, "J14")
        self.assertIn("J14", boardlib.undo())
        self.assertEqual(self.state(), (False, "true"))
        with self.assertRaises(boardlib.BoardError):
            boardlib.undo()


if __name__ == "__main__":
    unittest.main()
