"""Tests that scripts/lib/layout.py reads what the compiler and abidw say."""

import pathlib
import sys
import unittest
from xml.etree import ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts" / "lib"))
import layout  # pylint: disable=wrong-import-position

DUMP = """\
Class std::exception
   size=4 align=4
   base size=4 base align=4
exception (0x0x7f) 0
    vptr=((& std::exception::_ZTVSt9exception) + 8)

Vtable for lviThing
lviThing::_ZTV8lviThing: 5 entries
0     (int (*)(...))0
4     (int (*)(...))(& _ZTI8lviThing)
8     0
12    0
16    (int (*)(...))__cxa_pure_virtual

Class lviThing
   size=4 align=4
   base size=4 base align=4
lviThing (0x0x7f) 0 nearly-empty
    vptr=((& lviThing::_ZTV8lviThing) + 8)

Vtable for lvrThing
lvrThing::_ZTV8lvrThing: 9 entries
0     (int (*)(...))0
4     (int (*)(...))(& _ZTI8lvrThing)
8     (int (*)(...))lvBase::hash
12    (int (*)(...))lvrThing::at
16    (int (*)(...))-8
20    (int (*)(...))(& _ZTI8lvrThing)
24    (int (*)(...))lvrThing::_ZThn8_N8lvrThingD1Ev
28    (int (*)(...))lvrThing::_ZThn8_N8lvrThingD0Ev
32    (int (*)(...))lvrThing::_ZThn8_NK8lvrThing2atEi

Class lvrThing
   size=20 align=4
   base size=20 base align=4
lvrThing (0x0x7f) 0
    vptr=((& lvrThing::_ZTV8lvrThing) + 8)
lvBase (0x0x7f) 0
      primary-for lvrThing (0x0x7f)
lviThing (0x0x7f) 8 nearly-empty
      vptr=((& lvrThing::_ZTV8lvrThing) + 24)
"""

TYPES = """\
<abi-corpus><abi-instr>
  <type-decl name='int' size-in-bits='32' id='int'/>
  <pointer-type-def type-id='int' size-in-bits='32' id='pointer'/>
  <class-decl name='lvBase' size-in-bits='64' id='base'>
    <data-member access='private' layout-offset-in-bits='32'>
      <var-decl name='count' type-id='int'/>
    </data-member>
  </class-decl>
  <class-decl name='lviThing' size-in-bits='32' id='interface'>
    <member-function access='public' vtable-offset='2'>
      <function-decl name='at'/>
    </member-function>
  </class-decl>
  <class-decl name='lvrThing' size-in-bits='160' id='thing'>
    <data-member access='public' static='yes'><var-decl name='none' type-id='int'/></data-member>
    <data-member access='private' layout-offset-in-bits='96'>
      <var-decl name='elements' type-id='pointer'/>
    </data-member>
    <data-member access='private' layout-offset-in-bits='128'>
      <var-decl name='step' type-id='int'/>
    </data-member>
    <data-member access='private' layout-offset-in-bits='152'>
      <var-decl name='flags' type-id='int'/>
    </data-member>
  </class-decl>
</abi-instr></abi-corpus>
"""

OBJECT = """\
| byte | bytes | field | type | of |
|---|---|---|---|---|
| 0 | 4 | (virtual table) |  |  |
| 4 | 4 | `count` | `int` | `lvBase` |
| 8 | 4 | (virtual table) |  |  |
| 12 | 4 | `elements` | `int*` |  |
| 16 | 3 | `step` | `int` |  |
| 19 | 1 | `flags` | `int` |  |
"""

SLOTS = """
Virtual table at byte 0:

| slot | byte | function |
|---|---|---|
| 1 | 0 | `lvBase::hash` |
| 2 | 4 | `lvrThing::at` |

Virtual table at byte 8:

| slot | byte | function |
|---|---|---|
| 1 | 0 | `lvrThing::~lvrThing` |
| 2 | 4 | `lvrThing::~lvrThing` |
| 3 | 8 | `lvrThing::at` |
"""

PURE_SLOTS = """
Virtual table:

| slot | byte | function |
|---|---|---|
| 1 | 0 | (destructor) |
| 2 | 4 | (destructor) |
| 3 | 8 | `lviThing::at` (pure) |
"""


class Layout(unittest.TestCase):
    def setUp(self):
        self.classes = layout.read_dump(DUMP)
        self.types = layout.Types(ElementTree.fromstring(TYPES))

    def test_is_that_of_the_library_alone(self):
        self.assertEqual(sorted(self.classes), ["lviThing", "lvrThing"])

    def test_has_the_fields_of_all_bases_in_their_places(self):
        table = layout.object_table(self.classes["lvrThing"], self.types)
        self.assertEqual("".join(table), OBJECT)

    def test_has_a_table_of_slots_for_each_base_that_has_one(self):
        self.assertEqual("".join(layout.slot_tables(self.classes["lvrThing"], self.types)), SLOTS)

    def test_names_what_an_interface_leaves_open(self):
        table = layout.slot_tables(self.classes["lviThing"], self.types)
        self.assertEqual("".join(table), PURE_SLOTS)


if __name__ == "__main__":
    unittest.main()
