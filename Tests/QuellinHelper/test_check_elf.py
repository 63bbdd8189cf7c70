"""The check of the tool's executable accepts a good image and refuses each broken one."""

import unittest

from check_elf import LARGEST_IMAGE, violations

DYNAMIC = """
 0x0000000000000001 (NEEDED)             Shared library: [libm.so.6]
 0x0000000000000001 (NEEDED)             Shared library: [libc.so.6]
 0x0000000000000001 (NEEDED)             Shared library: [ld-linux-x86-64.so.2]
 0x000000000000001e (FLAGS)              BIND_NOW
 0x000000006ffffffb (FLAGS_1)            Flags: NOW PIE
"""
HEADERS = """
  Type:                              DYN (Position-Independent Executable file)
  Type           Offset   VirtAddr           PhysAddr           FileSiz  MemSiz   Flg Align
  LOAD           0x000000 0x0000000000000000 0x0000000000000000 0x02b2bc 0x02b2bc R   0x1000
  LOAD           0x02b2c0 0x000000000002c2c0 0x000000000002c2c0 0x0abb8c 0x0abb8c R E 0x1000
  LOAD           0x0d6e50 0x00000000000d9e50 0x00000000000d9e50 0x0009d8 0x001d59 RW  0x1000
  GNU_RELRO      0x0d6e50 0x00000000000d8e50 0x00000000000d8e50 0x006698 0x0071b0 R   0x1
  GNU_STACK      0x000000 0x0000000000000000 0x0000000000000000 0x000000 0x000000 RW  0
"""
SYMBOLS = """
000000000003be10 T quellin::QuellinHelperMain::main(std::span<char* const, 18446744073709551615ul>)
                 U write@GLIBC_2.2.5
"""


class CheckElfTest(unittest.TestCase):
    def test_good_image_is_accepted(self):
        self.assertEqual(violations(DYNAMIC, HEADERS, SYMBOLS), [])

    def test_each_broken_image_is_refused(self):
        large = f"0x{LARGEST_IMAGE:06x}"
        cases = {
            "loads libstdc++.so.6": (DYNAMIC.replace("libm.so.6", "libstdc++.so.6"), HEADERS, SYMBOLS),
            "loads libexpat.so.1": (DYNAMIC.replace("libm.so.6", "libexpat.so.1"), HEADERS, SYMBOLS),
            "loads /opt/libc.so.6": (DYNAMIC.replace("libm.so.6", "/opt/libc.so.6"), HEADERS, SYMBOLS),
            "loads no library at all": (DYNAMIC.replace("NEEDED", "DEBUG"), HEADERS, SYMBOLS),
            "has RUNPATH": (DYNAMIC + " 0x1d (RUNPATH) Library runpath: [/opt]", HEADERS, SYMBOLS),
            "has RPATH": (DYNAMIC + " 0x0f (RPATH) Library rpath: [/opt]", HEADERS, SYMBOLS),
            "has TEXTREL": (DYNAMIC + " 0x16 (TEXTREL) 0x0", HEADERS, SYMBOLS),
            "binds its functions lazily": (DYNAMIC.replace("NOW PIE", "PIE"), HEADERS, SYMBOLS),
            "is not position-independent": (DYNAMIC, HEADERS.replace("DYN ", "EXEC"), SYMBOLS),
            "leaves its relocated data writable": (DYNAMIC, HEADERS.replace("GNU_RELRO", "NULL"), SYMBOLS),
            "has an executable stack": (DYNAMIC, HEADERS.replace("RW  0\n", "RWE 0\n"), SYMBOLS),
            "has a segment both": (DYNAMIC, HEADERS.replace("RW  0x1000", "RWE 0x1000"), SYMBOLS),
            "holds code of simdjson": (DYNAMIC, HEADERS, SYMBOLS + "0 T simdjson::internal::x"),
            "holds code of sqlite3": (DYNAMIC, HEADERS, SYMBOLS + "0 T sqlite3_open"),
            "has no symbols to check": (DYNAMIC, HEADERS, "nm: no symbols"),
            "takes ": (DYNAMIC, HEADERS.replace("0x0abb8c R E", f"{large} R E"), SYMBOLS),
        }
        for expected, image in cases.items():
            with self.subTest(expected):
                found = violations(*image)
                self.assertEqual(len(found), 1, found)
                self.assertTrue(found[0].startswith(expected), found)


if __name__ == "__main__":
    unittest.main()
