"""The page of a farm in a browser: page_test.py KRVSIM

Ends with 77 where there is no Chromium.
"""
import collections
import json
import sys
import time
import unittest

import browser
import picture
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


class Page(unittest.TestCase):
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
        self.assertEqual(self.browser.run("document.querySelector('#summary').textContent"),
                         f"{len(farm['jukeboxes'])} jukeboxes, {len(all_slots(farm))} slots, {media} media, "
                         f"{len(farm['volumes'])} volumes.")

    def test_shows_how_full_a_medium_is(self):
        self.files.create(hostile_layout(), "shares")
        self.open(self.files.page("shares"))
        self.assertEqual(self.browser.run("document.querySelector('#page .slot').style.getPropertyValue('--used-part')"), "75%")
        self.assertIn("75 % used", self.browser.run("document.querySelector('#page .slot').getAttribute('aria-label')"))

    def details(self):
        return self.browser.run("document.querySelector('#details').hidden ? null : document.querySelector('#details').innerText")

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
            const slots = [...document.querySelector("#page .slots").children];
            return slots.filter((slot) => slot.offsetTop === slots[0].offsetTop).length;
        })()""")
        self.assertLess(columns, 12)
        self.browser.press("Tab")
        self.browser.press("ArrowDown")
        self.assertTrue(self.focused().startswith(f"slot {columns + 1}: "), self.focused())
        self.browser.press("ArrowUp")
        self.assertTrue(self.focused().startswith("slot 1: "), self.focused())

    def test_screen_reader_finds_a_name_for_everything(self):
        self.open(self.demonstration)
        nodes = self.browser.call("Accessibility.getFullAXTree")["nodes"]
        roles = collections.Counter()
        for node in nodes:
            role = node["role"]["value"]
            if node["ignored"] or role not in ("button", "group", "heading", "list", "main", "banner"):
                continue
            roles[role] += 1
            if role in ("button", "group", "heading"):
                self.assertTrue(node["name"]["value"].strip(), node)
        self.assertEqual(roles["button"], self.browser.run("document.querySelectorAll('#page .slot').length"))
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
        rows = self.browser.run("""new Promise((done) => setTimeout(() => done([...document.querySelectorAll('#volumes tbody tr')]
            .map((row) => [...row.cells].map((cell) => cell.textContent))), 50))""")
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

    def test_ten_thousand_slots_answer_at_once(self):
        self.files.run("generate", "--server", "big", "--jukeboxes", "4", "--magazines", "5", "--slots", "500", "--fill", "80")
        start = time.monotonic()
        self.open(self.files.page("big"))
        self.assertEqual(self.browser.run("document.querySelectorAll('#page .slot').length"), 10_000)
        self.assertLess(time.monotonic() - start, 30)
        answer = self.browser.run("""(() => {
            const start = performance.now();
            document.querySelectorAll("#page .slot")[7000].click();
            document.body.offsetHeight;
            return performance.now() - start;
        })()""")
        self.assertLess(answer, 1000)
        self.assertIsNotNone(self.details())


if __name__ == "__main__":
    PROGRAM = browser.find_program()
    if PROGRAM is None:
        print("no Chromium on this system")
        sys.exit(SKIPPED)
    KRVSIM = sys.argv.pop()
    unittest.main()
