"""Board objects in Python: one type per scripted class, one Python object per
native object, construction only from a capsule of the right class, and
objects that outlive their native object."""
import ctypes
import os
import unittest

import boardlib

SAMPLE = "kestrel-boards:sample_kit:1.0"
USER_REPO = os.path.join(os.environ["BOARDLIB_TEST_DATA"], "py_user_repo")
CAPSULE_NAME = b"nativeObjPtr"  # kept alive: a capsule keeps a pointer to its name


def sample():
    return boardlib.get_boards(pattern=SAMPLE)[0]


def jumper(name):
    return boardlib.get_board_jumpers(of_objects=sample(), pattern=name)[0]


class TypesTest(unittest.TestCase):
    def test_every_class_comes_back_as_its_own_type(self):
        board = sample()
        components = boardlib.get_board_components(of_objects=board)
        interfaces = boardlib.get_board_component_interfaces(of_objects=components)
        ports = boardlib.get_board_interface_ports(of_objects=interfaces)
        buses = boardlib.get_board_buses(of_objects=board)
        walk = [
            ([board], boardlib.board),
            (components, boardlib.board_component),
            (interfaces, boardlib.board_part_interface),
            (ports, boardlib.board_interface_port),
            (boardlib.get_board_component_pins(of_objects=ports), boardlib.board_part_pin),
            (buses, boardlib.board_bus),
            (boardlib.get_board_bus_nets(of_objects=buses), boardlib.board_bus_net),
            (boardlib.get_board_component_modes(of_objects=components), boardlib.board_component_mode),
            (boardlib.get_board_parameters(of_objects=board), boardlib.board_parameter),
            (boardlib.get_board_jumpers(of_objects=board), boardlib.board_jumper),
            (boardlib.get_board_ip_presets(of_objects=board), boardlib.board_ip_preset),
            (boardlib.get_board_ip_preferences(of_objects=interfaces), boardlib.board_user_preference),
        ]
        for objects, pytype in walk:
            with self.subTest(pytype.__name__):
                self.assertIsInstance(objects, list)
                self.assertTrue(objects)
                for obj in objects:
                    self.assertIs(type(obj), pytype)

    def test_board_error_is_a_runtime_error(self):
        self.assertTrue(issubclass(boardlib.BoardError, RuntimeError))
        with self.assertRaises(RuntimeError):
            boardlib.get_param("no.such.parameter")


class IdentityTest(unittest.TestCase):
    def test_one_python_object_per_native_object(self):
        j1 = jumper("J1")
        self.assertIs(boardlib.get_board_jumpers(of_objects=sample())[0], j1)
        self.assertEqual(j1, jumper("J1"))
        self.assertNotEqual(j1, jumper("J2"))
        self.assertEqual(len({j1, jumper("J1"), jumper("J2")}), 2)
        self.assertNotEqual(j1, "J1")

    def test_a_new_object_for_the_same_native_object_is_equal(self):
        j1 = jumper("J1")
        before = hash(j1)
        del j1  # its cache entry goes with it
        again = jumper("J1")
        self.assertEqual(hash(again), before)
        self.assertEqual(again.name, "J1")

    def test_repr_str_and_name(self):
        j1 = jumper("J1")
        self.assertEqual(repr(j1), "<board_jumper J1>")
        self.assertEqual(str(j1), "J1")
        self.assertEqual(j1.name, "J1")
        self.assertEqual(repr(sample()), "<board %s>" % SAMPLE)


class CapsuleTest(unittest.TestCase):
    def test_capsule_of_another_class_is_a_type_error(self):
        component = boardlib.get_board_components(of_objects=sample())[0]
        with self.assertRaises(TypeError) as caught:
            boardlib.board_jumper(nativeObjPtr=component._capsule())
        self.assertIn("board_component", str(caught.exception))

    def test_capsule_of_the_class_gives_the_existing_object(self):
        j1 = jumper("J1")
        self.assertIs(boardlib.board_jumper(nativeObjPtr=j1._capsule()), j1)

    def test_capsule_without_context_is_taken_as_the_types_class(self):
        api = ctypes.pythonapi
        api.PyCapsule_GetPointer.restype = ctypes.c_void_p
        api.PyCapsule_GetPointer.argtypes = [ctypes.py_object, ctypes.c_char_p]
        api.PyCapsule_New.restype = ctypes.py_object
        api.PyCapsule_New.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
        j2 = jumper("J2")
        bare = api.PyCapsule_New(api.PyCapsule_GetPointer(j2._capsule(), CAPSULE_NAME), CAPSULE_NAME, None)
        self.assertIs(boardlib.board_jumper(nativeObjPtr=bare), j2)

    def test_construction_needs_the_capsule(self):
        j1 = jumper("J1")
        for args, kwargs in [((), {}), ((j1._capsule(),), {}), ((), {"nativeObjPtr": 5}),
                             ((), {"nativeObjPtr": j1._capsule(), "other": 1})]:
            with self.subTest(args=args, kwargs=kwargs), self.assertRaises(TypeError):
                boardlib.board_jumper(*args, **kwargs)

    def test_wrong_python_types_are_type_errors(self):
        board = sample()
        calls = [
            lambda: boardlib.get_property("NAME", "J1"),
            lambda: boardlib.get_boards(of_objects=[board, 3]),
            lambda: boardlib.get_boards(pattern=5),
            lambda: boardlib.get_boards(pattern=["*", None]),
        ]
        for call in calls:
            with self.assertRaises(TypeError):
                call()
        self.assertIs(jumper("J1").get_property("CURRENT_VALUE"), True)


class StaleObjectTest(unittest.TestCase):
    def tearDown(self):
        boardlib.set_param("board.repoPaths", "")
        boardlib.refresh_boards()

    def test_objects_of_a_dropped_user_board_go_stale(self):
        boardlib.set_param("board.repoPaths", USER_REPO)
        boardlib.refresh_boards()
        user = boardlib.get_boards(pattern="*py_user_kit*")
        self.assertEqual(len(user), 1)
        user = user[0]
        component = boardlib.get_board_components(of_objects=user, pattern="*led*")[0]
        j1 = boardlib.get_board_jumpers(of_objects=user, pattern="J1")[0]
        boardlib.set_property("CURRENT_VALUE", False, j1)
        installed = sample()

        boardlib.set_param("board.repoPaths", "")
        boardlib.refresh_boards()

        self.assertEqual(boardlib.get_boards(pattern="*py_user_kit*", quiet=True), [])
        for obj in (user, component, j1):
            with self.subTest(repr(obj)):
                self.assertFalse(obj.is_valid)
                self.assertIn("no longer exists", repr(obj))
                self.assertEqual(obj, obj)
                uses = [
                    lambda: obj.get_property("NAME"),
                    lambda: obj.name,
                    lambda: str(obj),
                    lambda: obj.list_property(),
                    lambda: boardlib.get_property("NAME", obj),
                    lambda: boardlib.get_boards(of_objects=obj),
                    lambda: boardlib.set_property("CURRENT_VALUE", True, obj),
                ]
                for use in uses:
                    with self.assertRaisesRegex(boardlib.BoardError, "no longer exists"):
                        use()
        # The change on the dropped jumper left the undo history with it.
        with self.assertRaises(boardlib.BoardError):
            boardlib.undo()
        self.assertTrue(installed.is_valid)
        self.assertEqual(installed.name, SAMPLE)


class ResultHookTest(unittest.TestCase):
    def test_getters_hand_their_value_to_python(self):
        boardlib.get_property("CURRENT_VALUE", jumper("J2"))
        self.assertIs(boardlib._last_result(), False)
        boardlib.get_property("JTAG_CHAINS", sample())
        self.assertEqual(boardlib._last_result(), ["chain1"])


if __name__ == "__main__":
    unittest.main()
