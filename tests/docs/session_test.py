#!/usr/bin/env python3
"""Commands in a row on one new demonstration farm; after each, a query shows what it did: session_test.py KRVCMD

What is expected is worked out from embedded/farms/demonstration.toml. Used capacity is (total - free) in
hundredths of total, rounded down; 4,700,000,000 bytes are 4.38 GByte and 4,600,000,000 are 4.28 GByte of 1024
each.
"""
import sys
import unittest

from new_farm import BANNER, SUCCESS, NewFarm

PROGRAM = sys.argv.pop()

# Magazine 2 of jukebox 29 as the farm begins: the discs 201, 202 and 204, of 4,700,000,000 bytes with
# 10,000,000 (99.7 % used), 20,000,000 (99.5 %) and 4,000,000,000 (14.8 %) free; slots 3, 5 and 6 are empty.
INVOICES_1 = ("2", "1", "A", "201", "active", "DVD+R", r"sales\invoices\01", "UDF 1.50 seq", "99%", "4.38 GByte",
              "Invoices 01", "Disc")
INVOICES_2 = ("2", "2", "A", "202", "active", "DVD+R", r"sales\invoices\02", "UDF 1.50 seq", "99%", "4.38 GByte",
              "Invoices 02", "Disc")
PRICES = ("2", "4", "A", "204", "active", "DVD+RW", r"sales\price lists", "UDF 2.01", "14%", "4.38 GByte",
          "Price lists", "Disc")
# Waiting, the first three: a DVD-RAM with a volume never seen before, which gets the ID 600 (next_volume) and has
# 470,000,000 of 4,700,000,000 bytes used; a blank BD-RE, of which a query shows nothing; and the MO disc with the
# volumes 402 (46,000,000 of 4,600,000,000 bytes free) and 403 (92,000,000 free). They go into 3, 5 and 6.
SALES = ("2", "3", "A", "600", "active", "DVD-RAM", "", "UDF 2.01", "10%", "4.38 GByte", "Sales 2006", "Disc")
MARCH = ("2", "6", "A", "402", "active", "MO Rewritable", r"backup\march", "UDF 2.01", "99%", "4.28 GByte",
         "Backup March", "Disc")
APRIL = ("2", "6", "B", "403", "active", "MO Rewritable", r"backup\april", "UDF 2.01", "98%", "4.28 GByte",
         "Backup April", "Disc")

# Jukeboxes by status, then by name with capitals first: ID, name, status.
JUKEBOXES = [("11", "Archive Tower", "active"), ("14", "My Box", "active"), ("8", "MyBox", "active"),
             ("31", "Research", "active"), ("29", "Sales Tower", "active"), ("52", "Shelf 7", "active"),
             ("12", "my_box", "active"), ("41", "Retired", "disabled")]


class Session(unittest.TestCase):
    def act(self, *words):
        outcome = self.farm.run(*words)
        self.assertEqual((outcome.status, outcome.output, outcome.error), (0, BANNER, SUCCESS), words)

    def rows(self, *words):
        """The rows of a query's table. The first column of the table may be one that has no value and is left
        out; its separator stays."""
        outcome = self.farm.run("query", *words)
        self.assertEqual((outcome.status, outcome.error), (0, SUCCESS), words)
        table = outcome.output.removeprefix(BANNER).splitlines()
        return [tuple(cell.strip() for cell in line.removeprefix("|").split("|")) for line in table[2:] if line]

    def test_each_command_does_what_it_says(self):
        with NewFarm(PROGRAM) as self.farm:
            self.assertEqual(self.rows("slots", "J@29", "M2"), [INVOICES_1, INVOICES_2, PRICES])

            self.act("import", "J", "@29", "M2", "repeat=3")
            self.assertEqual(self.rows("slots", "J@29", "M2"), [INVOICES_1, INVOICES_2, SALES, PRICES, MARCH, APRIL])

            self.act("export", "J", "@29", "M2")
            self.assertEqual(self.rows("slots", "J@29", "M2"), [])
            self.assertEqual(self.rows("volumes", "V", "@201,202,204,402,403,600", "columns=IoL", "sort=I"),
                             [(number, "offline") for number in ("201", "202", "204", "402", "403", "600")])

            # 3,525,000,000 of 4,700,000,000 bytes are used; a scan finds them as they were.
            disc = ("33", r"MyBox\3.A", "active", "DVD-RAM", r"sales\2004", "UDF 2.01")
            self.act("scan", "V", "@33")
            self.assertEqual(self.rows("volumes", "V", "@33"), [(*disc, "75%", "4.38 GByte", "Sales 2004", "Disc")])

            self.act("format", "V", "@33", "label=Sales 2005")
            self.assertEqual(self.rows("volumes", "V", "@33"), [(*disc, "0%", "4.38 GByte", "Sales 2005", "Disc")])

            self.act("disable", "J", "@31")
            self.assertEqual(self.rows("jukeboxes", "J", "@31", "columns=JNo"), [("31", "Research", "disabled")])

            self.assertEqual(self.rows("volumes", "V", "@273", "columns=Iln"),
                             [("273", "Measurements 7", r"lab\measurements\7")])
            self.act("name", "V", "@273", "dir1/volume273")
            self.assertEqual(self.rows("volumes", "V", "@273", "columns=Iln"),
                             [("273", "Measurements 7", "dir1/volume273")])

            self.act("service", "stop")
            stopped = self.farm.run("query", "jukeboxes")
            # 1011 is 3 * 256 + 243.
            self.assertEqual((stopped.status, stopped.output, stopped.error),
                             (243, BANNER, 'KRV error 1011: The service on server "." is stopped.\n'))

            self.act("service", "start")
            research = JUKEBOXES[3]
            active = [jukebox for jukebox in JUKEBOXES[:-1] if jukebox != research]
            self.assertEqual(self.rows("jukeboxes", "columns=JNo"),
                             [*active, (*research[:2], "disabled"), JUKEBOXES[-1]])


if __name__ == "__main__":
    unittest.main()
