"""How smoothly a browser shows a farm of 10,000 slots: smoothness.py KRVSIM

Prints the figures of docs/performance.md. Those of the main thread are its CPU time, which a busy machine hardly changes;
the median frame is only of use on a machine that does nothing else.
"""
import dataclasses
import statistics
import sys

import browser
from farm_files import FarmFiles

FARM = ("--jukeboxes", "4", "--magazines", "5", "--slots", "500", "--fill", "80")
SLOTS = 10_000
# A wheel turned fast.
STEP, FRAMES, CLICKS = 300, 120, 20

SCROLL = f"""new Promise(async (done) => {{
    const times = [];
    let last = performance.now();
    for (let frame = 0; frame < {FRAMES}; frame += 1) {{
        scrollTo(0, {STEP} * frame);
        await new Promise(requestAnimationFrame);
        const now = performance.now();
        times.push(now - last);
        last = now;
    }}
    done(times);
}})"""

NODES = """(() => {
    const nodes = document.createNodeIterator(document);
    let count = 0;
    while (nodes.nextNode() !== null) count += 1;
    return count;
})()"""

SHOWN_SLOTS = """[...document.querySelectorAll("#page .slot")]
    .filter((slot) => slot.checkVisibility({ contentVisibilityAuto: true })).length"""


CLICK_THEM = f"""[...document.querySelectorAll("#page .slot")]
    .filter((slot) => slot.checkVisibility({{ contentVisibilityAuto: true }})).slice(0, {CLICKS})
    .forEach((slot) => {{
        slot.click();
        document.body.offsetHeight;
    }})"""


@dataclasses.dataclass
class Figures:
    nodes: int  # of the page's tree, texts included
    shown_slots: int  # those that are laid out, near the window
    open_seconds: float  # CPU time of the main thread
    frame_seconds: float  # CPU time of the main thread for a frame of fast scrolling
    median_frame: float  # seconds, as the clock has it
    click_seconds: float  # CPU time of script, style and layout
    layouts_of_a_click: float


def metrics(page):
    return {metric["name"]: metric["value"] for metric in page.call("Performance.getMetrics")["metrics"]}


def measure(page, file):
    """The figures of a page in a browser of a test."""
    page.call("Performance.enable", timeDomain="threadTicks")
    page.open(file)
    page.run("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")
    opened = metrics(page)
    nodes, shown = page.run(NODES), page.run(SHOWN_SLOTS)
    before = metrics(page)
    frames = page.run(SCROLL)
    scrolled = metrics(page)
    page.run(CLICK_THEM)
    clicked = metrics(page)
    page.call("Performance.disable")
    spent = sum(clicked[name] - scrolled[name] for name in ("ScriptDuration", "LayoutDuration", "RecalcStyleDuration"))
    return Figures(nodes, shown, opened["TaskDuration"], (scrolled["TaskDuration"] - before["TaskDuration"]) / FRAMES,
                   statistics.median(frames) / 1000, spent / CLICKS, (clicked["LayoutCount"] - scrolled["LayoutCount"]) / CLICKS)


def main():
    with FarmFiles(sys.argv[1]) as files, browser.Browser(browser.find_program()) as page:
        files.run("generate", *FARM)
        figures = measure(page, files.page())
    print(f"nodes                      {figures.nodes}")
    print(f"slots that are laid out    {figures.shown_slots} of {SLOTS}")
    print(f"opening, main thread       {figures.open_seconds * 1000:.0f} ms")
    print(f"scrolling, main thread     {figures.frame_seconds * 1000:.1f} ms for a frame of {STEP} pixels")
    print(f"scrolling, median frame    {figures.median_frame * 1000:.1f} ms")
    print(f"click, script and layout   {figures.click_seconds * 1000:.1f} ms")


if __name__ == "__main__":
    main()
