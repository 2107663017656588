"""The page of a farm in a browser: page_test.py KRVSIM REHEARSAL-PAGE

Ends with 77 where there is no Chromium.
"""
import collections
import json
import subprocess
import sys
import time
import unittest

import browser
import picture
import smoothness
from farm_files import FarmFiles

SKIPPED = 77

# Each of these would do something if the page took it for markup.
HOSTILE = [
    "<img src=x onerror=\"document.title='hit'\">",
    "</script><script>document.title='hit'</script>",
    "<!--<script>",
    "-->\"'><b>bold</b>",
    "<style>body{display:none}</style>",
    "&lt;i&gt; &amp;",
    "javascript:document.title='hit'",
    "\u202ereversed",
    "{{data}} ${data} %data%",
    "line\\nbreak",
]


def quoted(text):
    return json.dumps(text)


def hostile_layout():
    volumes = "\n".join(f"  {{ id = {index + 1}, label = {quoted(label)}, file_system = {quoted(label[:29])}, total = 100, "
                        f"free = 25, directories = [{quoted(label)}] }}," for index, label in enumerate(HOSTILE))
    media = "\n".join(f'  {{ slot = {index + 1}, type = "CD-R", a = {index + 1} }},' for index in range(len(HOSTILE)))
    return f"""format = 1
volume = [
{volumes}
]
[[jukebox]]
id = 1
name = {quoted(HOSTILE[0])}
vendor = "<b>"
drive = [ {{ vendor = "<i>", product = "</script>" }} ]
[[jukebox.magazine]]
slots = {len(HOSTILE) + 1}
media = [
{media}
]
"""


def all_slots(farm):
    return [slot for jukebox in farm["jukeboxes"] for magazine in jukebox["magazines"] for slot in magazine["slots"]]


def queued_media(farm):
    return farm["shelf"] + [medium for jukebox in farm["jukeboxes"] for medium in jukebox["waiting"] + jukebox["exported"]]


class BrowserTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = cls.enterClassContext(FarmFiles(KRVSIM))
        cls.browser = cls.enterClassContext(browser.Browser(PROGRAM))
        cls.files.run("init")
        cls.demonstration = cls.files.page()

    def open(self, path, **size):
        self.browser.prefer()
        self.browser.open(path, **size)

    def tearDown(self):
        self.assertEqual(self.browser.complaints(), [])
        addresses = self.browser.requests()
        self.assertEqual(len(addresses), 1, addresses)

    def details(self):
        return self.browser.run("document.querySelector('#details').hidden ? null : document.querySelector('#details').innerText")


class Page(BrowserTest):

    def test_shows_every_slot_with_its_state_its_medium_and_its_volumes(self):
        farm = self.files.farm()
        volumes = {volume["id"]: volume for volume in farm["volumes"]}
        self.open(self.demonstration)
        self.assertEqual(self.browser.run("document.querySelectorAll('section.jukebox').length"), len(farm["jukeboxes"]))
        self.assertEqual(self.browser.run("document.querySelectorAll('#page .slot').length"),
                         len(all_slots(farm)) + len(queued_media(farm)))
        for jukebox in farm["jukeboxes"]:
            section = f"section[data-jukebox='{jukebox['id']}']"
            self.assertIn(jukebox["name"], self.browser.run(f"document.querySelector(\"{section} h2\").textContent"))
            self.assertEqual(self.browser.run(f"document.querySelectorAll(\"{section} .drives li\").length"), len(jukebox["drives"]))
            for magazine in jukebox["magazines"]:
                group = f"{section} .slots[aria-label='{jukebox['name']}, magazine {magazine['magazine']}'] .slot"
                shown = self.browser.run(f"""[...document.querySelectorAll({quoted(group)})].map((slot) =>
                    ({{ state: slot.dataset.state, label: slot.getAttribute("aria-label"), text: slot.textContent }}))""")
                self.assertEqual([slot["state"] for slot in shown], [slot["state"] for slot in magazine["slots"]])
                for slot, found in zip(magazine["slots"], shown):
                    self.assertTrue(found["label"].startswith(f"slot {slot['slot']}: {slot['state']}"), found)
                    if slot["medium"] is None:
                        continue
                    self.assertIn(slot["medium"]["type"], found["text"])
                    for side in slot["medium"]["sides"]:
                        if side["volume"] is not None:
                            self.assertIn(volumes[side["volume"]]["label"] or f"volume {side['volume']}", found["label"])

    def test_counts_what_the_farm_has(self):
        farm = self.files.farm()
        self.open(self.demonstration)
        media = sum(slot["medium"] is not None for slot in all_slots(farm)) + len(queued_media(farm))
        waiting = sum(volume["id"] < 0 for volume in farm["volumes"])
        self.assertGreater(waiting, 1)
        self.assertEqual(self.browser.run("document.querySelector('#summary').textContent"),
                         f"{len(farm['jukeboxes'])} jukeboxes, {len(all_slots(farm))} slots, {media} media, "
                         f"{len(farm['volumes']) - waiting} volumes, {waiting} volumes wait for import.")

    def test_shows_how_full_a_medium_is(self):
        self.files.create(hostile_layout(), "shares")
        self.open(self.files.page("shares"))
        self.assertEqual(self.browser.run("document.querySelector('#page .slot').style.getPropertyValue('--used-part')"), "75%")
        self.assertIn("75 % used", self.browser.run("document.querySelector('#page .slot').getAttribute('aria-label')"))

    def test_click_on_a_slot_shows_its_volumes(self):
        self.open(self.demonstration)
        self.assertIsNone(self.details())
        self.browser.click("section[data-jukebox='8'] .slot:nth-child(3)")
        text = self.details()
        for words in ("MyBox, magazine 1, slot 3", "DVD-RAM", "Side A", "Sales 2004", "Side B", "Sales 2003"):
            self.assertIn(words, text)
        self.browser.click("section[data-jukebox='8'] .slot:nth-child(5)")
        self.assertIn("empty", self.details())
        self.assertNotIn("Sales", self.details())
        self.browser.click("#details .close")
        self.assertIsNone(self.details())

    def focused(self):
        return self.browser.run("document.activeElement.getAttribute('aria-label') || document.activeElement.textContent")

    def test_keyboard_leads_everywhere(self):
        self.open(self.demonstration)
        self.browser.press("Tab")
        self.assertTrue(self.focused().startswith("slot 1: "), self.focused())
        self.browser.press("ArrowRight")
        self.browser.press("ArrowRight")
        self.assertTrue(self.focused().startswith("slot 3: "), self.focused())
        self.browser.press("Enter")
        self.assertIn("Sales 2004", self.details())
        self.assertIn("slot 3", self.focused(), "a screen reader reads the heading")
        self.browser.press("Escape")
        self.assertIsNone(self.details())
        self.assertTrue(self.focused().startswith("slot 3: "), self.focused())
        self.browser.press("End")
        self.assertTrue(self.focused().startswith("slot 12: "), self.focused())
        self.browser.press("ArrowRight")
        self.assertTrue(self.focused().startswith("slot 12: "), "the last one is the last one")
        self.browser.press("Tab")
        self.assertTrue(self.focused().startswith(("slot 1: ", "medium 1: ")), self.focused())

    def test_arrows_lead_from_row_to_row(self):
        self.open(self.demonstration, width=500)
        columns = self.browser.run("""(() => {
            const slots = [...document.querySelector("#page .slots").querySelectorAll(".slot")];
            return slots.filter((slot) => slot.offsetTop === slots[0].offsetTop).length;
        })()""")
        self.assertLess(columns, 12)
        self.browser.press("Tab")
        self.browser.press("ArrowDown")
        self.assertTrue(self.focused().startswith(f"slot {columns + 1}: "), self.focused())
        self.browser.press("ArrowUp")
        self.assertTrue(self.focused().startswith("slot 1: "), self.focused())

    def nodes_for_screen_readers(self):
        nodes = self.browser.call("Accessibility.getFullAXTree")["nodes"]
        return [node for node in nodes if not node["ignored"]]

    def test_screen_reader_finds_a_name_for_everything(self):
        # What is far outside of the window joins the tree only when it is scrolled to, what is in it when it is drawn.
        self.open(self.demonstration, height=6000)
        slots = self.browser.run("document.querySelectorAll('#page .slot').length")
        deadline = time.monotonic() + 30
        roles = collections.Counter()
        while roles["button"] < slots and time.monotonic() < deadline:
            nodes = self.nodes_for_screen_readers()
            roles = collections.Counter(node["role"]["value"] for node in nodes)
        self.assertEqual(roles["button"], slots)
        for node in nodes:
            if node["role"]["value"] in ("button", "group", "heading"):
                self.assertTrue(node["name"]["value"].strip(), node)
        self.assertGreater(roles["heading"], 8)
        self.assertEqual(self.browser.run("document.documentElement.lang"), "en")

    def test_texts_of_a_farm_are_never_markup(self):
        server = "</script><h1>"
        self.files.create(hostile_layout(), server)
        page = self.files.page(server)
        self.open(page)
        self.assertEqual(self.browser.run("document.title"), f"Farm of server {server}")
        self.assertEqual(self.browser.run("[...document.scripts].map((script) => script.type)"), ["application/json", ""])
        for tag in ("img", "b", "i", "main style", "body style"):
            self.assertEqual(self.browser.run(f"document.querySelectorAll('{tag}').length"), 0, tag)
        self.assertEqual(self.browser.run("document.querySelectorAll('h1').length"), 1)
        self.assertEqual(self.browser.run("document.querySelector('section h2 bdi').textContent"), HOSTILE[0])
        for index, label in enumerate(HOSTILE):
            self.browser.run(f"document.querySelectorAll('#page .slot')[{index}].click()")
            facts = self.browser.run("""Object.fromEntries([...document.querySelectorAll('#details dt')]
                .map((term) => [term.textContent, term.nextElementSibling.textContent]))""")
            self.assertEqual((facts["Label"], facts["File system"], facts["Directory"]), (label, label[:29], label))
        self.assertEqual(self.browser.run("document.title"), f"Farm of server {server}", "no script of a label has run")

    def test_browser_runs_no_other_script_and_applies_no_other_style(self):
        page = self.files.path / "tampered.html"
        text = self.demonstration.read_text(encoding="utf-8")
        page.write_text(text.replace("<main ", "<script>document.title = 'hit'</script><style>main{display:none}</style><main ", 1),
                        encoding="utf-8")
        self.open(page)
        self.assertEqual(self.browser.run("document.title"), "Farm of server .")
        self.assertEqual(self.browser.run("getComputedStyle(document.querySelector('main')).display"), "block")
        complaints = self.browser.complaints()
        self.assertEqual(len(complaints), 2, complaints)
        self.assertTrue(all("Content Security Policy" in complaint for complaint in complaints), complaints)
        self.browser.events.clear()
        self.open(self.demonstration)

    def test_list_of_all_volumes_says_where_they_are(self):
        farm = self.files.farm()
        self.open(self.demonstration)
        self.assertEqual(self.browser.run("document.querySelectorAll('#volumes tr').length"), 0)
        self.browser.click("#volumes summary")
        self.browser.wait_for("document.querySelectorAll('#volumes tbody tr').length")
        rows = self.browser.run("""[...document.querySelectorAll('#volumes tbody tr')]
            .map((row) => [...row.cells].map((cell) => cell.textContent))""")
        self.assertEqual([int(row[0]) for row in rows], [volume["id"] for volume in farm["volumes"]])
        self.assertEqual({row[0]: row[-1] for row in rows}["33"], "MyBox, magazine 1, slot 3, side A")

    def test_follows_light_and_dark_colours_and_prints_dark_on_light(self):
        self.open(self.demonstration, width=420, height=300)
        pictures = {}
        for name, colours, medium in (("light", "light", "screen"), ("dark", "dark", "screen"), ("paper", "dark", "print")):
            self.browser.prefer(colours, medium)
            pictures[name] = self.browser.picture()
            self.assertLess(picture.difference(pictures[name], self.browser.picture()), 0.002, f"{name} is steady")
        self.assertGreater(picture.brightness(pictures["light"]), 200)
        self.assertLess(picture.brightness(pictures["dark"]), 80)
        self.assertGreater(picture.brightness(pictures["paper"]), 200)
        self.assertGreater(picture.difference(pictures["light"], pictures["dark"]), 0.5)
        self.assertTrue(self.browser.paper().startswith(b"%PDF-"))

    def test_nothing_is_wider_than_the_window(self):
        for width in (320, 800, 1600):
            self.open(self.demonstration, width=width)
            self.assertLessEqual(self.browser.run("document.documentElement.scrollWidth"), width)

    def test_ten_thousand_slots_stay_smooth(self):
        self.files.run("generate", "--server", "big", *smoothness.FARM)
        page = self.files.page("big")
        self.open(page)
        self.assertEqual(self.browser.run("document.querySelectorAll('#page .slot').length"), smoothness.SLOTS)
        self.assertEqual(self.browser.run("document.querySelectorAll('#page .slot[tabindex=\"0\"]').length"), 20)
        figures = smoothness.measure(self.browser, page)
        # Two nodes for a slot: its element and its text. What is far from the window costs nothing.
        self.assertLess(figures.nodes, 2.2 * smoothness.SLOTS)
        self.assertGreater(figures.shown_slots, 50)
        self.assertLess(figures.shown_slots, 1000)
        self.assertLessEqual(figures.layouts_of_a_click, 2)
        # Times five to ten what a quiet machine takes.
        self.assertLess(figures.open_seconds, 3)
        self.assertLess(figures.frame_seconds, 0.1)
        self.assertLess(figures.click_seconds, 0.1)
        self.assertIsNotNone(self.details())

    def test_scrolling_finds_every_slot_where_the_bar_says(self):
        # Parts that are not laid out yet have the height that they are going to have.
        self.files.run("generate", "--server", "long", "--slots", "2000")
        self.open(self.files.page("long"))
        height = self.browser.run("document.documentElement.scrollHeight")
        self.browser.run("""new Promise(async (done) => {
            for (let at = 0; at < document.documentElement.scrollHeight; at += 400) {
                scrollTo(0, at);
                await new Promise(requestAnimationFrame);
                await new Promise(requestAnimationFrame);
            }
            done();
        })""")
        self.assertAlmostEqual(self.browser.run("document.documentElement.scrollHeight"), height, delta=60)

    def test_keys_lead_from_part_to_part_of_a_large_magazine(self):
        self.files.run("generate", "--server", "parts", "--slots", "200")
        self.open(self.files.page("parts"))
        columns = self.browser.run("getComputedStyle(document.querySelector('#page .part')).gridTemplateColumns.split(' ').length")
        self.assertEqual(60 % columns, 0)
        self.browser.press("Tab")
        for _ in range(60 // columns + 1):
            self.browser.press("ArrowDown")
        self.assertTrue(self.focused().startswith(f"slot {61 + columns}: "), self.focused())
        self.browser.press("End")
        self.assertTrue(self.focused().startswith("slot 200: "), self.focused())
        self.browser.press(" ")
        self.assertIn("slot 200", self.details())

    def test_paper_has_every_slot(self):
        self.files.run("generate", "--server", "printed", "--slots", "3000")
        self.open(self.files.page("printed"))
        pages = self.browser.paper().count(b"/Type /Page\n")
        # At most 15 columns of 2.85rem; a page has less than 400 mm.
        self.assertGreater(pages, 3000 / 15 * 2.85 * 16 / 96 * 25.4 / 400)


class Rehearsal(BrowserTest):
    """The medium in slot 3 of MyBox moves to slot 5, and volume 1 gets another label."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        layout = cls.files.run("dump").decode()
        changed = layout.replace('{ slot = 3, type = "DVD-RAM", a = 33, b = 34 }', '{ slot = 5, type = "DVD-RAM", a = 33, b = 34 }')
        changed = changed.replace('label = "Ledger 1999"', f"label = {quoted(HOSTILE[1])}")
        assert len(set(layout.splitlines()) ^ set(changed.splitlines())) == 4
        before, after = cls.files.path / "before.toml", cls.files.path / "after.toml"
        before.write_text(layout, encoding="utf-8")
        after.write_text(changed, encoding="utf-8")
        cls.page = cls.files.path / "rehearsal.html"
        cls.page.write_bytes(subprocess.run([REHEARSAL_PAGE, before, after], check=True, stdout=subprocess.PIPE).stdout)

    def setUp(self):
        self.open(self.page)

    def texts(self, selector):
        return self.browser.run(f"[...document.querySelectorAll({quoted(selector)})].map((one) => one.textContent)")

    def test_draws_both_farms_side_by_side(self):
        farm = self.files.farm()
        count = len(all_slots(farm)) + len(queued_media(farm))
        self.assertEqual(self.browser.run("document.querySelectorAll('#page .slot').length"), 2 * count)
        left, right = self.browser.run("""[...document.querySelectorAll("section[data-jukebox='8'] .columns > div")]
            .map((column) => column.getBoundingClientRect().x)""")
        self.assertLess(left, right)
        self.open(self.page, width=600)
        left, right = self.browser.run("""[...document.querySelectorAll("section[data-jukebox='8'] .columns > div")]
            .map((column) => column.getBoundingClientRect().x)""")
        self.assertEqual(left, right, "a narrow window has them one below the other")

    def test_marks_what_changed_and_nothing_else(self):
        self.assertEqual(
            self.browser.run("""[...document.querySelectorAll(".slot.changed")].map((slot) =>
                slot.closest(".slots").getAttribute("aria-label") + ": " + slot.getAttribute("aria-label"))"""),
            ["MyBox, before, magazine 1: slot 1: full, MO Rewritable, Ledger 1999, Ledger 2000, 91 % used, changed",
             "MyBox, before, magazine 1: slot 3: full, DVD-RAM, Sales 2004, Sales 2003, 87 % used, changed",
             "MyBox, before, magazine 1: slot 5: empty, changed",
             f"MyBox, after, magazine 1: slot 1: full, MO Rewritable, {HOSTILE[1]}, Ledger 2000, 91 % used, changed",
             "MyBox, after, magazine 1: slot 3: empty, changed",
             "MyBox, after, magazine 1: slot 5: full, DVD-RAM, Sales 2004, Sales 2003, 87 % used, changed"])
        self.assertEqual(self.texts("#page .mark"), [])

    def test_click_shows_the_volumes_of_that_time(self):
        slots = "section[data-jukebox='8'] .columns > div:nth-child({}) .slot:nth-child(1)"
        self.browser.click(slots.format(1))
        self.assertIn("Ledger 1999", self.details())
        self.browser.click(slots.format(2))
        self.assertIn(HOSTILE[1], self.details())

    def test_lists_the_plan(self):
        self.assertEqual(self.texts("#plan > p"), ["2 changes: 1 moved, 1 formatted."])
        self.assertEqual(self.texts("#plan h3"), ["Jukebox MyBox, magazine 1"])
        lines = self.texts("#plan li")
        self.assertEqual(len(lines), 2)
        self.assertIn("~ moved slot 3 -> slot 5", " ".join(lines))
        self.assertIn(HOSTILE[1], " ".join(lines))

    def test_shows_the_timeline_of_the_calls(self):
        self.assertIn("4 calls, 1 failed; 8 min in simulated time.", self.texts("#calls p")[0])
        self.assertEqual(self.texts("#calls tbody td:nth-child(4)"), ["KrvMediaExport", "KrvVolumeFormat", "KrvMediaExport"])
        self.assertEqual(self.texts("#calls tbody td:nth-child(1)"), ["0 s", "4 min", "4 min"])
        self.assertEqual(self.texts("#calls tr.failed td:nth-child(n+5)"),
                         ["jukebox 8, slot 3, side A “<b>label</b>”", "failed with 501: There is no medium in <i>slot</i> 3."])
        bars = self.browser.run("""[...document.querySelectorAll("#calls tbody .bar")].map((bar) => [bar.style.left, bar.style.width])""")
        self.assertEqual(bars, [["0%", "50%"], ["0%", "12.5%"], ["50%", "50%"], ["50%", "12.5%"]])
        self.browser.click("#all-calls")
        self.browser.wait_for("document.querySelectorAll('#calls tbody tr').length == 4")

    def test_shows_output_and_remarks_as_text(self):
        self.assertEqual(self.texts("#output pre"), ["line 1\n<script>document.title = 'hit'</script>\nKöln\n"])
        self.assertEqual(self.texts("#remarks li"), ["about 8 min in jukebox <MyBox>, of which 2 min moving"])
        self.assertEqual(self.browser.run("document.title"), "Rehearsal on server my_server")
        self.assertEqual(self.browser.run("document.querySelectorAll('b, i, img, main script').length"), 0)

    def test_prints_both_farms(self):
        self.browser.prefer("dark", "print")
        self.assertGreater(picture.brightness(self.browser.picture()), 200)


if __name__ == "__main__":
    PROGRAM = browser.find_program()
    if PROGRAM is None:
        print("no Chromium on this system")
        sys.exit(SKIPPED)
    REHEARSAL_PAGE, KRVSIM = sys.argv.pop(), sys.argv.pop()
    unittest.main()
